// The replay of a game for a book, shared by the book's own AddGame and by the batches that build books from
// whole files.
#pragma once

#include <cstdint>

#include "chess/clschesscore.h"
#include "chess/keys.h"
#include "nuvobase/clsstring.h"

namespace nvoChess {

// How one position of a game counts for the side that played the move into it.
enum class BookOutcome : uint8_t { Win, Loss, Draw };

// Plays coordinate moves, each followed by a blank, from the start position and hands visit the key of every
// position reached with its outcome for the side that moved into it: result 2 is a win of white, result equal
// to drawCode a draw for both. The game ends at a move that cannot be played.
template <class Visit>
void ReplayBookGame(clsChessCore& core, const nuvobase::clsString& moves, int result, int drawCode,
                    Visit&& visit) {
    core.SetPosition(nuvobase::clsString());
    const bool drawn = result == drawCode;
    bool won = result == 2;
    for (int position = 0; position >= 0;) {
        const nuvobase::clsString move = moves.NextWord(' ', position);
        if (move.IsEmpty()) continue;
        if (!core.MakeMoveText(move)) break;
        visit(BoardKey(core.Board), drawn ? BookOutcome::Draw : won ? BookOutcome::Win : BookOutcome::Loss);
        won = !won;
    }
}

} // namespace nvoChess
