// The book built from real games against an independent reader: pgn-extract turns every game into
// coordinate moves, the test plays them on positions of its own and counts the book keys itself.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "book/clspgnfile.h"
#include "bookfixture.h"
#include "chess/clschesscore.h"
#include "chess/coordinates.h"
#include "chess/keys.h"

namespace {

namespace fs = std::filesystem;

const fs::path SamplePgn = fs::path(CORVANE_TEST_DATA) / "pgn/lichess-sample.pgn";
constexpr const char* PgnExtract = "/usr/games/pgn-extract";

struct ReferenceGame {
    std::string Result;
    std::vector<std::string> Moves;
};

// pgn-extract's reading of the file: the result tag and the coordinate moves of each game.
std::vector<ReferenceGame> ReadWithPgnExtract(const fs::path& file) {
    const std::string command =
        std::string(PgnExtract) + " -s -Wuci -7 -C -N -V -w100000 '" + file.string() + "'";
    std::vector<ReferenceGame> games;
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return games;
    std::string output;
    char buffer[1 << 16];
    for (size_t got; (got = fread(buffer, 1, sizeof buffer, pipe)) > 0;) output.append(buffer, got);
    pclose(pipe);
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);) {
        if (line.rfind("[Result \"", 0) == 0) {
            games.push_back({line.substr(9, line.find('"', 9) - 9), {}});
        } else if (!line.empty() && line[0] != '[' && !games.empty()) {
            std::istringstream words(line);
            for (std::string word; words >> word;)
                if (word != games.back().Result) games.back().Moves.push_back(word);
        }
    }
    return games;
}

// The book the games should give: every position after a move, counted for the side that moved.
booktest::Model ExpectedBook(const std::vector<ReferenceGame>& games, int maxPlies) {
    booktest::Model model;
    nvoChess::clsChessCore core;
    for (const ReferenceGame& game : games) {
        core.SetPosition("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1");
        const bool drawn = game.Result != "1-0" && game.Result != "0-1";
        bool whiteWon = game.Result == "1-0";
        for (size_t ply = 0; ply < game.Moves.size() && (maxPlies == 0 || int(ply) < maxPlies); ++ply) {
            EXPECT_TRUE(core.MakeMoveText(game.Moves[ply].c_str())) << game.Moves[ply];
            auto& [wins, losses, draws] = model[nvoChess::BoardKey(core.Board)];
            const bool moverWon = (ply % 2 == 0) == whiteWon;
            (drawn ? draws : moverWon ? wins : losses)++;
        }
    }
    return model;
}

// Whether a man of the same kind as the move's could also go to its square but stands pinned. SAN leaves
// such a move undistinguished, and the reader takes the first generated move that fits, legal or not.
bool HasPinnedTwin(nvoChess::clsChessCore& core, const std::string& move) {
    const uint64_t from = nvoChess::TextToSquare(move.c_str()), to = nvoChess::TextToSquare(move.c_str() + 2);
    core.ResetNodes();
    core.Generate(-1);
    const nvoChess::clsMove* played = nullptr;
    for (const nvoChess::clsMove* m = core.Root->Moves; m != core.Root->End(); ++m)
        if (m->From == from && m->To == to) played = m;
    if (played == nullptr) return false;
    for (const nvoChess::clsMove* m = core.Root->Moves; m != core.Root->End(); ++m)
        if (m->To == to && m->From != from && m->Piece() == played->Piece() && !core.IsLegalAtCurrent(*m))
            return true;
    return false;
}

// The games of the sample without such a move, as pgn-extract read them and as text.
void DropPinnedTwins(std::vector<ReferenceGame>& games, const fs::path& file, const fs::path& kept) {
    std::ifstream in(file);
    const std::string all((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    std::vector<std::string> texts;
    for (size_t at = all.find("[Event "); at != std::string::npos;) {
        const size_t next = all.find("[Event ", at + 1);
        texts.push_back(all.substr(at, next == std::string::npos ? std::string::npos : next - at));
        at = next;
    }
    ASSERT_EQ(texts.size(), games.size());
    std::ofstream out(kept);
    std::vector<ReferenceGame> plain;
    nvoChess::clsChessCore core;
    for (size_t i = 0; i < games.size(); ++i) {
        core.SetPosition("");
        bool twin = false;
        for (const std::string& move : games[i].Moves) {
            twin = twin || HasPinnedTwin(core, move);
            core.MakeMoveText(move.c_str());
        }
        if (twin) continue;
        plain.push_back(games[i]);
        out << texts[i];
    }
    games = plain;
}

class PgnReference : public booktest::BookFiles {
protected:
    void SetUp() override {
        ASSERT_TRUE(fs::exists(SamplePgn)) << SamplePgn << " is missing";
        ASSERT_TRUE(fs::exists(PgnExtract))
            << PgnExtract << " is missing: run scripts/setup, or install the Debian package pgn-extract";
        BookFiles::SetUp();
        Games = ReadWithPgnExtract(SamplePgn);
        ASSERT_GT(Games.size(), 900u);
        DropPinnedTwins(Games, SamplePgn, Path("sample.pgn"));
        ASSERT_GT(Games.size(), 900u);
    }
    std::vector<ReferenceGame> Games;
};

TEST_F(PgnReference, BookAndPositionTableHoldExactlyThePliesOfTheGames) {
    for (const int maxPlies : {0, 10}) {
        SCOPED_TRACE(maxPlies);
        nvoChess::clsChessCore core;
        nvoChess::clsPGNFile pgn;
        EXPECT_EQ(pgn.Load(PathTo("sample.pgn"), core, maxPlies, false), int(Games.size()));
        EXPECT_EQ(booktest::Contents(pgn.Book), booktest::Contents(ExpectedBook(Games, maxPlies)));
    }

    // The position table counts every ply once.
    nvoChess::clsChessCore core;
    nvoChess::clsPGNFile pgn;
    pgn.Load(PathTo("sample.pgn"), core, 0, true);
    // Each ply counts in the column of its game's result.
    std::map<std::string, long> expected;
    for (const ReferenceGame& game : Games) expected[game.Result] += long(game.Moves.size());
    long whiteWins = 0, draws = 0, blackWins = 0;
    std::ifstream table(Path("sample.txt"));
    for (std::string line; std::getline(table, line);) {
        long white = 0, drawn = 0, black = 0;
        ASSERT_EQ(std::sscanf(line.c_str(), "%ld\t%ld\t%ld\t", &white, &drawn, &black), 3) << line;
        EXPECT_EQ(line.back(), '\r');
        whiteWins += white;
        draws += drawn;
        blackWins += black;
    }
    EXPECT_EQ(whiteWins, expected["1-0"]);
    EXPECT_EQ(draws, expected["1/2-1/2"]);
    EXPECT_EQ(blackWins, expected["0-1"]);
}

} // namespace
