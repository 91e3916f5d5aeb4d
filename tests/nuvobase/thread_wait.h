#pragma once
// Waiting in tests for what another thread does, with a bound generous enough
// for a loaded machine and sanitizers.

#include "nuvobase/platform.h"

#include <cstdint>
#include <functional>

namespace nuvobase_test {

// Polls condition every millisecond; false if it still fails after boundMs.
inline bool Eventually(const std::function<bool()>& condition, std::uint64_t boundMs = 20000) {
    std::uint64_t start = nuvobase::ClockMs();
    while (!condition()) {
        if (nuvobase::ClockMs() - start > boundMs) return false;
        nuvobase::SleepMs(1);
    }
    return true;
}

} // namespace nuvobase_test
