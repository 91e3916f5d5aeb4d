// One move of a generated list: what moves, where, what it takes, and what the search found out about it.
#pragma once

#include <cstdint>

namespace nvoChess {

// Flags of clsMove.
constexpr uint32_t MovePieceMask = 0x0000000F;     // moving piece code
constexpr uint32_t MoveCapturedMask = 0x000000F0;  // captured piece code
constexpr uint32_t MovePromotionMask = 0x00000F00; // promotion piece code
constexpr uint32_t MoveCastling = 0x00010000;
constexpr uint32_t MoveIllegal = 0x00020000; // also: the best-move record holds no move
constexpr uint32_t MoveLoses = 0x00040000;
constexpr uint32_t MoveWins = 0x00080000;
constexpr uint32_t MoveRefuted = 0x00100000;
constexpr uint32_t MoveDoublePush = 0x00200000;
constexpr uint32_t MoveEnPassant = 0x00400000;
constexpr int MoveCapturedShift = 4, MovePromotionShift = 8, MoveForcedShift = 24;

// What a promotion gains, the captured man not included.
constexpr int16_t QueenPromotionValue = 835, KnightPromotionValue = 198, BishopPromotionValue = 198,
                  RookPromotionValue = 395;

class clsMove {
public:
    uint32_t Flags = 0;
    int16_t Value = 0; // change of Material the move brings, from the mover's view
    int16_t Score = 0; // search result, from the mover's view
    uint64_t From = 0;
    uint64_t To = 0;
    // En passant: the captured pawn; castling: the rook's origin and target. Otherwise left as it was.
    uint64_t Extra = 0;

    int Piece() const { return Flags & MovePieceMask; }
    int Captured() const { return (Flags & MoveCapturedMask) >> MoveCapturedShift; }
    int Promotion() const { return (Flags & MovePromotionMask) >> MovePromotionShift; }
};

} // namespace nvoChess
