#pragma once
// The program's own engine as a player of a tournament game: it answers like any other engine. Asked to
// move, it searches the game's position on its clock, and its reply is "move " and the move found.

#include "search/clsenginecorvane.h"
#include "search/clsengineshare.h"

#include <cstdint>

namespace nvoChess {

// The table of one player, made before the engine that uses it.
struct clsPlayerTable {
    clsEngineShare Table;
};

class clsEmbeddedPlayer : private clsPlayerTable, public clsEngineCorvane {
public:
    // The table each player searches with.
    static constexpr int64_t TableMb = 16;

    // soul: the text of the soul to play with, its numbers joined by blanks or by tabs; empty for the
    // default soul.
    clsEmbeddedPlayer(const nuvobase::clsString& name, nuvobase::clsTSafeOutput* output, clsTourneyGame* game,
                      const nuvobase::clsString& soul);
    // Ends the search before any part of the player goes: the search thread calls its virtual operations.
    ~clsEmbeddedPlayer() override;

    // Searches the game's position for the time the tournament player's rule gives its own clock.
    void Think() override;
    // "move " and the move once the search has ended; stops a search that has passed its time.
    nuvobase::clsString ReadReply() override;

private:
    uint64_t Deadline = 0;
    bool Thinking = false; // a move is owed
};

} // namespace nvoChess
