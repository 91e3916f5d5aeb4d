// What a slider sees along one ray: the nearest man on it, and the empty squares before that man. Both the
// move generator and the legal-move counter of perft read rays through these, so both agree square by square.
#pragma once

#include <cstdint>

#include "chess/bits.h"
#include "chess/chesstables.h"

namespace nvoChess {

// The nearest occupied square on ray R from sq, 0 if the ray is free.
template <int R> inline uint64_t NearestOnRay(int sq, uint64_t occupied) {
    const uint64_t blockers = Ray[R][sq] & occupied;
    if constexpr (R == RayUp || R == RayA || R == RayUpA) return LowestBit(blockers);
    if constexpr (R == RayDown) return HighestBit(blockers);
    // The remaining rays are nearest on the file byte of their fold: towards a the lowest file bit, towards h
    // the highest.
    if constexpr (R == RayDownA) return (LowestBit(FoldBytes(blockers)) * EveryByte) & blockers;
    return TopBitByte[FoldBytes(blockers)] & blockers;
}

// The empty squares on ray R from the man on sq (bit piece) up to the nearest occupied one.
template <int R> inline uint64_t FreeOnRay(int sq, uint64_t piece, uint64_t occupied) {
    const uint64_t ray = Ray[R][sq], free = ray & ~occupied;
    if constexpr (R == RayH || R == RayA || R == RayUp || R == RayDown) {
        const uint64_t b = NearestOnRay<R>(sq, occupied);
        if (b == 0) return free;
        if constexpr (R == RayH) return free & (b * 510); // the squares above b on the rank
        if constexpr (R == RayA) return b - 2 * piece;    // strictly between the two
        if constexpr (R == RayUp) return free & ~(b * EveryByte);
        return free & (b * (EveryByte << 8));
    }
    // Diagonals: the gap on the fold between the man's own file and the file of the nearest blocker.
    const uint64_t fold = FoldBytes((ray & occupied) | piece);
    if constexpr (R == RayDownA || R == RayUpA) return LowGapByte[fold] & free;
    return TopGapByte[fold] & free;
}

// Every square the man on sq reaches along ray R: the free ones and the nearest occupied one.
template <int R> inline uint64_t AttacksOnRay(int sq, uint64_t piece, uint64_t occupied) {
    return FreeOnRay<R>(sq, piece, occupied) | NearestOnRay<R>(sq, occupied);
}

} // namespace nvoChess
