#include "match/clsstandings.h"

#include "match/clsplayer.h"
#include "match/elomath.h"
#include "nuvobase/clsjson.h"

#include <algorithm>
#include <cmath>
#include <map>

using nuvobase::clsJSON;
using nuvobase::clsString;

namespace nvoChess {

namespace {

constexpr int EloDecimals = 1;
constexpr int SprtDecimals = 3;
constexpr int NameWidth = 24, NumberWidth = 7;
constexpr int32_t GamesInPair = 2;

// A number for JSON: null where it is not finite.
clsString JsonNumber(double value) {
    if (!std::isfinite(value)) return clsString("null");
    return clsString().FromDouble(value + 0.0, EloDecimals); // adding 0 turns -0 into 0
}

// A number for the table: "inf" and "-inf" where it is not finite.
clsString TableNumber(double value) {
    if (!std::isfinite(value)) return clsString(value > 0 ? "inf" : "-inf");
    return clsString().FromDouble(value + 0.0, EloDecimals); // adding 0 turns -0 into 0
}

clsString Column(const clsString& text, int width) {
    clsString column = text;
    return column.PadLeft(' ', width);
}

double ScoreOf(const clsStandings::clsRow& row) {
    return row.Games == 0 ? 0.5 : (row.Wins + 0.5 * row.Draws) / row.Games;
}

} // namespace

int32_t clsStandings::clsRow::Points() const {
    return Wins * clsPlayer::WinPoints + Draws * clsPlayer::DrawPoints;
}

clsStandings::clsStandings(const std::vector<clsString>& names) {
    for (const clsString& name : names) RowOf(name);
}

clsStandings::clsRow& clsStandings::RowOf(const clsString& name) {
    for (clsRow& row : Rows)
        if (row.Name.Compare(name, clsString::CompareExact)) return row;
    Rows.push_back(clsRow());
    Rows.back().Name = name;
    return Rows.back();
}

void clsStandings::Add(const clsGameOutcome& game) {
    Games.push_back(game);
    // Both rows exist before either is held: adding a row may move the others.
    RowOf(game.White);
    clsRow& black = RowOf(game.Black);
    clsRow& white = RowOf(game.White);
    ++white.Games;
    ++black.Games;
    if (game.WhitePoints == clsPlayer::WinPoints) {
        ++white.Wins;
        ++black.Losses;
    } else if (game.WhitePoints == clsPlayer::DrawPoints) {
        ++white.Draws;
        ++black.Draws;
    } else {
        ++white.Losses;
        ++black.Wins;
    }
    if (Sprt) Sprt->Update(FirstPlayerScores(SprtByPair));
}

std::vector<clsStandings::clsRow> clsStandings::Sorted() const {
    std::vector<clsRow> sorted = Rows;
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const clsRow& a, const clsRow& b) { return a.Points() > b.Points(); });
    return sorted;
}

clsStandings::clsPenta clsStandings::Penta() const {
    clsPenta penta{};
    // A pair's score in quarters is its points in halves of a game point: 0 to 4.
    for (double score : FirstPlayerScores(true)) ++penta[size_t(std::lround(score * (penta.size() - 1)))];
    return penta;
}

std::vector<double> clsStandings::FirstPlayerScores(bool byPair) const {
    std::vector<double> scores;
    if (Rows.size() != 2) return scores;
    const clsString& first = Rows[0].Name;
    struct clsPair {
        int32_t Games = 0, Points = 0;
    };
    std::map<int32_t, clsPair> pairs;
    for (const clsGameOutcome& game : Games) {
        const bool firstIsWhite = game.White.Compare(first, clsString::CompareExact);
        // Points of the first player in halves of a game point: 2 a win, 1 a draw.
        const int32_t points = firstIsWhite ? game.WhitePoints : clsPlayer::WinPoints - game.WhitePoints;
        if (!byPair) {
            scores.push_back(double(points) / clsPlayer::WinPoints);
            continue;
        }
        clsPair& pair = pairs[game.Pair];
        ++pair.Games;
        pair.Points += points;
    }
    for (const auto& [id, pair] : pairs)
        if (pair.Games == GamesInPair)
            scores.push_back(double(pair.Points) / (GamesInPair * clsPlayer::WinPoints));
    return scores;
}

clsString clsStandings::JsonText() const {
    clsJSON root;
    clsJSON& players = root.Add("players");
    for (const clsRow& row : Sorted()) {
        clsJSON& player = players.Add(clsString());
        player.Add("name", clsJSON::Quoted(row.Name));
        player.Add("games", clsString(row.Games));
        player.Add("wins", clsString(row.Wins));
        player.Add("losses", clsString(row.Losses));
        player.Add("draws", clsString(row.Draws));
        player.Add("points", clsString(row.Points()));
        player.Add("elo", JsonNumber(EloFromScore(ScoreOf(row))));
        player.Add("elo_error", JsonNumber(EloErrorOf(row.Wins, row.Draws, row.Losses)));
    }
    if (Rows.size() == 2) {
        clsJSON& penta = root.Add("penta");
        for (int32_t count : Penta()) penta.Add(clsString(), clsString(count));
        root.Add("los", JsonNumber(LikelihoodOfSuperiority(Rows[0].Wins, Rows[0].Losses)));
    }
    if (Sprt) {
        clsJSON& sprt = root.Add("sprt");
        sprt.Add("elo0", JsonNumber(Sprt->Elo0));
        sprt.Add("elo1", JsonNumber(Sprt->Elo1));
        sprt.Add("llr", clsString().FromDouble(Sprt->Llr, SprtDecimals));
        sprt.Add("lower_bound", clsString().FromDouble(Sprt->LowerBound(), SprtDecimals));
        sprt.Add("upper_bound", clsString().FromDouble(Sprt->UpperBound(), SprtDecimals));
        sprt.Add("verdict", Sprt->Verdict == clsSprt::Undecided ? clsString("null")
                                                                : clsJSON::Quoted(Sprt->VerdictText()));
    }
    return root.ToJsonText() + "\n";
}

std::vector<clsString> clsStandings::TableLines() const {
    std::vector<clsString> lines;
    clsString head = Column("Rank", 4) + " ";
    lines.push_back(head + clsString("Name").PadRight(' ', NameWidth) + Column("Games", NumberWidth) +
                    Column("Wins", NumberWidth) + Column("Losses", NumberWidth) +
                    Column("Draws", NumberWidth) + Column("Points", NumberWidth) +
                    Column("Elo", NumberWidth + 2) + Column("+/-", NumberWidth + 2));
    int rank = 0;
    for (const clsRow& row : Sorted()) {
        clsString name = row.Name;
        lines.push_back(Column(clsString(++rank), 4) + " " + name.PadRight(' ', NameWidth) +
                        Column(clsString(row.Games), NumberWidth) + Column(clsString(row.Wins), NumberWidth) +
                        Column(clsString(row.Losses), NumberWidth) +
                        Column(clsString(row.Draws), NumberWidth) +
                        Column(clsString(row.Points()), NumberWidth) +
                        Column(TableNumber(EloFromScore(ScoreOf(row))), NumberWidth + 2) +
                        Column(TableNumber(EloErrorOf(row.Wins, row.Draws, row.Losses)), NumberWidth + 2));
    }
    if (Rows.size() == 2) {
        const clsPenta penta = Penta();
        clsString pairs = "pairs of " + Rows[0].Name + " by points 0, 0.5, 1, 1.5, 2:";
        for (int32_t count : penta) pairs += " " + clsString(count);
        lines.push_back(pairs);
        lines.push_back("likelihood of superiority of " + Rows[0].Name + ": " +
                        TableNumber(LikelihoodOfSuperiority(Rows[0].Wins, Rows[0].Losses)) + "%");
    }
    if (Sprt)
        lines.push_back(
            "sprt llr " + clsString().FromDouble(Sprt->Llr, SprtDecimals) + " within [" +
            clsString().FromDouble(Sprt->LowerBound(), SprtDecimals) + ", " +
            clsString().FromDouble(Sprt->UpperBound(), SprtDecimals) + "]: " +
            (Sprt->Verdict == clsSprt::Undecided ? clsString("no decision yet") : Sprt->VerdictText()));
    return lines;
}

} // namespace nvoChess
