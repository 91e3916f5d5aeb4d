// The positional judgement of a leaf, weighed by the soul. The material part
// is kept by the moves themselves; a leaf is worth Material + Evaluate().
#pragma once

#include <cstdint>

#include "chess/clschesscore.h"
#include "search/clssoul.h"

namespace nvoChess {

class clsEvaluation : public clsChessCore {
public:
    const clsSoul& GetSoul() const { return Soul; }
    // The castling bonus of the soul is what castling moves add to Material.
    void SetSoul(const clsSoul& soul);

    // The position right after ApplyMove, before the swap: the side that has
    // just moved is still Mine, and the value is from its view. Reads and
    // fills the pawn cache of the current node.
    int32_t Evaluate();

private:
    clsSoul Soul;

    int32_t BareKingTerms(int32_t e) const;
    int32_t PawnTerms() const;
    int32_t KingTerms() const;
    int32_t QueenOutEarlyTerm() const;
};

} // namespace nvoChess
