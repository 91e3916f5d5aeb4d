// The console commands that build, merge and rewrite opening books.
#pragma once

#include "app/clschessapplication.h"

namespace nvoChess {

// \buildbooks path [moves_count [type]]: a book beside every PGN file below path.
void BuildBooks(clsChessApplication& app, const clsString& arguments);
// \mergebooks books_path new_book [limit]: every book below books_path joined into new_book.
void MergeBooks(clsChessApplication& app, const clsString& arguments);
// \cvbooks: every book below the folder "pgn" saved, loaded and saved again, and the two copies compared.
void ConvertBooks(clsChessApplication& app, const clsString& arguments);

} // namespace nvoChess
