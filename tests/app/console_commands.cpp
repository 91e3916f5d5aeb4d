// The console commands, reached through the XBoard front end as a user types them. Their replies are
// checked against the real program by the end-to-end console test; these cases look at the state behind them.
#include "xboard_fixture.h"

#include "book/clsbookentry.h"

#include <filesystem>
#include <string>
#include <unistd.h>

namespace nvoChess {
namespace {

using Lines = std::vector<std::string>;

// "\" prints the board: a line per rank, the side with the FEN, and an empty remark.
constexpr size_t BoardLines = 10;

using ConsoleTest = XBoardTest;

TEST_F(ConsoleTest, MovesGoStraightToTheBoard) {
    const clsString published = App.GetFen();
    const Lines shown = Send("\\moves", "e2:e4");
    ASSERT_EQ(shown.size(), BoardLines);
    EXPECT_EQ(shown[4], "# ----P---");
    // Neither the history nor the published position follow.
    EXPECT_EQ(App.FenHistory.Count, 0);
    EXPECT_TRUE(App.GetFen() == published);
}

TEST_F(ConsoleTest, BookLimitOnSave) {
    // One folder per process: ctest runs the tests of this suite side by side.
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("corvane_console_test_" + std::to_string(getpid()));
    std::filesystem::create_directories(folder);
    const std::string book = (folder / "b.cbk").string();
    // Weights are half the games: 1, 3 and 5; a limit of 3 keeps the last two.
    App.Engine->Book.Add(new clsBookEntry(11, 1, 1, 0));
    App.Engine->Book.Add(new clsBookEntry(22, 2, 2, 2));
    App.Engine->Book.Add(new clsBookEntry(33, 5, 5, 0));
    EXPECT_EQ(Send("\\savebook", (book + " 3").c_str()), (Lines{"# wait...", "# book " + book + " saved"}));
    App.Engine->Book.Clear();
    EXPECT_EQ(Send("\\LOADBOOK", book.c_str()),
              (Lines{"# wait...", "# book " + book + " loaded with 2 positions"}));
    EXPECT_EQ(App.Engine->Book.Count, 2);
    std::filesystem::remove_all(folder);
}

TEST_F(ConsoleTest, EngineSwitchKeepsStateAndSpeaksXBoard) {
    App.State = 3;
    App.Engine->Protocol = clsEngineInterface::Uci;
    EXPECT_EQ(App.HandleUci(clsString("\\VESKO"), clsString()), 0);
    EXPECT_EQ(App.Engine->Protocol, clsEngineInterface::XBoard);
    EXPECT_EQ(std::string(App.Engine->Name.Text()), "Vesko");
    EXPECT_EQ(App.State, 3);
}

} // namespace
} // namespace nvoChess
