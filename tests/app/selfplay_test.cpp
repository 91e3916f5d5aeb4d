// Self-play games from set positions: who won, with the sign taken from the side that began, and the game's
// line as it is written.
#include "xboard_fixture.h"

#include "search/clsenginecorvane.h"

#include <algorithm>
#include <cstring>

namespace nvoChess {
namespace {

struct SelfGameRow {
    const char* Name;
    const char* Fen;
    int Result;
    const char* LineEnd; // the end of the game's first line
};

const SelfGameRow SelfGames[] = {
    {"WhiteMates", "6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1", 1, "a1a8  win 1"},
    // The mate is Black's, and Black began: the first player won.
    {"BlackMatesFirst", "r5k1/8/8/8/8/8/5PPP/6K1 b - - 0 1", 1, "a8a1  win -1"},
    // Every move leaves too little to mate with.
    {"DrawnAtOnce", "8/8/8/8/8/8/n7/K5k1 w - - 0 1", 0, " 0"},
};

using ThreadedSelfPlayTest = XBoardTest;

TEST_F(ThreadedSelfPlayTest, GamesEndAsTheBoardSays) {
    for (const SelfGameRow& row : SelfGames) {
        SCOPED_TRACE(row.Name);
        clsEngineCorvane first(&App.Share, clsString("Corvane"), &Captured.Output);
        clsEngineCorvane second(&App.Share, clsString("Corvane"), &Captured.Output);
        // Plenty of moves: each game ends by itself after the first.
        constexpr int64_t ThinkMs = 100, MaxMoves = 40;
        EXPECT_EQ(App.PlaySelfGame(first, second, ThinkMs, MaxMoves, clsString(row.Fen)), row.Result);
        const std::vector<std::string> lines = Written();
        ASSERT_FALSE(lines.empty());
        const std::string& game = lines.front();
        EXPECT_EQ(game.substr(game.size() - std::min(game.size(), strlen(row.LineEnd))), row.LineEnd);
        // One move only, and the result as the last word.
        EXPECT_EQ(game.find(' '), 4u);
        EXPECT_EQ(lines.back().substr(lines.back().rfind(' ') + 1), std::to_string(row.Result));
    }
}

} // namespace
} // namespace nvoChess
