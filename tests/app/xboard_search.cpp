// The XBoard front end: the clock bounds behind its replies; while the engine thinks, what stops a search and
// which of its moves survive; and self-play games from set positions: who won, with the sign taken from the
// side that began.
#include "xboard_fixture.h"

#include "nuvobase/platform.h"
#include "search/clsenginecorvane.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <thread>

namespace nvoChess {
namespace {

using Lines = std::vector<std::string>;

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

class ThreadedXBoard : public XBoardTest {
protected:
    ThreadedXBoard() {
        App.SetEngine(clsString("corvane"));
        App.SetBoard(clsString(nvoChess::StartPositionFen));
    }
    ~ThreadedXBoard() override { App.HaltEngine(); }

    // Starts a search with a clock that lasts far longer than the test, and waits until it has a move.
    void Think() {
        Send("time", "1000000");
        Send("go");
        ASSERT_TRUE(App.Engine->IsRunning());
        for (int waited = 0; waited < 20000 && BestMove().empty(); waited += 5) nuvobase::SleepMs(5);
        ASSERT_FALSE(BestMove().empty());
        Written();
    }

    std::string BestMove() {
        int score = 0;
        return App.Engine->GetBestMoveText(false, score).Text();
    }
};

// A stop, wherever it falls in a search, gets one legal move at once: right behind the start, before the
// first depth has ended, or once a move was shown; the answer comes before the next line can change the
// position or ask a ping. Over UCI and over XBoard's new and go, with both engines.
TEST_F(ThreadedXBoard, EveryStopGetsALegalMove) {
    // The start, a middlegame, and a position with a single legal move, a1a2.
    const char* const fens[] = {StartPositionFen,
                                "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
                                "8/8/8/8/8/8/8/K1k5 w - - 0 1"};
    constexpr int Cycles = 120, Pauses = 4;
    const auto referee = std::make_unique<clsChessCore>();
    for (const char* engine : {"vesko", "corvane"}) {
        App.SetEngine(clsString(engine));
        for (int cycle = 0; cycle < Cycles; ++cycle) {
            SCOPED_TRACE(std::string(engine) + " cycle " + std::to_string(cycle));
            const bool uci = cycle % 2 == 0;
            const char* fen = uci ? fens[cycle / 2 % 3] : StartPositionFen;
            if (uci) {
                App.Engine->Protocol = clsEngineInterface::Uci;
                App.HandleUci(clsString("position"), clsString("fen ") + fen);
                App.HandleUci(clsString("go"), clsString());
            } else {
                App.Engine->Protocol = clsEngineInterface::XBoard;
                Send("new");
                Send("go");
            }
            const int pause = cycle / 2 % Pauses;
            if (pause == 1) std::this_thread::yield();
            if (pause == 2) nuvobase::SleepMs(1);
            for (int waited = 0; pause == 3 && waited < 20000 && BestMove().empty(); waited += 5)
                nuvobase::SleepMs(5);
            Lines lines;
            if (uci) {
                App.HandleUci(clsString("stop"), clsString());
                lines = Written();
            } else {
                lines = Send("?");
                EXPECT_EQ(Send("ping", "1"), Lines{"pong 1"});
            }
            ASSERT_FALSE(lines.empty());
            const std::string answer = uci ? "bestmove " : "move ";
            ASSERT_EQ(lines.back().rfind(answer, 0), 0u) << lines.back();
            EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                                    [&](const std::string& line) { return line.rfind(answer, 0) == 0; }),
                      1);
            referee->SetPosition(clsString(fen));
            EXPECT_TRUE(referee->MakeMoveText(clsString(lines.back().substr(answer.size()).c_str())))
                << lines.back();
        }
    }
}

TEST_F(ThreadedXBoard, WhatEndsASearchAndWhatStartsAnother) {
    // Each of these ends the search, and its move would belong to another game or side.
    for (const char* command : {"new", "force", "stop", "white", "black", "undo", "result", "setboard"}) {
        SCOPED_TRACE(command);
        Think();
        Send(command, command == std::string("setboard") ? "K7/8/8/8/8/8/8/7k w - - 0 1" : "");
        EXPECT_FALSE(App.Engine->IsRunning());
        EXPECT_EQ(BestMove(), "");
        Send("setboard", nvoChess::StartPositionFen);
    }
    // A user's move during a search starts another.
    Think();
    const std::string before = App.GetFen().Text();
    EXPECT_EQ(Send("e2e4").size(), 1u); // the line of the new search
    EXPECT_TRUE(App.Engine->IsRunning());
    EXPECT_NE(std::string(App.GetFen().Text()), before);
    ASSERT_EQ(App.FenHistory.Count, 1);
    EXPECT_EQ(std::string(App.FenHistory.GetAt(0).Text()), before);
    // Counting stops the search first and leaves the board as it was.
    const Lines lines = Send("perft", "2 and more");
    EXPECT_FALSE(App.Engine->IsRunning());
    ASSERT_FALSE(lines.empty());
    unsigned long long nodes = 0, ms = 0, rate = 0;
    ASSERT_EQ(
        std::sscanf(lines.back().c_str(), "Nodes: %llu, Time: %llu ms, Nodes/s: %llu", &nodes, &ms, &rate), 3)
        << lines.back();
    EXPECT_EQ(nodes, 600u);
    EXPECT_EQ(rate, nodes * 1000 / (ms + 1));
    EXPECT_EQ(std::string(App.GetFen().Text()), App.Engine->GetPosition().Text());
}

TEST_F(ThreadedXBoard, SelfPlayGamesEndAsTheBoardSays) {
    // Name, position, result, and the end of the game's first line.
    static const struct {
        const char *Name, *Fen;
        int Result;
        const char* LineEnd;
    } SelfGames[] = {
        {"WhiteMates", "6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1", 1, "a1a8  win 1"},
        // The mate is Black's, and Black began: the first player won.
        {"BlackMatesFirst", "r5k1/8/8/8/8/8/5PPP/6K1 b - - 0 1", 1, "a8a1  win -1"},
        // Every move leaves too little to mate with.
        {"DrawnAtOnce", "8/8/8/8/8/8/n7/K5k1 w - - 0 1", 0, " 0"},
    };
    for (const auto& row : SelfGames) {
        SCOPED_TRACE(row.Name);
        clsEngineCorvane first(&App.Share, clsString("Corvane"), &Captured.Output);
        clsEngineCorvane second(&App.Share, clsString("Corvane"), &Captured.Output);
        // Plenty of moves: each game ends by itself after the first.
        constexpr int64_t ThinkMs = 100, MaxMoves = 40;
        EXPECT_EQ(App.PlaySelfGame(first, second, ThinkMs, MaxMoves, clsString(row.Fen)), row.Result);
        const std::vector<std::string> lines = Written();
        ASSERT_FALSE(lines.empty());
        const std::string& game = lines.front();
        EXPECT_EQ(game.substr(game.size() - std::min(game.size(), strlen(row.LineEnd))), row.LineEnd);
        // One move only, and the result as the last word.
        EXPECT_EQ(game.find(' '), 4u);
        EXPECT_EQ(lines.back().substr(lines.back().rfind(' ') + 1), std::to_string(row.Result));
    }
}

} // namespace
} // namespace nvoChess
