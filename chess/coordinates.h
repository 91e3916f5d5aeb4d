// Squares and moves as coordinate text: "e2", "e2e4", "e7e8q" or "e7e8=q".
#pragma once

#include <cstdint>

#include "nuvobase/clsstring.h"

namespace nvoChess {

// File letter and rank digit of a one-bit square word into out[0] and out[1].
void SquareToChars(uint64_t bit, char* out);
nuvobase::clsString SquareToText(uint64_t bit);
// The square of a file letter "a".."h" and a rank digit "1".."8" at the start of text; 0 for anything else.
uint64_t TextToSquare(const char* text);

// A coordinate move: from square, target square, and the promotion letter (the fifth character, or the sixth
// behind a "="); missing squares are 0 and a missing letter is the NUL character.
struct clsCoordinateMove {
    uint64_t From = 0;
    uint64_t To = 0;
    char Promotion = 0;
};
clsCoordinateMove ParseCoordinateMove(const nuvobase::clsString& text);

} // namespace nvoChess
