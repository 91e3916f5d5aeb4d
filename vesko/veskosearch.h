#pragma once
// The two walks of the Vesko core over its node stack: the count and the search.
#include "vesko/veskoblock.h"

namespace nvoChess {

// Counts the legal moves of every ply down to Depth (at most 124) into PlyCounts.
void VeskoCountMoves(VeskoBlock* block);

// Deepens by two plies from depth 2 until MaxDepth, a forced result or the stop bit,
// publishing BestMove and BestScore after every full iteration.
void VeskoSearch(VeskoBlock* block);

// The value of a leaf, from the view of the side that has just moved at `node`, its
// halves not yet swapped.
int64_t VeskoEvaluate(const VeskoWeights& weights, const VeskoNode* node);

} // namespace nvoChess
