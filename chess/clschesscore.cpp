#include "chess/clschesscore.h"

#include <algorithm>
#include <cstdio>

#include "chess/bits.h"
#include "chess/chesstables.h"
#include "chess/keys.h"

namespace nvoChess {

clsChessCore::clsChessCore() {
    InitChessTables();
    InitKeys();
    SetPosition(nuvobase::clsString());
}

void clsChessCore::WriteLine(const nuvobase::clsString& line) {
    std::fwrite(line.Text(), 1, static_cast<size_t>(line.Size()), stdout);
    std::fputc('\n', stdout);
}

void clsChessCore::ApplyMove(const clsMove& move) {
    clsBoard& b = Board;
    const uint64_t from = move.From, to = move.To, both = from | to;
    const int piece = move.Piece(), side = b.SideToMove, other = side ^ 1;
    const int toIndex = BitIndex(to);
    b.Hash ^= RandomKeys[BitIndex(from)][piece][side];
    b.Mine ^= both;
    if (move.Flags & MoveEnPassant) {
        // The pawn taken is not in the key: Occupied stands in for it in the search key.
        b.Pawns ^= both | move.Extra;
        b.Theirs ^= move.Extra;
        b.PawnCount[other] -= 1;
    } else if (move.Flags & MoveCastling) {
        b.Kings ^= both;
        b.Rooks ^= move.Extra;
        b.Mine ^= move.Extra;
        b.CastleRights &= ~both;
        b.Material += CastlingBonus;
    } else {
        // The captured word changes first: a capture of the same kind uses the mover's word too.
        if (const int captured = move.Captured()) {
            (to & b.Pawns ? b.PawnCount : b.PieceCount)[other] -= 1;
            b.Word(captured) ^= to;
            b.Theirs ^= to;
            b.Hash ^= RandomKeys[toIndex][captured][other];
        }
        b.Word(piece) ^= both;
        b.CastleRights &= ~both;
    }
    if (const int promotion = move.Promotion()) {
        b.Word(promotion) ^= to;
        b.Pawns ^= to;
        b.Hash ^= RandomKeys[toIndex][promotion][side];
        b.PawnCount[side] -= 1;
        b.PieceCount[side] += 1;
    } else {
        b.Hash ^= RandomKeys[toIndex][piece][side];
    }
    b.Occupied = b.Mine | b.Theirs;
    b.Material += move.Value;
}

void clsChessCore::SwapSides() {
    std::swap(Board.Mine, Board.Theirs);
    Board.SideToMove ^= 1;
    Board.Material = -Board.Material;
}

void clsChessCore::SetEnPassantField(const clsMove& move) {
    if (!(move.Flags & MoveDoublePush))
        Board.EnPassant = 0;
    else
        Board.EnPassant = Board.SideToMove == 0 ? move.To >> 8 : move.To << 8;
}

namespace {

int PromotionOf(char letter) {
    switch (letter) {
    case 'B':
    case 'S':
    case 'b':
    case 's':
        return PieceBishop;
    case 'M':
    case 'Q':
    case 'm':
    case 'q':
        return PieceQueen;
    case 'N':
    case 'n':
        return PieceKnight;
    case 'R':
    case 'r':
        return PieceRook;
    default:
        return PieceNone;
    }
}

} // namespace

bool clsChessCore::MakeMove(uint64_t from, uint64_t to, char promotion) {
    SetRootNode();
    if (Generate(-1) == 0 || FilterLegal() == 0) return false;
    const int wanted = PromotionOf(promotion);
    for (const clsMove* move = Current->Moves; move != Current->End(); ++move) {
        if (move->From != from || move->To != to || move->Promotion() != wanted ||
            (move->Flags & MoveIllegal))
            continue;
        PlayMove(*move);
        return true;
    }
    return false;
}

void clsChessCore::PlayMove(const clsMove& move) {
    ApplyMove(move);
    SetEnPassantField(move);
    SwapSides();
}

bool clsChessCore::IsLegalAtCurrent(const clsMove& move) {
    ApplyMove(move);
    const bool legal = !IsAttacked(Board.Kings & Board.Mine);
    RestoreBoard(*Current);
    return legal;
}

uint32_t clsChessCore::GameStatus() {
    const uint64_t rest = Board.Occupied ^ Board.Kings;
    if (rest == 0) return InsufficientMaterial;
    if (CountBits(rest) == 1 && rest == (Board.Bishops | Board.Knights)) return InsufficientMaterial;
    const bool inCheck = IsAttacked(Board.Kings & Board.Mine);
    // The root's parent move must describe the last move played, or en passant would be missed.
    if (Current == Root) SetRootNode();
    Current->SavedBoard = Board;
    Generate(-1);
    for (const clsMove* move = Current->Moves; move != Current->End(); ++move) {
        ApplyMove(*move);
        const bool legal = !IsAttacked(Board.Kings & Board.Mine);
        RestoreBoard(*Current);
        if (legal) return GameOn;
    }
    if (!inCheck) return Stalemate;
    return Board.SideToMove == 1 ? BlackMated : WhiteMated;
}

void clsChessCore::ComputeMaterial() {
    const clsBoard& b = Board;
    const auto balance = [&b](uint64_t men) { return CountBits(men & b.Mine) - CountBits(men & b.Theirs); };
    Board.Material = QueenMaterial * balance(b.Queens) + RookMaterial * balance(b.Rooks) +
                     KnightMaterial * balance(b.Knights) + BishopMaterial * balance(b.Bishops) +
                     PawnMaterial * balance(b.Pawns);
}

int32_t clsChessCore::SetMaxDepth(int32_t depth) {
    DepthLimit = std::min(depth, NodeCount);
    return DepthLimit;
}

} // namespace nvoChess
