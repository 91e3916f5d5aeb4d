#include <gtest/gtest.h>

#include <algorithm>

#include "chesstest.h"

using namespace nvoChess;
using nvoChessTest::CoreAt;
using nvoChessTest::ListTexts;
using Texts = std::vector<std::string>;

// Which moves are legal is checked by the perft counts; the order of the list decides which move the search
// and the readers of SAN meet first.
TEST(ChessGenerate, ListOrderAndStages) {
    // Captures first, the pawn on the a-side before the other; a rook's rays h-side, up, a-side, down, a
    // bishop's down-a, up-a, up-h, down-h. Quiet promotions come with the pawn pushes after the king's moves,
    // and castling last, the h-side first.
    const struct {
        const char* Fen;
        bool AtEnd;
        Texts Moves;
    } rows[] = {
        {"", false, {"Ng1-h3", "Ng1-f3", "Nb1-c3", "Nb1-a3", "Ph2-h3", "Pg2-g3", "Pf2-f3",
                     "Pe2-e3", "Pd2-d3", "Pc2-c3", "Pb2-b3", "Pa2-a3", "Ph2-h4", "Pg2-g4",
                     "Pf2-f4", "Pe2-e4", "Pd2-d4", "Pc2-c4", "Pb2-b4", "Pa2-a4"}},
        {"1r2k3/P7/8/8/8/8/8/4K3 w - - 0 1", false, {"Pa7xRb8=q", "Pa7xRb8=n", "Pa7xRb8=b", "Pa7xRb8=r"}},
        {"1r2k3/P7/8/8/8/8/8/4K3 w - - 0 1",
         true,
         {"Ke1-d2", "Pa7-a8=q", "Pa7-a8=n", "Pa7-a8=b", "Pa7-a8=r"}},
        {"4k3/8/8/2PpP3/8/8/8/4K3 w - d6 0 1", false, {"Pc5xPd6", "Pe5xPd6"}},
        {"4k3/8/8/8/3pP3/8/8/4K3 b - e3 0 1", false, {"Pd4xPe3"}},
        {"4k3/8/8/3p4/8/8/8/2pRp1K1 w - - 0 1", false, {"Rd1xPe1", "Rd1xPd5", "Rd1xPc1"}},
        {"4k3/8/1p3p2/8/3B4/2p1p3/8/6K1 w - - 0 1", false, {"Bd4xPc3", "Bd4xPb6", "Bd4xPf6", "Bd4xPe3"}},
        {"r3k2r/8/8/8/8/8/8/4K3 b kq - 0 1", true, {"Ke8-g8", "Ke8-c8"}},
    };
    for (const auto& row : rows) {
        const auto core = CoreAt(row.Fen);
        core->Generate(-1);
        const Texts texts = ListTexts(*core, true);
        ASSERT_GE(texts.size(), row.Moves.size()) << row.Fen;
        const auto from = row.AtEnd ? texts.end() - long(row.Moves.size()) : texts.begin();
        EXPECT_EQ(Texts(from, from + long(row.Moves.size())), row.Moves) << row.Fen;
    }

    // The stages make the same list.
    for (const char* fen : {"r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
                            "rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8",
                            "4k3/8/8/2PpP3/8/8/8/4K3 w - d6 0 1"}) {
        const auto core = CoreAt(fen);
        const int all = core->Generate(-1);
        Texts full = ListTexts(*core, true);
        int count = core->Generate(0);
        for (int stage = 1; stage <= 6; ++stage) {
            clsMove* before = core->Current->End();
            const int now = core->Generate(stage);
            // Earlier batches stay; the next move to try is the first of the new batch.
            EXPECT_EQ(core->Current->CurMove, before);
            EXPECT_GE(now, count);
            count = now;
        }
        EXPECT_EQ(count, all) << fen;
        Texts staged = ListTexts(*core, true);
        std::sort(full.begin(), full.end());
        std::sort(staged.begin(), staged.end());
        EXPECT_EQ(staged, full) << fen;
    }
    // Stage 5 puts the pawn pushes before the king's moves.
    const auto core = CoreAt("4k3/8/8/8/8/8/P7/4K3 w - - 0 1");
    core->Generate(0);
    for (int stage = 1; stage <= 5; ++stage) core->Generate(stage);
    EXPECT_EQ(ListTexts(*core, true)[0], "Pa2-a3");
}
