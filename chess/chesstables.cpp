#include "chess/chesstables.h"

#include <mutex>

namespace nvoChess {

uint64_t Ray[9][64];
uint64_t RookLines[64];
uint64_t BishopLines[64];
uint64_t KingMoves[64];
uint64_t KnightMoves[64];
uint64_t PawnAttackers[2][64];
uint64_t KingZone[64];
uint64_t TopBitByte[256];
uint64_t TopGapByte[256];
uint64_t LowGapByte[256];

namespace {

// Rank and file steps of the rays 1 to 8; file 0 is the a-file.
constexpr int RaySteps[9][2] = {{0, 0}, {1, 0}, {0, 1}, {0, -1}, {-1, 0}, {1, 1}, {-1, 1}, {1, -1}, {-1, -1}};
constexpr int KnightSteps[8][2] = {{1, 2}, {2, 1}, {2, -1}, {1, -2}, {-1, -2}, {-2, -1}, {-2, 1}, {-1, 2}};

bool OnBoard(int rank, int file) {
    return rank >= 0 && rank < 8 && file >= 0 && file < 8;
}

// The square at rank and file, or 0 off the board.
uint64_t SquareAt(int rank, int file) {
    return OnBoard(rank, file) ? 1ULL << (rank * 8 + 7 - file) : 0;
}

void BuildSquareTables(int sq) {
    const int rank = sq / 8, file = 7 - sq % 8;
    for (int ray = 1; ray <= 8; ++ray) {
        uint64_t bits = 0;
        for (int r = rank + RaySteps[ray][0], f = file + RaySteps[ray][1]; OnBoard(r, f);
             r += RaySteps[ray][0], f += RaySteps[ray][1])
            bits |= SquareAt(r, f);
        Ray[ray][sq] = bits;
        Ray[AllRays][sq] |= bits;
        (ray <= 4 ? RookLines : BishopLines)[sq] |= bits;
        KingMoves[sq] |= SquareAt(rank + RaySteps[ray][0], file + RaySteps[ray][1]);
    }
    for (const auto& step : KnightSteps) KnightMoves[sq] |= SquareAt(rank + step[0], file + step[1]);
    for (int df = -1; df <= 1; df += 2) {
        PawnAttackers[0][sq] |= SquareAt(rank + 1, file + df);
        PawnAttackers[1][sq] |= SquareAt(rank - 1, file + df);
    }
    for (int dr = -2; dr <= 2; ++dr)
        for (int df = -2; df <= 2; ++df)
            if (dr * dr + df * df < 8) KingZone[sq] |= SquareAt(rank + dr, file + df);
}

void BuildByteTables(uint64_t b) {
    if (b == 0) return;
    const uint64_t top = 1ULL << (63 - __builtin_clzll(b)), low = b & (0 - b);
    const uint64_t belowTop = b ^ top, aboveLow = b ^ low;
    const uint64_t secondTop = belowTop ? 1ULL << (63 - __builtin_clzll(belowTop)) : 0;
    const uint64_t secondLow = aboveLow & (0 - aboveLow);
    TopBitByte[b] = top * EveryByte;
    TopGapByte[b] = (secondTop ? top - (secondTop << 1) : top - 1) * EveryByte;
    LowGapByte[b] = (secondLow ? secondLow - (low << 1) : 0xFF ^ ((low << 1) - 1)) * EveryByte;
}

void BuildTables() {
    for (int sq = 0; sq < 64; ++sq) BuildSquareTables(sq);
    for (uint64_t b = 0; b < 256; ++b) BuildByteTables(b);
}

} // namespace

void InitChessTables() {
    static std::once_flag built;
    std::call_once(built, BuildTables);
}

} // namespace nvoChess
