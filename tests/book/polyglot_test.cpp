// Polyglot books: keys against the values the format's documentation and make-book give, books built from
// real games byte for byte against polyglot make-book, damaged files, and opening lines drawn from a book.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "book/clspgnfile.h"
#include "book/clspolyglotbook.h"
#include "book/clspolyglotbuilder.h"
#include "book/polyglotkey.h"
#include "book/polyglotline.h"
#include "bookfixture.h"
#include "chess/clschesscore.h"

namespace {

namespace fs = std::filesystem;
using namespace nvoChess;

constexpr const char* MakeBook = "/usr/games/polyglot";
constexpr uint64_t Start = 0x463b96181691fc9cULL, AfterE4 = 0x823c9b50fd114196ULL;

std::vector<uint8_t> BookBytes(const std::vector<clsPolyglotEntry>& entries) {
    std::vector<uint8_t> bytes(entries.size() * PolyglotEntrySize);
    for (size_t i = 0; i < entries.size(); ++i)
        WritePolyglotEntry(entries[i], bytes.data() + i * PolyglotEntrySize);
    return bytes;
}

TEST(PolyglotKey, DocumentedPositions) {
    const struct {
        const char* Moves;
        uint64_t Key;
    } cases[] = {
        {"", Start},
        {"e2e4", AfterE4},
        {"e2e4 d7d5", 0x0756b94461c50fb0ULL},
        {"e2e4 d7d5 e4e5", 0x662fafb965db29d4ULL},
        {"e2e4 d7d5 e4e5 f7f5", 0x22a48b5a8e47ff78ULL}, // en passant possible
        {"e2e4 d7d5 e4e5 f7f5 e1e2", 0x652a607ca3f242c1ULL},
        {"e2e4 d7d5 e4e5 f7f5 e1e2 e8f7", 0x00fdd303c946bdd9ULL},
        {"a2a4 b7b5 h2h4 b5b4 c2c4", 0x3c8123ea7b067637ULL},
        // as polyglot make-book keys it, after a capture en passant and a rook's move
        {"a2a4 b7b5 h2h4 b5b4 c2c4 b4c3 a1a2", 0x742ec75da0e25edcULL},
    };
    clsChessCore core;
    for (const auto& c : cases) {
        core.SetPosition(nuvobase::clsString());
        const nuvobase::clsString moves(c.Moves);
        for (int at = 0; at >= 0 && !moves.IsEmpty();)
            ASSERT_TRUE(core.MakeMoveText(moves.NextWord(' ', at)));
        EXPECT_EQ(PolyglotKey(core.Board), c.Key) << c.Moves;
    }
}

// The sample games built by \buildbooks' reader and by make-book, with two ply limits and two minimum counts.
using PolyglotBuild = booktest::BookFiles;

TEST_F(PolyglotBuild, SameFileAsMakeBook) {
    ASSERT_TRUE(fs::exists(MakeBook)) << "polyglot make-book is missing: install the Debian package polyglot";
    const fs::path games = fs::path(CORVANE_TEST_DATA) / "pgn/lichess-sample.pgn";
    clsChessCore core;
    for (const int plies : {12, 0})
        for (const int minGames : {1, clsPolyglotBuilder::DefaultMinGames}) {
            clsPolyglotBuilder builder;
            EXPECT_EQ(ReadPgnGames(games.c_str(), core, plies, nullptr, builder), 984);
            int64_t written = 0;
            ASSERT_TRUE(builder.Write(PathTo("ours.bin"), minGames, written));
            const std::string command =
                std::string(MakeBook) + " make-book -pgn '" + games.string() + "' -bin '" +
                Path("theirs.bin") + "' -min-game " + std::to_string(minGames) +
                (plies ? " -max-ply " + std::to_string(plies) : "") + " > /dev/null 2>&1";
            ASSERT_EQ(std::system(command.c_str()), 0);
            const auto expected = ReadBytes("theirs.bin");
            EXPECT_EQ(int64_t(expected.size() / PolyglotEntrySize), written);
            EXPECT_TRUE(ReadBytes("ours.bin") == expected) << "plies " << plies << ", min_games " << minGames;
        }
}

TEST(PolyglotBook, DamagedFilesAreRefusedAndLinesWalkByWeight) {
    constexpr uint16_t E2E4 = 796, D2D4 = 731, A1A1 = 0, A1B3 = 1 << 3 | 1, A1B4 = 3 << 3 | 1;
    const auto good = BookBytes({{Start, D2D4, 2, 0}, {Start, E2E4, 1, 0}, {~0ULL, A1B3, 1, 0}});
    auto cut = good;
    cut.pop_back();
    const struct {
        std::vector<uint8_t> Bytes;
        const char* Error;
    } cases[] = {
        {good, ""},
        {cut, "size 47 is no multiple of 16"},
        {BookBytes({{~0ULL, E2E4, 1, 0}, {Start, E2E4, 1, 0}}), "keys out of order at entry 2"},
        {BookBytes({{Start, A1A1, 1, 0}}), "no move at entry 1"},
        {BookBytes({{Start, A1B4, 1, 0}}), "no move at entry 1"},
        {BookBytes({{Start, E2E4 | 4 << 12, 1, 0}}), "no move at entry 1"}, // a promotion on the fourth rank
    };
    for (const auto& c : cases) {
        clsPolyglotBook book;
        nuvobase::clsString error;
        EXPECT_EQ(book.Parse(c.Bytes.data(), c.Bytes.size(), error), *c.Error == 0) << c.Error;
        EXPECT_STREQ(error.Text(), c.Error);
        EXPECT_EQ(book.Count(), *c.Error ? 0u : 3u);
    }

    // A book of 1.e4 (weight 3), 1.d4 (weight 1) and 1.c4 (weight 0), with 1...e5 after 1.e4 alone: the walks
    // end where the book ends, never play 1.c4, follow the weights, and repeat with the seed.
    const auto bytes =
        BookBytes({{Start, 796, 3, 0}, {Start, 731, 1, 0}, {Start, 666, 0, 0}, {AfterE4, 3364, 1, 0}});
    clsPolyglotBook book;
    nuvobase::clsString error;
    ASSERT_TRUE(book.Parse(bytes.data(), bytes.size(), error));
    clsChessCore core;
    std::mt19937_64 first(7), second(7);
    constexpr int Walks = 400;
    int kingPawn = 0;
    for (int walk = 0; walk < Walks; ++walk) {
        const std::string line = DrawBookLine(book, core, 8, first).Text();
        ASSERT_TRUE(line == "e2e4 e7e5 " || line == "d2d4 ") << line;
        kingPawn += line == "e2e4 e7e5 ";
        EXPECT_EQ(DrawBookLine(book, core, 8, second).Text(), line);
    }
    EXPECT_GT(kingPawn, Walks * 2 / 3);
    EXPECT_LT(kingPawn, Walks * 5 / 6);
    for (int walk = 0; walk < 10; ++walk) EXPECT_EQ(DrawBookLine(book, core, 1, first).Text()[4], ' ');
}

} // namespace
