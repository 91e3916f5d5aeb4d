#include "nuvobase/clstimer.h"
#include "nuvobase/platform.h"

#include <cstdint>
#include <gtest/gtest.h>

using namespace nuvobase;

TEST(Timer, LapAddsTheWholeSpanAndRestartStartsAnew) {
    clsTimer timer;
    SleepMs(20);
    std::uint64_t first = timer.Lap();
    EXPECT_GE(first, 20u);
    std::uint64_t second = timer.Lap();
    // Start stayed put, so the span since then was added again.
    EXPECT_GE(second, 2 * first);
    EXPECT_EQ(timer.Elapsed, second);

    timer.Laps = 3;
    SleepMs(10);
    std::uint64_t total = timer.Restart();
    // The span since the start plus what the laps added.
    EXPECT_GE(total, second + 30);
    EXPECT_EQ(timer.Elapsed, 0u);
    EXPECT_EQ(timer.Laps, 1u);
    EXPECT_LE(ClockMs() - timer.Start, total);
}
