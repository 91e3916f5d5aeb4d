// Keys of positions. Hash, ScratchHash and the search key use random material that differs per run;
// BoardKey, the key of opening books, is the same in every run.
#pragma once

#include <cstdint>

#include "chess/clsboard.h"

namespace nvoChess {

// [square][piece code or word number - 2][colour]: the key of one man; the moves use the piece code as slot.
extern uint64_t RandomKeys[64][8][2];
extern uint64_t SideKeys[2];

// Fills RandomKeys and then SideKeys byte by byte with RandomBelow(256); later calls do nothing.
void InitKeys();

// Key of the men from scratch, also taking in the castling and en-passant bits that fall on a man of a
// colour. Stored in Hash and returned.
uint64_t ScratchHash(clsBoard& board);

// The transposition table's key of a position.
inline uint64_t SearchKey(const clsBoard& board) {
    return (board.EnPassant - board.CastleRights) ^ SideKeys[board.SideToMove] ^ board.Hash ^ board.Occupied;
}

// The book key: an unrolled xorshift over the board, independent of the random state.
uint64_t BoardKey(const clsBoard& board);

} // namespace nvoChess
