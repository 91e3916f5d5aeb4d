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
    const auto a = AfterMoves({"g1f3", "g8f6", "b1c3", "b8c6"});
    const auto b = AfterMoves({"b1c3", "b8c6", "g1f3", "g8f6"});
    const auto back = AfterMoves({"g1f3", "g8f6", "f3g1", "f6g8"});
    EXPECT_EQ(BoardKey(a->Board), BoardKey(b->Board));
    EXPECT_EQ(ScratchHash(a->Board), ScratchHash(b->Board));
    EXPECT_EQ(BoardKey(back->Board), start);
    EXPECT_EQ(ScratchHash(back->Board), startHash);
    EXPECT_EQ(SearchKey(back->Board), SearchKey(CoreAt(Start)->Board));
}
