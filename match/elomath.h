#pragma once
// Ratings from game results: the Elo difference that a score fraction stands for, the width of its 95%
// interval, and the likelihood that one player is the stronger.

#include <cstdint>

namespace nvoChess {

// The Elo difference of a score fraction s: -400 log10(1/s - 1); infinite at 0 and 1.
double EloFromScore(double s);
// Half the width of the 95% interval of the Elo difference, from the variance of the per-game scores (1 a
// win, 0.5 a draw, 0 a loss); infinite when the interval reaches a score of 0 or 1, 0 without games.
double EloErrorOf(int32_t wins, int32_t draws, int32_t losses);
// In percent: the likelihood of superiority of a player with these wins and losses; 50 without either.
double LikelihoodOfSuperiority(int32_t wins, int32_t losses);

} // namespace nvoChess
