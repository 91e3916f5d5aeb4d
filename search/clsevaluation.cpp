#include "search/clsevaluation.h"

#include "chess/bits.h"
#include "chess/chesstables.h"

namespace nvoChess {

namespace {

// Set bits, counted up to two.
inline int32_t Count2(uint64_t x) {
    return x == 0 ? 0 : ((x & (x - 1)) == 0 ? 1 : 2);
}

inline int32_t Count(uint64_t x) {
    return CountBits(x);
}

// A pawn whose file has a pawn (or a carry of the product) behind it drops
// out of the running sum of its file.
inline int32_t Doubled(uint64_t pawns) {
    return Count(~(pawns * 0x0101010101010101ULL) & pawns);
}

inline uint64_t Around(uint64_t x) {
    return ((x >> 1) & 0x7F7F7F7F7F7F7F7FULL) | ((x & 0xFF7F7F7F7F7F7F7FULL) << 1) | x;
}

constexpr uint64_t CornerRegions = 0xE7818100008181E7ULL;
constexpr uint64_t CentreSquares = 0x0000003C3C000000ULL; // c4 to f5
constexpr uint64_t KnightRim = 0xFFE7C38181C3E7FFULL;
constexpr uint64_t BishopRim = 0xFF818181818181FFULL;
constexpr uint64_t SecondAndSeventh = 0x00FF00000000FF00ULL;
constexpr uint64_t KingCentre = 0x183C7EFFFF7E3C18ULL;
constexpr uint64_t KingOffBack = 0x1CFFFFFFFFFFFF1CULL;
constexpr uint64_t QueenHome = 0xFFFF00000000FFFFULL;
constexpr uint64_t BackRanks = 0xFF000000000000FFULL;

} // namespace

void clsEvaluation::SetSoul(const clsSoul& soul) {
    Soul = soul;
    CastlingBonus = soul[clsSoul::CastlingBonus];
}

int32_t clsEvaluation::Evaluate() {
    const clsBoard& b = Board;
    const uint64_t ownK = b.Kings & b.Mine, oppK = b.Kings & b.Theirs;
    const uint64_t ownP = b.Pawns & b.Mine;

    int32_t e = (Count(KingZone[BitIndex(ownK)]) - Count(KingZone[BitIndex(oppK)])) * Soul[clsSoul::KingRoom];
    if (b.Theirs == oppK && ownP == 0) return BareKingTerms(e);

    if (Current->PawnKey != b.Pawns) {
        Current->PawnKey = b.Pawns;
        Current->PawnScore = PawnTerms();
    }
    e += Current->PawnScore;

    const uint64_t centre = ~b.Queens & CentreSquares;
    e += (Count(b.Mine & centre) - Count(b.Theirs & centre)) * Soul[clsSoul::CenterMen];

    const uint64_t rim = (b.Knights & KnightRim) | (b.Bishops & BishopRim);
    e -= (Count(rim & b.Mine) - Count(rim & b.Theirs)) * Soul[clsSoul::RimMen];

    // Comes to 8 less the enemy rooks on the mover's second rank.
    const uint64_t enemyOnSecond = Current->SecondRank & b.Rooks & b.Theirs;
    const uint64_t ownOnSeventh = Current->SeventhRank & b.Rooks & b.Mine;
    e += (Count((~enemyOnSecond | ownOnSeventh) & SecondAndSeventh) - 8) * Soul[clsSoul::RookOnSecond];

    const int32_t men = b.PieceCount[0] + b.PieceCount[1];
    if (b.Queens != 0 || men >= 6) e += KingTerms();
    if ((b.Queens & b.Mine) != 0 && men >= 6) e += QueenOutEarlyTerm();

    const uint64_t ownR = b.Rooks & b.Mine;
    if ((ownK & BackRanks) && (ownR & BackRanks) && (ownK > ownR || ownK < LowestBit(ownR)))
        e += Soul[clsSoul::RooksOneSide];

    if (ownK & b.CastleRights) e += Soul[clsSoul::CastlingKept];
    if (oppK & b.CastleRights) e -= Soul[clsSoul::CastlingKept];

    e += (Count2(b.Bishops & b.Mine) - Count2(b.Bishops & b.Theirs)) * Soul[clsSoul::BishopCount];

    // Ahead, the mover gains from more pawns and fewer pieces: trading pays.
    const int32_t trade =
        (b.PawnCount[b.SideToMove] - 2 * b.PieceCount[b.SideToMove]) * Soul[clsSoul::TradeWhenAhead];
    return b.Material + e > 0 ? e + trade : e - trade;
}

// The enemy king stands alone and the mover has no pawn: a draw by material
// is -52 (the caller adds Material as ever), otherwise the mover is paid for
// driving the king to the edge and into the corner its bishop can mate in.
int32_t clsEvaluation::BareKingTerms(int32_t e) const {
    const clsBoard& b = Board;
    const uint64_t ownK = b.Kings & b.Mine, oppK = b.Kings & b.Theirs;
    if (b.Mine == ownK) return DrawValue;
    const int32_t pieces = b.PieceCount[b.SideToMove];
    if (pieces == 2 && (b.Mine & (b.Bishops | b.Knights))) return DrawValue;
    if (pieces == 3) {
        const int32_t knights = Count2(b.Knights);
        if (knights == 2) return DrawValue;
        // Equal parity of the bishops' bit indexes, not the colour of their squares.
        if (knights == 0 && ((LowestBit(b.Bishops) * 0x5555555555555555ULL) & b.Bishops) == b.Bishops)
            return DrawValue;
    }
    const int32_t w = Soul[clsSoul::LoneKing];
    int32_t r = e + ((oppK & CornerRegions) ? 2 * w : w);
    if (ownK & KingZone[BitIndex(oppK)]) r += w;
    const uint64_t corners =
        (b.Bishops & b.Mine & 0xA5A5A5A5A5A5A5A5ULL) ? 0xC080000000000103ULL : 0x03010000000080C0ULL;
    if (oppK & corners) r += 4 * w;
    return r;
}

// Passed pawns by files through the fold, so that two on a file carry into
// the next file's bit; doubled pawns of the mover against the other side's.
int32_t clsEvaluation::PawnTerms() const {
    const clsBoard& b = Board;
    const uint64_t ownP = b.Pawns & b.Mine, oppP = b.Pawns & b.Theirs;
    const uint64_t white = b.SideToMove == 0 ? ownP : oppP;
    const uint64_t black = b.SideToMove == 0 ? oppP : ownP;
    uint64_t northWhite = white | (white << 8);
    northWhite |= northWhite << 16;
    northWhite |= northWhite << 32;
    uint64_t southBlack = black | (black >> 8);
    southBlack |= southBlack >> 16;
    southBlack |= southBlack >> 32;
    const uint64_t passedBlack = black & ~Around(northWhite);
    const uint64_t passedWhite = white & ~Around(southBlack);
    int32_t passed =
        (BitsInByte[FoldBytes(passedWhite)] - BitsInByte[FoldBytes(passedBlack)]) * Soul[clsSoul::PassedPawn];
    if (b.SideToMove == 1) passed = -passed;
    return passed - (Doubled(ownP) - Doubled(oppP)) * Soul[clsSoul::DoubledPawn];
}

// Kings away from the centre and pawns in front of them. The shifts have no
// edge masks: a bit may wrap to the far file.
int32_t clsEvaluation::KingTerms() const {
    const clsBoard& b = Board;
    const uint64_t ownK = b.Kings & b.Mine, oppK = b.Kings & b.Theirs;
    const uint64_t ownP = b.Pawns & b.Mine;
    const int32_t w = Soul[clsSoul::KingShelter];
    int32_t e = 0;
    if (ownK & KingCentre) e -= w;
    if (oppK & KingCentre) e += w;
    if (ownK & KingOffBack) e -= w;
    if (oppK & KingOffBack) e += w;
    // Both tests look at the mover's pawns.
    const bool white = b.SideToMove == 0;
    for (int shift : {8, 7, 9}) {
        if ((white ? ownK << shift : ownK >> shift) & ownP) e += w;
        if ((white ? oppK >> shift : oppK << shift) & ownP) e -= w;
    }
    return e;
}

// Minors still on their first rank, worse when the queen has left home.
int32_t clsEvaluation::QueenOutEarlyTerm() const {
    const clsBoard& b = Board;
    const uint64_t minors = b.Knights | b.Bishops;
    const bool white = b.SideToMove == 0;
    int32_t a = BitsInByte[white ? (minors & b.Mine) & 0xFF : (minors & b.Mine) >> 56];
    int32_t c = BitsInByte[white ? (minors & b.Theirs) >> 56 : (minors & b.Theirs) & 0xFF];
    if (a > 1 && (b.Queens & b.Mine & QueenHome) == 0) a += 2;
    if (c > 1 && (b.Queens & b.Theirs & QueenHome) == 0) c += 2;
    return (c - a) * Soul[clsSoul::QueenOutEarly];
}

} // namespace nvoChess
