// Keys and move codes of polyglot opening books (.bin), the book format that chess GUIs, engines and
// tournament managers share.
#pragma once

#include <cstdint>

#include "chess/clsboard.h"
#include "chess/clsmove.h"

namespace nvoChess {

constexpr int PolyglotRandomCount = 781;
extern const uint64_t PolyglotRandom[PolyglotRandomCount];

// The key of the position. En passant counts only when a pawn of the side to move stands ready to take.
uint64_t PolyglotKey(const clsBoard& board);

// A move as the format codes it: to file, to rank, from file, from rank in three bits each from the lowest,
// then the promotion piece (1 knight ... 4 queen). Castling is the king taking its own rook: e1h1, e1a1.
uint16_t PolyglotMove(const clsMove& move);

// Whether a code can be a chess move at all: a knight jump or a queen's line, and a promotion only as a
// pawn's step onto the last rank. A book holding other codes is damaged.
bool IsPolyglotMoveShape(uint16_t code);

} // namespace nvoChess
