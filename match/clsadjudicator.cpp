#include "match/clsadjudicator.h"

#include "book/clsgame.h"

#include <cstdlib>

using nuvobase::clsString;

namespace nvoChess {

namespace {

constexpr uint32_t AdjudicatedDraw = CodeAdjudication | CodeDraw;
constexpr uint32_t AdjudicatedWhiteWin = CodeAdjudication | CodeWhiteWins;
constexpr uint32_t AdjudicatedBlackWin = CodeAdjudication | CodeBlackWins;

int32_t Attribute(nuvobase::clsXML& element, const char* name) {
    const int32_t value = int32_t(element.GetAttribute(name).ToDecimal());
    return value > 0 ? value : 0;
}

} // namespace

clsAdjudicationRules clsAdjudicationRules::Read(nuvobase::clsXML& element) {
    clsAdjudicationRules rules;
    rules.DrawMoveNumber = Attribute(element, "draw_movenumber");
    rules.DrawMoveCount = Attribute(element, "draw_movecount");
    rules.DrawScore = Attribute(element, "draw_score");
    rules.ResignMoveCount = Attribute(element, "resign_movecount");
    rules.ResignScore = Attribute(element, "resign_score");
    rules.MaxMoves = Attribute(element, "maxmoves");
    return rules;
}

void clsAdjudicator::Reset() {
    Scores[0].clear();
    Scores[1].clear();
}

template <typename Test> bool clsAdjudicator::LastScores(int side, int32_t count, Test test) const {
    const std::vector<int32_t>& scores = Scores[side];
    if (count <= 0 || int32_t(scores.size()) < count) return false;
    for (size_t i = scores.size() - size_t(count); i < scores.size(); ++i)
        if (!test(scores[i])) return false;
    return true;
}

uint32_t clsAdjudicator::AfterMove(int side, bool scoreKnown, int32_t score, int32_t moveNumber,
                                   int32_t plies, clsString& rule) {
    // A move without a score breaks the side's run of scores.
    if (scoreKnown)
        Scores[side].push_back(score);
    else
        Scores[side].clear();
    const int32_t drawCount = Rules.DrawMoveCount;
    const auto level = [this](int32_t value) { return std::abs(value) <= Rules.DrawScore; };
    if (drawCount > 0 && moveNumber >= Rules.DrawMoveNumber && LastScores(0, drawCount, level) &&
        LastScores(1, drawCount, level)) {
        rule = DrawRule;
        return AdjudicatedDraw;
    }
    const int32_t resignCount = Rules.ResignMoveCount;
    const auto lost = [this](int32_t value) { return value <= -Rules.ResignScore; };
    const auto won = [this](int32_t value) { return value >= Rules.ResignScore; };
    for (int loser : {0, 1}) {
        if (resignCount > 0 && LastScores(loser, resignCount, lost) &&
            LastScores(1 - loser, resignCount, won)) {
            rule = ResignRule;
            return loser == 0 ? AdjudicatedBlackWin : AdjudicatedWhiteWin;
        }
    }
    if (Rules.MaxMoves > 0 && plies >= Rules.MaxMoves) {
        rule = MaxMovesRule;
        return AdjudicatedDraw;
    }
    return CodeRunning;
}

} // namespace nvoChess
