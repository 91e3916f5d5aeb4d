// Moves of a polyglot book on a chess core: the legal move an entry stands for, and opening lines drawn
// from a book.
#pragma once

#include <cstdint>
#include <random>

#include "book/clspolyglotbook.h"
#include "nuvobase/clsstring.h"

namespace nvoChess {

class clsChessCore;
class clsMove;

// The legal move of the core's position that the code stands for, from a generation at the root; null
// when there is none.
const clsMove* FindPolyglotMove(clsChessCore& core, uint16_t code);

// A code as coordinate text, castling as the king's move onto its rook: "e2e4", "e1h1", "a7a8q".
nuvobase::clsString PolyglotMoveText(uint16_t code);

// A walk of up to plies moves through the book from the start position, each move drawn among the book
// moves of the position in proportion to its weight. It ends early where the book has no move of weight
// above 0, or where the drawn move is not legal. Returns the coordinate moves, each followed by a blank;
// the same generator state gives the same line.
nuvobase::clsString DrawBookLine(const clsPolyglotBook& book, clsChessCore& core, int plies,
                                 std::mt19937_64& generator);

} // namespace nvoChess
