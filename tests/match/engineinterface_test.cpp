// The base behaviour of every engine, seen through a small engine of the test.
#include "match/clsengineinterface.h"

#include "match/recordingengine.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace nvoChess;
using nuvobase::clsString;

TEST(EngineInterface, ClocksGoLimitsSquaresAndMoveTexts) {
    // White's and black's clocks and increments follow the side, and slots beyond the moves to go are
    // ignored.
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

    // Words ignore case and a number word takes the word behind it; the plain dialect reads a value missing
    // at the end as 0, -strictuci as absent; infinite counts for the depth only behind the last depth.
    const struct {
        const char* Words;
        clsGoLimits::eNumber Word;
        bool Given;
        int64_t Value, ValueOrAbsent;
        bool Infinite, InfiniteLast;
    } rows[] = {
        {"WTIME 500 btime 7", clsGoLimits::WhiteTime, true, 500, 500, false, false},
        {"depth 5 infinite", clsGoLimits::Depth, true, 5, 5, true, true},
        {"infinite depth 5", clsGoLimits::Depth, true, 5, 5, true, false},
        {"depth infinite", clsGoLimits::Depth, true, 0, 0, false, false},
        {"wtime 5 wtime", clsGoLimits::WhiteTime, true, 0, 5, false, false},
        {"movetime abc", clsGoLimits::MoveTime, true, 0, 0, false, false},
        {"mate infinite", clsGoLimits::Mate, true, 0, 0, false, false},
        {"ponder searchmoves e2e4", clsGoLimits::Nodes, false, 0, -1, false, false},
    };
    for (const auto& row : rows) {
        const clsGoLimits limits = clsGoLimits::Read(clsString(row.Words));
        EXPECT_EQ(limits.Given(row.Word), row.Given) << row.Words;
        EXPECT_EQ(limits.Value(row.Word), row.Value) << row.Words;
        EXPECT_EQ(limits.ValueOr(row.Word, -1), row.ValueOrAbsent) << row.Words;
        EXPECT_EQ(limits.Infinite, row.Infinite) << row.Words;
        EXPECT_EQ(limits.InfiniteLast, row.InfiniteLast) << row.Words;
    }
    RecordingEngine engine;
    engine.TakeGo(clsGoLimits::Read(clsString("btime 99999999999 movetime 7 infinite")));
    EXPECT_EQ(engine.OpponentTimeMs, INT32_MAX);
    EXPECT_EQ(engine.MovesToGo, 7);
    EXPECT_EQ(engine.MaxDepth, clsEngineInterface::InfiniteDepth);

    // Squares and move texts.
    const auto Bit = [](int index) { return uint64_t(1) << index; };
    EXPECT_EQ(engine.TextToSquare("h1"), Bit(0));
    EXPECT_EQ(engine.TextToSquare("a8"), Bit(63));
    EXPECT_EQ(engine.TextToSquare("e4xyz"), Bit(27));
    for (const char* bad : {"i9", "i1", "a9", "a0", "E2", "", "e", " e2", "2e"})
        EXPECT_EQ(engine.TextToSquare(bad), 0u) << bad;
    for (int index = 0; index < 64; ++index) {
        const clsString text = engine.SquareToText(Bit(index));
        EXPECT_EQ(text.Size(), 2);
        EXPECT_EQ(engine.TextToSquare(text), Bit(index)) << text.Text();
    }
    for (const char* text : {"e7e8=q", "e7e8q", "e2e4", "e2", "", "e7e8=", "zzzz"}) engine.MakeMoveText(text);
    using Move = RecordingEngine::Move;
    EXPECT_EQ(engine.Moves, (std::vector<Move>{{Bit(51), Bit(59), 'q'},
                                               {Bit(51), Bit(59), 'q'},
                                               {Bit(11), Bit(27), 0},
                                               {Bit(11), 0, 0},
                                               {0, 0, 0},
                                               {Bit(51), Bit(59), 0},
                                               {0, 0, 0}}));
}
