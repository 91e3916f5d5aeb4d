#include "vesko/veskomoves.h"

namespace nvoChess {

namespace {

constexpr uint64_t FileA = 0x8080808080808080;
constexpr uint64_t FileH = 0x0101010101010101;
constexpr uint64_t Rank1 = 0x00000000000000FF;
constexpr uint64_t Rank3 = 0x0000000000FF0000;
constexpr uint64_t Rank6 = 0x0000FF0000000000;
constexpr uint64_t Rank8 = 0xFF00000000000000;

// One step of a ray. A positive shift goes up the bit order; the mask drops squares
// that wrapped around the edge of the board.
template <int Shift> uint64_t RayStep(uint64_t bits) {
    constexpr int file = ((Shift % 8) + 8) % 8; // 1: towards the a-file, 7: towards the h-file
    constexpr uint64_t keep = file == 1 ? ~FileH : file == 7 ? ~FileA : ~uint64_t(0);
    if constexpr (Shift > 0)
        return (bits << Shift) & keep;
    else
        return (bits >> -Shift) & keep;
}

uint64_t Shifted(uint64_t bits, int shift) {
    return shift > 0 ? bits << shift : bits >> -shift;
}

class Generator {
public:
    Generator(VeskoBlock* block, VeskoNode* node)
        : Tables(block->Tables), Weights(block->Weights), Node(node), Mine(node->Mine), Theirs(node->Theirs),
          Next(node->FirstMove) {}

    void Run() {
        PrepareChecks();
        Targets = ~Mine.Occupied & ~Theirs.King & Node->CheckMask;
        if (Node->CheckerCount < 2) {
            Pawns();
            for (uint64_t rooks = Mine.Rooks; rooks; rooks &= rooks - 1) Rook(rooks & -rooks, &Mine.Rooks);
            for (uint64_t bishops = Mine.Bishops; bishops; bishops &= bishops - 1)
                Bishop(bishops & -bishops, &Mine.Bishops);
            for (uint64_t knights = Mine.Knights; knights; knights &= knights - 1) Knight(knights & -knights);
            for (uint64_t queens = Mine.Queens; queens; queens &= queens - 1) {
                Rook(queens & -queens, &Mine.Queens);
                Bishop(queens & -queens, &Mine.Queens);
            }
        }
        King();
        if (!Node->CheckerCount) Castlings();
        Node->MoveCount = uint64_t(Next - Node->FirstMove);
        (Node + 1)->FirstMove = Next;
        Node->EnPassant = 0;
    }

private:
    const VeskoTables& Tables;
    const VeskoWeights& Weights;
    VeskoNode* Node;
    VeskoHalf& Mine;
    VeskoHalf& Theirs;
    VeskoMove* Next;
    uint64_t Targets = 0; // not own, not the enemy king, and stopping a check

    uint64_t Occupied() const { return Mine.Occupied | Theirs.Occupied; }
    int KingSquare() const { return VeskoSquareOf(Mine.King); }

    // At the root the king is examined in full. Below it only the last move can have
    // given check: by a knight or pawn, or by a slider on a line through a square the
    // move emptied or filled.
    void PrepareChecks() {
        const int king = KingSquare();
        uint64_t checkers;
        if (Node->Ply == 0) {
            checkers = VeskoAttackers(Tables, king, Theirs, Occupied(), Node->PawnStep) & ~Theirs.King;
        } else {
            checkers = (Tables.KnightAttacks[king] & Theirs.Knights) |
                       (Tables.PawnSides[king + Node->PawnStep + 8] & Theirs.Pawns);
            const VeskoNode* parent = Node - 1;
            const VeskoMove* last = parent->Current;
            uint64_t through = last->From | last->To;
            if (last->Piece == &parent->Mine.King)
                through |= last->Extra.RookSquares;
            else if (VeskoIsEnPassant(parent, last))
                through |= VeskoPawnShift(last->To, parent->PawnStep, -1);
            const uint64_t rookLike = Theirs.Rooks | Theirs.Queens;
            const uint64_t bishopLike = Theirs.Bishops | Theirs.Queens;
            for (; through; through &= through - 1)
                checkers |= VeskoSliderThrough(Tables, king, VeskoSquareOf(through), Occupied(), rookLike,
                                               bishopLike);
        }
        Node->CheckerCount = uint64_t(std::popcount(checkers));
        if (!checkers)
            Node->CheckMask = ~uint64_t(0);
        else if (Node->CheckerCount == 1)
            Node->CheckMask = checkers | VeskoBetween(Tables, VeskoSquareOf(checkers), king);
        else
            Node->CheckMask = 0;
        uint64_t attacked = Tables.KingAttacks[VeskoSquareOf(Theirs.King)];
        for (uint64_t knights = Theirs.Knights; knights; knights &= knights - 1)
            attacked |= Tables.KnightAttacks[VeskoSquareOf(knights)];
        Node->KingSafe = ~attacked;
    }

    VeskoMove* Add(uint64_t from, uint64_t* piece, uint64_t to) {
        VeskoMove* move = Next++;
        move->From = from;
        move->Piece = piece;
        move->To = to;
        move->Victim = nullptr;
        move->Extra.RookSquares = 0;
        move->Gain = 0;
        move->Flags = 0;
        if (to & Theirs.Occupied) {
            if (to & Theirs.Pawns)
                Capture(move, &Theirs.Pawns, Weights.Pawn);
            else if (to & Theirs.Knights)
                Capture(move, &Theirs.Knights, Weights.Knight);
            else if (to & Theirs.Bishops)
                Capture(move, &Theirs.Bishops, Weights.Bishop);
            else if (to & Theirs.Rooks)
                Capture(move, &Theirs.Rooks, Weights.Rook);
            else if (to & Theirs.Queens)
                Capture(move, &Theirs.Queens, Weights.Queen);
        }
        move->Score = move->Gain;
        return move;
    }

    static void Capture(VeskoMove* move, uint64_t* victim, int64_t value) {
        move->Victim = victim;
        move->Gain = value;
    }

    void AddPawn(uint64_t from, uint64_t to) {
        if (!(to & (Rank1 | Rank8))) {
            Add(from, &Mine.Pawns, to)->Extra.NewPiece = nullptr;
            return;
        }
        const struct {
            uint64_t* Word;
            int64_t Value;
        } promotions[4] = {{&Mine.Queens, Weights.Queen},
                           {&Mine.Rooks, Weights.Rook},
                           {&Mine.Knights, Weights.Knight},
                           {&Mine.Bishops, Weights.Bishop}};
        for (const auto& promotion : promotions) {
            VeskoMove* move = Add(from, &Mine.Pawns, to);
            move->Extra.NewPiece = promotion.Word;
            move->Gain += promotion.Value; // the pawn stays counted
        }
    }

    // Every target in `targets` reached by a pawn step of `shift`.
    void PawnSet(uint64_t targets, int shift) {
        for (; targets; targets &= targets - 1) {
            const uint64_t to = targets & -targets;
            AddPawn(Shifted(to, -shift), to);
        }
    }

    void Pawns() {
        const uint64_t pawns = Mine.Pawns;
        const uint64_t empty = ~Occupied();
        const bool white = Node->PawnStep > 0;
        const int forward = white ? 8 : -8;
        const uint64_t single = Shifted(pawns, forward) & empty;
        PawnSet(single & Targets, forward);
        PawnSet(Shifted(single & (white ? Rank3 : Rank6), forward) & empty & Targets, 2 * forward);
        const uint64_t victims = Theirs.Occupied & Targets;
        const int towardsA = white ? 9 : -7;
        const int towardsH = white ? 7 : -9;
        PawnSet(Shifted(pawns, towardsA) & ~FileH & victims, towardsA);
        PawnSet(Shifted(pawns, towardsH) & ~FileA & victims, towardsH);

        const uint64_t target = (Node - 1)->EnPassant & empty & (white ? Rank6 : Rank3);
        const uint64_t captured = Shifted(target, -forward) & Theirs.Pawns;
        if (!captured || !((target | captured) & Node->CheckMask)) return;
        for (uint64_t from = Tables.PawnSides[VeskoSquareOf(captured) + 8] & pawns; from; from &= from - 1) {
            VeskoMove* move = Add(from & -from, &Mine.Pawns, target);
            move->Extra.NewPiece = nullptr;
            Capture(move, &Theirs.Pawns, Weights.Pawn);
            move->Score = move->Gain;
        }
    }

    template <int Shift> void Ray(uint64_t from, uint64_t* piece) {
        for (uint64_t to = RayStep<Shift>(from); to & ~Mine.Occupied; to = RayStep<Shift>(to)) {
            if (to & Targets) Add(from, piece, to);
            if (to & Theirs.Occupied) break;
        }
    }

    void Rook(uint64_t from, uint64_t* piece) {
        Ray<8>(from, piece);
        Ray<-8>(from, piece);
        Ray<1>(from, piece);
        Ray<-1>(from, piece);
    }

    void Bishop(uint64_t from, uint64_t* piece) {
        Ray<9>(from, piece);
        Ray<7>(from, piece);
        Ray<-7>(from, piece);
        Ray<-9>(from, piece);
    }

    void Knight(uint64_t from) {
        for (uint64_t to = Tables.KnightAttacks[VeskoSquareOf(from)] & Targets; to; to &= to - 1)
            Add(from, &Mine.Knights, to & -to);
    }

    void King() {
        const int square = KingSquare();
        const uint64_t from = Tables.Bit[square];
        for (uint64_t to = Tables.KingAttacks[square] & ~Mine.Occupied & ~Theirs.King & Node->KingSafe; to;
             to &= to - 1)
            Add(from, &Mine.King, to & -to);
    }

    // Castling squares of white, moved to the top byte for black.
    void Castlings() {
        const int shift = (Node->Flags & VeskoBlackToMove) ? 56 : 0;
        const uint64_t rights = Mine.Castling >> shift;
        const uint64_t king = uint64_t(0x08) << shift;
        if (!(Mine.King & king)) return;
        Castling(rights, 0x09, 0x06, 0x04, 0x02, 0x05, shift);
        Castling(rights, 0x88, 0x70, 0x10, 0x20, 0x90, shift);
    }

    void Castling(uint64_t rights, uint64_t needed, uint64_t empty, uint64_t passed, uint64_t to,
                  uint64_t rook, int shift) {
        if ((rights & needed) != needed || !(Mine.Rooks & (rook & needed) << shift)) return;
        if (Occupied() & empty << shift) return;
        if (VeskoAttackers(Tables, VeskoSquareOf(passed << shift), Theirs, Occupied(), Node->PawnStep))
            return;
        VeskoMove* move = Add(uint64_t(0x08) << shift, &Mine.King, to << shift);
        move->Extra.RookSquares = rook << shift;
        move->Gain = Weights.Castling;
    }
};

} // namespace

void VeskoGenerate(VeskoBlock* block, VeskoNode* node) {
    Generator(block, node).Run();
}

// The guard above the root holds the root's position seen from the other side, so that
// taking back a root move works as at every other node. Both guards start the bounds.
void VeskoPrepareRoot(VeskoBlock* block) {
    VeskoNode* const guards = block->NodeStack;
    VeskoNode* const root = &block->NodeStack[VeskoRootIndex];
    for (int index = 0; index < VeskoRootIndex; ++index) {
        guards[index].Flags = VeskoGuard;
        guards[index].Best = -VeskoRefuted;
    }
    VeskoNode* const above = root - 1;
    above->Mine = root->Theirs;
    above->Theirs = root->Mine;
    above->Material = -root->Material;
    root->FirstMove = block->MoveStack;
    root->Ply = 0;
    root->LegalCount = 0;
    root->Best = guards[0].Best;
    VeskoGenerate(block, root);
}

} // namespace nvoChess
