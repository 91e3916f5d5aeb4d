// Bit primitives of the bitboard code. A square is a one-bit word; these turn words into counts and indices.
// Two paths give identical results: the processor's population-count and bit-scan instructions, or plain
// arithmetic with byte tables for processors without them. UsePopCount picks the path for the whole process.
#pragma once

#include <array>
#include <cstdint>

namespace nvoChess {

// True when the processor has the population-count instruction; cleared by the -nopopcnt switch.
extern bool UsePopCount;

constexpr std::array<int32_t, 256> MakeBitsInByte() {
    std::array<int32_t, 256> table{};
    for (int b = 1; b < 256; ++b) table[b] = (b & 1) + table[b >> 1];
    return table;
}

// Set bits of each byte value.
inline constexpr std::array<int32_t, 256> BitsInByte = MakeBitsInByte();

// Whether this processor offers the population-count instruction.
bool ProcessorHasPopCount();

// Adds the eight bytes of x: the top byte of x * 0x0101010101010101. For squares on different files it gives
// the byte of the files touched.
inline uint64_t FoldBytes(uint64_t x) {
    return (x * 0x0101010101010101ULL) >> 56;
}

inline int32_t CountBitsByTable(uint64_t x) {
    int32_t n = 0;
    for (; x != 0; x >>= 8) n += BitsInByte[x & 0xFF];
    return n;
}

inline int32_t CountBits(uint64_t x) {
#if defined(__x86_64__)
    if (UsePopCount) {
        uint64_t n;
        // The instruction itself: the compiler may not assume it for the whole program.
        __asm__("popcntq %1, %0" : "=r"(n) : "r"(x));
        return static_cast<int32_t>(n);
    }
#endif
    return CountBitsByTable(x);
}

// The lowest one-bit of x, 0 for 0. The same two's-complement arithmetic on every processor.
inline uint64_t LowestBit(uint64_t x) {
    return x & (0 - x);
}

// The highest one-bit of x, 0 for 0.
inline uint64_t HighestBit(uint64_t x) {
    return x == 0 ? 0 : 0x8000000000000000ULL >> __builtin_clzll(x);
}

// Index of the lowest set bit; 0 for an empty word, so that table look-ups read square h1.
inline int32_t BitIndex(uint64_t x) {
    if (UsePopCount) return x == 0 ? 0 : __builtin_ctzll(x);
    return x == 0 ? 0 : CountBitsByTable(LowestBit(x) - 1);
}

} // namespace nvoChess
