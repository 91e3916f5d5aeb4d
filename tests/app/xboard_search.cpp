// The XBoard front end while the engine thinks: what stops a search, and which of its moves survive.
#include "xboard_fixture.h"

#include "nuvobase/platform.h"

namespace nvoChess {
namespace {

using Lines = std::vector<std::string>;

class ThreadedXBoard : public XBoardTest {
protected:
    ThreadedXBoard() {
        App.SetEngine(clsString("corvane"));
        App.SetBoard(clsString(clsChessApplication::StartFen));
    }
    ~ThreadedXBoard() override { App.HaltEngine(); }

    // Starts a search with a clock that lasts far longer than the test, and waits until it has a move.
    void Think() {
        Send("time", "1000000");
        Send("go");
        ASSERT_TRUE(App.Engine->IsRunning());
        for (int waited = 0; waited < 20000 && BestMove().empty(); waited += 5) nuvobase::SleepMs(5);
        ASSERT_FALSE(BestMove().empty());
        Written();
    }

    std::string BestMove() {
        int score = 0;
        return App.Engine->GetBestMoveText(false, score).Text();
    }
};

TEST_F(ThreadedXBoard, MoveNowKeepsTheMove) {
    Think();
    EXPECT_EQ(Send("?"), Lines{});
    App.HaltEngine();
    EXPECT_FALSE(BestMove().empty());
    EXPECT_EQ(App.State, clsChessApplication::StateEngineWhite);
}

TEST_F(ThreadedXBoard, ChangesOfGameDropTheMove) {
    // Each of these ends the search, and its move would belong to another game or side.
    for (const char* command : {"new", "force", "stop", "white", "black", "undo", "result", "setboard"}) {
        SCOPED_TRACE(command);
        Think();
        Send(command, command == std::string("setboard") ? "K7/8/8/8/8/8/8/7k w - - 0 1" : "");
        EXPECT_FALSE(App.Engine->IsRunning());
        EXPECT_EQ(BestMove(), "");
        Send("setboard", clsChessApplication::StartFen);
    }
}

TEST_F(ThreadedXBoard, UserMoveDuringASearchStartsAnother) {
    Think();
    const std::string before = App.GetFen().Text();
    EXPECT_EQ(Send("e2e4").size(), 1u); // the line of the new search
    EXPECT_TRUE(App.Engine->IsRunning());
    EXPECT_NE(std::string(App.GetFen().Text()), before);
    ASSERT_EQ(App.FenHistory.Count, 1);
    EXPECT_EQ(std::string(App.FenHistory.GetAt(0).Text()), before);
}

TEST_F(ThreadedXBoard, CountingStopsTheSearchFirst) {
    Think();
    const Lines lines = Send("perft", "2");
    EXPECT_FALSE(App.Engine->IsRunning());
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.back().rfind("Nodes: 400, Time: ", 0), 0u) << lines.back();
}

} // namespace
} // namespace nvoChess
