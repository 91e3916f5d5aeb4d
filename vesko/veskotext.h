#pragma once
// Text in and out of the Vesko core: FEN, squares and moves in coordinates.
#include "vesko/veskoblock.h"

namespace nvoChess {

// Sets the root position from the FEN in Text. Any text is taken: unknown letters in
// the board take a square, and a text with too few fields keeps what it has.
void VeskoReadFen(VeskoBlock* block);

// Writes the root position to Text: board, side, "-" for the castling rights, and the
// en-passant square. Move clocks are not written.
void VeskoWriteFen(VeskoBlock* block);

// "e4" -> its bit; anything that is no square gives 0. Reads two characters.
uint64_t VeskoTextToSquare(const char* text);

// Writes the two characters of a one-bit square.
void VeskoSquareToText(uint64_t square, char* text);

// The coordinates of a move of `node`, with the letter of a promotion; at most 5
// characters, not terminated.
int VeskoMoveToText(const VeskoNode* node, const VeskoMove* move, char* text);

} // namespace nvoChess
