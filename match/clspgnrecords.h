#pragma once
// The games of standard PGN files as standings count them and a resumed tournament keeps them: tags,
// move text and result of each game, whether it is whole, and a key by which the same game read twice is
// known.

#include "book/clsgame.h"
#include "match/clsstandings.h"
#include "nuvobase/clsstring.h"

#include <vector>

namespace nvoChess {

struct clsPgnRecord {
    clsGame Game;                 // the tags and the result word
    nuvobase::clsString Moves;    // the move text on one line
    nuvobase::clsString TagLines; // as read, each line ending in LF
    nuvobase::clsString MoveLines;

    // The move text ends with a result token: the game was written to its end.
    bool IsWhole() const;
    // A win or a draw.
    bool IsDecided() const;
    // The tags and the moves: the same game in two files, or twice in one, has the same key.
    nuvobase::clsString Key() const;
    // The game as the standings count it; the Round tag is its pair.
    clsGameOutcome Outcome() const;
    // A number tag such as "Round" or "GameId"; 0 when absent or no number.
    int32_t NumberTag(const char* name) const;
    // The game as standard PGN: tags, an empty line, the moves and an empty line, lines ending in LF.
    nuvobase::clsString PgnText() const;
};

// Appends the games of the file to records; false when the file cannot be read.
bool ReadPgnRecords(const nuvobase::clsString& file, std::vector<clsPgnRecord>& records);

} // namespace nvoChess
