#include <gtest/gtest.h>

#include <bit>

#include "chess/bits.h"
#include "chess/random.h"

using namespace nvoChess;

// The ray, leaper, byte and king-zone tables are checked through the perft counts and the evaluation's
// values.
TEST(ChessBits, BothPathsCountAndIndexAlikeAndXorShiftSequence) {
    RandomSeed(12345, 678);
    std::vector<uint64_t> words = {0, 1, 0x8000000000000000ULL, ~0ULL, 0xFFFF00000000FFFFULL};
    for (int i = 0; i < 2000; ++i) words.push_back(RandomNext() & RandomNext());
    for (const bool popcount : {false, true}) {
        if (popcount && !ProcessorHasPopCount()) continue;
        UsePopCount = popcount;
        for (const uint64_t w : words) {
            ASSERT_EQ(CountBits(w), std::popcount(w)) << std::hex << w;
            ASSERT_EQ(BitIndex(w), w == 0 ? 0 : std::countr_zero(w)) << std::hex << w;
            ASSERT_EQ(LowestBit(w), w == 0 ? 0 : 1ULL << std::countr_zero(w));
            ASSERT_EQ(HighestBit(w), w == 0 ? 0 : 1ULL << (63 - std::countl_zero(w)));
        }
    }
    UsePopCount = ProcessorHasPopCount();

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
}
