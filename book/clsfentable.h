// The position table of a PGN file: for every position met before a move, how the games that passed
// through it ended. Positions whose texts differ only in letter case count as one, under the text met first.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "nuvobase/clsstring.h"

namespace nvoChess {

class clsFENResult {
public:
    int32_t WhiteWins = 0;
    int32_t Draws = 0;
    int32_t BlackWins = 0;
    int32_t Unfinished = 0;
};

class clsFENTable {
public:
    // Counts one game through the position by its result word: white won, black won, a draw or an aborted
    // game; any other word counts nowhere.
    void Add(const nuvobase::clsString& fen, uint32_t code);
    void Clear();
    int Count() const { return int(Results.size()); }
    // One line per position, in ascending order of the text ignoring case: white wins, draws and black wins,
    // then the text, with tabs between and CR LF behind. Replaces the file; false if it cannot be written.
    bool Write(const nuvobase::clsString& file) const;

private:
    struct clsPosition {
        nuvobase::clsString Fen;
        clsFENResult Result;
    };

    std::unordered_map<std::string, size_t> IndexOfFolded; // lower-case text -> index in Results
    std::vector<clsPosition> Results;
};

} // namespace nvoChess
