#include "search/clstreesearch.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <random>
#include <set>

#include "chess/keys.h"

using namespace nvoChess;

namespace {

constexpr const char* Start = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

// A search on a position of its own, with a table of the given size; prepared, its root list is ready as at
// the start of a search.
struct clsSearchFixture {
    explicit clsSearchFixture(const char* fen, int64_t tableMb = 1, bool prepared = false) {
        Share.ResizeTable(tableMb);
        Search = std::make_unique<clsTreeSearch>(Lock, &Share);
        clsSoul soul;
        soul.LoadText(clsSoul::Named[0]);
        Search->SetSoul(soul);
        Search->SetPosition(fen);
        if (!prepared) return;
        Search->BeginSearch();
        EXPECT_TRUE(Search->PrepareRoot()) << fen;
    }
    clsTreeSearch& operator*() { return *Search; }
    clsTreeSearch* operator->() { return Search.get(); }

    clsMove* RootMove(const char* text) {
        for (clsMove* m = Search->Root->Moves; m != Search->Root->End(); ++m)
            if (Search->MoveText(m, false) == text) return m;
        ADD_FAILURE() << "no root move " << text;
        return Search->Root->Moves;
    }

    // Plays a root move as the root loop does and makes the child current.
    void EnterChild(clsMove* move) {
        Search->Root->CurMove = move;
        Search->ApplyMove(*move);
        Search->SwapSides();
        Search->Current = Search->Root + 1;
    }

    nuvobase::clsMutex Lock;
    clsEngineShare Share;
    std::unique_ptr<clsTreeSearch> Search;
};

// Plain minimax over every legal move, on the same nodes: the value the walk's alpha-beta must reproduce.
int32_t Minimax(clsTreeSearch& s, int32_t depth) {
    clsSimpleNode* const node = s.Current;
    node->SavedBoard = s.Board;
    s.Generate(-1);
    int32_t best = NoValue;
    int legal = 0;
    for (clsMove* m = node->Moves; m != node->End(); ++m) {
        s.ApplyMove(*m);
        if (!s.IsAttacked(s.Board.Kings & s.Board.Mine)) {
            ++legal;
            int32_t value;
            if (node->Ply < depth) {
                node->CurMove = m;
                s.SwapSides();
                s.Current = node + 1;
                value = -Minimax(s, depth);
                s.Current = node;
            } else {
                value = static_cast<int16_t>(s.Evaluate() + s.Board.Material);
            }
            best = std::max(best, value);
        }
        s.RestoreBoard(*node);
    }
    if (legal == 0) return node->InCheck ? MatedValue : DrawValue;
    return best;
}

} // namespace

TEST(TreeSearch, NodesWithoutMoves) {
    struct {
        const char* fen;
        int32_t value;
    } cases[] = {
        {"k7/8/1Q6/8/8/8/8/7K b - -", DrawValue},   // stalemate
        {"k7/1Q6/1K6/8/8/8/8/8 b - -", MatedValue}, // mate
        {"k7/8/8/8/8/8/8/Q6K b - -", 500},          // moves that don't reach alpha: it stays
    };
    for (const auto& c : cases) {
        clsSearchFixture s(c.fen);
        // Node 2 inherits 500 from node 0 and finds no bound in node 1.
        s->Node[0].Best = 500;
        s->Node[1].Best = NoValue;
        s->Node[1].CurMove = &s->MovePool[0];
        s->Current = &s->Node[2];
        EXPECT_EQ(s->WalkTree(2), c.value) << c.fen;
        // At the root, no move means no search; random play on an empty list leaves no move, whatever was
        // held before.
        EXPECT_EQ(s->PrepareRoot(), c.value == 500) << c.fen;
        clsMove held;
        held.From = 1;
        held.To = 2;
        s->SetBestMove(&held);
        s->ChooseAtRandom(-1);
        EXPECT_EQ((s->CopyBestMove().Flags & MoveIllegal) != 0, c.value != 500) << c.fen;
    }
}

TEST(TreeSearch, CutsMarkTheParentsMoveAndAStopRestoresBoardAndCurrent) {
    // With a bound from the root (as if an earlier root move had been worth 0) the reply refutes g1-h3 and
    // marks it; without one the node is searched to its end and nothing is marked.
    for (const bool bound : {true, false}) {
        clsSearchFixture s(Start, 1, true);
        clsMove* move = s.RootMove("g1h3");
        if (bound) s->Root->Best = 0;
        s.EnterChild(move);
        s->WalkTree(2);
        EXPECT_EQ((move->Flags & MoveRefuted) != 0, bound);
    }

    // A stop during a walk restores the board and the current node.
    clsSearchFixture s(Start, 1, true);
    s.EnterChild(s.RootMove("e2e4"));
    const clsBoard before = s->Board;
    s->StopFlag = 1;
    s->WalkTree(6);
    EXPECT_EQ(s->Current, &s->Node[2]);
    EXPECT_EQ(std::memcmp(&s->Board, &before, sizeof(clsBoard)), 0);
    for (uint64_t i = 0; i < s.Share.TTCount; ++i) EXPECT_FALSE(s.Share.TTSlots[i].TTFlags & TTOnPath) << i;
    // The walk reached the last ply before it saw the flag.
    EXPECT_GE(s->Nodes, 5u);
}

TEST(TreeSearch, StopKeepsTheBestMoveButNotAFixedDepth) {
    clsSearchFixture s(Start, 1, true);
    EXPECT_EQ(s->Deepen(4), clsTreeSearch::eDeepening::DepthLimit);
    const clsMove found = s->CopyBestMove();
    ASSERT_FALSE(found.Flags & MoveIllegal);
    EXPECT_EQ(found.Flags >> MoveForcedShift, 1u); // depth 4 finished
    s->StopFlag = 1;
    s->SearchDepth = 6;
    s->SearchRoot();
    const clsMove kept = s->CopyBestMove();
    EXPECT_EQ(std::memcmp(&kept, &found, sizeof(clsMove)), 0);

    // A fixed-depth search ignores the stop left by the earlier search.
    clsSearchFixture fresh(Start);
    uint64_t nodes = 99;
    EXPECT_EQ(s->SearchFixedDepth(0, nodes), 0);
    EXPECT_EQ(nodes, 0u);
    const int32_t value = fresh->SearchFixedDepth(3, nodes);
    const uint64_t freshNodes = nodes;
    EXPECT_EQ(s->SearchFixedDepth(3, nodes), value);
    EXPECT_EQ(nodes, freshNodes);
}

TEST(TreeSearch, RandomChoice) {
    // -proportional=100: every draw passes, so the first move in list order worth more than -940 is played.
    clsSearchFixture s(Start, 1, true);
    clsMove* list = s->Root->Moves;
    list[0].Score = -2000;
    list[1].Score = -940;
    list[2].Score = -939;
    list[3].Score = 500;
    s->ChooseAtRandom(100);
    clsMove chosen = s->CopyBestMove();
    EXPECT_EQ(std::memcmp(&chosen, &list[2], sizeof(clsMove)), 0);

    // Plain -random: any legal move, the illegal ones never.
    clsSearchFixture pinned("4k3/4r3/8/8/8/8/4B3/4K3 w - -"); // the bishop may not move
    ASSERT_TRUE(pinned->PrepareRoot());
    std::set<std::string> played;
    for (int i = 0; i < 300; ++i) {
        pinned->ChooseAtRandom(-1);
        const clsMove move = pinned->CopyBestMove();
        played.insert(pinned->MoveText(&move, false).Text());
    }
    EXPECT_EQ(played, (std::set<std::string>{"e1d1", "e1d2", "e1f1", "e1f2"}));
}

TEST(TreeSearch, TableCountsHitsWithoutCuttingAndAUsableSlotStandsForTheNode) {
    // With and without a table the walks are alike: its slots are never deep enough for a cut.
    clsSearchFixture with(Start, 1, true), without(Start, 0, true);
    with->SearchDepth = 4;
    without->SearchDepth = 4;
    for (int pass = 0; pass < 2; ++pass) {
        with->ResetStatistics();
        without->ResetStatistics();
        EXPECT_EQ(with->SearchRoot(), without->SearchRoot());
        EXPECT_EQ(with->Nodes, without->Nodes);
        EXPECT_EQ(without->TTHits, 0u);
    }
    EXPECT_GT(with->TTHits, 0u);

    // Search keys differ from run to run, and a node searched before a2-a3 whose key falls into the same slot
    // would take the slot over. Fixed keys make every run the same.
    InitKeys();
    std::mt19937_64 random(7);
    for (auto& square : RandomKeys)
        for (auto& piece : square)
            for (uint64_t& key : piece) key = random();
    for (uint64_t& key : SideKeys) key = random();
    clsSearchFixture s(Start, 1, true);
    clsMove* move = s.RootMove("a2a3");
    // The slot of the position after a2-a3, stored deep enough, Black at -300.
    s.EnterChild(move);
    clsTT* slot = s.Share.Slot(SearchKey(s->Board));
    *slot = clsTT{SearchKey(s->Board), 0, 10, -300, TTUsable};
    s->RestoreBoard(*s->Root);
    s->Current = s->Root;

    s->SearchDepth = 4;
    s->SearchRoot();
    EXPECT_EQ(move->Score, 300);
    const clsMove best = s->CopyBestMove();
    EXPECT_EQ(s->MoveText(&best, false), "a2a3");
}

TEST(TreeSearch, WalkAgreesWithMinimax) {
    const char* positions[] = {
        Start,
        "r1bqkb1r/pppp1ppp/2n2n2/4p3/2B1P3/5N2/PPPP1PPP/RNBQK2R w KQkq - 4 4",
        "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
        "6k1/5ppp/8/8/8/8/5PPP/R5K1 b - -",
        "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - -",
    };
    for (const char* fen : positions)
        for (int32_t depth = 1; depth <= 3; ++depth) {
            clsSearchFixture walk(fen, 0), reference(fen, 0);
            uint64_t nodes = 0;
            const int32_t walked = walk->SearchFixedDepth(depth, nodes);
            reference->ResetNodes();
            // The walk from the root starts with alpha 0 and never returns less.
            const int32_t exact = Minimax(*reference, depth);
            EXPECT_EQ(walked, std::max(0, exact)) << fen << " depth " << depth;
            // The root pass has no alpha: its Best is the exact value.
            if (depth < 2) continue;
            walk->BeginSearch();
            ASSERT_TRUE(walk->PrepareRoot());
            walk->SearchDepth = depth;
            EXPECT_EQ(walk->SearchRoot(), exact) << fen << " depth " << depth;
        }
}
