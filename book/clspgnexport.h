#pragma once
// A game as standard PGN that any PGN reader takes: tags with backslash escapes, moves in standard
// notation with move numbers in lines of at most 79 characters, and the result token at the end.

#include "nuvobase/clsstring.h"
#include "nuvobase/clsstrings.h"

#include <cstdint>
#include <vector>

namespace nvoChess {

struct clsPgnExport {
    nuvobase::clsStrings Tags; // in the order they are written
    std::vector<nuvobase::clsString> SanMoves;
    int32_t FirstMoveNumber = 1;
    bool BlackMovesFirst = false;
    nuvobase::clsString Result = "*";

    // The game's text, lines ending in LF, closed by an empty line.
    nuvobase::clsString Text() const;
    // Appends text to the file in one write and flushes it, so that a reader never meets half a game.
    static bool AppendToFile(const nuvobase::clsString& path, const nuvobase::clsString& text);
};

} // namespace nvoChess
