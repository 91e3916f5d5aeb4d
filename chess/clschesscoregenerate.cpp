// The staged pseudo-legal generator. The order of routines, of men (lowest bit first) and of targets (lowest
// bit first) is the engine's move ordering: nothing sorts inside the tree.
#include <algorithm>

#include "chess/bits.h"
#include "chess/chesstables.h"
#include "chess/clschesscore.h"
#include "chess/rays.h"

namespace nvoChess {

namespace {

constexpr uint32_t CapturedFlag(int piece) {
    return static_cast<uint32_t>(piece) << MoveCapturedShift;
}
constexpr uint32_t PromotionFlag(int piece) {
    return static_cast<uint32_t>(piece) << MovePromotionShift;
}

constexpr int16_t CaptureValue[8] = {
    0, 0, PawnMaterial, KnightMaterial, BishopMaterial, RookMaterial, QueenMaterial, KingMaterial};

} // namespace

int32_t clsChessCore::Generate(int32_t stage) {
    clsSimpleNode& node = *Current;
    if (stage < 1) {
        PrepareNode(node);
        node.LegalCount = node.MoveCount = 0;
        node.CurMove = node.Moves;
    } else {
        node.CurMove = node.End();
    }
    ListEnd = node.CurMove;
    const bool all = stage == -1;
    if (all || stage == 0) PawnCaptures();
    if (all || stage == 1) {
        LeaperMoves(PieceKnight, KnightMoves, true);
        SliderCaptures<RayDownA, RayUpA, RayUpH, RayDownH>(PieceBishop, BishopLines);
    }
    if (all || stage == 2) SliderCaptures<RayH, RayUp, RayA, RayDown>(PieceRook, RookLines);
    if (all || stage == 3) {
        SliderCaptures<RayH, RayUp, RayA, RayDown>(PieceQueen, RookLines);
        SliderCaptures<RayDownA, RayUpA, RayUpH, RayDownH>(PieceQueen, BishopLines);
        LeaperMoves(PieceKing, KingMoves, true);
    }
    if (all || stage == 4) {
        LeaperMoves(PieceKnight, KnightMoves, false);
        SliderQuiets<RayDownA, RayUpA, RayDownH, RayUpH>(PieceBishop);
        SliderQuiets<RayH, RayA, RayUp, RayDown>(PieceRook);
    }
    if (all || stage == 5) {
        SliderQuiets<RayH, RayA, RayUp, RayDown>(PieceQueen);
        SliderQuiets<RayDownA, RayUpA, RayDownH, RayUpH>(PieceQueen);
        // Pawn and king quiet moves change places between the full list and the search's last stage.
        if (stage == 5) PawnQuiets();
        LeaperMoves(PieceKing, KingMoves, false);
        if (all) PawnQuiets();
        Castling();
    }
    node.MoveCount = static_cast<int32_t>(ListEnd - node.Moves);
    node.End() = ListEnd;
    return node.MoveCount;
}

void clsChessCore::PrepareNode(clsSimpleNode& node) {
    node.PawnKey = 1;
    node.KingBit = Board.Kings & Board.Mine;
    node.PinLines = node.KingBit;
    node.InCheck = IsAttacked(node.KingBit);
    if (node.InCheck) return;
    const int king = BitIndex(node.KingBit);
    const uint64_t theirs = Board.Theirs;
    if ((Board.Rooks | Board.Queens) & theirs & RookLines[king]) node.PinLines |= RookLines[king];
    if ((Board.Bishops | Board.Queens) & theirs & BishopLines[king]) node.PinLines |= BishopLines[king];
}

// Writes the template with this target. The pool's end stops a generation that ordinary play never makes.
bool clsChessCore::Emit(uint64_t to) {
    if (ListEnd == MovePool + MovePoolSize) return false;
    *ListEnd = MoveTemplate;
    ListEnd->To = to;
    ++ListEnd;
    return true;
}

bool clsChessCore::EmitCapture(uint64_t to) {
    if (!(to & Board.Theirs)) return false;
    int captured = PieceKing;
    for (int piece = PiecePawn; piece < PieceKing; ++piece)
        if (Board.Word(piece) & to) {
            captured = piece;
            break;
        }
    MoveTemplate.Flags |= CapturedFlag(captured);
    MoveTemplate.Value = CaptureValue[captured];
    const bool written = Emit(to);
    MoveTemplate.Flags &= ~MoveCapturedMask;
    MoveTemplate.Value = 0;
    return written;
}

void clsChessCore::EmitQuiets(uint64_t targets) {
    for (; targets != 0; targets &= targets - 1) Emit(LowestBit(targets));
}

void clsChessCore::EmitCaptures(uint64_t targets) {
    for (; targets != 0; targets &= targets - 1) EmitCapture(LowestBit(targets));
}

// The record just written becomes the queen promotion; the knight, bishop and rook follow.
void clsChessCore::ExpandPromotion() {
    clsMove& queen = ListEnd[-1];
    queen.Flags |= PromotionFlag(PieceQueen);
    queen.Value = QueenPromotionValue;
    const uint32_t base = queen.Flags & ~MovePromotionMask;
    const struct {
        int Piece;
        int16_t Value;
    } others[3] = {{PieceKnight, KnightPromotionValue},
                   {PieceBishop, BishopPromotionValue},
                   {PieceRook, RookPromotionValue}};
    for (const auto& other : others) {
        if (ListEnd == MovePool + MovePoolSize) return;
        *ListEnd = ListEnd[-1];
        ListEnd->Flags = base | PromotionFlag(other.Piece);
        ListEnd->Value = other.Value;
        ++ListEnd;
    }
}

void clsChessCore::StartRoutine(int piece, uint64_t from) {
    MoveTemplate.Flags = static_cast<uint32_t>(piece);
    MoveTemplate.Value = 0;
    MoveTemplate.From = from;
}

void clsChessCore::PawnCaptures() {
    const uint64_t pawns = Board.Pawns & Board.Mine;
    // En passant follows the parent's move, which at the root is the fake move of SetRootNode.
    if (const clsMove* parent = (Current - 1)->CurMove; parent && (parent->Flags & MoveDoublePush)) {
        const uint64_t target = ((parent->From | parent->To) >> 8) & EnPassantRanks;
        const uint64_t takers[2] = {((parent->To & NotAFileForLeftShift) << 1) & pawns,
                                    (parent->To >> 1) & NotAFileAfterRightShift & pawns};
        for (const uint64_t taker : takers) {
            if (!taker) continue;
            StartRoutine(PiecePawn, taker);
            MoveTemplate.Flags |= CapturedFlag(PiecePawn) | MoveEnPassant;
            MoveTemplate.Value = PawnMaterial;
            if (Emit(target)) ListEnd[-1].Extra = parent->To;
        }
    }
    const bool white = Board.SideToMove == 0;
    const uint64_t theirs = Board.Theirs;
    // Towards the a-file, then towards the h-file; the origin is computed back from the target.
    const uint64_t targets[2] = {white ? ((pawns & ~0x0000808080808080ULL) << 9) & theirs
                                       : (pawns >> 9) & theirs & 0x007F7F7F7F7F7F7FULL,
                                 white ? ((pawns & 0x00FEFEFEFEFEFEFEULL) << 7) & theirs
                                       : (pawns >> 7) & theirs & 0x00FEFEFEFEFEFEFEULL};
    const int shifts[2] = {9, 7};
    for (int i = 0; i < 2; ++i)
        for (uint64_t set = targets[i]; set != 0; set &= set - 1) {
            const uint64_t to = LowestBit(set);
            StartRoutine(PiecePawn, white ? to >> shifts[i] : to << shifts[i]);
            if (EmitCapture(to) && (to & PromotionRanks)) ExpandPromotion();
        }
}

void clsChessCore::PawnQuiets() {
    const uint64_t pawns = Board.Pawns & Board.Mine, empty = ~Board.Occupied;
    const bool white = Board.SideToMove == 0;
    const uint64_t singles = (white ? pawns << 8 : pawns >> 8) & empty;
    const uint64_t doubles = white ? ((singles & 0x0000000000FF0000ULL) << 8) & empty
                                   : (singles >> 8) & empty & 0x000000FF00000000ULL;
    for (uint64_t set = singles; set != 0; set &= set - 1) {
        const uint64_t to = LowestBit(set);
        StartRoutine(PiecePawn, white ? to >> 8 : to << 8);
        if (Emit(to) && (to & PromotionRanks)) ExpandPromotion();
    }
    for (uint64_t set = doubles; set != 0; set &= set - 1) {
        const uint64_t to = LowestBit(set);
        StartRoutine(PiecePawn, white ? to >> 16 : to << 16);
        MoveTemplate.Flags |= MoveDoublePush;
        Emit(to);
    }
}

void clsChessCore::LeaperMoves(int piece, const uint64_t* table, bool captures) {
    const uint64_t targets = captures ? Board.Theirs : ~Board.Occupied;
    for (uint64_t men = Board.Word(piece) & Board.Mine; men != 0; men &= men - 1) {
        const uint64_t from = LowestBit(men);
        StartRoutine(piece, from);
        const uint64_t reach = table[BitIndex(from)] & targets;
        captures ? EmitCaptures(reach) : EmitQuiets(reach);
    }
}

// Captures take the nearest man of each ray, if it is an enemy.
template <int... Rays> void clsChessCore::SliderCaptures(int piece, const uint64_t* lines) {
    const uint64_t theirs = Board.Theirs, occupied = Board.Occupied;
    for (uint64_t men = Board.Word(piece) & Board.Mine; men != 0; men &= men - 1) {
        const uint64_t from = LowestBit(men);
        const int sq = BitIndex(from);
        if (!(lines[sq] & theirs)) continue;
        StartRoutine(piece, from);
        (EmitCaptures(NearestOnRay<Rays>(sq, occupied) & theirs), ...);
    }
}

template <int... Rays> void clsChessCore::SliderQuiets(int piece) {
    const uint64_t occupied = Board.Occupied;
    for (uint64_t men = Board.Word(piece) & Board.Mine; men != 0; men &= men - 1) {
        const uint64_t from = LowestBit(men);
        const int sq = BitIndex(from);
        StartRoutine(piece, from);
        (EmitQuiets(FreeOnRay<Rays>(sq, from, occupied)), ...);
    }
}

void clsChessCore::Castling() {
    const clsBoard& b = Board;
    const uint64_t first = b.SideToMove == 0 ? 0x00000000000000FFULL : 0xFF00000000000000ULL;
    const uint64_t king = Current->KingBit;
    if (!(b.CastleRights & CastlingSquares) || !(king & b.CastleRights & first & 0x0800000000000008ULL))
        return;
    const uint64_t corners = b.Mine & b.CastleRights & first;
    if (!(corners & 0x8100000000000081ULL) || IsAttacked(king)) return;
    // The h-rook, then the a-rook: the squares that must be empty, and the one the king passes.
    const struct {
        uint64_t Corner, Empty, Passed, To;
    } sides[2] = {
        {first & 0x0100000000000001ULL, (king >> 1) | (king >> 2), king >> 1, king >> 2},
        {first & 0x8000000000000080ULL, (king << 1) | (king << 2) | (king << 3), king << 1, king << 2}};
    for (const auto& side : sides) {
        if (!(corners & side.Corner) || (b.Occupied & side.Empty) || IsAttacked(side.Passed)) continue;
        StartRoutine(PieceKing, king);
        MoveTemplate.Flags |= MoveCastling;
        if (Emit(side.To)) ListEnd[-1].Extra = side.Corner | side.Passed;
    }
}

bool clsChessCore::IsAttacked(uint64_t bit) const {
    const clsBoard& b = Board;
    const int sq = BitIndex(bit);
    if (b.Theirs & ((PawnAttackers[b.SideToMove][sq] & b.Pawns) | (KnightMoves[sq] & b.Knights))) return true;
    const uint64_t diagonal = (b.Bishops | b.Queens) & BishopLines[sq] & b.Theirs;
    if (diagonal && RayAttack(sq, RayUpH, diagonal)) return true;
    const uint64_t straight = (b.Rooks | b.Queens) & RookLines[sq] & b.Theirs;
    if (straight && RayAttack(sq, RayUp, straight)) return true;
    return (b.Theirs & KingMoves[sq] & b.Kings) != 0;
}

// The square is attacked along one of four rays when the nearest man on it is an attacker. The odd rays rise
// in bit index, so their nearest man is the lowest blocker; on the even ones it is the highest.
bool clsChessCore::RayAttack(int32_t square, int32_t firstRay, uint64_t attackers) const {
    for (int ray = firstRay; ray < firstRay + 4; ++ray) {
        const uint64_t hits = Ray[ray][square] & attackers;
        if (!hits) continue;
        const uint64_t blockers = Ray[ray][square] & Board.Occupied;
        if (hits == blockers) return true;
        if (ray & 1 ? ((blockers - 1) & hits) != hits : hits > (~hits & blockers)) return true;
    }
    return false;
}

int32_t clsChessCore::FilterLegal() {
    clsSimpleNode& node = *Current;
    clsMove* kept = node.Moves;
    for (clsMove* move = node.Moves; move != node.End(); ++move)
        if (IsLegalAtCurrent(*move)) *kept++ = *move;
    node.End() = kept;
    node.MoveCount = static_cast<int32_t>(kept - node.Moves);
    return node.MoveCount;
}

nuvobase::clsString clsChessCore::FirstLegalMove() {
    ResetNodes();
    Generate(-1);
    return FilterLegal() == 0 ? nuvobase::clsString() : MoveText(Root->Moves, false);
}

void clsChessCore::SetRootNode() {
    clsMove& fake = MovePool[0];
    Node[0].CurMove = &fake;
    const uint64_t square = Board.EnPassant;
    fake.Flags = square ? MoveDoublePush : 0;
    if (square) {
        fake.Extra = square;
        // A double push of the side that just moved, seen from its start and end.
        const bool whiteMoved = Board.SideToMove == 1;
        fake.From = whiteMoved ? square >> 8 : square << 8;
        fake.To = whiteMoved ? square << 8 : square >> 8;
    }
    Root->SavedBoard = Board;
}

void clsChessCore::ResetNodes(int32_t nodes) {
    Node[0].Moves = MovePool;
    Root = Current = &Node[1];
    Node[1].Moves = Node[2].Moves = MovePool + 1;
    for (int i = 0; i < std::min(nodes, NodeCount); ++i) {
        clsSimpleNode& node = Node[i];
        node.Best = NoValue;
        node.Ply = i;
        node.CurMove = nullptr;
        // The root's mover moves in the odd nodes.
        const bool white = (Board.SideToMove == 0) == (i % 2 == 1);
        node.SecondRank = white ? Rank2 : Rank7;
        node.SeventhRank = white ? Rank7 : Rank2;
    }
    SetRootNode();
}

} // namespace nvoChess
