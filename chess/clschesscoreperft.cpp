// Perft: the count of legal move paths to a depth. The root is always walked move by move, because its
// marks and divide lines are read afterwards. Below it, an ordinary position is counted with two shortcuts
// that give the same numbers: a move needs no legality test when the node is not in check and the move
// neither starts on a line of the king nor takes en passant, and the last ply is counted without making the
// moves.
#include "chess/bits.h"
#include "chess/chesstables.h"
#include "chess/clschesscore.h"
#include "chess/rays.h"

namespace nvoChess {

namespace {

constexpr uint64_t FileA = 0x8080808080808080ULL, FileH = 0x0101010101010101ULL;
constexpr uint64_t KingSquares = 0x0800000000000008ULL; // e1 and e8
constexpr uint64_t RookCorners = 0x8100000000000081ULL;

// Squares attacked by pawns of one colour.
uint64_t PawnAttacks(uint64_t pawns, bool white) {
    return white ? ((pawns << 9) & ~FileH) | ((pawns << 7) & ~FileA)
                 : ((pawns >> 9) & ~FileA) | ((pawns >> 7) & ~FileH);
}

template <int... Rays> uint64_t SliderAttacks(int sq, uint64_t occupied) {
    return (AttacksOnRay<Rays>(sq, SquareBit[sq], occupied) | ...);
}

// Each move to the last rank is four promotions.
int32_t CountTargets(uint64_t targets) {
    return CountBits(targets & NotPromotionRanks) + 4 * CountBits(targets & PromotionRanks);
}

// Moves of these pawns onto allowed squares, en passant aside.
int32_t CountPawnMoves(uint64_t pawns, bool white, uint64_t empty, uint64_t enemy, uint64_t allowed) {
    const uint64_t singles = (white ? pawns << 8 : pawns >> 8) & empty;
    const uint64_t doubles =
        (white ? (singles & 0x0000000000FF0000ULL) << 8 : (singles & 0x0000FF0000000000ULL) >> 8) & empty;
    const uint64_t towardsA = white ? (pawns << 9) & ~FileH : (pawns >> 7) & ~FileH;
    const uint64_t towardsH = white ? (pawns << 7) & ~FileA : (pawns >> 9) & ~FileA;
    return CountTargets(singles & allowed) + CountBits(doubles & allowed) +
           CountTargets(towardsA & enemy & allowed) + CountTargets(towardsH & enemy & allowed);
}

// The whole ray from the king that holds a pinned man: where that man may still go.
uint64_t PinRay(int king, uint64_t man) {
    for (int ray = RayUp; ray <= RayDownA; ++ray)
        if (Ray[ray][king] & man) return Ray[ray][king];
    return 0;
}

// What the rays of the king show: enemy sliders that give check, and own men that are pinned.
struct clsKingRays {
    int32_t Checks = 0;
    uint64_t CheckLine = 0; // the squares that answer a single check: the checker and the gap before it
    uint64_t Pinned = 0;

    template <int R>
    void Look(int king, uint64_t kingBit, uint64_t occupied, uint64_t own, uint64_t sliders) {
        if (!(Ray[R][king] & sliders)) return;
        const uint64_t nearest = NearestOnRay<R>(king, occupied);
        if (nearest & sliders) {
            ++Checks;
            CheckLine |= FreeOnRay<R>(king, kingBit, occupied) | nearest;
        } else if ((nearest & own) && (NearestOnRay<R>(king, occupied ^ nearest) & sliders)) {
            Pinned |= nearest;
        }
    }
};

} // namespace

uint64_t clsChessCore::Perft(int32_t depth, bool divide) {
    ResetNodes();
    Nodes = 0;
    if (depth < 1) return 0;
    SetMaxDepth(depth);
    PerftDivide = divide;
    // The walk needs a node per ply and the array ends; no count that deep could ever finish anyway.
    Nodes = PerftCount(std::min(depth, NodeCount - 2) - 1);
    return Nodes;
}

uint64_t clsChessCore::PerftCount(int32_t depth) {
    BulkBelowRoot = PerftShortcuts && IsOrdinaryPosition();
    return PerftWalk<false>(depth);
}

template <bool Bulk> uint64_t clsChessCore::PerftWalk(int32_t depth) {
    if (Bulk && depth == 0) return CountLegalMoves(*(Current - 1)->CurMove);
    clsSimpleNode& node = *Current;
    node.SavedBoard = Board;
    Generate(-1);
    uint64_t sum = 0;
    for (clsMove* move = node.Moves; move != node.End(); ++move) {
        if (move->Captured() == PieceKing) return 0; // the side not to move is in check: no position
        ApplyMove(*move);
        const bool tested =
            !Bulk || node.InCheck || (move->From & node.PinLines) || (move->Flags & MoveEnPassant);
        if (tested && IsAttacked(Board.Kings & Board.Mine)) {
            move->Flags |= MoveIllegal;
        } else if (depth == 0) {
            ++sum;
        } else {
            node.CurMove = move;
            SwapSides();
            ++Current;
            const uint64_t n =
                Bulk || BulkBelowRoot ? PerftWalk<true>(depth - 1) : PerftWalk<false>(depth - 1);
            --Current;
            sum += n;
            if (&node == Root && PerftDivide)
                WriteLine(MoveText(move, true) + " " + nuvobase::clsString(static_cast<int64_t>(n)));
        }
        RestoreBoard(node);
    }
    return sum;
}

bool clsChessCore::IsOrdinaryPosition() const {
    const clsBoard& b = Board;
    if ((b.Mine & b.Theirs) || b.Occupied != (b.Mine | b.Theirs)) return false;
    uint64_t men = 0;
    for (int piece = PiecePawn; piece <= PieceKing; ++piece) {
        if (b.Word(piece) & men) return false;
        men |= b.Word(piece);
    }
    if (men != b.Occupied || (b.Pawns & PromotionRanks)) return false;
    if (CountBits(b.Kings & b.Mine) != 1 || CountBits(b.Kings & b.Theirs) != 1) return false;
    const uint64_t white = b.MenOf(0), black = b.MenOf(1);
    const uint64_t backed =
        (((b.Kings & KingSquares) | (b.Rooks & RookCorners)) & ((white & 0xFF) | (black & (0xFFULL << 56))));
    if (b.CastleRights & ~backed) return false;
    if (!b.EnPassant) return true;
    // The passed-over square is empty, on the right rank, with the enemy pawn that passed it in front.
    const bool whiteToMove = b.SideToMove == 0;
    const uint64_t rank = whiteToMove ? 0x0000FF0000000000ULL : 0x0000000000FF0000ULL;
    const uint64_t pushed = whiteToMove ? b.EnPassant >> 8 : b.EnPassant << 8;
    return CountBits(b.EnPassant) == 1 && (b.EnPassant & rank) && !(b.EnPassant & b.Occupied) &&
           (pushed & b.Pawns & b.Theirs);
}

uint64_t clsChessCore::CountLegalMoves(const clsMove& last) {
    const clsBoard& b = Board;
    const bool white = b.SideToMove == 0;
    const uint64_t own = b.Mine, enemy = b.Theirs, occupied = b.Occupied;
    const uint64_t king = b.Kings & own;
    const int ksq = BitIndex(king);
    const uint64_t straight = (b.Rooks | b.Queens) & enemy, diagonal = (b.Bishops | b.Queens) & enemy;

    clsKingRays rays;
    rays.Look<RayUp>(ksq, king, occupied, own, straight);
    rays.Look<RayH>(ksq, king, occupied, own, straight);
    rays.Look<RayA>(ksq, king, occupied, own, straight);
    rays.Look<RayDown>(ksq, king, occupied, own, straight);
    rays.Look<RayUpH>(ksq, king, occupied, own, diagonal);
    rays.Look<RayDownH>(ksq, king, occupied, own, diagonal);
    rays.Look<RayUpA>(ksq, king, occupied, own, diagonal);
    rays.Look<RayDownA>(ksq, king, occupied, own, diagonal);
    const uint64_t leapers =
        ((PawnAttackers[b.SideToMove][ksq] & b.Pawns) | (KnightMoves[ksq] & b.Knights)) & enemy;
    rays.Checks += CountBits(leapers);
    rays.CheckLine |= leapers;

    // Where the king may not stand: everything the enemy hits, seen through the king itself.
    const uint64_t through = occupied ^ king;
    uint64_t attacked = PawnAttacks(b.Pawns & enemy, !white) | KingMoves[BitIndex(b.Kings & enemy)];
    for (uint64_t men = b.Knights & enemy; men; men &= men - 1) attacked |= KnightMoves[BitIndex(men)];
    for (uint64_t men = straight; men; men &= men - 1)
        attacked |= SliderAttacks<RayUp, RayH, RayA, RayDown>(BitIndex(men), through);
    for (uint64_t men = diagonal; men; men &= men - 1)
        attacked |= SliderAttacks<RayUpH, RayDownH, RayUpA, RayDownA>(BitIndex(men), through);

    uint64_t count = CountBits(KingMoves[ksq] & ~own & ~attacked);
    if (rays.Checks > 1) return count;
    const uint64_t allowed = rays.Checks ? rays.CheckLine : ~own;

    for (uint64_t men = b.Knights & own & ~rays.Pinned; men; men &= men - 1)
        count += CountBits(KnightMoves[BitIndex(men)] & allowed);
    const auto slide = [&](uint64_t men, auto attacks) {
        for (; men; men &= men - 1) {
            const uint64_t man = LowestBit(men);
            const int sq = BitIndex(man);
            const uint64_t reach = attacks(sq) & allowed;
            count += CountBits(man & rays.Pinned ? reach & PinRay(ksq, man) : reach);
        }
    };
    slide(b.Rooks & own,
          [occupied](int sq) { return SliderAttacks<RayUp, RayH, RayA, RayDown>(sq, occupied); });
    slide(b.Bishops & own,
          [occupied](int sq) { return SliderAttacks<RayUpH, RayDownH, RayUpA, RayDownA>(sq, occupied); });
    slide(b.Queens & own, [occupied](int sq) {
        return SliderAttacks<RayUp, RayH, RayA, RayDown, RayUpH, RayDownH, RayUpA, RayDownA>(sq, occupied);
    });

    const uint64_t pawns = b.Pawns & own, empty = ~occupied;
    count += CountPawnMoves(pawns & ~rays.Pinned, white, empty, enemy, allowed);
    for (uint64_t men = pawns & rays.Pinned; men; men &= men - 1) {
        const uint64_t man = LowestBit(men);
        count += CountPawnMoves(man, white, empty, enemy, allowed & PinRay(ksq, man));
    }

    // En passant is rare and may open a line through two men: it is made and tested.
    if (last.Flags & MoveDoublePush) {
        const uint64_t target = ((last.From | last.To) >> 8) & EnPassantRanks;
        const uint64_t takers =
            (((last.To & NotAFileForLeftShift) << 1) | ((last.To >> 1) & NotAFileAfterRightShift)) & pawns;
        for (uint64_t men = takers; men; men &= men - 1)
            count += EnPassantIsLegal(LowestBit(men), target, last);
    }

    const uint64_t first = white ? 0x00000000000000FFULL : 0xFF00000000000000ULL;
    if (!rays.Checks && (king & b.CastleRights & first & KingSquares)) {
        const uint64_t corners = own & b.CastleRights & first;
        const uint64_t hSide = (king >> 1) | (king >> 2), aSide = (king << 1) | (king << 2);
        count += (corners & FileH) && !(occupied & hSide) && !(attacked & hSide);
        count += (corners & FileA) && !(occupied & (aSide | (king << 3))) && !(attacked & aSide);
    }
    return count;
}

bool clsChessCore::EnPassantIsLegal(uint64_t from, uint64_t target, const clsMove& last) {
    clsMove move;
    move.Flags = PiecePawn | (PiecePawn << MoveCapturedShift) | MoveEnPassant;
    move.Value = PawnMaterial;
    move.From = from;
    move.To = target;
    move.Extra = last.To;
    const clsBoard saved = Board;
    ApplyMove(move);
    const bool legal = !IsAttacked(Board.Kings & Board.Mine);
    Board = saved;
    return legal;
}

template uint64_t clsChessCore::PerftWalk<false>(int32_t);
template uint64_t clsChessCore::PerftWalk<true>(int32_t);

} // namespace nvoChess
