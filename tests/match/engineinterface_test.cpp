// The base behaviour of every engine, seen through a small engine of the test.
#include "match/clsengineinterface.h"

#include "match/capturedoutput.h"
#include "match/recordingengine.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <vector>

using namespace nvoChess;
using nuvobase::clsString;

namespace {

uint64_t Bit(int index) {
    return uint64_t(1) << index;
}

const char* StartFen = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

} // namespace

TEST(ThreadedEngineInterface, StartEngineClearsStoppedAndRunsTheBody) {
    RecordingEngine engine;
    engine.StartEngine();
    EXPECT_FALSE(engine.IsStopped());
    engine.Wait();
    EXPECT_EQ(engine.Runs, 1);
    EXPECT_TRUE(engine.StopEngine());
    EXPECT_TRUE(engine.IsStopped());
}

TEST(EngineInterface, SetClockMapsColoursBySide) {
    // Clocks 0 and 2 are white's time and increment, 1 and 3 black's, 4 the moves to go; others are ignored.
    for (const int side : {0, 1}) {
        SCOPED_TRACE(side);
        RecordingEngine engine;
        engine.Side = side;
        for (int which = -1; which < 6; ++which) engine.SetClock(which, 100 + which);
        const int own = side ? 101 : 100, theirs = side ? 100 : 101;
        EXPECT_EQ(engine.OwnTimeMs, own);
        EXPECT_EQ(engine.OpponentTimeMs, theirs);
        EXPECT_EQ(engine.OwnIncrementMs, own + 2);
        EXPECT_EQ(engine.OpponentIncrementMs, theirs + 2);
        EXPECT_EQ(engine.MovesToGo, 104);
    }
}

TEST(EngineInterface, SquaresAndTheirText) {
    RecordingEngine engine;
    EXPECT_EQ(engine.TextToSquare("h1"), Bit(0));
    EXPECT_EQ(engine.TextToSquare("a1"), Bit(7));
    EXPECT_EQ(engine.TextToSquare("a8"), Bit(63));
    EXPECT_EQ(engine.TextToSquare("e4xyz"), Bit(27));
    for (const char* bad : {"i9", "i1", "a9", "a0", "E2", "", "e", " e2", "2e"})
        EXPECT_EQ(engine.TextToSquare(bad), 0u) << bad;
    for (int index = 0; index < 64; ++index) {
        const clsString text = engine.SquareToText(Bit(index));
        EXPECT_EQ(text.Size(), 2);
        EXPECT_EQ(engine.TextToSquare(text), Bit(index)) << text.Text();
    }
}

TEST(EngineInterface, MakeMoveTextReadsSquaresAndPromotion) {
    RecordingEngine engine;
    for (const char* text : {"e7e8=q", "e7e8q", "e2e4", "e2", "", "e7e8=", "zzzz"})
        EXPECT_TRUE(engine.MakeMoveText(text));
    using Move = RecordingEngine::Move;
    const std::vector<Move> expected = {
        {Bit(51), Bit(59), 'q'},
        {Bit(51), Bit(59), 'q'},
        {Bit(11), Bit(27), 0},
        {Bit(11), 0, 0},
        {0, 0, 0},
        {Bit(51), Bit(59), 0},
        {0, 0, 0},
    };
    EXPECT_EQ(engine.Moves, expected);
}

TEST(EngineInterface, BoardTextOfAPosition) {
    RecordingEngine engine;
    engine.SetPosition("r3k2r/8/2n5/8/4P3/8/8/R3K2R b KQkq e3 0 1");
    EXPECT_STREQ(engine.BoardText().Text(), "r---k--r\r\n--------\r\n--n-----\r\n--------\r\n"
                                            "----P---\r\n--------\r\n--------\r\nR---K--R");
    engine.SetPosition("");
    EXPECT_TRUE(engine.BoardText().IsEmpty());
}

TEST(EngineInterface, InfoSpeaksTheDialectOfTheProtocol) {
    CapturedOutput captured;
    RecordingEngine engine(&captured.Output);
    engine.Info("hello");
    engine.Protocol = clsEngineInterface::Uci;
    engine.Info("there");
    engine.Protocol = 2;
    engine.Info("nobody");
    EXPECT_EQ(captured.Text(), "# hello\ninfo string there\n");

    RecordingEngine silent;
    silent.Info("no output at all");
}

TEST(EngineInterface, PrintBoardWritesRanksSideAndFen) {
    CapturedOutput captured;
    RecordingEngine engine(&captured.Output);
    engine.Protocol = clsEngineInterface::Uci;
    engine.SetPosition(StartFen);
    engine.PrintBoard();
    EXPECT_EQ(captured.Text(), "info string rnbqkbnr\ninfo string pppppppp\ninfo string --------\n"
                               "info string --------\ninfo string --------\ninfo string --------\n"
                               "info string PPPPPPPP\ninfo string RNBQKBNR\n"
                               "info string white [" +
                                   std::string(StartFen) + "]\ninfo string \n");
}
