#include "match/elomath.h"

#include <cmath>
#include <limits>

namespace nvoChess {

namespace {
constexpr double EloScale = 400.0;
constexpr double Quantile95 = 1.959963984540054; // of the normal distribution, two-sided
constexpr double Percent = 100.0;
} // namespace

double EloFromScore(double s) {
    if (s <= 0) return -std::numeric_limits<double>::infinity();
    if (s >= 1) return std::numeric_limits<double>::infinity();
    return -EloScale * std::log10(1.0 / s - 1.0);
}

double EloErrorOf(int32_t wins, int32_t draws, int32_t losses) {
    const double games = double(wins) + draws + losses;
    if (games <= 0) return 0;
    const double s = (wins + 0.5 * draws) / games;
    const double variance =
        (wins * (1 - s) * (1 - s) + draws * (0.5 - s) * (0.5 - s) + losses * s * s) / games;
    const double spread = Quantile95 * std::sqrt(variance / games);
    const double low = s - spread, high = s + spread;
    if (low <= 0 || high >= 1) return std::numeric_limits<double>::infinity();
    return (EloFromScore(high) - EloFromScore(low)) / 2;
}

double LikelihoodOfSuperiority(int32_t wins, int32_t losses) {
    if (wins + losses == 0) return Percent / 2;
    return Percent / 2 * (1 + std::erf((wins - losses) / std::sqrt(2.0 * (wins + losses))));
}

} // namespace nvoChess
