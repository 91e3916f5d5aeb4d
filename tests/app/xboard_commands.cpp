// The XBoard front end and the console driven line by line, for the state behind the replies that the
// end-to-end tests check.
#include "xboard_fixture.h"

#include "book/clsbookentry.h"
#include "nuvobase/clsstring.h"

#include <filesystem>
#include <string>
#include <unistd.h>

namespace nvoChess {
namespace {

using Lines = std::vector<std::string>;

// What level, time, otim and new do to the clocks is checked by the end-to-end XBoard test through the
// allowance each search states.
TEST_F(XBoardTest, AbsurdLevelsStayWithinTheClockBounds) {
    const int64_t yearMs = int64_t(366) * 24 * 3600 * 1000;
    for (const char* level :
         {"99999999999999999999 99999999999999999999 99999999999999999999",
          "-99999999999999999999 -7:-5 -99999999999999999999", "x y z", "", "5 10:99999999999"}) {
        SCOPED_TRACE(level);
        Send("level", level);
        EXPECT_LE(std::abs(App.MovesPerControl), 100000);
        EXPECT_GE(App.BaseTimeMs, 0);
        EXPECT_LE(App.BaseTimeMs, yearMs);
        EXPECT_GE(App.IncrementMs, 0);
        EXPECT_LE(App.IncrementMs, yearMs);
        EXPECT_EQ(App.EngineTimeMs, App.BaseTimeMs);
    }
    Send("time", "99999999999999999999");
    EXPECT_EQ(App.EngineTimeMs, yearMs);
    Send("otim", "-99999999999999999999");
    EXPECT_EQ(App.OpponentTimeMs, -yearMs);
}

// The positions after moves and undos are checked by the end-to-end XBoard test; here the replies and the
// history behind them.
TEST_F(XBoardTest, UserMovesAndUndo) {
    const std::string start = App.GetFen().Text();
    Send("force");
    EXPECT_EQ(Send("e2e4"), Lines{"# I'm not thinking"});
    const std::string afterE2E4 = Position();
    ASSERT_EQ(App.FenHistory.Count, 1);
    EXPECT_EQ(std::string(App.FenHistory.GetAt(0).Text()), start);
    EXPECT_EQ(std::string(App.GetFen().Text()), afterE2E4);
    Send("usermove", "e7e5");
    EXPECT_EQ(App.FenHistory.Count, 2);
    EXPECT_EQ(Send("e7e5"), Lines{"Illegal move: e7e5"});
    EXPECT_EQ(Result, 1);
    EXPECT_EQ(App.FenHistory.Count, 2);

    App.State = clsChessApplication::StateEngineBlack;
    EXPECT_EQ(Send("undo"), Lines{});
    EXPECT_EQ(App.State, clsChessApplication::StateIdle);
    EXPECT_EQ(Position(), afterE2E4);
    // Nothing left to take back: the game starts again, whatever the board held.
    Send("setboard", "K7/8/8/8/8/8/8/7k w - - 0 1");
    App.FenHistory.Clear();
    Send("undo");
    EXPECT_EQ(Position(), start);
}

using ConsoleTest = XBoardTest;

TEST_F(ConsoleTest, BookLimitOnSave) {
    // One folder per process: ctest runs the tests side by side.
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("corvane_console_test_" + std::to_string(getpid()));
    std::filesystem::create_directories(folder);
    const std::string book = (folder / "b.cbk").string();
    // Weights are half the games: 1, 3 and 5; a limit of 3 keeps the last two.
    const clsBookEntry entries[] = {{11, 1, 1, 0}, {22, 2, 2, 2}, {33, 5, 5, 0}};
    App.Engine->Book.AddSorted(entries, 3);
    EXPECT_EQ(Send("\\savebook", (book + " 3").c_str()), (Lines{"# wait...", "# book " + book + " saved"}));
    App.Engine->Book.Clear();
    EXPECT_EQ(Send("\\LOADBOOK", book.c_str()),
              (Lines{"# wait...", "# book " + book + " loaded with 2 positions"}));
    EXPECT_EQ(App.Engine->Book.Count, 2);
    std::filesystem::remove_all(folder);
}

} // namespace
} // namespace nvoChess
