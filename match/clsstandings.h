#pragma once
// The standings of a tournament from its finished games: per player the games, wins, losses, draws,
// points and the Elo difference against the rest of the field with its 95% error; for two players also
// the results of the game pairs and the likelihood of superiority. Written as JSON and as a table.

#include "match/clssprt.h"
#include "nuvobase/clsstring.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace nvoChess {

// One decided game as the standings count it.
struct clsGameOutcome {
    nuvobase::clsString White, Black;
    int32_t WhitePoints = 0; // 2 a win, 1 a draw, 0 a loss
    int32_t Pair = 0;        // the two games of a pair share it: one opening played with both colours
};

class clsStandings {
public:
    struct clsRow {
        nuvobase::clsString Name;
        int32_t Games = 0, Wins = 0, Losses = 0, Draws = 0;
        int32_t Points() const;
    };
    // Pair results of the first player: 0, 0.5, 1, 1.5 or 2 points.
    using clsPenta = std::array<int32_t, 5>;

    // The players in their order; a game of a name not among them adds that name behind.
    explicit clsStandings(const std::vector<nuvobase::clsString>& names = {});

    void Add(const clsGameOutcome& game);
    // Most points first; equal points keep the players' order.
    std::vector<clsRow> Sorted() const;
    // Counts of complete pairs by the first player's points in them.
    clsPenta Penta() const;
    // The first player's score (0 to 1) of each complete pair in pair order, or with byPair false of each
    // game in the order added; empty unless there are two players.
    std::vector<double> FirstPlayerScores(bool byPair) const;
    nuvobase::clsString JsonText() const;
    // The table, one text per line.
    std::vector<nuvobase::clsString> TableLines() const;

    std::vector<clsRow> Rows;
    std::vector<clsGameOutcome> Games;
    // The test of a match of two players, judged after every game added: by pairs when SprtByPair.
    std::optional<clsSprt> Sprt;
    bool SprtByPair = true;

private:
    clsRow& RowOf(const nuvobase::clsString& name);
};

} // namespace nvoChess
