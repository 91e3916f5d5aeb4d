#pragma once
// The Vesko engine core: one flat block of memory driven by a command word.
// Squares are one-bit words, bit index rank * 8 + (7 - file): h1 is bit 0, a8 bit 63.
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace nvoChess {

// Bits of VeskoBlock::Command.
constexpr uint64_t VeskoCommandCount = 1;
constexpr uint64_t VeskoCommandSearch = 2;
constexpr uint64_t VeskoCommandSetPosition = 4;
constexpr uint64_t VeskoCommandGetPosition = 8;
constexpr uint64_t VeskoCommandMakeMove = 16;
constexpr uint64_t VeskoCommandStop = 0x80;

// One side's men. Mine and Theirs of a node are seen from the side to move there.
struct VeskoHalf {
    uint64_t Occupied;
    uint64_t Pawns;
    uint64_t Knights;
    uint64_t Bishops;
    uint64_t Castling; // h1/e1/a1 (h8/e8/a8 for black) of the rights that still stand
    uint64_t Rooks;
    uint64_t Queens;
    uint64_t King;
};

// Bits of VeskoMove::Flags.
constexpr uint64_t VeskoTried = 1;
constexpr uint64_t VeskoIllegal = 2;

struct alignas(64) VeskoMove {
    uint64_t From;
    uint64_t* Piece; // the word of the mover's half that holds the moving man
    uint64_t To;
    uint64_t* Victim; // the word of the other half that loses a man; null for a quiet move
    union {
        uint64_t* NewPiece;   // pawn moves: the word of the promoted man, null for no promotion
        uint64_t RookSquares; // king moves: from and to square of the rook in a castling, else 0
    } Extra;
    int64_t Gain;  // material won by the move
    int64_t Score; // sort value, and the searched value once tried
    uint64_t Flags;
};
static_assert(sizeof(VeskoMove) == 64);

// Bits of VeskoNode::Flags.
constexpr uint64_t VeskoBlackToMove = 1;
constexpr uint64_t VeskoGuard = 2;

struct alignas(32) VeskoNode {
    VeskoHalf Mine;
    VeskoHalf Theirs;
    VeskoMove* Current;
    VeskoMove* FirstMove; // the next node's FirstMove is the end of this node's list
    uint64_t LegalCount;
    uint64_t Flags;
    int64_t Material;
    int64_t Best;
    uint64_t MoveCount;
    uint64_t CheckerCount;
    uint64_t CheckMask; // all ones outside check, else the squares that stop the check
    uint64_t KingSafe;  // squares free of the enemy king's and knights' attacks
    uint64_t EnPassant; // target square for the next node, 0 when none
    int64_t PawnStep;   // +8 with white to move, -8 with black
    uint64_t Total;     // legal moves counted at this ply, over all its nodes
    uint64_t Ply;
};

struct VeskoWeights {
    int64_t Pawn, Knight, Bishop, Rook, Queen;
    int64_t Center;
    int64_t Rim;
    int64_t Castling;
    int64_t PawnPair;
    int64_t RookOnSeventh;
    int64_t PawnOnSixth;
    int64_t DrawScore;
    int64_t Mobility;
};

// The squares between a source and a target on one line, and those behind the target.
struct VeskoLine {
    uint64_t Between;
    uint64_t Behind;
};

// Square 64 stands for "no square" (a side without king); its entries are all empty.
constexpr int VeskoNoSquare = 64;

struct VeskoTables {
    uint64_t Bit[65];
    uint64_t KingAttacks[65];
    uint64_t KnightAttacks[65];
    uint64_t RookRays[65];
    uint64_t BishopRays[65];
    uint64_t QueenRays[65];
    VeskoLine RookLine[65][65];   // by target, source
    VeskoLine BishopLine[65][65]; // by target, source
    // By square + 8: the two squares beside it on its rank. The king's square plus
    // PawnStep finds the enemy pawns that give check.
    uint64_t PawnSides[81];
};

constexpr int VeskoNodeCount = 128;
constexpr int VeskoRootIndex = 2; // behind two guard records
constexpr int64_t VeskoCountLimit = 124;
constexpr int64_t VeskoDepthLimit = 126;
// No position holds more than 999 pseudo-legal moves: n own men with at most
// min(27, 64 - n) targets each (12 for a promoting pawn), largest at n = 37.
constexpr int VeskoNodeMoves = 1000;
constexpr int VeskoMoveCapacity = VeskoCountLimit * VeskoNodeMoves;

constexpr int64_t VeskoMateScore = 20000;
constexpr int64_t VeskoWinScore = 10000; // at or beyond it the result is forced
constexpr int64_t VeskoRefuted = 30000;
constexpr int64_t VeskoIllegalScore = -40000;

struct alignas(256) VeskoBlock {
    char Text[512];   // in: a FEN; out: a FEN
    uint64_t Command; // VeskoCommandCount ... VeskoCommandStop
    int64_t Depth;    // of a count; during a search the current iteration
    int64_t MaxDepth; // 0: no limit
    uint64_t MovesMade;
    int64_t RootScore;
    char MoveText[8];  // in: the move to make, "e7e8q"
    uint64_t Error;    // after a make move: 0 done, 1 not in the list
    uint64_t BestMove; // the best move's text, up to 8 characters packed; 0 when none
    uint64_t Nodes;    // leaves evaluated
    int64_t BestScore;
    uint64_t NodeLimit; // a search stops itself once Nodes reaches it; 0 for none
    // Told after every iteration that published a move; null for nobody.
    void (*IterationDone)(void* listener);
    void* Listener;
    uint64_t PlyCounts[128];
    VeskoWeights Weights;
    VeskoNode NodeStack[VeskoNodeCount];
    VeskoMove MoveStack[VeskoMoveCapacity];
    VeskoTables Tables;
};

// The fields that another thread touches while a search runs (the stop bit of Command;
// Depth, Nodes, BestMove and BestScore) are reached through this on both sides.
template <class T> std::atomic_ref<T> VeskoShared(T& field) {
    return std::atomic_ref<T>(field);
}

// Allocates a zeroed block, aligned inside a larger allocation: `raw` and `size` receive
// that allocation, which VeskoFree takes back. Null when there is no memory.
VeskoBlock* VeskoAllocate(void*& raw, std::size_t& size);
void VeskoFree(void* raw);

// Runs the command of the block.
void VeskoExecute(VeskoBlock* block);

} // namespace nvoChess
