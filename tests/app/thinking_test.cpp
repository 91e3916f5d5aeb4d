// The time a search is given, the deadline and the line that tells it; the engine and the table of the
// application object.
#include "xboard_fixture.h"

#include "search/clstimerule.h"

#include <string>

namespace nvoChess {
namespace {

class ThreadedStartThinking : public XBoardTest {
protected:
    ~ThreadedStartThinking() override { App.HaltEngine(); }

    // Starts a search, stops it at once and gives the allowance its deadline stands for.
    int64_t Think() {
        App.StartThinking();
        const int64_t allowance = int64_t(App.Deadline) - int64_t(App.ThinkStart);
        App.HaltEngine();
        return allowance;
    }
};

TEST(TimeRule, SharesTheClockOverTheMovesLeft) {
    const clsTimeRule& application = ApplicationTimeRule;
    const clsTimeRule& strict = StrictUciTimeRule;
    const clsTimeRule& player = TournamentPlayerTimeRule;
    const struct {
        const clsTimeRule& Rule;
        int64_t Clock, Control, Move, Allowance;
    } rows[] = {
        // Without a control: a fortieth of the clock less 50 ms, truncated. (300000 - 50) / 40 = 7498.75.
        {application, 300000, 0, 1, 7498},
        {application, 300000, 0, 57, 7498},
        // 40 moves in the control, 10 played: 32 shares. 59950 / 32 = 1873.4.
        {application, 60000, 40, 10, 1873},
        // 100 ms or less: nothing kept back.
        {application, 100, 0, 0, 2},
        {application, 101, 0, 0, 1},
        // A clock gone below zero gives a negative allowance: the search is stopped at once.
        {application, -4000, 0, 0, -100},
        // A control with no moves left never divides by zero or by a negative count.
        {application, 4050, -2, 0, 100},
        {application, 4050, 3, 5, 100},
        {application, 4050, -1, 0, 4000},
        // The GUI's moves to go: 1 to 1000 of them are the control, others count as none; never below 0.
        {strict, 6050, 1, 0, 2000},
        {strict, 4050, -1, 0, 100},
        {strict, 40050, 1001, 0, 1000},
        {strict, 100, 1000, 0, 0},
        {strict, -4000, 0, 0, 0},
        // The tournament player always keeps the reserve back, and never goes below 0.
        {player, 4050, 0, 0, 100},
        {player, 100, 0, 0, 1},
        {player, 80, 0, 0, 0},
        {player, -100, 0, 0, 0},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.Rule.Allowance(row.Clock, row.Control, row.Move), row.Allowance)
            << row.Clock << " " << row.Control << " " << row.Move;
}

TEST_F(ThreadedStartThinking, TimeControlBookkeepingEpdRunAndSpentClock) {
    clsChessApplication& a = App;
    // The first search at the start values; the position searched is published.
    a.Engine->MakeMoveText(clsString("e2e4"));
    EXPECT_EQ(Think(), 7498);
    EXPECT_EQ(a.GetFen(), a.Engine->GetPosition());
    a.Engine->Protocol = clsEngineInterface::Uci;
    a.MovesPerControl = 40;
    a.BaseTimeMs = 60000;
    // At the control's last move the clock gains the base time and the count starts anew:
    // (360000 - 50) / (40 - 0 + 2) = 8570.2.
    a.Engine->MoveNumber = 40;
    EXPECT_EQ(Think(), 8570);
    EXPECT_EQ(a.EngineTimeMs, 360000);
    // Beyond the control the move number counts within it: 45 is the 5th, (360000 - 50) / 37 = 9728.3.
    a.Engine->MoveNumber = 45;
    EXPECT_EQ(Think(), 9728);
    EXPECT_EQ(a.EngineTimeMs, 360000);
    // At construction the engine speaks XBoard, so the first remark has the XBoard mark.
    const std::string text = Captured.Text();
    EXPECT_NE(text.find("# moves 0/0 - time 7498/300000 ms\n"), std::string::npos) << text;
    EXPECT_NE(text.find("info string moves 0/40 - time 8570/360000 ms\n"), std::string::npos) << text;
    EXPECT_NE(text.find("info string moves 5/40 - time 9728/360000 ms\n"), std::string::npos) << text;
    // An EPD run takes the base time per position, sets the clock to a hundred of them and says nothing.
    a.State = clsChessApplication::StateEpd;
    a.BaseTimeMs = 250;
    EXPECT_EQ(Think(), 250);
    EXPECT_EQ(a.EngineTimeMs, 25000);
    EXPECT_EQ(Captured.Text().find("moves", text.size()), std::string::npos);
    // A spent clock gives a deadline that has passed already, never the 0 that means none.
    a.State = clsChessApplication::StateEngineWhite;
    a.EngineTimeMs = -100000;
    EXPECT_LE(Think(), 0);
    EXPECT_NE(a.Deadline, 0u);
}

TEST_F(ThreadedStartThinking, EngineSelectionAndMemory) {
    clsChessApplication& a = App;
    // No resizing under a running search; a negative size means no table.
    a.Engine->Output = nullptr; // the new search's remarks are of no interest
    a.StartThinking();
    EXPECT_FALSE(a.SetMemory(2));
    EXPECT_EQ(a.Share.TTBytes, 1u << 20);
    // Replacing the engine stops the search and waits for it; the new one speaks XBoard.
    a.Engine->Protocol = clsEngineInterface::Uci;
    EXPECT_TRUE(a.SetEngine(clsString("VESKO")));
    EXPECT_FALSE(a.Engine->IsRunning());
    EXPECT_EQ(a.Engine->Protocol, clsEngineInterface::XBoard);
    EXPECT_TRUE(a.SetMemory(-5));
    EXPECT_EQ(a.Share.TTCount, 0u);
}

} // namespace
} // namespace nvoChess
