#include <gtest/gtest.h>

#include <bit>
#include <cstring>

#include "chess/bits.h"
#include "chess/chesstables.h"
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

// The ray, leaper and byte tables drive the move generator and are checked through the perft counts; the
// evaluation reads the king zones and the bit counts of bytes.
TEST(ChessTables, KingZonesAndByteCounts) {
    InitChessTables();
    EXPECT_EQ(KingZone[BitIndex(Square("a1"))], Squares({"a1", "b1", "c1", "a2", "b2", "c2", "a3", "b3"}));
    EXPECT_EQ(std::popcount(KingZone[BitIndex(Square("e4"))]), 21);
    EXPECT_FALSE(KingZone[BitIndex(Square("e4"))] & Squares({"c2", "g2", "c6", "g6"}));
    for (int b = 0; b < 256; ++b) EXPECT_EQ(BitsInByte[b], std::popcount(static_cast<unsigned>(b)));

    // A second call builds nothing anew.
    uint64_t before[64];
    std::memcpy(before, KingZone, sizeof(before));
    InitChessTables();
    EXPECT_EQ(std::memcmp(before, KingZone, sizeof(before)), 0);
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
