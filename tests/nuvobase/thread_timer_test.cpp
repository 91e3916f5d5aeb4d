#include "nuvobase/clstimer.h"
#include "nuvobase/platform.h"
#include "temp_folder.h"

#include <cstdint>
#include <filesystem>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

using namespace nuvobase;

namespace {

// The line a timer of one lap leaves in its log.
std::string LogLine(const std::string& id, std::uint64_t elapsed) {
    const std::string ms = std::to_string(elapsed);
    return id + "\t1\t" + ms + "\t" + ms + "\r\n";
}

} // namespace

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

using TimerLog = nuvobase_test::TempFolder;

TEST_F(TimerLog, DestructionAppendsOneLine) {
    const std::filesystem::path previous = std::filesystem::current_path();
    std::filesystem::current_path(folder); // where a timer without a log file must not write either
    const std::string log = Path("timer.log");
    std::uint64_t first, second;
    {
        clsTimer timer(log.c_str());
        timer.Id = "perft 5";
        SleepMs(5);
        first = timer.Lap();
    }
    {
        clsTimer timer(log.c_str());
        second = timer.Lap();
    }
    {
        clsTimer timer; // no log file: no line anywhere
        timer.Id = "no log";
        timer.Lap();
    }
    {
        clsTimer timer(Path("missing/timer.log").c_str()); // a file that cannot be opened is ignored
        timer.Lap();
    }
    std::filesystem::current_path(previous);
    // Appended behind the first line; a timer without Id leaves the column empty.
    EXPECT_EQ(Read("timer.log"), LogLine("perft 5", first) + LogLine("", second));
    EXPECT_EQ(
        std::distance(std::filesystem::directory_iterator(folder), std::filesystem::directory_iterator()), 1);
}
