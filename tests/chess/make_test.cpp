#include <gtest/gtest.h>

#include "chess/coordinates.h"
#include "chess/keys.h"
#include "chesstest.h"

using namespace nvoChess;
using nuvobase::clsString;
using nvoChessTest::CoreAfter;
using nvoChessTest::CoreAt;

namespace {

constexpr const char* Start = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

uint64_t KeyOf(const char* fen) {
    return BoardKey(CoreAt(fen)->Board);
}

} // namespace

TEST(ChessMake, GameMovesCastlingPromotionsAndStatus) {
    const auto core = CoreAt("");
    for (const char* move : {"e2e4", "c7c5", "g1f3"})
        ASSERT_TRUE(core->MakeMoveText(clsString(move))) << move;
    EXPECT_EQ(core->GetPosition(), clsString("rnbqkbnr/pp1ppppp/8/2p5/4P3/5N2/PPPP1PPP/RNBQKB1R b KQkq -"));
    // Illegal or malformed moves change nothing.
    const clsString before = core->GetPosition();
    for (const char* bad : {"e7e4", "e1e2", "", "e2", "zz", "a9a8", "e8g8"}) {
        EXPECT_FALSE(core->MakeMoveText(clsString(bad))) << bad;
        EXPECT_EQ(core->GetPosition(), before);
    }
    // En passant from the FEN's field takes the pawn and counts it off.
    const auto ep = CoreAt("rnbqkbnr/ppp1pppp/8/3pP3/8/8/PPPP1PPP/RNBQKBNR w KQkq d6 0 3");
    ASSERT_TRUE(ep->MakeMoveText(clsString("e5d6")));
    EXPECT_EQ(ep->GetPosition(), clsString("rnbqkbnr/ppp1pppp/3P4/8/8/8/PPPP1PPP/RNBQKBNR b KQkq -"));
    EXPECT_EQ(ep->Board.PawnCount[1], 7);

    // Castling moves king and rook and pays the bonus.
    const auto castling = CoreAt("r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1");
    castling->CastlingBonus = 30;
    ASSERT_TRUE(castling->MakeMoveText(clsString("e1g1")));
    EXPECT_EQ(castling->GetPosition(), clsString("r3k2r/8/8/8/8/8/8/R4RK1 b kq -"));
    // The bonus belongs to white; seen from black it is negative.
    EXPECT_EQ(castling->Board.Material, -30);
    ASSERT_TRUE(castling->MakeMoveText(clsString("e8c8")));
    EXPECT_EQ(castling->GetPosition(), clsString("2kr3r/8/8/8/8/8/8/R4RK1 w - -"));
    EXPECT_EQ(castling->Board.Material, 0);
    castling->ComputeMaterial();
    EXPECT_EQ(castling->Board.Material, 0);

    const auto taking = CoreAt("1r2k3/P7/8/8/8/8/8/4K3 w - - 0 1");
    ASSERT_TRUE(taking->MakeMoveText(clsString("a7b8=N")));
    EXPECT_EQ(taking->Board.Knights, TextToSquare("b8"));
    EXPECT_EQ(taking->Board.PieceCount[0], 2);
    // The promotion adds its own gain only, not the rook taken: -395 + 198 from white, negated for black.
    EXPECT_EQ(taking->Board.Material, -(105 - 500 + 198));
    taking->ComputeMaterial();
    EXPECT_EQ(taking->Board.Material, -303);

    // The letter is needed; S and M are bishop and queen.
    const auto letter = CoreAt("8/4P3/8/8/8/8/k7/4K3 w - - 0 1");
    EXPECT_FALSE(letter->MakeMoveText(clsString("e7e8")));
    EXPECT_FALSE(letter->MakeMoveText(clsString("e7e8x")));
    EXPECT_TRUE(letter->MakeMoveText(clsString("e7e8=s")));
    EXPECT_EQ(letter->Board.Bishops, TextToSquare("e8"));
    EXPECT_EQ(letter->Board.Material, -(105 + 198));
    const auto queen = CoreAt("8/4P3/8/8/8/8/k7/4K3 w - - 0 1");
    EXPECT_TRUE(queen->MakeMove(TextToSquare("e7"), TextToSquare("e8"), 'M'));
    EXPECT_EQ(queen->Board.Queens, TextToSquare("e8"));
    EXPECT_EQ(queen->Board.Material, -(105 + 835));

    // The status of a game.
    const struct {
        const char* Fen;
        uint32_t Status;
    } cases[] = {
        {"", GameOn},
        {"4k3/8/8/8/8/8/8/4K3 w - - 0 1", InsufficientMaterial},
        {"4k3/8/8/8/8/8/8/3NK3 b - - 0 1", InsufficientMaterial},
        {"4k3/8/8/8/8/8/8/2B1K3 w - - 0 1", InsufficientMaterial},
        {"4k3/8/8/8/8/8/8/2NNK3 w - - 0 1", GameOn},
        {"4kb2/8/8/8/8/8/8/2B1K3 w - - 0 1", GameOn},
        {"4k3/8/8/8/8/8/P7/4K3 w - - 0 1", GameOn},
        {"rnb1kbnr/pppp1ppp/8/4p3/6Pq/5P2/PPPPP2P/RNBQKBNR w KQkq - 1 3", WhiteMated},
        {"R5k1/5ppp/8/8/8/8/8/6K1 b - - 0 1", BlackMated},
        {"k7/8/1Q6/8/8/8/8/7K b - - 0 1", Stalemate},
    };
    for (const auto& c : cases) EXPECT_EQ(CoreAt(c.Fen)->GameStatus(), c.Status) << c.Fen;

    // After a game move: the only answers may be en passant, which is no mate; a capture leaves too little.
    const struct {
        const char *Fen, *Move;
        uint32_t Status;
    } moves[] = {{"8/3B4/p7/k2N4/p1p5/8/1P6/7K w - - 0 1", "b2b4", GameOn},
                 {"4k3/8/8/8/8/8/3r4/3NK3 w - - 0 1", "e1d2", InsufficientMaterial},
                 {"4k3/8/8/8/8/8/3r4/2NNK3 w - - 0 1", "e1d2", GameOn},
                 {"7k/8/6QK/8/8/8/8/8 w - - 0 1", "g6g7", BlackMated}};
    for (const auto& c : moves) {
        const auto core = CoreAt(c.Fen);
        ASSERT_TRUE(core->MakeMoveText(clsString(c.Move))) << c.Fen;
        EXPECT_EQ(core->GameStatus(), c.Status) << c.Fen;
    }
}

TEST(ChessKeys, KeysBelongToThePositionNotToTheWayThere) {
    EXPECT_EQ(KeyOf(""), 0x9F1EB9923BA0402FULL);
    const uint64_t start = KeyOf(Start);
    EXPECT_NE(KeyOf("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR b KQkq - 0 1"), start);
    EXPECT_NE(KeyOf("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1"),
              KeyOf("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1"));
    EXPECT_NE(CoreAt("4k3/8/8/8/8/8/8/4K1N1 w - -")->Board.Hash,
              CoreAt("4k3/8/8/8/8/8/8/4K1B1 w - -")->Board.Hash);

    // Each core made draws no new keys.
    const uint64_t startHash = CoreAt(Start)->Board.Hash;
    const auto a = CoreAfter({"g1f3", "g8f6", "b1c3", "b8c6"});
    const auto b = CoreAfter({"b1c3", "b8c6", "g1f3", "g8f6"});
    const auto back = CoreAfter({"g1f3", "g8f6", "f3g1", "f6g8"});
    EXPECT_EQ(BoardKey(a->Board), BoardKey(b->Board));
    EXPECT_EQ(ScratchHash(a->Board), ScratchHash(b->Board));
    EXPECT_EQ(BoardKey(back->Board), start);
    EXPECT_EQ(ScratchHash(back->Board), startHash);
    EXPECT_EQ(SearchKey(back->Board), SearchKey(CoreAt(Start)->Board));
}
