// A PGN file read into an opening book: the file is cut into games, each game is replayed on a chess core,
// and every position of its main line goes into the book; on request also into a table of positions
// written beside the file.
#pragma once

#include "book/clsbook.h"
#include "book/clsfentable.h"
#include "nuvobase/clsstring.h"

#include <functional>

namespace nvoChess {

class clsChessCore;
class clsPlyListener;

// Cuts a PGN file into games and replays each on the core, for the listener; returns the number of games,
// 0 for a file that cannot be read. maxPlies 0 reads whole games; fens, when given, counts the positions.
int ReadPgnGames(const nuvobase::clsString& file, clsChessCore& core, int maxPlies, clsFENTable* fens,
                 clsPlyListener& listener);

class clsPGNFile {
public:
    clsFENTable Fens; // the positions of the last Load
    clsBook Book;     // grows over every Load

    clsPGNFile() = default;
    virtual ~clsPGNFile() = default;
    clsPGNFile(const clsPGNFile&) = delete;
    clsPGNFile& operator=(const clsPGNFile&) = delete;

    // Reads the games of the file on the core into Book and returns how many there were; a file that cannot
    // be read gives 0. maxPlies 0 reads whole games. With extractFen the position table goes to the file's
    // name with the extension "txt".
    int Load(const nuvobase::clsString& file, clsChessCore& core, int maxPlies, bool extractFen);
    // Cuts the file into the texts of its games, tags and moves, and hands each to onGame in file order.
    // False when the file cannot be read.
    static bool ForEachGame(const nuvobase::clsString& file,
                            const std::function<void(const nuvobase::clsString&)>& onGame);
};

} // namespace nvoChess
