#include "match/clsgolimits.h"

using nuvobase::clsString;

namespace nvoChess {

namespace {
constexpr const char* NumberWords[clsGoLimits::NumberCount] = {
    "wtime", "btime", "winc", "binc", "movestogo", "movetime", "depth", "nodes", "mate"};
} // namespace

clsGoLimits clsGoLimits::Read(const clsString& words) {
    clsGoLimits limits;
    int position = 0;
    while (position >= 0) {
        const clsString word = words.NextWord(' ', position, false, true);
        if (word == "infinite") limits.Infinite = limits.InfiniteLast = true;
        if (word == "ponder") limits.Ponder = true;
        for (int i = 0; i < NumberCount; ++i) {
            if (word != NumberWords[i]) continue;
            limits.GivenWords |= 1u << i;
            if (i == Depth) limits.InfiniteLast = false;
            if (position < 0) {
                limits.Unvalued = i;
                break;
            }
            limits.Numbers[i] = words.NextWord(' ', position, false, true).ToDecimal();
            limits.ValuedWords |= 1u << i;
        }
    }
    return limits;
}

} // namespace nvoChess
