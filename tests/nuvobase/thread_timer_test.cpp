#include "nuvobase/clstimer.h"
#include "nuvobase/platform.h"

#include <cinttypes>
#include <cstdio>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

using namespace nuvobase;
namespace fs = std::filesystem;

namespace {

std::string LogLine(const char* id, std::uint64_t laps, std::uint64_t elapsed) {
    char line[128];
    std::snprintf(line, sizeof line, "%s\t%" PRIu64 "\t%" PRIu64 "\t%" PRIu64 "\r\n", id, laps, elapsed,
                  elapsed);
    return line;
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

TEST(Timer, DestructionAppendsOneLogLine) {
    const fs::path folder = fs::path(testing::TempDir()) / ("corvane_timer_" + std::to_string(getpid()));
    fs::remove_all(folder);
    fs::create_directories(folder);
    const fs::path previous = fs::current_path();
    fs::current_path(folder);
    const fs::path log = folder / "timer.log";
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
        clsTimer timer((folder / "missing" / "timer.log").c_str()); // a file that cannot be opened is ignored
        timer.Lap();
    }
    fs::current_path(previous);
    // Appended behind the first line; a timer without Id leaves the column empty.
    clsString text;
    text.LoadFromFile(log.c_str());
    EXPECT_EQ(std::string(text.Text()), LogLine("perft 5", 1, first) + LogLine("", 1, second));
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), fs::directory_iterator()), 1);
    fs::remove_all(folder);
}
