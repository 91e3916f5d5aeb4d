#include <gtest/gtest.h>

#include <bit>
#include <cstring>

#include "chess/bits.h"
#include "chess/chesstables.h"
#include "chess/keys.h"
#include "chess/random.h"
#include "chesstest.h"

using namespace nvoChess;
using nvoChessTest::Square;

namespace {

// Restores the processor's choice when a test switches the path.
struct PopCountPath {
    explicit PopCountPath(bool on) { UsePopCount = on; }
    ~PopCountPath() { UsePopCount = ProcessorHasPopCount(); }
};

uint64_t Squares(std::initializer_list<const char*> names) {
    uint64_t bits = 0;
    for (const char* name : names) bits |= Square(name);
    return bits;
}

} // namespace

TEST(ChessBits, BothPathsCountAndIndexAlike) {
    RandomSeed(12345, 678);
    std::vector<uint64_t> words = {0, 1, 0x8000000000000000ULL, ~0ULL, 0xFFFF00000000FFFFULL};
    for (int i = 0; i < 2000; ++i) words.push_back(RandomNext() & RandomNext());
    for (const bool popcount : {false, true}) {
        if (popcount && !ProcessorHasPopCount()) continue;
        PopCountPath path(popcount);
        for (const uint64_t w : words) {
            ASSERT_EQ(CountBits(w), std::popcount(w)) << std::hex << w;
            ASSERT_EQ(BitIndex(w), w == 0 ? 0 : std::countr_zero(w)) << std::hex << w;
            ASSERT_EQ(LowestBit(w), w == 0 ? 0 : 1ULL << std::countr_zero(w));
            ASSERT_EQ(HighestBit(w), w == 0 ? 0 : 1ULL << (63 - std::countl_zero(w)));
        }
    }
    EXPECT_EQ(FoldBytes(0x0101010101010101ULL), 8u);
    EXPECT_EQ(FoldBytes(Square("a5") | Square("c3") | Square("h1")), 0x80u + 0x20u + 0x01u);
    EXPECT_EQ('i' - FileOfByte[FoldBytes(Square("a5"))], 'a');
    EXPECT_EQ('i' - FileOfByte[FoldBytes(Square("h7"))], 'h');
}

TEST(ChessTables, Geometry) {
    InitChessTables();
    EXPECT_EQ(Ray[RayUp][0], 0x0101010101010100ULL); // h1 up the h-file
    EXPECT_EQ(Ray[RayA][0], 0xFEULL);                // h1 along the first rank
    EXPECT_EQ(Ray[RayDownA][BitIndex(Square("h8"))], Squares({"g7", "f6", "e5", "d4", "c3", "b2", "a1"}));
    int knightMoves = 0, kingMoves = 0;
    for (int sq = 0; sq < 64; ++sq) {
        uint64_t all = 0;
        for (int ray = 1; ray <= 8; ++ray) {
            all |= Ray[ray][sq];
            // Odd rays rise in bit index, even rays fall.
            const uint64_t below = (1ULL << sq) - 1;
            EXPECT_EQ(Ray[ray][sq] & (ray & 1 ? below | (1ULL << sq) : ~below), 0u) << ray << " " << sq;
        }
        EXPECT_EQ(Ray[AllRays][sq], all);
        EXPECT_EQ(RookLines[sq] | BishopLines[sq], all);
        EXPECT_EQ(RookLines[sq] & BishopLines[sq], 0u);
        knightMoves += std::popcount(KnightMoves[sq]);
        kingMoves += std::popcount(KingMoves[sq]);
    }
    // The numbers of knight and king moves on an empty board.
    EXPECT_EQ(knightMoves, 336);
    EXPECT_EQ(kingMoves, 420);
    EXPECT_EQ(PawnAttackers[0][BitIndex(Square("e4"))], Squares({"d5", "f5"}));
    EXPECT_EQ(PawnAttackers[1][BitIndex(Square("e4"))], Squares({"d3", "f3"}));
    EXPECT_EQ(PawnAttackers[0][BitIndex(Square("a2"))], Square("b3"));
    EXPECT_EQ(PawnAttackers[1][BitIndex(Square("h8"))], Square("g7"));
    EXPECT_EQ(KingZone[BitIndex(Square("a1"))], Squares({"a1", "b1", "c1", "a2", "b2", "c2", "a3", "b3"}));
    EXPECT_EQ(std::popcount(KingZone[BitIndex(Square("e4"))]), 21);
    EXPECT_FALSE(KingZone[BitIndex(Square("e4"))] & Squares({"c2", "g2", "c6", "g6"}));
}

TEST(ChessTables, ByteTables) {
    InitChessTables();
    EXPECT_EQ(TopGapByte[0x80], 0x7F7F7F7F7F7F7F7FULL);
    EXPECT_EQ(LowGapByte[0x01], 0xFEFEFEFEFEFEFEFEULL);
    EXPECT_EQ(TopGapByte[0x81], 0x7E7E7E7E7E7E7E7EULL);
    EXPECT_EQ(TopGapByte[0x94], 0x6060606060606060ULL); // between 0x80 and 0x10
    EXPECT_EQ(LowGapByte[0x94], 0x0808080808080808ULL); // between 0x04 and 0x10
    EXPECT_EQ(TopBitByte[0x35], 0x2020202020202020ULL);
    EXPECT_EQ(TopBitByte[0] | TopGapByte[0] | LowGapByte[0], 0u);
    for (int b = 0; b < 256; ++b) EXPECT_EQ(BitsInByte[b], std::popcount(static_cast<unsigned>(b)));

    // A second call builds nothing anew.
    uint64_t before[64];
    std::memcpy(before, KnightMoves, sizeof(before));
    InitChessTables();
    EXPECT_EQ(std::memcmp(before, KnightMoves, sizeof(before)), 0);
}

TEST(ChessRandom, XorShiftSequence) {
    // Worked by hand: x = 1, y = 2 gives S1 = 0x800043 and the draw S1 + y.
    RandomSeed(1, 2);
    EXPECT_EQ(RandomNext(), 0x800045u);
    EXPECT_EQ(RandomNext(), 0x2000104u);
    RandomSeed(1, 2);
    EXPECT_EQ(RandomBelow(1000), 0x800045 % 1000);
    // x = 0, y = 0xFFFFFFFE: S1 = y ^ (y >> 26) = 0xFFFFFFC1, the draw 0x1FFFFFFBF, whose low 32 bits read
    // as signed are -65.
    RandomSeed(0, 0xFFFFFFFEu);
    EXPECT_EQ(RandomBelow(100), 65);
    EXPECT_EQ(RandomBelow(0), 0);
    bool seen[10] = {};
    for (int i = 0; i < 1000; ++i) {
        const int r = RandomBelow(10);
        ASSERT_GE(r, 0);
        ASSERT_LT(r, 10);
        seen[r] = true;
    }
    for (const bool s : seen) EXPECT_TRUE(s);
}
