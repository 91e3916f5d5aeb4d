#include "nuvobase/clstimer.h"
#include "nuvobase/platform.h"

#include <cstdint>
#include <gtest/gtest.h>

using namespace nuvobase;

// The program takes one lap of a timer: the time since it was made.
TEST(Timer, LapIsTheTimeSinceTheStart) {
    clsTimer timer;
    SleepMs(20);
    const std::uint64_t lap = timer.Lap();
    EXPECT_GE(lap, 20u);
    EXPECT_LE(lap, ClockMs() - timer.Start);
}
