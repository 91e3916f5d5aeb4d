// The XBoard front end driven line by line: replies, clocks, sides and the game's history.
#include "xboard_fixture.h"

#include "nuvobase/clsstring.h"

#include <cstdio>
#include <string>

namespace nvoChess {
namespace {

using Lines = std::vector<std::string>;

const std::string AfterE2E4 = "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b";

// What level, time, otim and new do to the clocks is checked by the end-to-end XBoard test through the
// allowance each search states.
TEST_F(XBoardTest, AbsurdLevelsStayWithinTheClockBounds) {
    const int64_t yearMs = int64_t(366) * 24 * 3600 * 1000;
    for (const char* level :
         {"99999999999999999999 99999999999999999999 99999999999999999999",
          "-99999999999999999999 -7:-5 -99999999999999999999", "x y z", "", "5 10:99999999999"}) {
        SCOPED_TRACE(level);
        Send("level", level);
        EXPECT_LE(std::abs(App.MovesPerControl), 100000);
        EXPECT_GE(App.BaseTimeMs, 0);
        EXPECT_LE(App.BaseTimeMs, yearMs);
        EXPECT_GE(App.IncrementMs, 0);
        EXPECT_LE(App.IncrementMs, yearMs);
        EXPECT_EQ(App.EngineTimeMs, App.BaseTimeMs);
    }
    Send("time", "99999999999999999999");
    EXPECT_EQ(App.EngineTimeMs, yearMs);
    Send("otim", "-99999999999999999999");
    EXPECT_EQ(App.OpponentTimeMs, -yearMs);
}

// The feature line itself is checked by the end-to-end XBoard test.
TEST_F(XBoardTest, RefusedFeaturesFlip) {
    Send("protover", "2");
    EXPECT_EQ(App.Features.Count, 19);
    EXPECT_EQ(Send("rejected", "ping"), Lines{});
    EXPECT_EQ(std::string(App.Features.GetValue("ping").Text()), "0");
    Send("rejected", "PING");
    EXPECT_EQ(std::string(App.Features.GetValue("ping").Text()), "1");
    // An unknown feature counts as 0 and is added; the name features stay.
    Send("rejected", "pause");
    EXPECT_EQ(std::string(App.Features.GetValue("pause").Text()), "1");
    EXPECT_EQ(App.Features.Count, 20);
    Send("rejected", "myname");
    Send("rejected", "name");
    EXPECT_EQ(std::string(App.Features.GetValue("myname").Text()), "\"Vesko\"");
    EXPECT_EQ(std::string(App.Features.GetValue("name").Text()), "1");
    // The next protover builds the list anew.
    Send("protover", "2");
    EXPECT_EQ(App.Features.Count, 19);
    EXPECT_EQ(std::string(App.Features.GetValue("ping").Text()), "1");
}

TEST_F(XBoardTest, StateMachine) {
    Send("new");
    EXPECT_EQ(App.State, 3);
    Send("force");
    EXPECT_EQ(App.State, 0);
    Send("white");
    EXPECT_EQ(App.State, 3);
    Send("black");
    EXPECT_EQ(App.State, 2);
    Send("stop");
    EXPECT_EQ(App.State, 1);
    // A stopped engine takes the user's move and does not think.
    EXPECT_EQ(Send("e2e4"), Lines{});
    EXPECT_EQ(App.State, 1);
    EXPECT_FALSE(App.Engine->IsRunning());
    Send("black");
    EXPECT_EQ(Send("result", "1-0 {White mates}"), Lines{"# result 1-0 {White mates}"});
    EXPECT_EQ(App.State, 0);
    EXPECT_EQ(Send("quit"), Lines{});
    EXPECT_EQ(Result, clsChessApplication::QuitResult);
    EXPECT_EQ(App.State, 0);
}

TEST_F(XBoardTest, UserMovesAndUndo) {
    const std::string start = App.GetFen().Text();
    Send("force");
    EXPECT_EQ(Send("e2e4"), Lines{"# I'm not thinking"});
    EXPECT_EQ(Position().rfind(AfterE2E4, 0), 0u) << Position();
    // The history holds the position before the move; the published one follows the board.
    ASSERT_EQ(App.FenHistory.Count, 1);
    EXPECT_EQ(std::string(App.FenHistory.GetAt(0).Text()), start);
    EXPECT_EQ(std::string(App.GetFen().Text()), Position());

    const std::string afterE2E4 = Position();
    Send("usermove", "e7e5");
    EXPECT_EQ(App.FenHistory.Count, 2);
    EXPECT_EQ(Send("e7e5"), Lines{"Illegal move: e7e5"});
    EXPECT_EQ(Result, 1);
    EXPECT_EQ(App.FenHistory.Count, 2);

    App.State = 3;
    EXPECT_EQ(Send("undo"), Lines{});
    EXPECT_EQ(App.State, 0);
    EXPECT_EQ(Position(), afterE2E4);
    // Nothing left to take back: the game starts again, whatever the board held.
    Send("setboard", "K7/8/8/8/8/8/8/7k w - - 0 1");
    App.FenHistory.Clear();
    Send("undo");
    EXPECT_EQ(Position(), start);
}

TEST_F(XBoardTest, OptionsDepthAndMemory) {
    Send("sd");
    EXPECT_EQ(App.Engine->MaxDepth, 2);
    Send("sd", "7");
    EXPECT_EQ(App.Engine->MaxDepth, 7);
    Send("sd", "abc");
    EXPECT_EQ(App.Engine->MaxDepth, 0);

    Send("option", "Style=sharp=very");
    EXPECT_EQ(std::string(App.Engine->Options.GetValue("Style").Text()), "sharp=very");
    Send("cores", "2");
    EXPECT_EQ(std::string(App.Engine->Options.GetValue("cores").Text()), "2");

    Send("memory", "2");
    EXPECT_EQ(std::string(App.Engine->Options.GetValue("memory").Text()), "2");
    EXPECT_EQ(App.Share.TTBytes, uint64_t(2) << 20);
    App.DefaultMemoryMb = 3;
    Send("memory");
    EXPECT_EQ(App.Share.TTBytes, uint64_t(3) << 20);
    Send("memory", "none");
    EXPECT_EQ(App.Share.TTBytes, 0u);
}

TEST_F(XBoardTest, CountingAndBook) {
    const Lines lines = Send("perft", "3 and more");
    ASSERT_FALSE(lines.empty());
    unsigned long long nodes = 0, ms = 0, rate = 0;
    ASSERT_EQ(
        std::sscanf(lines.back().c_str(), "Nodes: %llu, Time: %llu ms, Nodes/s: %llu", &nodes, &ms, &rate), 3)
        << lines.back();
    EXPECT_EQ(nodes, 8902u);
    EXPECT_EQ(rate, nodes * 1000 / (ms + 1));
    // The position does not change.
    EXPECT_EQ(std::string(App.GetFen().Text()), Position());

    EXPECT_EQ(Send("bk"), (Lines{" no book moves found", "", ""}));
}

} // namespace
} // namespace nvoChess
