#pragma once
// Attack and line tables of the Vesko core, and the questions asked of them.
#include "vesko/veskoblock.h"

#include <bit>

namespace nvoChess {

void VeskoBuildTables(VeskoTables& tables);

// The index of the lowest set bit; VeskoNoSquare for an empty word.
inline int VeskoSquareOf(uint64_t word) {
    return std::countr_zero(word);
}

inline uint64_t VeskoHighestBit(uint64_t word) {
    return uint64_t(1) << (63 - std::countl_zero(word));
}

// The squares strictly between two squares on a line; 0 when they share none.
inline uint64_t VeskoBetween(const VeskoTables& tables, int target, int source) {
    return tables.RookLine[target][source].Between | tables.BishopLine[target][source].Between;
}

// Looks from `source` through `target` along their common line and returns the first
// occupied square when it holds one of the sliders that move along that kind of line.
inline uint64_t VeskoSliderThrough(const VeskoTables& tables, int source, int target, uint64_t occupied,
                                   uint64_t rookLike, uint64_t bishopLike) {
    const uint64_t bit = tables.Bit[target];
    const VeskoLine* line;
    uint64_t sliders;
    if (tables.RookRays[source] & bit) {
        line = &tables.RookLine[target][source];
        sliders = rookLike;
    } else if (tables.BishopRays[source] & bit) {
        line = &tables.BishopLine[target][source];
        sliders = bishopLike;
    } else {
        return 0;
    }
    const uint64_t hit = (line->Between | bit | line->Behind) & occupied;
    if (!hit) return 0;
    // Along a line the bit index grows monotonically, so the nearest square is the
    // lowest bit when the line runs upwards and the highest when it runs down.
    return (target > source ? hit & -hit : VeskoHighestBit(hit)) & sliders;
}

// The men of `enemy` that attack `square` with the board `occupied`; `pawnStep` is the
// step of the defending side's pawns.
inline uint64_t VeskoAttackers(const VeskoTables& tables, int square, const VeskoHalf& enemy,
                               uint64_t occupied, int64_t pawnStep) {
    uint64_t attackers = (tables.KnightAttacks[square] & enemy.Knights) |
                         (tables.KingAttacks[square] & enemy.King) |
                         (tables.PawnSides[square + pawnStep + 8] & enemy.Pawns);
    for (uint64_t sliders = tables.RookRays[square] & (enemy.Rooks | enemy.Queens); sliders;
         sliders &= sliders - 1) {
        const int from = VeskoSquareOf(sliders);
        if (!(tables.RookLine[from][square].Between & occupied)) attackers |= tables.Bit[from];
    }
    for (uint64_t sliders = tables.BishopRays[square] & (enemy.Bishops | enemy.Queens); sliders;
         sliders &= sliders - 1) {
        const int from = VeskoSquareOf(sliders);
        if (!(tables.BishopLine[from][square].Between & occupied)) attackers |= tables.Bit[from];
    }
    return attackers;
}

} // namespace nvoChess
