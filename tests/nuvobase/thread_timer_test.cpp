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

// A folder of its own for one test, removed afterwards.
class TimerFolder : public testing::Test {
protected:
    void SetUp() override {
        Folder =
            fs::path(testing::TempDir()) / ("corvane_timer_" + std::to_string(getpid()) + "_" +
                                            testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(Folder);
        fs::create_directories(Folder);
    }
    void TearDown() override { fs::remove_all(Folder); }

    static std::string ReadAll(const fs::path& path) {
        clsString text;
        text.LoadFromFile(path.c_str());
        return text.Text();
    }

    fs::path Folder;
};

std::string LogLine(const char* id, std::uint64_t laps, std::uint64_t elapsed) {
    char line[128];
    std::snprintf(line, sizeof line, "%s\t%" PRIu64 "\t%" PRIu64 "\t%" PRIu64 "\r\n", id, laps, elapsed,
                  elapsed);
    return line;
}

} // namespace

TEST(Timer, ClockCountsMillisecondsForward) {
    std::uint64_t before = ClockMs();
    SleepMs(25);
    std::uint64_t after = ClockMs();
    EXPECT_GE(after - before, 25u);
}

TEST(Timer, LapAddsTheWholeSpanEachTime) {
    clsTimer timer;
    EXPECT_EQ(timer.Laps, 1u);
    EXPECT_EQ(timer.Elapsed, 0u);
    SleepMs(20);
    std::uint64_t first = timer.Lap();
    EXPECT_GE(first, 20u);
    std::uint64_t second = timer.Lap();
    // Start stayed put, so the span since then was added again.
    EXPECT_GE(second, 2 * first);
    EXPECT_EQ(timer.Elapsed, second);
}

TEST(Timer, RestartGivesTheTotalAndStartsAnew) {
    clsTimer timer;
    SleepMs(10);
    std::uint64_t lap = timer.Lap();
    timer.Laps = 3;
    SleepMs(10);
    std::uint64_t total = timer.Restart();
    // The span since the start plus the lap already added.
    EXPECT_GE(total, lap + 20);
    EXPECT_EQ(timer.Elapsed, 0u);
    EXPECT_EQ(timer.Laps, 1u);
    EXPECT_LE(ClockMs() - timer.Start, total);
}

TEST_F(TimerFolder, DestructionAppendsOneLogLine) {
    fs::path log = Folder / "timer.log";
    std::uint64_t first, second;
    {
        clsTimer timer(log.c_str());
        timer.Id = "perft 5";
        SleepMs(5);
        first = timer.Lap();
    }
    EXPECT_EQ(ReadAll(log), LogLine("perft 5", 1, first));
    {
        clsTimer timer(log.c_str());
        SleepMs(5);
        second = timer.Lap();
    }
    // Appended behind the first line; a timer without Id leaves the column empty.
    EXPECT_EQ(ReadAll(log), LogLine("perft 5", 1, first) + LogLine("", 1, second));
}

TEST_F(TimerFolder, NoLogLineWithoutALogFile) {
    fs::path previous = fs::current_path();
    fs::current_path(Folder);
    {
        clsTimer timer;
        timer.Id = "no log";
        timer.Lap();
    }
    {
        // A log file that cannot be opened is ignored.
        clsTimer timer((Folder / "missing" / "timer.log").c_str());
        timer.Lap();
    }
    fs::current_path(previous);
    EXPECT_TRUE(fs::is_empty(Folder));
}
