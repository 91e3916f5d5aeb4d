// The base behaviour of every engine, seen through a small engine of the test.
#include "match/clsengineinterface.h"

#include "match/capturedoutput.h"
#include "match/recordingengine.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <string>
#include <vector>

using namespace nvoChess;
using nuvobase::clsString;

namespace {

uint64_t Bit(int index) {
    return uint64_t(1) << index;
}

const char* Fen = "r3k2r/8/2n5/8/4P3/8/8/R3K2R w KQkq - 0 1";

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
}

TEST(GoLimits, OneReadingForBothDialects) {
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
}

TEST(EngineInterface, SquaresAndMoveTexts) {
    RecordingEngine engine;
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

TEST(EngineInterface, RemarksAndTheBoardInTheDialectOfTheProtocol) {
    CapturedOutput captured;
    RecordingEngine engine(&captured.Output);
    engine.Info("hello");
    engine.Protocol = 2;
    engine.Info("nobody");
    engine.Protocol = clsEngineInterface::Uci;
    engine.SetPosition(Fen);
    EXPECT_STREQ(engine.BoardText().Text(), "r---k--r\r\n--------\r\n--n-----\r\n--------\r\n"
                                            "----P---\r\n--------\r\n--------\r\nR---K--R");
    engine.PrintBoard();
    EXPECT_EQ(captured.Text(), "# hello\ninfo string r---k--r\ninfo string --------\ninfo string --n-----\n"
                               "info string --------\ninfo string ----P---\ninfo string --------\n"
                               "info string --------\ninfo string R---K--R\n"
                               "info string white [" +
                                   std::string(Fen) + "]\ninfo string \n");
    engine.SetPosition("");
    EXPECT_TRUE(engine.BoardText().IsEmpty());
    RecordingEngine silent;
    silent.Info("no output at all");
}

namespace {

// A perft file in a fresh folder, and what RunFileTest made of it.
class EngineFileTest : public testing::Test {
protected:
    void SetUp() override {
        folder = testing::TempDir() + "perftfile_" + std::to_string(getpid()) + "/";
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
        engine.PerftCounts = {{"a", 20}, {"b", 400}, {"c", 8902}, {"7", 20}};
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    void Write(const std::string& name, const std::string& text) {
        std::ofstream(folder + name, std::ios::binary) << text;
    }
    // The result file with the figures of each line, which vary with time, replaced by T; each speed is
    // checked against its time and the count of its position.
    std::string Results() {
        std::ifstream in(folder + "p.out.txt", std::ios::binary);
        const std::string text(std::istreambuf_iterator<char>(in), {});
        static const std::regex timed(R"(([^\n]*)\t\[TIME_MS=(\d+)\]\t\[NPS=(\d+)\])");
        for (std::sregex_iterator at(text.begin(), text.end(), timed), end; at != end; ++at) {
            const uint64_t ms = std::stoull((*at)[2]), nps = std::stoull((*at)[3]);
            EXPECT_GE(ms, 1u);
            EXPECT_EQ(nps, engine.PerftCounts[(*at)[1]] * 1000 / ms) << (*at).str();
        }
        return std::regex_replace(text, timed, "$1\tT");
    }

    CapturedOutput captured;
    RecordingEngine engine{&captured.Output};
    std::string folder;
};

} // namespace

TEST_F(EngineFileTest, StatusPerLine) {
    // Expected counts behind the last comma; 0, or text that reads as 0, always passes; a line without a
    // comma is its own FEN and count; a count of 0 nodes leaves the FEN alone.
    Write("p.txt", "a,D1,20\r\nb,D2,401\nc,x\n\nc,D3,0\nd,5\n7\n");
    EXPECT_EQ(engine.RunFileTest((folder + "p.txt").c_str(), 3, false), 0);
    EXPECT_EQ(Results(), "a\tT\t[STATUS=OK]\r\nb\tT\t[STATUS=ERROR]\r\nc\tT\t[STATUS=OK]\r\n"
                         "c\tT\t[STATUS=OK]\r\nd\r\n7\tT\t[STATUS=ERROR]\r\n");
    EXPECT_EQ(captured.Text(), "starting perft from perft line 0\n1/6\ta,D1,20\n2/6\tb,D2,401\n3/6\tc,x\n"
                               "4/6\tc,D3,0\n5/6\td,5\n6/6\t7\n");
}

TEST_F(EngineFileTest, ResumesBehindTheLinesDone) {
    Write("p.txt", "a,20\nb,400\nc,8902\n");
    Write("p.out.txt", "a\r\nb\r\n");
    engine.RunFileTest((folder + "p.txt").c_str(), 3, false);
    EXPECT_EQ(engine.Positions, std::vector<std::string>{"c"});
    EXPECT_EQ(captured.Text(), "starting perft from perft line 2\n3/3\tc,8902\n");
    EXPECT_EQ(Results(), "a\r\nb\r\nc\tT\t[STATUS=OK]\r\n");

    // A result file as long as the input, or longer, leaves nothing to do.
    Write("p.out.txt", "1\n2\n3\n4\n");
    engine.RunFileTest((folder + "p.txt").c_str(), 3, false);
    EXPECT_EQ(engine.Positions.size(), 1u);
}

TEST_F(EngineFileTest, CurrentPositionAndBadFiles) {
    engine.SetPosition("b");
    engine.RunFileTest("", 2, false);
    const std::string said = captured.Text();
    EXPECT_TRUE(
        std::regex_match(said, std::regex(R"(1/1\tb\nb\t\[TIME_MS=\d+\]\t\[NPS=\d+\]\t\[STATUS=OK\]\n)")))
        << said;

    engine.RunFileTest((folder + "missing.txt").c_str(), 2, false);
    EXPECT_EQ(engine.Positions.size(), 2u);

    // The result file cannot be written: every line still runs, and that is said once.
    Write("p.txt", "a,20\nb,400\n");
    std::filesystem::create_directories(folder + "p.out.txt");
    engine.RunFileTest((folder + "p.txt").c_str(), 2, false);
    EXPECT_EQ(engine.Positions.size(), 4u);
    EXPECT_NE(captured.Text().find("# cannot write " + folder + "p.out.txt\n2/2"), std::string::npos);
}
