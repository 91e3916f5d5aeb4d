// The engine's book: which moves lead into it, the choice of one, and the listing.
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <set>
#include <string>
#include <thread>

#include "chess/keys.h"
#include "match/capturedoutput.h"
#include "search/clsenginecorvane.h"

using namespace nvoChess;
using nuvobase::clsString;

namespace {

// The key of the position after the moves from the start, found by a plain core.
uint64_t KeyAfter(std::initializer_list<const char*> moves) {
    auto core = std::make_unique<clsChessCore>();
    core->SetPosition(clsString());
    for (const char* move : moves) EXPECT_TRUE(core->MakeMoveText(clsString(move))) << move;
    return BoardKey(core->Board);
}

struct clsBookEngine {
    clsBookEngine()
        : Engine(std::make_unique<clsEngineCorvane>(&Share, clsString("Corvane"), &Captured.Output)) {}
    void AddEntry(const char* move, uint32_t wins, uint32_t losses, uint32_t draws) {
        Engine->Book.Add(new clsBookEntry(KeyAfter({move}), wins, losses, draws));
    }
    // The coordinate move that PlayBookMove put into BestMove, or empty text.
    std::string PlayedBookMove() {
        int score = 0;
        if (!Engine->PlayBookMove()) return std::string();
        return Engine->GetBestMoveText(true, score).Text();
    }
    clsEngineCorvane* operator->() { return Engine.get(); }

    CapturedOutput Captured;
    clsEngineShare Share;
    std::unique_ptr<clsEngineCorvane> Engine;
};

} // namespace

TEST(BookUse, EntriesOfThePositionSortedByScore) {
    clsBookEngine e;
    e.AddEntry("e2e4", 3, 1, 0);                                        // score 750
    e.AddEntry("d2d4", 1, 1, 0);                                        // score 500
    e->Book.Add(new clsBookEntry(KeyAfter({"e2e4", "e7e5"}), 9, 9, 9)); // not a move of this position
    const clsString before = e->GetPosition();

    nuvobase::clsPCollection<clsBookEntryExt> list;
    ASSERT_EQ(e->GetBookEntries(list, true), 2);
    EXPECT_EQ(list.At(0)->Move, "Pd2-d4");
    EXPECT_EQ(list.At(1)->Move, "Pe2-e4");
    EXPECT_EQ(list.At(1)->Key, KeyAfter({"e2e4"}));
    EXPECT_EQ(list.At(1)->Wins, 3u);
    EXPECT_EQ(list.At(1)->Losses, 1u);
    EXPECT_EQ(list.At(1)->Draws, 0u);
    EXPECT_EQ(e->GetPosition(), before);

    // A transposition is a book move too: the position is looked up, not the move order.
    ASSERT_TRUE(e->MakeMoveText(clsString("g1f3")));
    ASSERT_TRUE(e->MakeMoveText(clsString("g8f6")));
    e->Book.Add(new clsBookEntry(KeyAfter({"b1c3", "g8f6", "g1f3"}), 1, 0, 0));
    ASSERT_EQ(e->GetBookEntries(list, true), 1);
    EXPECT_EQ(list.At(0)->Move, "Nb1-c3");
}

TEST(BookUse, MovesAboveTheShareAreChosenUniformly) {
    clsBookEngine e;
    EXPECT_EQ(e.PlayedBookMove(), ""); // empty book: the search runs
    // Weights are the square roots of the games: 50, 50 and 2, a share of 0.0196, below 0.02.
    e.AddEntry("e2e4", 2500, 0, 0); // the scores differ,
    e.AddEntry("d2d4", 0, 2500, 0); // the weights do not
    e.AddEntry("c2c4", 1, 1, 2);    // too rare to count
    std::set<std::string> played;
    for (int i = 0; i < 60; ++i) played.insert(e.PlayedBookMove());
    EXPECT_EQ(played, (std::set<std::string>{"d2d4", "e2e4"}));
}

// The listing's lines are checked against the real program by the end-to-end book test; of equal
// percentages the first listed is the best entry.
TEST(BookUse, ListingNamesTheFirstOfEqualBestEntries) {
    clsBookEngine e;
    e.AddEntry("e2e4", 3, 1, 2);
    e.AddEntry("d2d4", 1, 0, 0); // 100.00%
    e.AddEntry("c2c4", 1, 0, 0); // equal to d2d4 but listed behind it
    e->ListBookMoves();
    const std::string text = e.Captured.Text();
    const std::string best = " Pd2-d4 1 0 0 100.00% <--- best entry\n";
    ASSERT_GE(text.size(), best.size()) << text;
    EXPECT_EQ(text.substr(text.size() - best.size()), best) << text;
}

TEST(ThreadedBookUse, MaxDepthDoesNotLimitTheSearch) {
    clsBookEngine e;
    EXPECT_EQ(e->SetMaxDepth(2), 2);
    ASSERT_TRUE(e->Start());
    for (int i = 0; i < 20000 && e->SearchDepth < 6; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_GE(e->SearchDepth.load(), 6);
    EXPECT_TRUE(e->StopEngine());
}
