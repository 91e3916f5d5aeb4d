#include "vesko/veskosearch.h"

#include "vesko/veskomoves.h"
#include "vesko/veskotext.h"

#include <cstring>
#include <utility>

namespace nvoChess {

namespace {

constexpr uint64_t CenterSquares = 0x0000003C3C000000;
constexpr uint64_t RimSquares = 0xFF818181818181FF;
constexpr int64_t NoMoveScore = -50001; // a move is picked only above it

} // namespace

int64_t VeskoEvaluate(const VeskoWeights& weights, const VeskoNode* node) {
    const VeskoHalf& mine = node->Mine;
    const VeskoHalf& theirs = node->Theirs;
    const bool black = node->Flags & VeskoBlackToMove;
    const uint64_t seventh = black ? 0x000000000000FF00 : 0x00FF000000000000;
    const uint64_t sixth = black ? 0x0000000000FF0000 : 0x0000FF0000000000;
    int64_t value = node->Material;
    value += int64_t(node->MoveCount) * weights.Mobility >> 1;
    value += weights.RookOnSeventh * std::popcount(mine.Rooks & seventh);
    value += weights.PawnOnSixth * std::popcount(mine.Pawns & sixth);
    // Pawns three bits apart: three files apart on a rank, or across the edge of it.
    value -= weights.PawnPair * std::popcount(mine.Pawns & (mine.Pawns << 3));
    value += weights.Center *
             (std::popcount(mine.Occupied & CenterSquares) - std::popcount(theirs.Occupied & CenterSquares));
    value -= weights.Rim * (std::popcount((mine.Knights | mine.Bishops) & RimSquares) -
                            std::popcount((theirs.Knights | theirs.Bishops) & RimSquares));
    return value;
}

namespace {

bool StopRequested(VeskoBlock* block) {
    return VeskoShared(block->Command).load(std::memory_order_relaxed) & VeskoCommandStop;
}

// The untried, legal move of highest Score, the first of equals.
VeskoMove* PickBest(VeskoNode* node) {
    VeskoMove* best = nullptr;
    int64_t score = NoMoveScore;
    for (VeskoMove* move = node->FirstMove; move != (node + 1)->FirstMove; ++move) {
        if (!(move->Flags & (VeskoTried | VeskoIllegal)) && move->Score > score) {
            best = move;
            score = move->Score;
        }
    }
    return best;
}

// Takes the value of the current move of `node`; true when the node is done, by a
// cut-off or by a forced win.
bool TakeValue(VeskoNode* node, int64_t value) {
    node->Current->Score = value;
    if (value <= node->Best) return false;
    node->Best = value;
    if (-value <= (node - 1)->Best) {
        node->Best = VeskoRefuted;
        return true;
    }
    return value >= VeskoWinScore;
}

// One iteration to Depth, as a loop over the node stack. False when the stop bit ended it.
bool Iterate(VeskoBlock* block) {
    VeskoNode* const root = &block->NodeStack[VeskoRootIndex];
    const uint64_t depth = uint64_t(block->Depth);
    uint64_t nodes = VeskoShared(block->Nodes).load(std::memory_order_relaxed);
    VeskoNode* node = root;
    for (;;) {
        if (StopRequested(block)) return false;
        int64_t value;
        if (VeskoMove* move = PickBest(node)) {
            node->Current = move;
            move->Flags |= VeskoTried;
            VeskoMake(node, move);
            ++block->MovesMade;
            if (!VeskoLegal(block->Tables, node, move)) {
                move->Flags |= VeskoIllegal;
                move->Score = VeskoIllegalScore;
                VeskoUndo(node);
                continue;
            }
            ++node->LegalCount;
            if (node->Ply + 1 < depth) {
                ++node;
                VeskoEnter(block, node);
                continue;
            }
            VeskoShared(block->Nodes).store(++nodes, std::memory_order_relaxed);
            if (nodes == block->NodeLimit) VeskoShared(block->Command).fetch_or(VeskoCommandStop);
            value = VeskoEvaluate(block->Weights, node);
        } else {
            if (!node->LegalCount)
                node->Best = node->CheckerCount ? -VeskoMateScore : block->Weights.DrawScore;
            if (node == root) return true;
            value = -node->Best;
            --node;
        }
        while (TakeValue(node, value)) {
            if (node == root) return true;
            value = -node->Best;
            --node;
        }
        VeskoUndo(node);
    }
}

// Highest Score first; equal moves keep their order. Clears the tried bits.
void SortRoot(VeskoNode* root) {
    VeskoMove* const first = root->FirstMove;
    VeskoMove* const end = (root + 1)->FirstMove;
    for (VeskoMove* sorted = end; sorted - first > 1; --sorted)
        for (VeskoMove* move = first; move + 1 != sorted; ++move)
            if (move[1].Score > move[0].Score) std::swap(move[0], move[1]);
    for (VeskoMove* move = first; move != end; ++move) move->Flags &= ~VeskoTried;
}

void Publish(VeskoBlock* block, const VeskoNode* root) {
    const VeskoMove* best = root->FirstMove;
    char text[8] = {};
    VeskoMoveToText(root, best, text);
    uint64_t packed;
    std::memcpy(&packed, text, sizeof packed);
    VeskoShared(block->BestMove).store(packed);
    VeskoShared(block->BestScore).store(best->Score);
    block->RootScore = root->Best;
}

} // namespace

void VeskoSearch(VeskoBlock* block) {
    const int64_t limit = block->MaxDepth > 0 ? block->MaxDepth : VeskoDepthLimit;
    VeskoPrepareRoot(block);
    VeskoNode* const root = &block->NodeStack[VeskoRootIndex];
    // Root moves are generated once; every iteration walks the same list, best first.
    for (int64_t depth = 2;; depth += 2) {
        VeskoShared(block->Depth).store(depth);
        root->LegalCount = 0;
        root->Best = block->NodeStack[0].Best;
        const bool complete = Iterate(block);
        // A stop inside the walk, or a win found at the root, leaves a root move made: the root goes back to
        // the position searched, from its parent as after every root move.
        VeskoUndo(root);
        if (!complete) return;
        SortRoot(root);
        const VeskoMove* first = root->FirstMove;
        if (first == (root + 1)->FirstMove || (first->Flags & VeskoIllegal)) return;
        Publish(block, root);
        if (block->IterationDone) block->IterationDone(block->Listener);
        if (first->Score >= VeskoWinScore || first->Score <= -VeskoWinScore) return;
        if (depth + 2 >= limit - 1) return;
    }
}

} // namespace nvoChess
