#include "chess/coordinates.h"

#include "chess/bits.h"
#include "chess/chesstables.h"

namespace nvoChess {

void SquareToChars(uint64_t bit, char* out) {
    out[0] = static_cast<char>('i' - FileOfByte[FoldBytes(bit)]);
    out[1] = static_cast<char>('1' + BitIndex(bit) / 8);
}

nuvobase::clsString SquareToText(uint64_t bit) {
    char text[3] = {};
    SquareToChars(bit, text);
    return nuvobase::clsString(text);
}

uint64_t TextToSquare(const char* text) {
    if (text[0] < 'a' || text[0] > 'h' || text[1] < '1' || text[1] > '8') return 0;
    return 1ULL << ((text[1] - '1') * 8 + ('h' - text[0]));
}

clsCoordinateMove ParseCoordinateMove(const nuvobase::clsString& text) {
    clsCoordinateMove move;
    move.From = TextToSquare(text.At(0));
    move.To = text.Size() < 4 ? 0 : TextToSquare(text.At(2));
    move.Promotion = *text.At(4) == '=' ? *text.At(5) : *text.At(4);
    return move;
}

} // namespace nvoChess
