#include <gtest/gtest.h>

#include <algorithm>

#include "chesstest.h"

using namespace nvoChess;
using nvoChessTest::CoreAt;
using nvoChessTest::FindMove;
using nvoChessTest::ListTexts;
using Texts = std::vector<std::string>;

TEST(ChessGenerate, StartPositionOrder) {
    const auto core = CoreAt("");
    ASSERT_EQ(core->Generate(-1), 20);
    EXPECT_EQ(ListTexts(*core, true),
              (Texts{"Ng1-h3", "Ng1-f3", "Nb1-c3", "Nb1-a3", "Ph2-h3", "Pg2-g3", "Pf2-f3",
                     "Pe2-e3", "Pd2-d3", "Pc2-c3", "Pb2-b3", "Pa2-a3", "Ph2-h4", "Pg2-g4",
                     "Pf2-f4", "Pe2-e4", "Pd2-d4", "Pc2-c4", "Pb2-b4", "Pa2-a4"}));
}

TEST(ChessGenerate, PromotionsInOrder) {
    const auto core = CoreAt("1r2k3/P7/8/8/8/8/8/4K3 w - - 0 1");
    core->Generate(-1);
    const Texts texts = ListTexts(*core, true);
    ASSERT_GE(texts.size(), 8u);
    EXPECT_EQ(Texts(texts.begin(), texts.begin() + 4),
              (Texts{"Pa7xRb8=q", "Pa7xRb8=n", "Pa7xRb8=b", "Pa7xRb8=r"}));
    // The ordering values: the gain of the promotion and the capture.
    EXPECT_EQ(core->Current->Moves[0].Value, 835);
    EXPECT_EQ(core->Current->Moves[1].Value, 198);
    // The quiet promotions come with the pawn pushes, after the king's moves.
    const auto push = std::find(texts.begin(), texts.end(), "Pa7-a8=q");
    ASSERT_NE(push, texts.end());
    EXPECT_EQ(Texts(push, push + 4), (Texts{"Pa7-a8=q", "Pa7-a8=n", "Pa7-a8=b", "Pa7-a8=r"}));
    EXPECT_GT(push - texts.begin(), std::find(texts.begin(), texts.end(), "Ke1-d1") - texts.begin());
}

TEST(ChessGenerate, EnPassantFromTheFenField) {
    // Both pawns may take: the one on the a-side comes first, before any other capture.
    const auto core = CoreAt("4k3/8/8/2PpP3/8/8/8/4K3 w - d6 0 1");
    core->Generate(-1);
    const Texts texts = ListTexts(*core, true);
    ASSERT_GE(texts.size(), 2u);
    EXPECT_EQ(texts[0], "Pc5xPd6");
    EXPECT_EQ(texts[1], "Pe5xPd6");

    // Without the field there is no en passant; black takes on a white double push.
    const auto none = CoreAt("4k3/8/8/2PpP3/8/8/8/4K3 w - - 0 1");
    none->Generate(-1);
    EXPECT_EQ(FindMove(*none, "c5d6"), nullptr);
    const auto black = CoreAt("4k3/8/8/8/3pP3/8/8/4K3 b - e3 0 1");
    black->Generate(-1);
    EXPECT_EQ(ListTexts(*black, true)[0], "Pd4xPe3");
}

// Which moves are legal is checked by the perft counts; these cases check records and orders.
TEST(ChessGenerate, CaptureOrderOfSliders) {
    // Rays in order: for a rook h-side, up, a-side, down; for a bishop down-a, up-a, up-h, down-h.
    const auto rook = CoreAt("4k3/8/8/3p4/8/8/8/2pRp1K1 w - - 0 1");
    rook->Generate(-1);
    const Texts rookTexts = ListTexts(*rook, true);
    EXPECT_EQ(Texts(rookTexts.begin(), rookTexts.begin() + 3), (Texts{"Rd1xPe1", "Rd1xPd5", "Rd1xPc1"}));
    const auto bishop = CoreAt("4k3/8/1p3p2/8/3B4/2p1p3/8/6K1 w - - 0 1");
    bishop->Generate(-1);
    const Texts bishopTexts = ListTexts(*bishop, true);
    EXPECT_EQ(Texts(bishopTexts.begin(), bishopTexts.begin() + 4),
              (Texts{"Bd4xPc3", "Bd4xPb6", "Bd4xPf6", "Bd4xPe3"}));
}

TEST(ChessGenerate, CastlingRecords) {
    const auto core = CoreAt("r3k2r/8/8/8/8/8/8/R3K2R w KQ - 0 1");
    core->Generate(-1);
    EXPECT_NE(FindMove(*core, "e1g1"), nullptr);
    EXPECT_NE(FindMove(*core, "e1c1"), nullptr);
    // Black castles on rank 8, h-rook first, at the end of the list.
    const auto black = CoreAt("r3k2r/8/8/8/8/8/8/4K3 b kq - 0 1");
    black->Generate(-1);
    const Texts texts = ListTexts(*black, false);
    EXPECT_EQ(Texts(texts.end() - 2, texts.end()), (Texts{"e8g8", "e8c8"}));
}

TEST(ChessGenerate, StagesMakeTheSameList) {
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
    core->Generate(-1);
    EXPECT_EQ(ListTexts(*core, true)[0], "Ke1-f1");
}

TEST(ChessGenerate, FilterLegalDropsWhatExposesTheKing) {
    // b5xc6 en passant would open the fifth rank to the rook.
    const auto core = CoreAt("8/8/8/KPp4r/8/8/8/7k w - c6 0 1");
    core->SetRootNode();
    const int all = core->Generate(-1);
    ASSERT_NE(FindMove(*core, "b5c6"), nullptr);
    EXPECT_EQ(all, 6);
    // Gone: the en passant, and the king's step to b4, which the c5 pawn hits.
    const int legal = core->FilterLegal();
    EXPECT_EQ(ListTexts(*core, false), (Texts{"a5a4", "a5b6", "a5a6", "b5b6"}));
    EXPECT_EQ(core->Current->MoveCount, legal);
    EXPECT_EQ(core->Current->End(), core->Current->Moves + legal);
}
