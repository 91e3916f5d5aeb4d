#include "app/commandnumbers.h"

#include "app/clschessapplication.h"

#include <algorithm>

namespace nvoChess {

int64_t ReadBounded(const nuvobase::clsString& text, int64_t bound) {
    return std::clamp<int64_t>(text.ToDecimal(), -bound, bound);
}

int64_t SecondsToMs(int64_t seconds) {
    return std::clamp<int64_t>(seconds, 0, MaxClockSeconds) * 1000;
}

} // namespace nvoChess
