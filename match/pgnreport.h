#pragma once
// The standings of games played anywhere: standard PGN files read, each game counted once, and the standings
// written as a tournament writes them.

#include "nuvobase/clsstring.h"
#include "nuvobase/clstsafeoutput.h"

#include <vector>

namespace nvoChess {

// Reads the files, counts each whole, decided game once (by its tags and moves), prints the table and writes
// the JSON to out. Files that cannot be read, games cut short and repeated games get a remark. False when no
// game was counted or the JSON could not be written.
bool WriteReport(const std::vector<nuvobase::clsString>& files, const nuvobase::clsString& out,
                 nuvobase::clsTSafeOutput& output);

} // namespace nvoChess
