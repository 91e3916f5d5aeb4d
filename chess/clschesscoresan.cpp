// Standard algebraic notation written from the legal moves of a position, and read back through the same
// writer, so that the two can never disagree.
#include <cctype>

#include "chess/clschesscore.h"

namespace nvoChess {

namespace {

using nuvobase::clsString;

constexpr const char* PieceLetters = "--PNBRQK";

// A coordinate text in the form MoveText gives without its "=": "e7e8q".
clsString PlainCoordinates(const clsString& text) {
    clsString plain = text;
    plain.Lower().RemoveChar('=');
    return plain;
}

// The SAN text of a move without its check sign: what the move's own list needs to tell it apart.
clsString SanBody(const clsChessCore& core, const clsMove& move, const clsMove* begin, const clsMove* end) {
    const clsString squares = PlainCoordinates(core.MoveText(&move, false));
    const char* text = squares.Text();
    if (move.Flags & MoveCastling) return clsString(text[2] == 'g' ? "O-O" : "O-O-O");
    const bool capture = move.Captured() != PieceNone || (move.Flags & MoveEnPassant);
    clsString san;
    if (move.Piece() == PiecePawn) {
        if (capture) san.Append(text[0]).Append('x');
        san.Append(text + 2, 2);
        if (move.Promotion() != PieceNone) san.Append('=').Append(PieceLetters[move.Promotion()]);
        return san;
    }
    san.Append(PieceLetters[move.Piece()]);
    bool rival = false, sameFile = false, sameRank = false;
    for (const clsMove* other = begin; other != end; ++other) {
        if (other == &move || other->Piece() != move.Piece() || other->To != move.To ||
            (other->Flags & MoveIllegal))
            continue;
        const clsString otherText = core.MoveText(other, false);
        rival = true;
        sameFile = sameFile || otherText.Text()[0] == text[0];
        sameRank = sameRank || otherText.Text()[1] == text[1];
    }
    if (rival && (!sameFile || sameRank)) san.Append(text[0]);
    if (rival && sameFile) san.Append(text[1]);
    if (capture) san.Append('x');
    san.Append(text + 2, 2);
    return san;
}

// The first legal move of the board's position whose standard notation passes test, or null; san takes
// that notation without a check sign.
template <typename Test> const clsMove* FindLegal(clsChessCore& core, clsString& san, Test test) {
    core.SetRootNode();
    core.Generate(-1);
    core.FilterLegal();
    const clsMove* begin = core.Current->Moves;
    const clsMove* end = core.Current->End();
    for (const clsMove* move = begin; move != end; ++move) {
        if (move->Flags & MoveIllegal) continue;
        san = SanBody(core, *move, begin, end);
        if (test(*move, san)) return move;
    }
    return nullptr;
}

} // namespace

clsString clsChessCore::SanText(const clsString& coordinates) {
    const clsString wanted = PlainCoordinates(coordinates);
    const clsBoard saved = Board;
    clsString san;
    const clsMove* move = FindLegal(*this, san, [&](const clsMove& candidate, const clsString&) {
        return PlainCoordinates(MoveText(&candidate, false)) == wanted;
    });
    if (move == nullptr) return clsString();
    PlayMove(*move);
    if (IsAttacked(Board.Kings & Board.Mine)) {
        SetRootNode();
        Generate(-1);
        san.Append(FilterLegal() == 0 ? '#' : '+');
    }
    Board = saved;
    SetRootNode();
    return san;
}

clsString clsChessCore::LegalSanToCoordinates(const clsString& san) {
    // Check signs, annotation marks and castling written with zeros do not tell moves apart.
    clsString wanted = san;
    wanted.RemoveChar('+').RemoveChar('#').RemoveChar('!').RemoveChar('?');
    wanted.ReplaceAll("0", "O");
    if (wanted.IsEmpty()) return clsString();
    // Promotion letters are read in either case: "e8=q" is e8=Q.
    const int equals = wanted.Find('=');
    char* promotion = equals >= 0 ? wanted.Data() + equals + 1 : nullptr;
    if (promotion != nullptr) *promotion = char(std::toupper(static_cast<unsigned char>(*promotion)));
    clsString body;
    // Case counts: "bxc4" is a pawn's capture, "Bxc4" a bishop's.
    const clsMove* move = FindLegal(*this, body, [&](const clsMove&, const clsString& text) {
        return text.Compare(wanted, clsString::CompareExact) != 0;
    });
    return move == nullptr ? clsString() : PlainCoordinates(MoveText(move, false));
}

} // namespace nvoChess
