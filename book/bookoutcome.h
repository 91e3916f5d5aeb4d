// How the positions of a game count in a book, shared by the book's own AddGame and by the batches that
// build books from whole files.
#pragma once

#include <cstdint>

namespace nvoChess {

// How one position of a game counts for the side that played the move into it.
enum class BookOutcome : uint8_t { Win, Loss, Draw };

// The outcome of the position after ply (0 for white's first move): result 2 is a win of white, and result
// equal to drawCode a draw for both.
inline BookOutcome OutcomeOfPly(int ply, int result, int drawCode) {
    if (result == drawCode) return BookOutcome::Draw;
    const bool whiteMoved = ply % 2 == 0;
    return (result == 2) == whiteMoved ? BookOutcome::Win : BookOutcome::Loss;
}

} // namespace nvoChess
