// The console commands, reached through the XBoard front end as a user types them.
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

class ConsoleTest : public XBoardTest {
protected:
    // One folder per process: ctest runs the tests of this suite side by side.
    std::filesystem::path Folder =
        std::filesystem::temp_directory_path() / ("corvane_console_test_" + std::to_string(getpid()));

    ConsoleTest() { std::filesystem::create_directories(Folder); }
    ~ConsoleTest() override { std::filesystem::remove_all(Folder); }

    std::string InFolder(const char* name) { return (Folder / name).string(); }
};

TEST_F(ConsoleTest, UnknownWords) {
    EXPECT_EQ(Send("\\foo"), Lines{"Error (unknown command): \\foo"});
    EXPECT_EQ(Result, 0);
    EXPECT_EQ(App.HandleConsole(clsString(), clsString()), 0);
    EXPECT_EQ(Written(), Lines{"Error (unknown command): "});
    // Words of the console that arrive later are unknown until then.
    EXPECT_EQ(Send("\\epd", "1 x.epd"), Lines{"Error (unknown command): \\epd"});
    for (const char* quiet : {"\\soul", "\\SOUL", "\\testsouls"})
        EXPECT_EQ(Send(quiet, "x"), Lines{}) << quiet;
}

TEST_F(ConsoleTest, BoardToggle) {
    const Lines board = Send("\\");
    EXPECT_TRUE(App.ShowBoard);
    ASSERT_EQ(board.size(), BoardLines);
    EXPECT_EQ(board[0], "# rnbqkbnr");
    EXPECT_EQ(board[7], "# RNBQKBNR");
    EXPECT_EQ(Send("\\", "M"), board);
    EXPECT_FALSE(App.ShowBoard);
}

TEST_F(ConsoleTest, MovesGoStraightToTheBoard) {
    const clsString published = App.GetFen();
    Lines shown = Send("\\moves", "e2:e4");
    ASSERT_EQ(shown.size(), BoardLines);
    EXPECT_EQ(shown[4], "# ----P---");
    EXPECT_EQ(shown[6], "# PPPP-PPP");
    // Neither the history nor the published position follow.
    EXPECT_EQ(App.FenHistory.Count, 0);
    EXPECT_TRUE(App.GetFen() == published);

    // One board per word, also for a word that is no move.
    shown = Send("\\MOVES", "e7e5 e7e5 :g1::f3");
    ASSERT_EQ(shown.size(), 3 * BoardLines);
    EXPECT_EQ(shown[1], "# pppp-ppp");
    EXPECT_EQ(shown[BoardLines + 1], shown[1]);
    EXPECT_EQ(shown[2 * BoardLines + 5], "# -----N--");
    EXPECT_EQ(Send("\\moves").size(), BoardLines);
}

TEST_F(ConsoleTest, Books) {
    EXPECT_EQ(Send("\\savebook"), (Lines{"# savebook book [limit]", "# book: filename.cbk",
                                         "# limit: save only positions played more than 'limit' times"}));
    const std::string missing = InFolder("x.cbk");
    EXPECT_EQ(Send("\\loadbook", missing.c_str()), (Lines{"# wait...", "# error loading " + missing}));

    // Weights are half the games: 1, 3 and 5; a limit of 3 keeps the last two.
    App.Engine->Book.Add(new clsBookEntry(11, 1, 1, 0));
    App.Engine->Book.Add(new clsBookEntry(22, 2, 2, 2));
    App.Engine->Book.Add(new clsBookEntry(33, 5, 5, 0));
    const std::string book = InFolder("b.cbk");
    // A '\' typed in a path stands for the separator.
    std::string typed = book;
    for (char& c : typed) c = c == '/' ? '\\' : c;
    EXPECT_EQ(Send("\\savebook", (typed + " 3").c_str()), (Lines{"# wait...", "# book " + typed + " saved"}));
    App.Engine->Book.Clear();
    EXPECT_EQ(Send("\\LOADBOOK", book.c_str()),
              (Lines{"# wait...", "# book " + book + " loaded with 2 positions"}));
    EXPECT_EQ(Send("\\loadbook", (book + " 5").c_str()),
              (Lines{"# wait...", "# book " + book + " loaded with 1 positions"}));
    const std::string unwritable = InFolder("no/such/b.cbk");
    EXPECT_EQ(Send("\\savebook", unwritable.c_str()), (Lines{"# wait...", "# error saving " + unwritable}));

    // Without a name the book of the working folder is meant.
    const std::filesystem::path here = std::filesystem::current_path();
    std::filesystem::current_path(Folder);
    const Lines loaded = Send("\\loadbook");
    std::filesystem::current_path(here);
    EXPECT_EQ(loaded, (Lines{"# wait...", "# error loading corvane.cbk"}));
}

TEST_F(ConsoleTest, SoulFiles) {
    const std::string soul = InFolder("soul.txt");
    nuvobase::clsString("pawn=105").SaveToFile(soul.c_str());
    EXPECT_EQ(Send("\\loadsoul", soul.c_str()), Lines{"# new soul: pawn=105"});
    EXPECT_EQ(Send("\\loadsoul", InFolder("none.txt").c_str()), Lines{"# new soul: "});
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
