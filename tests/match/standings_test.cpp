#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "match/clsstandings.h"
#include "match/elomath.h"

using namespace nvoChess;
using nuvobase::clsString;

TEST(Standings, EloErrorSuperiorityAndSprtWorkedByHand) {
    // s = (W + D/2) / N; per-game variance v = (W (1-s)^2 + D (1/2-s)^2 + L s^2) / N; the 95% interval of s
    // is s +- 1.96 sqrt(v / N), turned into Elo at both ends. W 6, D 2, L 2: s 0.7, v 0.16, interval 0.4521
    // to 0.9479, Elo -33.40 to 504.04. LOS = 50 (1 + erf((W - L) / sqrt(2 (W + L)))).
    struct clsRow {
        int32_t Wins, Draws, Losses;
        double Elo, Error, Los;
    };
    const double inf = INFINITY;
    const clsRow rows[] = {
        {6, 2, 2, 147.19, 268.72, 92.135},  {3, 4, 3, 0, 181.74, 50},    {0, 4, 0, 0, 0, 50},
        {2, 3, 5, -107.54, 215.77, 12.842}, {2, 0, 0, inf, inf, 92.135},
    };
    for (const clsRow& row : rows) {
        const double s = (row.Wins + row.Draws / 2.0) / (row.Wins + row.Draws + row.Losses);
        SCOPED_TRACE(std::to_string(row.Wins) + " " + std::to_string(row.Draws) + " " +
                     std::to_string(row.Losses));
        if (std::isinf(row.Elo)) {
            EXPECT_TRUE(std::isinf(EloFromScore(s)) &&
                        std::isinf(EloErrorOf(row.Wins, row.Draws, row.Losses)));
        } else {
            EXPECT_NEAR(EloFromScore(s), row.Elo, 0.01);
            EXPECT_NEAR(EloErrorOf(row.Wins, row.Draws, row.Losses), row.Error, 0.01);
        }
        EXPECT_NEAR(LikelihoodOfSuperiority(row.Wins, row.Losses), row.Los, 0.001);
    }

    // LLR = N/2 ((m - s0)^2 - (m - s1)^2) / v, m and v the mean and variance (over N) of the scores. Elo
    // 400 log10(3) expects 0.75 and Elo 0 expects 0.5. {1, 0.5}: m 0.75, v 0.0625, LLR 1 (0.0625 - 0) /
    // 0.0625.
    const double e75 = 400 * std::log10(3.0);
    struct clsCase {
        std::vector<double> Scores;
        double Elo0, Elo1, Llr;
    };
    const clsCase cases[] = {
        {{1, 0.5}, 0, e75, 1},          {{0, 0.5}, 0, e75, -3},  {{1, 0.75, 0.5, 0.75}, 0, e75, 4},
        {{0.5, 0}, -e75, 0, -1},        {{0.5, 0.5}, 0, e75, 0}, {{}, 0, e75, 0},
        {{1, 0.5, 0.75}, 0, e75, 2.25},
    };
    for (const clsCase& c : cases)
        EXPECT_NEAR(clsSprt::LogLikelihoodRatio(c.Scores, c.Elo0, c.Elo1), c.Llr, 1e-9);
    // The bounds, the verdict that stops a match and its place in the standings are played end to end by the
    // tournament test of the same four pairs.
}

TEST(Standings, PairsAndJsonOfTwoPlayers) {
    clsStandings standings({"A", "B"});
    standings.Add({"A", "B", 2, 1}); // pair 1: A wins both
    standings.Add({"B", "A", 0, 1});
    standings.Add({"A", "B", 1, 2}); // pair 2: a draw and a loss of A
    standings.Add({"B", "A", 2, 2});
    standings.Add({"A", "B", 2, 3}); // pair 3 is not complete
    EXPECT_EQ(standings.Penta(), (clsStandings::clsPenta{0, 1, 0, 0, 1}));
    const std::string json = standings.JsonText().Text();
    // A: 3 wins, 1 loss, 1 draw; LOS 50 (1 + erf(2 / sqrt(8))) = 84.1.
    EXPECT_NE(json.find("\"name\": \"A\",\n      \"games\": 5,\n      \"wins\": 3,\n      \"losses\": 1,\n"
                        "      \"draws\": 1,\n      \"points\": 7"),
              std::string::npos)
        << json;
    EXPECT_NE(json.find("\"penta\": [\n    0,\n    1,\n    0,\n    0,\n    1\n  ],\n  \"los\": 84.1"),
              std::string::npos)
        << json;
    EXPECT_EQ(std::string(standings.Sorted()[0].Name.Text()), "A");
}
