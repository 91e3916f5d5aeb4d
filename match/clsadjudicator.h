#pragma once
// Ends a tournament game early by the scores the engines report: a draw when both see a level game long
// enough, a win when both agree that one side is lost, and a draw after a set number of moves. Each rule
// works only when the tournament file sets it.

#include "nuvobase/clsstring.h"
#include "nuvobase/clsxml.h"

#include <cstdint>
#include <vector>

namespace nvoChess {

struct clsAdjudicationRules {
    // 0 leaves a rule off.
    int32_t DrawMoveNumber = 0, DrawMoveCount = 0, DrawScore = 0;
    int32_t ResignMoveCount = 0, ResignScore = 0;
    int32_t MaxMoves = 0;

    // The rules of an adjudicate element; attributes that are absent stay off.
    static clsAdjudicationRules Read(nuvobase::clsXML& element);
    bool Any() const { return DrawMoveCount > 0 || ResignMoveCount > 0 || MaxMoves > 0; }
};

class clsAdjudicator {
public:
    // Names of the rules, as the "Reason" tag gives them.
    static constexpr const char* DrawRule = "adjudication: draw by score";
    static constexpr const char* ResignRule = "adjudication: resign by score";
    static constexpr const char* MaxMovesRule = "adjudication: maxmoves";

    explicit clsAdjudicator(const clsAdjudicationRules& rules = clsAdjudicationRules()) : Rules(rules) {}

    // Forgets the scores of an earlier game.
    void Reset();
    // After a move of side (0 white, 1 black) with the score the mover reported, or none: the result word
    // the rules give, or 1 while the game goes on. moveNumber is the full-move number of the position the
    // move was played in, plies the moves played in the game so far. rule takes the rule's name.
    uint32_t AfterMove(int side, bool scoreKnown, int32_t score, int32_t moveNumber, int32_t plies,
                       nuvobase::clsString& rule);

    clsAdjudicationRules Rules;

private:
    // The side's newest count scores all satisfy test.
    template <typename Test> bool LastScores(int side, int32_t count, Test test) const;

    // Each side's scores since its last move without one.
    std::vector<int32_t> Scores[2];
};

} // namespace nvoChess
