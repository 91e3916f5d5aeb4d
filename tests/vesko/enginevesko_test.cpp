// Vesko behind the engine interface.
#include "vesko/clsenginevesko.h"

#include "match/capturedoutput.h"
#include "nuvobase/thread_wait.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

using namespace nvoChess;
using nuvobase::clsString;
using nuvobase_test::Eventually;

namespace {

const char* StartFen = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
const char* Middlegame = "r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10";

// Runs one search to the end on the engine's thread. (Start may report false when the
// search is over before it returns.)
void SearchTo(clsEngineVesko& engine, int maxDepth) {
    engine.SetMaxDepth(maxDepth);
    engine.Start();
    engine.Wait();
}

std::string BestMove(clsEngineVesko& engine, bool consume = false) {
    int score = 0;
    return engine.GetBestMoveText(consume, score).Text();
}

// Waits, generously, until the running search has finished `depth` - 2.
bool ReachDepth(clsEngineVesko& engine, int depth) {
    return Eventually(
        [&] {
            const clsString line = engine.GetInfoLine();
            return !line.IsEmpty() && std::stoi(line.Text()) >= depth;
        },
        60000);
}

} // namespace

TEST(EngineVesko, PerftLinesAndPositionsWithoutClocks) {
    CapturedOutput captured;
    clsEngineVesko engine("Vesko", &captured.Output);
    engine.Protocol = clsEngineInterface::Uci;
    ASSERT_TRUE(engine.SetPosition(StartFen));
    EXPECT_EQ(engine.Perft(3, false), 8902u);
    EXPECT_EQ(captured.Text(), "info string 1\t20\ninfo string 2\t400\ninfo string 3\t8902\n");

    // A mated side: no line at all, and the count of the last ply is 0.
    ASSERT_TRUE(engine.SetPosition("R5k1/5ppp/8/8/8/8/8/6K1 b - - 0 1"));
    EXPECT_EQ(engine.Perft(3, true), 0u);
    EXPECT_EQ(engine.Perft(-4, false), 0u);
    EXPECT_EQ(captured.Text(), "info string 1\t20\ninfo string 2\t400\ninfo string 3\t8902\n");

    ASSERT_TRUE(engine.SetPosition("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 7 42"));
    // Vesko reads no move clocks: the moves of a time control count from 0 whatever the FEN says.
    EXPECT_EQ(engine.MoveNumber, 0);
    EXPECT_EQ(engine.HalfMoveClock, 0);
    EXPECT_STREQ(engine.GetPosition().Text(), "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b - e3");
    EXPECT_TRUE(engine.GetInfoLine().IsEmpty()) << "no move found yet";

    // A text longer than the block's field is cut to its 511 characters.
    ASSERT_TRUE(engine.SetPosition(std::string(700, 'p').c_str()));
    EXPECT_STREQ(engine.GetPosition().Text(),
                 "pppppppp/pppppppp/pppppppp/pppppppp/pppppppp/pppppppp/pppppppp/pppppppp w - -");
}

TEST(ThreadedEngineVesko, SearchResultLinesAndConsume) {
    clsEngineVesko engine("Vesko", nullptr);
    ASSERT_TRUE(engine.SetPosition("6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1"));
    SearchTo(engine, 0);
    const std::string line = engine.GetInfoLine().Text();
    EXPECT_EQ(line.substr(0, 2), "2 ") << line;
    EXPECT_EQ(line.substr(line.size() - 5), " a1a8") << line;
    EXPECT_NE(line.find(" 0 "), std::string::npos) << line;
    int score = 0;
    EXPECT_STREQ(engine.GetBestMoveText(true, score).Text(), "a1a8");
    EXPECT_GE(score, 10000);
    EXPECT_EQ(BestMove(engine), "") << "a consumed move is given once";
    EXPECT_TRUE(engine.GetInfoLine().IsEmpty());

    // Statistics count the leaves of the search just run.
    ASSERT_TRUE(engine.SetPosition(StartFen));
    SearchTo(engine, 6);
    const std::string info = engine.GetInfoLine().Text();
    const std::string nodes = info.substr(0, info.rfind(' '));
    EXPECT_EQ(info.substr(0, 2), "4 ") << info;
    const std::string count = nodes.substr(nodes.rfind(' ') + 1);
    EXPECT_STREQ(engine.GetStatistics(0).Text(), (count + " nodes - ").c_str());
    EXPECT_STREQ(engine.GetStatistics(10).Text(),
                 (count + " nodes - 10 ms " + std::to_string(std::stoll(count) / 10) + " Knps").c_str());

    // Reading without consuming keeps the move; reading the position clears it.
    const std::string found = BestMove(engine);
    EXPECT_FALSE(found.empty());
    EXPECT_EQ(BestMove(engine), found);
    EXPECT_STREQ(engine.GetPosition().Text(), "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w - -");
    EXPECT_EQ(BestMove(engine), "");
}

TEST(ThreadedEngineVesko, StopsSeenAtOnceKeepTheLastFullIterationsMoveAndCommandsStopFirst) {
    clsEngineVesko engine("Vesko", nullptr);
    ASSERT_TRUE(engine.SetPosition(Middlegame));
    engine.SetMaxDepth(0);
    for (int round = 0; round < 20; ++round) {
        engine.Start();
        engine.StopEngine();
        // A lost stop leaves the search running for far longer than this.
        ASSERT_TRUE(Eventually([&] { return !engine.IsRunning(); }, 30000))
            << "the stop was lost in round " << round;
        engine.Wait();
    }
    // The stop of the last search does not cut the owner's next command short, nor the next search.
    ASSERT_TRUE(engine.SetPosition(StartFen));
    EXPECT_EQ(engine.Perft(3, false), 8902u);
    SearchTo(engine, 4);
    EXPECT_FALSE(BestMove(engine).empty());
    ASSERT_TRUE(engine.SetPosition(Middlegame));
    engine.SetMaxDepth(0);
    engine.StartEngine();
    ASSERT_TRUE(ReachDepth(engine, 4));
    EXPECT_TRUE(engine.StopEngine());
    engine.Wait();
    EXPECT_FALSE(engine.IsRunning());
    const int stoppedIn = std::stoi(engine.GetInfoLine().Text());
    const std::string kept = BestMove(engine);
    ASSERT_FALSE(kept.empty());

    // The search is deterministic: a limit that ends before the broken iteration gives the same move.
    clsEngineVesko reference("Vesko", nullptr);
    ASSERT_TRUE(reference.SetPosition(Middlegame));
    SearchTo(reference, stoppedIn);
    EXPECT_EQ(BestMove(reference), kept) << "stopped in depth " << stoppedIn;

    // The move kept is played on the position as it was.
    ASSERT_TRUE(engine.MakeMoveText(kept.c_str()));
    ASSERT_TRUE(reference.SetPosition(Middlegame));
    ASSERT_TRUE(reference.MakeMoveText(kept.c_str()));
    EXPECT_STREQ(engine.GetPosition().Text(), reference.GetPosition().Text());

    // A command stops a running search first; so does the engine's destruction, which must neither hang nor
    // leave the thread behind.
    reference.SetMaxDepth(0);
    ASSERT_TRUE(reference.Start());
    ASSERT_TRUE(ReachDepth(reference, 4));
    ASSERT_TRUE(reference.SetPosition(StartFen));
    EXPECT_FALSE(reference.IsRunning());
    EXPECT_STREQ(reference.GetPosition().Text(), "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w - -");
    auto running = std::make_unique<clsEngineVesko>("Vesko", nullptr);
    ASSERT_TRUE(running->SetPosition(Middlegame));
    ASSERT_TRUE(running->Start());
    ASSERT_TRUE(ReachDepth(*running, 4));
    running.reset();
}
