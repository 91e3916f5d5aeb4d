// Geometry of the board, built once before any engine exists and read-only afterwards. Squares are one-bit
// words with bit index rank * 8 + (7 - file): h1 is bit 0, a1 bit 7, a8 bit 63. A left shift by 8 goes one
// rank up, by 1 one file towards a.
#pragma once

#include <array>
#include <cstdint>

namespace nvoChess {

// Masks that recur.
constexpr uint64_t NotAFileForLeftShift = 0xFF7F7F7F7F7F7F7FULL;    // a1..a7 cleared (a8 falls off anyway)
constexpr uint64_t NotAFileAfterRightShift = 0x7F7F7F7F7F7F7F7FULL; // what a right shift wrapped into file a
constexpr uint64_t Rank2 = 0x000000000000FF00ULL;
constexpr uint64_t Rank7 = 0x00FF000000000000ULL;
constexpr uint64_t PromotionRanks = 0xFF000000000000FFULL;
constexpr uint64_t NotPromotionRanks = 0x00FFFFFFFFFFFF00ULL;
constexpr uint64_t EnPassantRanks = 0x0000FF0000FF0000ULL;  // ranks 3 and 6
constexpr uint64_t CastlingSquares = 0x8900000000000089ULL; // a1, e1, h1, a8, e8, h8
constexpr uint64_t EveryByte = 0x0101010101010101ULL;

// Ray numbers: 0 all eight joined; 1 up, 2 towards h, 3 towards a, 4 down, 5 up-h, 6 down-h, 7 up-a, 8
// down-a. The odd rays are those of rising bit index: their nearest square is the lowest bit.
enum eRay : int { AllRays = 0, RayUp, RayH, RayA, RayDown, RayUpH, RayDownH, RayUpA, RayDownA };

constexpr std::array<uint64_t, 64> MakeSquareBit() {
    std::array<uint64_t, 64> table{};
    for (int i = 0; i < 64; ++i) table[i] = 1ULL << i;
    return table;
}

// 1 + index of the highest set bit of a byte, 0 for 0: a folded square gives its file letter as 'i' - entry.
constexpr std::array<int32_t, 256> MakeFileOfByte() {
    std::array<int32_t, 256> table{};
    for (int b = 1; b < 256; ++b) table[b] = 1 + table[b >> 1];
    return table;
}

inline constexpr std::array<uint64_t, 64> SquareBit = MakeSquareBit();
inline constexpr std::array<int32_t, 256> FileOfByte = MakeFileOfByte();

extern uint64_t Ray[9][64];
extern uint64_t RookLines[64];   // rays 1 to 4
extern uint64_t BishopLines[64]; // rays 5 to 8
extern uint64_t KingMoves[64];
extern uint64_t KnightMoves[64];
// [0]: the two squares diagonally one rank up, [1]: one rank down. The enemy pawns there hit the square.
extern uint64_t PawnAttackers[2][64];
extern uint64_t KingZone[64]; // the 5x5 block without its corners, clipped at the edge
// Per byte value, each repeated in all eight bytes: the highest set bit; the bits strictly between the
// highest and the second highest (all below the highest if alone); the bits strictly between the lowest and
// the second lowest (all above the lowest if alone). All 0 for 0.
extern uint64_t TopBitByte[256];
extern uint64_t TopGapByte[256];
extern uint64_t LowGapByte[256];

// Builds the tables; later calls do nothing.
void InitChessTables();

} // namespace nvoChess
