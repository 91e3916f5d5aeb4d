// The position: one flat record of bitboards seen from the side to move, copied whole at every node of a
// search. Nothing in it may point anywhere or own anything.
#pragma once

#include <cstdint>

namespace nvoChess {

// Piece codes; also the numbers of their words in clsBoard.
enum ePiece : int {
    PieceNone = 0,
    PiecePawn = 2,
    PieceKnight = 3,
    PieceBishop = 4,
    PieceRook = 5,
    PieceQueen = 6,
    PieceKing = 7
};

// Material in the engine's unit of 105 per pawn.
constexpr int32_t PawnMaterial = 105, KnightMaterial = 303, BishopMaterial = 303, RookMaterial = 500,
                  QueenMaterial = 940, KingMaterial = 5000;

// Castling rights: the king's square and the rook's square of each right.
constexpr uint64_t WhiteKingSide = 0x09ULL, WhiteQueenSide = 0x88ULL;
constexpr uint64_t BlackKingSide = 0x0900000000000000ULL, BlackQueenSide = 0x8800000000000000ULL;

class clsBoard {
public:
    uint64_t Mine = 0;          // 0: the men of the side to move
    uint64_t Theirs = 0;        // 1: the men of the other side
    uint64_t Pawns = 0;         // 2
    uint64_t Knights = 0;       // 3
    uint64_t Bishops = 0;       // 4
    uint64_t Rooks = 0;         // 5
    uint64_t Queens = 0;        // 6
    uint64_t Kings = 0;         // 7
    uint64_t CastleRights = 0;  // 8: squares still entitled, see WhiteKingSide...
    uint64_t EnPassant = 0;     // 9: the square passed over by the double push of a played move
    uint64_t Occupied = 0;      // 10: Mine | Theirs
    uint64_t Hash = 0;          // 11: key of the men
    int32_t SideToMove = 0;     // 0 white, 1 black
    int32_t Material = 0;       // balance from the view of Mine
    int32_t PieceCount[2] = {}; // men other than pawns of white, of black; the king counts
    int32_t PawnCount[2] = {};  // pawns of white, of black

    // Word 0 to 11 by number; a move's piece field addresses its word this way.
    uint64_t& Word(int index) { return this->*WordMember[index]; }
    uint64_t Word(int index) const { return this->*WordMember[index]; }

    // The men of white (colour 0) or black (colour 1).
    uint64_t MenOf(int colour) const { return colour == SideToMove ? Mine : Theirs; }

private:
    static constexpr uint64_t clsBoard::*WordMember[12] = {
        &clsBoard::Mine,         &clsBoard::Theirs,    &clsBoard::Pawns,    &clsBoard::Knights,
        &clsBoard::Bishops,      &clsBoard::Rooks,     &clsBoard::Queens,   &clsBoard::Kings,
        &clsBoard::CastleRights, &clsBoard::EnPassant, &clsBoard::Occupied, &clsBoard::Hash};
};

} // namespace nvoChess
