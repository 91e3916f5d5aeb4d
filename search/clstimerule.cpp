#include "search/clstimerule.h"

namespace nvoChess {

namespace {
// A control's moves are shared as if two more were to come, so that its last move still gets a share.
constexpr int64_t MovesBeyondControl = 2;
} // namespace

int64_t clsTimeRule::Allowance(int64_t clockMs, int64_t controlMoves, int64_t moveNumber) const {
    const int64_t available = clockMs > WholeClockUpToMs ? clockMs - ReserveMs : clockMs;
    const bool control =
        controlMoves != 0 && controlMoves >= FewestControlMoves && controlMoves <= MostControlMoves;
    int64_t movesLeft = control ? controlMoves - moveNumber + MovesBeyondControl : MovesWithoutControl;
    // A control that has no moves left (a negative control) is treated like a whole game.
    if (movesLeft <= 0) movesLeft = MovesWithoutControl;
    const int64_t allowance = available / movesLeft;
    return NeverNegative && allowance < 0 ? 0 : allowance;
}

} // namespace nvoChess
