// Refereed games between fake engines that misbehave on purpose, over real pipes: every fault ends the
// game with its result word, both files are written, the points go to the right side, and no child,
// zombie or descriptor is left behind.
#include "match/clstourneygame.h"

#include "match/capturedoutput.h"
#include "nuvobase/temp_folder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <dirent.h>
#include <memory>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

using namespace nvoChess;
using nuvobase::clsString;

namespace {

const std::string FakeEngine = std::string(CORVANE_TEST_DATA) + "/../e2e/fake_engine.py";

int OpenDescriptors() {
    int count = 0;
    if (DIR* folder = opendir("/proc/self/fd")) {
        while (readdir(folder)) ++count;
        closedir(folder);
    }
    return count;
}

struct GameRow {
    const char* Name;
    const char* Protocol;
    const char *WhiteArgs, *BlackArgs;
    uint32_t Code;
    const char* Result;
    const char* Reason;
    int WhitePoints, BlackPoints;
};

// A clock far beyond what the games take: none ends on time. Hangs, crashes at start, missing programs and
// forfeits are played by the end-to-end tournament of faults.
constexpr int ClockMs = 120000;

const GameRow Games[] = {
    {"repetition", "xboard", "", "", 0x0A00, "1/2-1/2", "triple repetition", 1, 1},
    {"mate", "uci", "--line mate", "--line mate", 0x001A, "0-1", "mate", 0, 2},
    {"crash", "uci", "--crash 2", "", 0x400A, "0-1", "engine crashed", 0, 2},
    {"illegal", "xboard", "", "--illegal 1", 0x0102, "1-0", "illegal move", 2, 0},
    {"resign", "xboard", "--resign 2", "", 0x004A, "0-1", "resign", 0, 2},
    {"draw claim", "xboard", "", "--draw 1", 0x0200, "1/2-1/2", "", 1, 1},
    {"false win claim", "xboard", "--claim-win 1", "", 0x0A00, "1/2-1/2", "triple repetition", 1, 1},
    {"garbage and ponder", "uci", "--garbage --ponder", "--ponder", 0x0A00, "1/2-1/2", "triple repetition", 1,
     1},
};

class ThreadedTourneyGameTest : public nuvobase_test::TempFolder {
protected:
    static std::unique_ptr<clsPlayer> Player(const char* name, const char* protocol, const char* args) {
        return std::make_unique<clsPlayer>(clsString(name), clsString(protocol),
                                           clsString(FakeEngine.c_str()), clsString(args));
    }
};

TEST_F(ThreadedTourneyGameTest, EveryFaultEndsTheGameWithItsResultFilesAndPoints) {
    CapturedOutput output;
    const int descriptors = OpenDescriptors();
    struct Running {
        std::unique_ptr<clsPlayer> White, Black;
        std::unique_ptr<clsTourneyGame> Game;
    };
    std::vector<Running> running;
    int id = 0;
    for (const GameRow& row : Games) {
        Running game{Player("White", row.Protocol, row.WhiteArgs),
                     Player("Black", row.Protocol, row.BlackArgs), nullptr};
        const std::string pgn = Path(std::to_string(++id) + ".pgn");
        game.Game = std::make_unique<clsTourneyGame>(id, 0, ClockMs, 0, game.White.get(), game.Black.get(),
                                                     clsString(pgn.c_str()), &output.Output);
        game.Game->PaceMs = 0;
        game.Game->Tags.SetValue("Event", "test");
        ASSERT_TRUE(game.Game->Start());
        running.push_back(std::move(game));
    }
    // Bounded far beyond the longest game and the start-up waits.
    for (int waited = 0; waited < 1200 && !std::all_of(running.begin(), running.end(),
                                                       [](auto& game) { return game.Game->Finished.load(); });
         ++waited)
        usleep(100000);
    id = 0;
    for (const GameRow& row : Games) {
        SCOPED_TRACE(row.Name);
        Running& game = running[id++];
        ASSERT_TRUE(game.Game->Finished);
        game.Game->Wait();
        EXPECT_EQ(game.Game->Code, row.Code);
        EXPECT_EQ(std::string(game.Game->ResultText().Text()), row.Result);
        EXPECT_EQ(std::string(game.Game->ReasonText().Text()), row.Reason);
        EXPECT_EQ(game.White->GetScore(), row.WhitePoints);
        EXPECT_EQ(game.Black->GetScore(), row.BlackPoints);
        const std::string pgn = Read(std::to_string(id) + ".pgn"), log = Read(std::to_string(id) + ".log");
        EXPECT_NE(pgn.find("[Result \"" + std::string(row.Result) + "\"]\r\n"), std::string::npos) << pgn;
        EXPECT_NE(log.find("-\tnew match: 'White' vs 'Black'"), std::string::npos) << log;
        EXPECT_NE(log.find("'White' result " + std::to_string(row.WhitePoints)), std::string::npos) << log;
    }
    // The position after 1...g8f6 stands for the fourth time after fourteen plies; the third time went on.
    const std::string repeated = Read("1.pgn");
    EXPECT_NE(repeated.find("\r\n\r\n1. g1f3 g8f6 2. f3g1 f6g8 3. g1f3"), std::string::npos);
    EXPECT_NE(repeated.find("7. g1f3 g8f6 "), std::string::npos);
    EXPECT_EQ(repeated.find("8. "), std::string::npos);
    // A ponder move is cut off before the move reaches the referee and the file.
    EXPECT_EQ(Read("8.pgn").find("ponder"), std::string::npos);
    running.clear();
    int status = 0;
    EXPECT_EQ(waitpid(-1, &status, WNOHANG), -1) << "a child or zombie was left";
    EXPECT_EQ(errno, ECHILD);
    EXPECT_EQ(OpenDescriptors(), descriptors);
}

} // namespace
