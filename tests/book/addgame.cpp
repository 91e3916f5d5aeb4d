// Games counted into the book, each position for the side that moved into it.
#include <gtest/gtest.h>

#include <memory>

#include "book/clsbook.h"
#include "chess/clschesscore.h"
#include "chess/keys.h"

using namespace nvoChess;
using nuvobase::clsString;

namespace {

uint64_t KeyAfter(clsChessCore& core, std::initializer_list<const char*> moves) {
    core.SetPosition(clsString());
    for (const char* move : moves) EXPECT_TRUE(core.MakeMoveText(clsString(move))) << move;
    return BoardKey(core.Board);
}

void ExpectCounts(const clsBook& book, uint64_t key, uint32_t wins, uint32_t losses, uint32_t draws) {
    const clsBookEntry* entry = book.Find(key);
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(entry->Wins, wins);
    EXPECT_EQ(entry->Losses, losses);
    EXPECT_EQ(entry->Draws, draws);
}

} // namespace

TEST(BookAddGame, WinsLossesAndDraws) {
    auto core = std::make_unique<clsChessCore>();
    const uint64_t afterWhite = KeyAfter(*core, {"e2e4"}), afterBlack = KeyAfter(*core, {"e2e4", "e7e5"});
    clsBook book;
    EXPECT_EQ(book.AddGame(*core, clsString("e2e4 e7e5 "), 2, 0), 2); // white wins
    ExpectCounts(book, afterWhite, 1, 0, 0);
    ExpectCounts(book, afterBlack, 0, 1, 0);
    EXPECT_EQ(book.AddGame(*core, clsString("e2e4 e7e5 "), 0, 2), 2); // black wins
    ExpectCounts(book, afterWhite, 1, 1, 0);
    ExpectCounts(book, afterBlack, 1, 1, 0);
    EXPECT_EQ(book.AddGame(*core, clsString("e2e4 e7e5 "), 1, 1), 2); // equal codes: a draw
    ExpectCounts(book, afterWhite, 1, 1, 1);
    ExpectCounts(book, afterBlack, 1, 1, 1);
}

TEST(BookAddGame, TranspositionsShareAnEntryAndAnUnplayableMoveEndsTheGame) {
    auto core = std::make_unique<clsChessCore>();
    clsBook book;
    EXPECT_EQ(book.AddGame(*core, clsString("g1f3 g8f6 b1c3 "), 2, 0), 3);
    EXPECT_EQ(book.AddGame(*core, clsString("b1c3 g8f6 g1f3 "), 2, 0), 5);
    ExpectCounts(book, KeyAfter(*core, {"g1f3", "g8f6", "b1c3"}), 2, 0, 0);
    EXPECT_EQ(book.AddGame(*core, clsString("d2d4 d2d4 c2c4 "), 2, 0), 6);
    ExpectCounts(book, KeyAfter(*core, {"d2d4"}), 1, 0, 0);
}
