#include <gtest/gtest.h>

#include "chesstest.h"

using namespace nvoChess;
using nuvobase::clsString;
using nvoChessTest::CoreAt;
using nvoChessTest::PerftCase;
using nvoChessTest::ReferenceCounts;
using nvoChessTest::Sanitized;

TEST(ChessPerft, ReferenceCountsWithAndWithoutShortcuts) {
    // Under the sanitizers the deep counts would take minutes.
    const uint64_t limit = Sanitized ? 10000000 : ~0ULL, fullWalkLimit = Sanitized ? 1000000 : 3000000;
    int run = 0;
    for (const PerftCase& c : ReferenceCounts("perft.txt")) {
        if (c.Count > limit) continue;
        const auto core = CoreAt(c.Fen.c_str());
        EXPECT_EQ(core->Perft(c.Depth, false), c.Count) << c.Fen << " depth " << c.Depth;
        EXPECT_EQ(core->Nodes, c.Count);
        ++run;
        if (c.Count > fullWalkLimit) continue;
        core->PerftShortcuts = false;
        EXPECT_EQ(core->Perft(c.Depth, false), c.Count) << c.Fen << " depth " << c.Depth << " full walk";
    }
    EXPECT_GT(run, 100);
}

TEST(ChessPerft, DivideLinesAddUp) {
    // The pinned b5 pawn's push is marked illegal in the root list and gets no line.
    const char* fen = "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1";
    const auto core = CoreAt(fen);
    const uint64_t total = core->Perft(3, true);
    ASSERT_EQ(core->Lines.size(), 14u);
    uint64_t sum = 0;
    const clsMove* move = core->Root->Moves;
    for (const std::string& line : core->Lines) {
        while (move->Flags & MoveIllegal) ++move;
        const std::string text = core->MoveText(move, true).Text();
        ASSERT_EQ(line.substr(0, text.size() + 1), text + " ");
        const uint64_t n = std::stoull(line.substr(text.size() + 1));
        // Each line is the count of the position after its move.
        const auto after = CoreAt(fen);
        ASSERT_TRUE(after->MakeMoveText(core->MoveText(move, false)));
        EXPECT_EQ(after->Perft(2, false), n) << line;
        sum += n;
        ++move;
    }
    EXPECT_EQ(sum, total);
    // Depth 1 writes no lines.
    core->Lines.clear();
    EXPECT_EQ(core->Perft(1, true), 14u);
    EXPECT_TRUE(core->Lines.empty());
}

TEST(ChessPerft, OddRequestsBadPositionsAndFullPools) {
    EXPECT_EQ(CoreAt("")->Perft(0, false), 0u);
    EXPECT_EQ(CoreAt("")->Perft(-5, false), 0u);
    // The side not to move is in check: the position cannot arise, and counts nothing.
    EXPECT_EQ(CoreAt("4k3/4r3/8/8/8/8/8/4K3 b - - 0 1")->Perft(3, false), 0u);
    // Mate and stalemate have nothing to count.
    EXPECT_EQ(CoreAt("R5k1/5ppp/8/8/8/8/8/6K1 b - - 0 1")->Perft(3, false), 0u);
    EXPECT_EQ(CoreAt("k7/8/1Q6/8/8/8/8/7K b - - 0 1")->Perft(2, false), 0u);

    const char* fens[] = {
        "8/8/8/8/8/8/8/8 w - -",                   // no men
        "4k3/8/8/8/8/8/8/8 w KQkq e6",             // no white king, rights without men
        "QQQQQQQQ/Q7/8/8/8/8/8/k6K w - -",         // nine queens
        "PPPPPPPP/8/8/8/8/8/8/pppppppp w KQkq a3", // pawns on the first and last rank
        "KKKKKKKK/kkkkkkkk/8/8/8/8/8/8 w KQkq -",  // many kings
        "RNBQKBNR/PPPPPPPP/pppppppp/rnbqkbnr/RNBQKBNR/PPPPPPPP/pppppppp/rnbqkbnr w KQkq -", // 64 men
        "R6R/3Q4/1Q4Q1/4Q3/2Q4Q/Q4Q2/pp1Q4/kBNN1KB1 w - - 0 1",                             // 218 moves
        "4k3/8/8/8/3pP3/8/8/N3K2N b KQkq e4", // en passant square off its rank
        "4k3/8/8/3p4/8/8/8/4K3 w - d6",       // en passant onto an occupied square
        "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR b KQkq h9 99999999999 -7",
        "/////////",
        "8888888888888888 b",
        "k7/8/8/8/8/8/8/7K w KQkq a6 xyz; bm Kb1;",
    };
    for (const char* fen : fens) {
        const auto core = CoreAt(fen);
        core->GetPosition();
        core->Generate(-1);
        core->Perft(3, true);
        core->PerftShortcuts = false;
        core->Perft(2, true);
        core->GameStatus();
        core->SanToCoordinates(clsString("Nf3"), true);
        EXPECT_LE(core->Current->End(), core->MovePool + MovePoolSize) << fen;
    }

    // Lists stacked node after node until the pool is full: the generator stops at its end.
    const auto core = CoreAt("R6R/3Q4/1Q4Q1/4Q3/2Q4Q/Q4Q2/pp1Q4/kBNN1KB1 w - - 0 1");
    for (int ply = 1; ply < NodeCount - 1; ++ply) {
        core->Current = &core->Node[ply];
        core->Generate(-1);
        ASSERT_LE(core->Node[ply + 1].Moves, core->MovePool + MovePoolSize);
    }
    EXPECT_EQ(core->Node[NodeCount - 1].Moves, core->MovePool + MovePoolSize);
}
