#pragma once
// Moves of the Vesko core: generation, making, the legality test and the way back.
#include "vesko/veskotables.h"

namespace nvoChess {

// Prepares the check data of `node` and stores its pseudo-legal moves from its
// FirstMove on; the next node's FirstMove becomes the end of the list.
void VeskoGenerate(VeskoBlock* block, VeskoNode* node);

// Readies the guard records above the root and generates the root's moves.
void VeskoPrepareRoot(VeskoBlock* block);

// One step of the pawns of the side whose step is `pawnStep`, forwards or (negative
// `steps`) backwards.
inline uint64_t VeskoPawnShift(uint64_t bits, int64_t pawnStep, int steps) {
    const int64_t shift = pawnStep * steps;
    return shift > 0 ? bits << shift : bits >> -shift;
}

// The en-passant target that `node` may capture on is set by the node above it.
inline bool VeskoIsEnPassant(const VeskoNode* node, const VeskoMove* move) {
    return move->Piece == &node->Mine.Pawns && move->Victim && move->To == (node - 1)->EnPassant;
}

// Plays `move` on the halves of `node`; the node's EnPassant becomes the target the
// move leaves for the next node.
inline void VeskoMake(VeskoNode* node, const VeskoMove* move) {
    VeskoHalf& mine = node->Mine;
    VeskoHalf& theirs = node->Theirs;
    const uint64_t fromTo = move->From | move->To;
    *move->Piece ^= fromTo;
    mine.Occupied ^= fromTo;
    node->EnPassant = 0;
    if (move->Victim) {
        uint64_t captured = move->To;
        if (!(captured & theirs.Occupied)) captured = VeskoPawnShift(captured, node->PawnStep, -1);
        *move->Victim ^= captured;
        theirs.Occupied ^= captured;
    }
    if (move->Piece == &mine.Pawns) {
        if (move->Extra.NewPiece) {
            mine.Pawns ^= move->To;
            *move->Extra.NewPiece |= move->To;
        } else if (move->To == VeskoPawnShift(move->From, node->PawnStep, 2)) {
            node->EnPassant = VeskoPawnShift(move->From, node->PawnStep, 1);
        }
    } else if (move->Piece == &mine.King) {
        mine.Rooks ^= move->Extra.RookSquares;
        mine.Occupied ^= move->Extra.RookSquares;
    }
    mine.Castling &= ~fromTo;
    theirs.Castling &= ~fromTo;
    node->Material += move->Gain;
}

// Takes a move back: the halves and Material come again from the parent.
inline void VeskoUndo(VeskoNode* node) {
    const VeskoNode* parent = node - 1;
    node->Mine = parent->Theirs;
    node->Theirs = parent->Mine;
    node->Material = -parent->Material;
}

// After VeskoMake: whether the mover's king is safe. King moves, en-passant captures
// and every move at the root get a full attack test; other moves can only uncover
// the king along the line through their from-square.
inline bool VeskoLegal(const VeskoTables& tables, const VeskoNode* node, const VeskoMove* move) {
    const VeskoHalf& mine = node->Mine;
    const VeskoHalf& theirs = node->Theirs;
    const int king = VeskoSquareOf(mine.King);
    const uint64_t occupied = mine.Occupied | theirs.Occupied;
    if (node->Ply == 0 || move->Piece == &mine.King || VeskoIsEnPassant(node, move))
        return !VeskoAttackers(tables, king, theirs, occupied, node->PawnStep);
    return !VeskoSliderThrough(tables, king, VeskoSquareOf(move->From), occupied,
                               theirs.Rooks | theirs.Queens, theirs.Bishops | theirs.Queens);
}

// Steps down into `child`: the parent's position seen from the other side, with the
// alpha bound of the node two plies up, and its moves.
inline void VeskoEnter(VeskoBlock* block, VeskoNode* child) {
    const VeskoNode* parent = child - 1;
    child->Mine = parent->Theirs;
    child->Theirs = parent->Mine;
    child->Material = -parent->Material;
    child->Best = (child - 2)->Best;
    child->Flags = parent->Flags ^ VeskoBlackToMove;
    child->PawnStep = -parent->PawnStep;
    child->Ply = parent->Ply + 1;
    child->LegalCount = 0;
    VeskoGenerate(block, child);
}

} // namespace nvoChess
