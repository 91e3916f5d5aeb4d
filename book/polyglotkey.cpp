#include "book/polyglotkey.h"

#include <cstdlib>

#include "chess/bits.h"

namespace nvoChess {

namespace {

constexpr int CastlingRandom = 768, EnPassantRandom = 772, WhiteToMoveRandom = 780;
constexpr int SquaresPerKind = 64;
constexpr uint64_t CornerSquares = 0x8100000000000081ULL;
constexpr uint64_t NotAFile = 0x7F7F7F7F7F7F7F7FULL, NotHFile = 0xFEFEFEFEFEFEFEFEULL;

// The board's bit index runs from h1 (0) to a8 (63) with the files reversed; the format's square runs a1 (0)
// to h8 (63).
int FormatSquare(uint64_t bit) {
    return BitIndex(bit) ^ 7;
}

// The pawns of the side to move that stand beside the pawn that has just pushed two squares.
uint64_t EnPassantTakers(const clsBoard& board) {
    const uint64_t pushed = board.SideToMove == 0 ? board.EnPassant >> 8 : board.EnPassant << 8;
    const uint64_t beside = ((pushed << 1) & NotHFile) | ((pushed >> 1) & NotAFile);
    return beside & board.Pawns & board.Mine;
}

} // namespace

uint64_t PolyglotKey(const clsBoard& board) {
    uint64_t key = 0;
    for (int colour = 0; colour < 2; ++colour) {
        const uint64_t men = board.MenOf(colour);
        for (int piece = PiecePawn; piece <= PieceKing; ++piece) {
            const int kind = 2 * (piece - PiecePawn) + (colour == 0 ? 1 : 0);
            for (uint64_t rest = board.Word(piece) & men; rest != 0; rest &= rest - 1)
                key ^= PolyglotRandom[SquaresPerKind * kind + FormatSquare(LowestBit(rest))];
        }
    }
    const uint64_t rights[4] = {WhiteKingSide, WhiteQueenSide, BlackKingSide, BlackQueenSide};
    for (int right = 0; right < 4; ++right)
        if ((board.CastleRights & rights[right]) == rights[right])
            key ^= PolyglotRandom[CastlingRandom + right];
    if (board.EnPassant != 0 && EnPassantTakers(board) != 0)
        key ^= PolyglotRandom[EnPassantRandom + (FormatSquare(board.EnPassant) & 7)];
    if (board.SideToMove == 0) key ^= PolyglotRandom[WhiteToMoveRandom];
    return key;
}

uint16_t PolyglotMove(const clsMove& move) {
    const uint64_t to = (move.Flags & MoveCastling) ? move.Extra & CornerSquares : move.To;
    const int promotion = move.Promotion() == PieceNone ? 0 : move.Promotion() - PiecePawn;
    return uint16_t(FormatSquare(to) | FormatSquare(move.From) << 6 | promotion << 12);
}

bool IsPolyglotMoveShape(uint16_t code) {
    constexpr int HighestPromotion = 4;
    const int toFile = code & 7, toRank = (code >> 3) & 7, fromFile = (code >> 6) & 7,
              fromRank = (code >> 9) & 7;
    const int promotion = code >> 12;
    const int files = std::abs(toFile - fromFile), ranks = std::abs(toRank - fromRank);
    if (promotion > HighestPromotion || files + ranks == 0) return false;
    if (promotion != 0)
        return files <= 1 && ((fromRank == 6 && toRank == 7) || (fromRank == 1 && toRank == 0));
    const bool knight = (files == 1 && ranks == 2) || (files == 2 && ranks == 1);
    return knight || files == 0 || ranks == 0 || files == ranks;
}

} // namespace nvoChess
