#include <gtest/gtest.h>

#include "chess/keys.h"
#include "chesstest.h"

using namespace nvoChess;
using nvoChessTest::CoreAt;

namespace {

constexpr const char* Start = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

// The position after the coordinate moves, from the start.
std::unique_ptr<nvoChessTest::clsRecordingCore> AfterMoves(std::initializer_list<const char*> moves) {
    auto core = CoreAt(Start);
    for (const char* move : moves) EXPECT_TRUE(core->MakeMoveText(nuvobase::clsString(move))) << move;
    return core;
}

uint64_t KeyOf(const char* fen) {
    return BoardKey(CoreAt(fen)->Board);
}

} // namespace

TEST(ChessBoard, CountsAndMaterial) {
    // Queen and rook against two pawns and a knight: 940 + 500 - 2 * 105 - 303, from the mover's side.
    EXPECT_EQ(CoreAt("4k3/pp6/n7/8/8/8/8/QR2K3 w - -")->Board.Material, 927);
    const auto black = CoreAt("4k3/pp6/n7/8/8/8/8/QR2K3 b - -");
    EXPECT_EQ(black->Board.Material, -927);
    EXPECT_EQ(black->Board.PieceCount[1], 2);
    EXPECT_EQ(black->Board.PawnCount[1], 2);
}

TEST(ChessKeys, BookAndSearchKeys) {
    EXPECT_EQ(KeyOf(""), 0x9F1EB9923BA0402FULL);
    const uint64_t start = KeyOf(Start);
    EXPECT_NE(KeyOf("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR b KQkq - 0 1"), start);
    EXPECT_NE(KeyOf("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1"),
              KeyOf("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1"));

    // The keys belong to the position, not to the way there.
    const auto a = AfterMoves({"g1f3", "g8f6", "b1c3", "b8c6"});
    const auto b = AfterMoves({"b1c3", "b8c6", "g1f3", "g8f6"});
    EXPECT_EQ(BoardKey(a->Board), BoardKey(b->Board));
    EXPECT_EQ(ScratchHash(a->Board), ScratchHash(b->Board));
    const auto back = AfterMoves({"g1f3", "g8f6", "f3g1", "f6g8"});
    EXPECT_EQ(BoardKey(back->Board), start);
    EXPECT_EQ(SearchKey(back->Board), SearchKey(CoreAt(Start)->Board));
}

TEST(ChessKeys, ScratchHashIsPerPieceAndShared) {
    const auto one = CoreAt(Start);
    const auto two = CoreAt(Start);
    EXPECT_EQ(one->Board.Hash, two->Board.Hash);
    EXPECT_EQ(ScratchHash(one->Board), one->Board.Hash);
    EXPECT_NE(CoreAt("4k3/8/8/8/8/8/8/4K1N1 w - -")->Board.Hash,
              CoreAt("4k3/8/8/8/8/8/8/4K1B1 w - -")->Board.Hash);
    InitKeys(); // a second call draws no new keys
    EXPECT_EQ(ScratchHash(one->Board), two->Board.Hash);
}
