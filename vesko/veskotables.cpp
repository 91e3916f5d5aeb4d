#include "vesko/veskotables.h"

#include <cstring>

namespace nvoChess {

namespace {

struct Step {
    int Rank, File;
};

constexpr Step RookSteps[4] = {{1, 0}, {-1, 0}, {0, 1}, {0, -1}};
constexpr Step BishopSteps[4] = {{1, 1}, {1, -1}, {-1, 1}, {-1, -1}};
constexpr Step KnightSteps[8] = {{1, 2}, {2, 1}, {2, -1}, {1, -2}, {-1, -2}, {-2, -1}, {-2, 1}, {-1, 2}};
constexpr Step KingSteps[8] = {{1, 0}, {1, 1}, {0, 1}, {-1, 1}, {-1, 0}, {-1, -1}, {0, -1}, {1, -1}};

bool OnBoard(int rank, int file) {
    return rank >= 0 && rank < 8 && file >= 0 && file < 8;
}
int SquareAt(int rank, int file) {
    return rank * 8 + 7 - file;
}
uint64_t BitAt(int rank, int file) {
    return uint64_t(1) << SquareAt(rank, file);
}

uint64_t Jumps(int rank, int file, const Step (&steps)[8]) {
    uint64_t word = 0;
    for (const Step& step : steps)
        if (OnBoard(rank + step.Rank, file + step.File)) word |= BitAt(rank + step.Rank, file + step.File);
    return word;
}

// Walks the four lines of one kind from a square: fills the line table for every square
// met and returns all of them.
uint64_t Lines(int rank, int file, const Step (&steps)[4], VeskoLine (&table)[65][65]) {
    const int source = SquareAt(rank, file);
    uint64_t all = 0;
    for (const Step& step : steps) {
        uint64_t ray = 0;
        for (int r = rank + step.Rank, f = file + step.File; OnBoard(r, f); r += step.Rank, f += step.File)
            ray |= BitAt(r, f);
        uint64_t between = 0;
        for (int r = rank + step.Rank, f = file + step.File; OnBoard(r, f); r += step.Rank, f += step.File) {
            const uint64_t bit = BitAt(r, f);
            ray &= ~bit;
            table[SquareAt(r, f)][source] = {between, ray};
            between |= bit;
        }
        all |= between;
    }
    return all;
}

} // namespace

void VeskoBuildTables(VeskoTables& tables) {
    std::memset(&tables, 0, sizeof tables);
    for (int rank = 0; rank < 8; ++rank) {
        for (int file = 0; file < 8; ++file) {
            const int square = SquareAt(rank, file);
            tables.Bit[square] = BitAt(rank, file);
            tables.KingAttacks[square] = Jumps(rank, file, KingSteps);
            tables.KnightAttacks[square] = Jumps(rank, file, KnightSteps);
            tables.RookRays[square] = Lines(rank, file, RookSteps, tables.RookLine);
            tables.BishopRays[square] = Lines(rank, file, BishopSteps, tables.BishopLine);
            tables.QueenRays[square] = tables.RookRays[square] | tables.BishopRays[square];
            uint64_t sides = 0;
            if (file > 0) sides |= BitAt(rank, file - 1);
            if (file < 7) sides |= BitAt(rank, file + 1);
            tables.PawnSides[square + 8] = sides;
        }
    }
}

} // namespace nvoChess
