// The XBoard front end driven line by line: replies, clocks, sides and the game's history.
#include "xboard_fixture.h"

#include "app/commandnumbers.h"
#include "nuvobase/clsstring.h"

#include <cstdio>
#include <filesystem>
#include <string>
#include <unistd.h>

namespace nvoChess {
namespace {

using Lines = std::vector<std::string>;

const std::string AfterE2E4 = "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b";

TEST_F(XBoardTest, LevelTimeAndNewSetTheClocks) {
    EXPECT_EQ(Send("level", "40 5 0"), Lines{});
    EXPECT_EQ(App.MovesPerControl, 40);
    EXPECT_EQ(App.BaseTimeMs, 300000);
    EXPECT_EQ(App.IncrementMs, 0);
    EXPECT_EQ(App.EngineTimeMs, 300000);
    EXPECT_EQ(App.OpponentTimeMs, 300000);

    Send("level", "0 0:30 1");
    EXPECT_EQ(App.MovesPerControl, 0);
    EXPECT_EQ(App.BaseTimeMs, 30000);
    EXPECT_EQ(App.IncrementMs, 1000);
    EXPECT_EQ(App.EngineTimeMs, 30000);

    // new restores the clocks but keeps the control.
    App.InitialTimeMs = 123000;
    EXPECT_EQ(Send("new").size(), 1u); // the banner
    EXPECT_EQ(App.EngineTimeMs, 123000);
    EXPECT_EQ(App.OpponentTimeMs, 123000);
    EXPECT_EQ(App.BaseTimeMs, 30000);
    EXPECT_EQ(App.IncrementMs, 1000);

    EXPECT_EQ(Send("time", "12345"), Lines{"# engine time set to 123450 ms"});
    EXPECT_EQ(App.EngineTimeMs, 123450);
    EXPECT_EQ(Send("otim", "100"), Lines{"# opponent time set to 1000 ms"});
    EXPECT_EQ(App.OpponentTimeMs, 1000);
    EXPECT_EQ(Send("time", "lots"), Lines{"# engine time set to 0 ms"});
    // A GUI may send a clock that has run out.
    EXPECT_EQ(Send("TIME", "-250"), Lines{"# engine time set to -2500 ms"});
}

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

TEST_F(XBoardTest, FeaturesAndRefusals) {
    const std::string features =
        "feature ping=1 setboard=1 usermove=1 time=1 draw=1 reuse=1 myname=\"Vesko\" ics=1 name=1 debug=1 "
        "memory=1 smp=1 nps=0 san=0 sigint=0 sigterm=0 analyze=0 colors=0 done=1";
    EXPECT_EQ(Send("protover", "2"), Lines{features});
    EXPECT_EQ(App.Features.Count, 19);
    EXPECT_EQ(std::string(App.Features.GetValue("myname").Text()), "\"Vesko\"");

    EXPECT_EQ(Send("rejected", "ping"), Lines{});
    EXPECT_EQ(std::string(App.Features.GetValue("ping").Text()), "0");
    Send("rejected", "PING");
    EXPECT_EQ(std::string(App.Features.GetValue("ping").Text()), "1");
    Send("rejected", "nps");
    EXPECT_EQ(std::string(App.Features.GetValue("nps").Text()), "1");
    // An unknown feature counts as 0 and is added; the name features stay.
    Send("rejected", "pause");
    EXPECT_EQ(std::string(App.Features.GetValue("pause").Text()), "1");
    EXPECT_EQ(App.Features.Count, 20);
    Send("rejected", "myname");
    Send("rejected", "name");
    EXPECT_EQ(std::string(App.Features.GetValue("myname").Text()), "\"Vesko\"");
    EXPECT_EQ(std::string(App.Features.GetValue("name").Text()), "1");
    EXPECT_EQ(Send("accepted", "usermove"), Lines{});

    // The next protover builds the list anew.
    EXPECT_EQ(Send("protover", "2"), Lines{features});
    EXPECT_EQ(App.Features.Count, 19);
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

TEST_F(XBoardTest, ProtocolSwitches) {
    EXPECT_EQ(Send("uci"), (Lines{"id name Vesko", "uciok"}));
    EXPECT_EQ(App.Engine->Protocol, clsEngineInterface::Uci);
    App.Engine->Protocol = clsEngineInterface::XBoard;
    EXPECT_EQ(Send("xboard"), Lines{""});
    EXPECT_EQ(App.Engine->Protocol, clsEngineInterface::XBoard);
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
    EXPECT_EQ(Send("usermove", "e7e5"), Lines{"# I'm not thinking"});
    EXPECT_EQ(App.FenHistory.Count, 2);
    EXPECT_EQ(Send("e7e5"), Lines{"Illegal move: e7e5"});
    EXPECT_EQ(Result, 1);
    EXPECT_EQ(App.FenHistory.Count, 2);
    // The second character decides what is a move.
    EXPECT_EQ(Send("e2-e4"), Lines{"Illegal move: e2-e4"});
    EXPECT_EQ(Send("usermove", ""), Lines{"Illegal move: "});

    App.State = 3;
    EXPECT_EQ(Send("undo"), Lines{});
    EXPECT_EQ(App.State, 0);
    EXPECT_EQ(Position(), afterE2E4);
    Send("undo");
    EXPECT_EQ(Position(), start);
    // Nothing left to take back: the game starts again.
    Send("e2e4");
    Send("setboard", "K7/8/8/8/8/8/8/7k w - - 0 1");
    App.FenHistory.Clear();
    Send("undo");
    EXPECT_EQ(Position(), start);
}

TEST_F(XBoardTest, EchoAndCommandLog) {
    // One file per process, for test runs side by side.
    const std::filesystem::path log =
        std::filesystem::temp_directory_path() / ("corvane_xboard_test_" + std::to_string(getpid()) + ".log");
    std::filesystem::remove(log);
    App.LogFile = log.c_str();
    EXPECT_EQ(Send("ping", "5", true), (Lines{"# XBoard_Command: ping\t5", "pong 5"}));
    Send("bogus", "a b");
    nuvobase::clsString text;
    text.LoadFromFile(log.c_str());
    EXPECT_EQ(std::string(text.Text()), "ping\t5bogus\ta b");
    std::filesystem::remove(log);
}

TEST_F(XBoardTest, PlainReplies) {
    EXPECT_EQ(Send("name", "Opponent"), Lines{"Vesko"});
    EXPECT_EQ(Send("rating", "2100 1500"), Lines{"1350 1350"});
    EXPECT_EQ(Send("computer"), Lines{"# hello my peer!"});
    EXPECT_EQ(Send("ping", "abc def"), Lines{"pong abc def"});
    for (const char* ignored : {"draw", "edit", "hint", "remove", "analyze", "variant", "accepted"})
        EXPECT_EQ(Send(ignored, "x"), Lines{}) << ignored;
    Send("ics", "chess.example.org");
    EXPECT_EQ(std::string(App.IcsHost.Text()), "chess.example.org");
    Send("hard");
    EXPECT_TRUE(App.Ponder);
    Send("easy");
    EXPECT_FALSE(App.Ponder);
    Send("post");
    EXPECT_TRUE(App.Post);
    Send("nopost");
    EXPECT_FALSE(App.Post);
    EXPECT_EQ(Send("frobnicate", "x"), Lines{"Error (unknown command): frobnicate"});
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
    // 20 moves from the start, 400 and 8902 behind them: the long-known figures.
    Lines lines = Send("perft", "1");
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.back().rfind("Nodes: 20, Time: ", 0), 0u) << lines.back();
    lines = Send("perft", "3 and more");
    ASSERT_FALSE(lines.empty());
    const std::string& summary = lines.back();
    unsigned long long nodes = 0, ms = 0, rate = 0;
    ASSERT_EQ(std::sscanf(summary.c_str(), "Nodes: %llu, Time: %llu ms, Nodes/s: %llu", &nodes, &ms, &rate),
              3)
        << summary;
    EXPECT_EQ(nodes, 8902u);
    EXPECT_EQ(rate, nodes * 1000 / (ms + 1));
    // The position does not change.
    EXPECT_EQ(std::string(App.GetFen().Text()), Position());

    EXPECT_EQ(Send("bk"), (Lines{" no book moves found", "", ""}));
}

} // namespace
} // namespace nvoChess
