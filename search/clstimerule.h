#pragma once
// How long one search may take: the mover's clock, less a reserve, shared over the moves left to the next
// control, or over a fixed count of moves when there is none. Every driver of a search (both UCI dialects,
// XBoard, the tournament player) works its time out here; they differ only in the parameters.

#include <cstdint>
#include <limits>

namespace nvoChess {

struct clsTimeRule {
    // Kept back from the clock, so that the move reaches the other side in time.
    int64_t ReserveMs = 50;
    // A clock of this much or less is shared whole: the reserve would eat most of it.
    int64_t WholeClockUpToMs = 100;
    // The moves a clock is shared over when there is no control, or none taken as given.
    int64_t MovesWithoutControl = 40;
    // The controls taken as given; a control outside this range (and 0) counts as none.
    int64_t FewestControlMoves = std::numeric_limits<int64_t>::min();
    int64_t MostControlMoves = std::numeric_limits<int64_t>::max();
    // Whether a clock already spent gives 0 rather than a negative allowance.
    bool NeverNegative = false;

    // The milliseconds of a move with clockMs on the mover's clock, controlMoves in the control (0 for none)
    // and moveNumber of them played.
    int64_t Allowance(int64_t clockMs, int64_t controlMoves = 0, int64_t moveNumber = 0) const;
};

// The application's own clock, under XBoard and the default UCI dialect.
inline constexpr clsTimeRule ApplicationTimeRule{};
// The GUI's clock of a go under -strictuci: its moves to go are the control, none or an unlikely many share
// the clock as the rest of a game does.
inline constexpr clsTimeRule StrictUciTimeRule{
    .FewestControlMoves = 1, .MostControlMoves = 1000, .NeverNegative = true};
// The clock that a tournament game keeps for the program's own player: the reserve is always kept back.
inline constexpr clsTimeRule TournamentPlayerTimeRule{.WholeClockUpToMs = std::numeric_limits<int64_t>::min(),
                                                      .NeverNegative = true};

} // namespace nvoChess
