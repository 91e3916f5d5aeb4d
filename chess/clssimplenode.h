// One ply of the search's node array: the node's slice of the move pool, the generator's state, and the
// position as it was when the node was entered.
#pragma once

#include <cstdint>

#include "chess/clsboard.h"
#include "chess/clsmove.h"

namespace nvoChess {

struct clsTT;

// Values of the search, 105 to a pawn, from the view of the side to move.
constexpr int32_t NoValue = -15000;    // no value yet
constexpr int32_t MatedValue = -10000; // the side to move is mated
constexpr int32_t DrawValue = -52;     // stalemate, bare kings, a played position
constexpr int32_t WonThreshold = 5000; // a forced result from here on

class clsSimpleNode {
public:
    clsMove* Moves = nullptr;   // first record of the list
    clsMove* CurMove = nullptr; // the record being tried; null before generation
    uint64_t PawnKey = 0;       // Pawns that PawnScore belongs to; 1 means none
    uint64_t SecondRank = 0;    // of the node's mover
    uint64_t SeventhRank = 0;
    uint64_t KingBit = 0; // the mover's king
    uint64_t PinLines =
        0;            // the king and the lines on which an enemy slider stands; moves from here are tested
    uint64_t Key = 0; // search key of the position
    clsTT* TTEntry = nullptr;
    bool InCheck = false;
    int32_t Best = NoValue;
    int32_t PawnScore = 0;
    int32_t MoveCount = 0;
    int32_t Ply = 0;
    int32_t LegalCount = 0;
    int32_t Stage = 0;
    clsBoard SavedBoard;

    // The list ends where the next node's list begins. Not available for the last node of the array.
    clsMove*& End() { return (this + 1)->Moves; }
    clsMove* End() const { return (this + 1)->Moves; }
};

} // namespace nvoChess
