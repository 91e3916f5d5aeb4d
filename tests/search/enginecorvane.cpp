// Corvane behind the engine interface: its soul, its book, the search thread and the table it marks.
#include "search/clsenginecorvane.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <iterator>
#include <memory>
#include <set>
#include <string>
#include <thread>

#include "chess/chesstest.h"
#include "chess/keys.h"
#include "match/capturedoutput.h"
#include "nuvobase/thread_wait.h"

using namespace nvoChess;
using nuvobase::clsString;
using nuvobase_test::Eventually;

namespace {

constexpr const char* MateInOne = "6k1/5ppp/8/8/8/8/8/R6K w - -";

// Sets the program's command line for the engines made while it lives.
class clsCommandLine {
public:
    explicit clsCommandLine(std::initializer_list<const char*> arguments) {
        clsEngineCorvane::CommandLine = nuvobase::clsStrings();
        for (const char* argument : arguments) {
            const clsString text(argument);
            clsEngineCorvane::CommandLine.SetValue(text.BeforeChar('='), text.AfterChar('='), false);
        }
    }
    ~clsCommandLine() { clsEngineCorvane::CommandLine = nuvobase::clsStrings(); }
};

struct clsEngineFixture {
    explicit clsEngineFixture(const char* fen = nullptr, int64_t tableMb = 1) {
        Share.ResizeTable(tableMb);
        Engine = std::make_unique<clsEngineCorvane>(&Share, clsString("Corvane"), &Captured.Output);
        if (fen) Engine->SetPosition(clsString(fen));
    }
    clsEngineCorvane* operator->() { return Engine.get(); }

    void AddBookEntry(const char* move, uint32_t wins, uint32_t losses, uint32_t draws) {
        const clsBookEntry entry(BoardKey(nvoChessTest::CoreAfter({move})->Board), wins, losses, draws);
        Engine->Book.AddSorted(&entry, 1);
    }
    // The coordinate move that PlayBookMove put into BestMove, or empty text.
    std::string PlayedBookMove() {
        int score = 0;
        if (!Engine->PlayBookMove()) return std::string();
        return Engine->GetBestMoveText(true, score).Text();
    }

    CapturedOutput Captured;
    clsEngineShare Share;
    std::unique_ptr<clsEngineCorvane> Engine;
};

} // namespace

TEST(EngineSoul, SelectByNameFallbacksAndCrossing) {
    clsEngineFixture e;
    e->SelectSoul(clsString("gen_26_12_3"));
    EXPECT_EQ(e->SoulName, "GEN_26_12_3");
    EXPECT_EQ(e->GetSoulText(), "33\t80\t20\t5\t88\t8\t32\t10\t10\t20\t5\t1\t5\t10\t5\t10\t");

    // An unknown name keeps the parameters and the name as given.
    e->SelectSoul(clsString("Nobody"));
    EXPECT_EQ(e->SoulName, "Nobody");
    EXPECT_EQ(e->GetSoulText().BeforeChar('\t'), "33");

    // An empty name: the "soul" option first, then -soul, then Simple5.
    {
        clsCommandLine line({"-soul=GEN_28_18_1"});
        clsEngineFixture f;
        EXPECT_EQ(f->SoulName, "Simple5"); // the constructor names its soul
        f->SelectSoul(clsString());
        EXPECT_EQ(f->SoulName, "GEN_28_18_1");
        f->SetOption(clsString("soul"), clsString("GEN_26_12_2"));
        f->SelectSoul(clsString());
        EXPECT_EQ(f->SoulName, "GEN_26_12_2");
        EXPECT_EQ(f->GetSoulText(), "7\t70\t20\t46\t46\t8\t8\t10\t10\t20\t5\t1\t5\t64\t5\t10\t");
    }
    e->SelectSoul(clsString("GEN_26_12_1"));
    e->SelectSoul(clsString());
    EXPECT_EQ(e->SoulName, "Simple5");
    EXPECT_EQ(e->GetSoulText().BeforeChar('\t'), "7");

    // The bands of a crossing are checked on the soul; here the numbers come through the other engine's text.
    clsEngineFixture other;
    other->LoadSoulText(clsString("All=100 100 100 100 100 100 100 100 100 100 100 100 100 100 100 100"));
    e->LoadSoulText(clsString("Zero="));
    for (int i = 0; i < 20; ++i) e->CrossSoul(other.Engine.get());
    int taken = 0;
    for (int32_t parameter : e->GetSoul().P) taken += parameter == 100;
    EXPECT_GT(taken, 8); // 60 in 100 a time, over twenty crossings
    EXPECT_EQ(e->CastlingBonus, e->GetSoul()[clsSoul::CastlingBonus]); // the engine takes the crossed bonus
}

TEST(ThreadedEngineCorvane, MateInOneEndsAtDepthTwoAndIsPlayedAtProportionalHundred) {
    clsEngineFixture e(MateInOne);
    e->Post = 1;
    e->Protocol = clsEngineInterface::XBoard;
    EXPECT_TRUE(e->StopEngine()); // on an idle engine, twice: no harm to the next search
    EXPECT_TRUE(e->StopEngine());
    e->Start(); // may have ended already when it returns
    ASSERT_TRUE(Eventually([&] { return !e->IsRunning(); }));
    const clsString info = e->GetInfoLine();
    EXPECT_EQ(info.Left(9), "2 100000 ");
    EXPECT_EQ(info.AfterLastChar(' '), "Ra1-a8");
    int score = 0;
    EXPECT_EQ(e->GetBestMoveText(true, score), "a1a8");
    EXPECT_EQ(score, 10000);
    EXPECT_TRUE(e->GetBestMoveText(true, score).IsEmpty()); // handed out once
    EXPECT_TRUE(e->GetInfoLine().IsEmpty());
    EXPECT_EQ(e.Captured.Text(),
              "#  engine's running\n#  16 moves to analyze\n# I'll win in 0 moves playing a1a8\n#  "
              "engine stopped\n");

    // With -random -proportional=100 every draw passes, so the mate is played each time (the choice itself is
    // checked on the search).
    clsCommandLine line({"-random", "-proportional=100"});
    for (int run = 0; run < 20; ++run) {
        clsEngineFixture f(MateInOne);
        f->Start();
        ASSERT_TRUE(Eventually([&] { return !f->IsRunning(); }));
        EXPECT_EQ(f->GetBestMoveText(false, score), "a1a8");
    }
}

TEST(ThreadedEngineCorvane, RandomAloneEndsAfterDepthTwoAndWithTimedOrProportionalRunsOn) {
    for (const char* option : {"", "-timed", "-proportional"}) {
        SCOPED_TRACE(option);
        clsCommandLine line = *option ? clsCommandLine({"-random", option}) : clsCommandLine({"-random"});
        clsEngineFixture e("r1bqkb1r/pppp1ppp/2n2n2/4p3/2B1P3/5N2/PPPP1PPP/RNBQK2R w KQkq - 4 4");
        e->Start(); // may have ended already when it returns
        if (!*option) {
            ASSERT_TRUE(Eventually([&] { return !e->IsRunning(); }));
            EXPECT_EQ(e->SearchDepth, 4); // the loop went past depth 2 and ended
        } else {
            Eventually([&] { return e->SearchDepth.load() >= 6; });
            EXPECT_TRUE(e->IsRunning());
            EXPECT_TRUE(e->StopEngine());
            EXPECT_GE(e->SearchDepth, 6);
        }
        int score = 0;
        const clsString move = e->GetBestMoveText(false, score);
        EXPECT_TRUE(e->MakeMoveText(move)) << move.Text();
    }
}

TEST(ThreadedEngineCorvane, StopKeepsTheBestMoveAndTheBoard) {
    clsEngineFixture e("r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1");
    const clsString fen = e->GetPosition();
    EXPECT_EQ(e->SetMaxDepth(2), 2); // no limit of this engine's search
    ASSERT_TRUE(e->Start());
    ASSERT_TRUE(Eventually([&] { return e->SearchDepth.load() >= 6; }));
    EXPECT_TRUE(e->StopEngine());
    EXPECT_FALSE(e->IsRunning());
    int score = 0;
    const clsString move = e->GetBestMoveText(false, score);
    EXPECT_FALSE(move.IsEmpty());
    EXPECT_EQ(e->GetPosition(), fen);
    EXPECT_EQ(e->Current, e->Root);

    // "depth score  centiseconds nodes move", the score in hundredths of a pawn.
    const clsString info = e->GetInfoLine();
    int position = 0;
    EXPECT_EQ(info.NextWord(' ', position).ToSigned(), e->SearchDepth.load());
    EXPECT_EQ(info.NextWord(' ', position).ToSigned(), static_cast<int64_t>(score * 100 / 105.0));
    EXPECT_TRUE(info.NextWord(' ', position).IsEmpty()); // the second space
    EXPECT_GE(info.NextWord(' ', position).ToSigned(), 0);
    EXPECT_EQ(static_cast<uint64_t>(info.NextWord(' ', position).ToSigned()), e->Nodes.load());
    const clsMove best = e->CopyBestMove();
    EXPECT_EQ(info.NextWord(' ', position), e->MoveText(&best, true));
    EXPECT_EQ(position, -1);
    EXPECT_TRUE(e->MakeMoveText(move));
}

TEST(ThreadedEngineCorvane, StatisticsPlayedMovesAndAThousandStartsAndStops) {
    clsEngineFixture e;
    EXPECT_TRUE(e->GetStatistics(0).IsEmpty());
    int64_t nodes = 0;
    EXPECT_EQ(e->SearchFixedDepth(1, nodes), 111);
    EXPECT_EQ(nodes, 20);
    e->TTHits = 5;
    EXPECT_EQ(e->GetStatistics(4), "4 ms 5 Knps, TT hits: 5 25.00%, Rept.Hits: 0");
    EXPECT_EQ(e->GetStatistics(0), ", TT hits: 5 25.00%, Rept.Hits: 0");
    EXPECT_EQ(e->SetMaxDepth(1000), 128);
    EXPECT_EQ(e->MaxDepth, 0);

    // Played moves mark the table.
    ASSERT_TRUE(e->MakeMoveText(clsString("e2e4")));
    const clsTT* slot = e.Share.Slot(SearchKey(e->Board));
    EXPECT_EQ(slot->TTKey, SearchKey(e->Board));
    EXPECT_EQ(slot->TTFlags, TTGameHistory);
    EXPECT_FALSE(e->MakeMoveText(clsString("e2e4")));

    clsEngineFixture without(nullptr, 0);
    ASSERT_TRUE(without->MakeMoveText(clsString("e2e4")));
    EXPECT_FALSE(without->IsWhiteToMove());

    // A thousand starts and stops leave no thread. The first thread a process makes can bring a helper
    // thread of the sanitizer runtime with it: count the threads after one search has come and gone.
    ASSERT_TRUE(e->Start());
    ASSERT_TRUE(e->StopEngine());
    const auto threadsOfProcess = [] {
        return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
    };
    const long before = threadsOfProcess();
    for (int i = 0; i < 1000; ++i) {
        ASSERT_TRUE(e->Start());
        if (i % 2) std::this_thread::sleep_for(std::chrono::microseconds(200));
        ASSERT_TRUE(e->StopEngine());
        ASSERT_FALSE(e->IsRunning());
    }
    EXPECT_EQ(threadsOfProcess(), before);
    int score = 0;
    const clsString move = e->GetBestMoveText(false, score);
    EXPECT_TRUE(move.IsEmpty() || e->MakeMoveText(move));
}

// The listing's lines are checked against the real program by the end-to-end book test; here the entries
// of a position by score, the choice among them, and the tie of equal best entries.
TEST(BookUse, EntriesChoiceAndListing) {
    clsEngineFixture e;
    EXPECT_EQ(e.PlayedBookMove(), ""); // empty book: the search runs
    // Weights are the square roots of the games: 50, 50 and 2, a share of 0.0196, below 0.02. The scores
    // differ (1000, 0 and 500), the weights of the first two do not.
    e.AddBookEntry("e2e4", 2500, 0, 0);
    e.AddBookEntry("d2d4", 0, 2500, 0);
    e.AddBookEntry("c2c4", 1, 1, 2);
    const clsBookEntry other(BoardKey(nvoChessTest::CoreAfter({"e2e4", "e7e5"})->Board), 9, 9,
                             9); // not a move of this position
    e->Book.AddSorted(&other, 1);
    const clsString before = e->GetPosition();
    nuvobase::clsPCollection<clsBookEntryExt> list;
    ASSERT_EQ(e->GetBookEntries(list, true), 3);
    EXPECT_EQ(list.At(0)->Move, "Pd2-d4");
    EXPECT_EQ(list.At(2)->Move, "Pe2-e4");
    EXPECT_EQ(list.At(2)->Wins, 2500u);
    EXPECT_EQ(e->GetPosition(), before);
    std::set<std::string> played;
    for (int i = 0; i < 60; ++i) played.insert(e.PlayedBookMove());
    EXPECT_EQ(played, (std::set<std::string>{"d2d4", "e2e4"}));

    // g1-f3 scores 100% as e2-e4 does, and is listed before it.
    e.AddBookEntry("g1f3", 1, 0, 0);
    e->ListBookMoves();
    const std::string text = e.Captured.Text();
    const std::string best = " Ng1-f3 1 0 0 100.00% <--- best entry\n";
    ASSERT_GE(text.size(), best.size()) << text;
    EXPECT_EQ(text.substr(text.size() - best.size()), best) << text;
}
