#pragma once
// The UCI front end of the command-line switch -strictuci, for GUIs and tournament managers that play with
// clocks: every go brings the limits of that search alone, moves go out in UCI's form, each finished depth
// is shown, and every go gets exactly one bestmove, a legal one whenever the position has a move.

#include "chess/clschesscore.h"
#include "nuvobase/clsstring.h"

#include <cstdint>
#include <memory>

namespace nvoChess {

class clsChessApplication;

class clsStrictUci {
public:
    explicit clsStrictUci(clsChessApplication& app);

    // The words that this front end treats its own way; the others go to the application's UCI front end.
    int Handle(const nuvobase::clsString& command, const nuvobase::clsString& arguments);
    // The command loop's look at the search: stops it at its deadline and answers its go then or once it has
    // ended, unless the answer waits for stop or ponderhit.
    void Watch(uint64_t now);
    // The input has ended, so nobody will send stop: a search that would wait for one is stopped, one with a
    // limit runs to it. True while a go is still unanswered.
    bool InputEnded();

private:
    void Identify();
    void SetOption(const nuvobase::clsString& arguments);
    int Go(const nuvobase::clsString& arguments);
    // A go still unanswered is stopped and answered at once.
    void Finish();
    // Stops the engine's search and waits for its thread.
    void Halt();
    void Answer();
    // The engine's move as a legal move of the position in UCI's form: the first legal move if the engine's
    // is none or not legal, "0000" when there is no legal move.
    nuvobase::clsString LegalMove(const nuvobase::clsString& engineMove);
    void WriteLine(const nuvobase::clsString& text);

    clsChessApplication& App;
    // The position as the GUI set it, kept apart from the engine's, to check the answers against.
    std::unique_ptr<clsChessCore> Mirror;
    bool Pending = false;         // a go is not answered yet
    bool Held = false;            // its answer waits for stop, or for ponderhit
    bool Infinite = false;        // it searches until stop
    int64_t PonderAllowance = -1; // the time of a ponder search, which runs from ponderhit; -1 for none
    uint64_t Deadline = 0;        // when the search is stopped; 0 for never
};

} // namespace nvoChess
