#include "vesko/veskoblock.h"

#include "vesko/veskomoves.h"
#include "vesko/veskosearch.h"
#include "vesko/veskotext.h"

#include <cstring>
#include <utility>

namespace nvoChess {

namespace {

constexpr VeskoWeights Weights = {
    .Pawn = 105,
    .Knight = 303,
    .Bishop = 303,
    .Rook = 500,
    .Queen = 940,
    .Center = 7,
    .Rim = 25,
    .Castling = 40,
    .PawnPair = 15,
    .RookOnSeventh = 20,
    .PawnOnSixth = 10,
    .DrawScore = 50,
    .Mobility = 1,
};

// The word of the promoted man that a letter asks for; null for no letter or another one.
const uint64_t* PromotionAsked(const VeskoNode* root, char letter) {
    switch (letter | 0x20) {
    case 'q':
        return &root->Mine.Queens;
    case 'r':
        return &root->Mine.Rooks;
    case 'b':
        return &root->Mine.Bishops;
    case 'n':
        return &root->Mine.Knights;
    default:
        return nullptr;
    }
}

// Finds the move of MoveText in the root list by its squares alone (a move marked
// illegal is found as well) and plays it: the root then holds the new position.
void MakeMove(VeskoBlock* block) {
    block->Depth = 1;
    VeskoCountMoves(block);
    VeskoNode* const root = &block->NodeStack[VeskoRootIndex];
    const uint64_t from = VeskoTextToSquare(block->MoveText);
    const uint64_t to = VeskoTextToSquare(block->MoveText + 2);
    const uint64_t* promotion = PromotionAsked(root, block->MoveText[4]);
    for (VeskoMove* move = root->FirstMove; move != (root + 1)->FirstMove; ++move) {
        if (move->From != from || move->To != to) continue;
        const bool promotes = move->Piece == &root->Mine.Pawns && move->Extra.NewPiece;
        if (promotes && promotion && move->Extra.NewPiece != promotion) continue;
        VeskoMake(root, move);
        ++block->MovesMade;
        std::swap(root->Mine, root->Theirs);
        root->Flags ^= VeskoBlackToMove;
        root->PawnStep = -root->PawnStep;
        root->Material = -root->Material;
        (root - 1)->EnPassant = root->EnPassant;
        root->EnPassant = 0;
        return;
    }
    block->Error = 1;
}

} // namespace

void VeskoExecute(VeskoBlock* block) {
    block->Weights = Weights;
    VeskoBuildTables(block->Tables);
    VeskoShared(block->Nodes).store(0);
    block->MovesMade = 0;
    block->Error = 0;
    std::memset(block->PlyCounts, 0, sizeof block->PlyCounts);

    const uint64_t command = VeskoShared(block->Command).load();
    if (command & VeskoCommandGetPosition) {
        VeskoWriteFen(block);
        return;
    }
    if (command & VeskoCommandSetPosition) VeskoReadFen(block);
    if (command & VeskoCommandSearch)
        VeskoSearch(block);
    else if (command & VeskoCommandCount)
        VeskoCountMoves(block);
    else if (command & VeskoCommandMakeMove)
        MakeMove(block);
}

} // namespace nvoChess
