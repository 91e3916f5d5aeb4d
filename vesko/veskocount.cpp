#include "vesko/veskomoves.h"
#include "vesko/veskosearch.h"

namespace nvoChess {

void VeskoCountMoves(VeskoBlock* block) {
    if (block->Depth > VeskoCountLimit) block->Depth = VeskoCountLimit;
    if (block->Depth < 1) return;
    const uint64_t depth = uint64_t(block->Depth);
    for (VeskoNode& node : block->NodeStack) node.Total = 0;
    VeskoPrepareRoot(block);

    VeskoNode* const root = &block->NodeStack[VeskoRootIndex];
    VeskoNode* node = root;
    node->Current = node->FirstMove;
    for (;;) {
        if (node->Current == (node + 1)->FirstMove) {
            node->Total += node->LegalCount;
            if (node == root) break;
            --node;
            VeskoUndo(node);
            ++node->Current;
            continue;
        }
        VeskoMove* move = node->Current;
        VeskoMake(node, move);
        ++block->MovesMade;
        if (!VeskoLegal(block->Tables, node, move)) {
            move->Flags |= VeskoIllegal;
            move->Score = VeskoIllegalScore;
        } else {
            ++node->LegalCount;
            if (node->Ply + 1 < depth) {
                ++node;
                VeskoEnter(block, node);
                node->Current = node->FirstMove;
                continue;
            }
        }
        VeskoUndo(node);
        ++node->Current;
    }
    for (uint64_t ply = 0; ply < depth; ++ply) block->PlyCounts[ply] = root[ply].Total;
}

} // namespace nvoChess
