// Text in and out: FEN and EPD, the engine's move texts, and SAN resolved by matching a wildcard pattern
// against the long texts of the generated moves.
#include <algorithm>
#include <climits>
#include <cstring>
#include <memory>
#include <string_view>

#include "chess/bits.h"
#include "chess/clschesscore.h"
#include "chess/coordinates.h"
#include "chess/keys.h"

namespace nvoChess {

using nuvobase::clsString;

namespace {

constexpr char PieceLetters[] = "--PNBRQK";
constexpr char PromotionLetters[] = "???nbrq?";
// The letters of the castling rights, in the order a FEN writes them.
constexpr struct {
    uint64_t Bits;
    char Letter;
} RightLetters[4] = {
    {WhiteKingSide, 'K'}, {WhiteQueenSide, 'Q'}, {BlackKingSide, 'k'}, {BlackQueenSide, 'q'}};

// The piece word and whether the letter is white, for the letters of a placement; false for other characters.
bool PieceOfLetter(char letter, int& piece, bool& white) {
    static constexpr struct {
        char Letter;
        int Piece;
    } letters[] = {{'k', PieceKing},   {'q', PieceQueen},  {'m', PieceQueen},  {'r', PieceRook},
                   {'b', PieceBishop}, {'s', PieceBishop}, {'n', PieceKnight}, {'p', PiecePawn}};
    white = letter >= 'A' && letter <= 'Z';
    const char lower = white ? static_cast<char>(letter - 'A' + 'a') : letter;
    for (const auto& entry : letters)
        if (entry.Letter == lower) {
            piece = entry.Piece;
            return true;
        }
    return false;
}

// A number field: its leading digits, clamped to what a counter holds.
int32_t FieldNumber(const clsString& field) {
    const int64_t value = field.ToDecimal();
    return value > INT_MAX ? INT_MAX : static_cast<int32_t>(value);
}

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
bool IsFile(char c) {
    return c >= 'a' && c <= 'h';
}
bool IsRank(char c) {
    return c >= '1' && c <= '8';
}
bool IsCapital(char c) {
    return c >= 'A' && c <= 'Z';
}

char At(const clsString& text, int index) {
    return *text.At(index);
}

char LowerCase(char c) {
    return IsCapital(c) ? static_cast<char>(c - 'A' + 'a') : c;
}

// The longest move text: piece, square, "x", captured piece, square, "=", promotion letter.
constexpr int MoveTextSize = 10;

// A candidate long text fits the pattern if it agrees up to the pattern's length, "?" matching anything and
// the promotion letter in either case. The candidate is NUL-padded to MoveTextSize.
bool FitsPattern(const char* candidate, const clsString& pattern) {
    bool promotion = false;
    for (int i = 0; i < pattern.Size(); ++i) {
        const char want = At(pattern, i), have = i < MoveTextSize ? candidate[i] : '\0';
        const bool same = want == have || (promotion && LowerCase(want) == LowerCase(have));
        if (want != '?' && !same) return false;
        promotion = promotion || want == '=';
    }
    return true;
}

// The squares of a long text, and the promotion letter behind its "=".
clsString CoordinatesOf(const char* candidate) {
    clsString result;
    int i = 0;
    for (; candidate[i] != '\0' && candidate[i] != '='; ++i)
        if (IsFile(candidate[i]) || IsRank(candidate[i])) result += candidate[i];
    if (candidate[i] == '=') result += candidate + i + 1;
    return result;
}

// "bm Nf3; id \"x\";": each piece up to a ";", trimmed, is a key up to its first space and the value behind
// it.
void ReadEpdOperations(const clsString& operations, nuvobase::clsStrings& fields) {
    fields.Clear();
    for (int position = 0; position >= 0;) {
        clsString piece = operations.NextWord(';', position);
        piece.Trim();
        const clsString key = piece.BeforeChar(' ');
        if (!key.IsEmpty()) fields.SetValue(key, piece.AfterChar(' '), false);
    }
}

// The text SanToPattern works on: the trimmed SAN and the few marks it inserts, on the stack for any text a
// move can have, since a PGN reader turns every move into a pattern.
class clsPatternText {
public:
    explicit clsPatternText(const clsString& san) {
        const char* text = san.Text();
        int first = 0, last = san.Size();
        while (first < last && text[first] == ' ') ++first;
        while (last > first && text[last - 1] == ' ') --last;
        if (last - first + InsertedMost > int(sizeof Local)) {
            Large = std::make_unique<char[]>(size_t(last - first + InsertedMost));
            Buffer = Large.get();
        }
        for (int i = first; i < last; ++i)
            if (text[i] != '+' && text[i] != '#') Buffer[Length++] = text[i];
    }

    int Size() const { return Length; }
    char At(int index) const { return index >= 0 && index < Length ? Buffer[index] : '\0'; }
    bool Has(char c) const { return std::find(Buffer, Buffer + Length, c) != Buffer + Length; }
    bool Is(std::string_view word) const {
        return std::equal(Buffer, Buffer + Length, word.begin(), word.end(),
                          [](char left, char right) { return LowerCase(left) == LowerCase(right); });
    }
    // An insertion behind the end changes nothing.
    void Insert(int position, std::string_view text) {
        if (position < 0 || position > Length) return;
        std::memmove(Buffer + position + text.size(), Buffer + position, size_t(Length - position));
        std::memcpy(Buffer + position, text.data(), text.size());
        Length += int(text.size());
    }
    clsString Text() const { return clsString().Assign(Buffer, Length); }

private:
    // SanToPattern adds at most this many characters.
    static constexpr int InsertedMost = 8;
    char Local[32];
    std::unique_ptr<char[]> Large;
    char* Buffer = Local;
    int Length = 0;
};

} // namespace

clsString SanToPattern(const clsString& san) {
    clsPatternText s(san);
    if (s.Size() == 0) return clsString();
    if (s.Is("O-O")) return clsString("Ke?-g?");
    if (s.Is("O-O-O")) return clsString("Ke?-c?");
    if (s.At(0) == 'O') return clsString();
    const bool promotion = s.Has('=');
    if (s.Size() == 2 || promotion)
        s.Insert(0, "P");
    else if (!IsCapital(s.At(0)))
        s.Insert(0, "?");
    // The origin: "??" where SAN gives neither file nor rank, "?" for the one it leaves out.
    if ((s.Size() == 3 && s.At(1) != 'x') || (promotion && s.Size() <= 5)) {
        s.Insert(1, "??");
    } else if (s.At(1) == 'x') {
        s.Insert(1, "??");
    } else {
        if (!IsFile(s.At(1))) s.Insert(1, "?");
        if (s.At(2) == 'x' || !IsRank(s.At(2))) s.Insert(2, "?");
    }
    int target = 4;
    if (s.Size() < 3 || (s.At(3) != 'x' && s.At(3) != '-')) {
        s.Insert(3, "-");
    } else if (s.At(3) == 'x') {
        if (!IsCapital(s.At(4))) s.Insert(4, "?");
        target = 5;
    }
    if (!IsFile(s.At(target))) s.Insert(target, "?");
    if (!IsRank(s.At(target + 1))) s.Insert(target + 1, "?");
    return s.Text();
}

bool clsChessCore::SetPosition(const clsString& fen, nuvobase::clsStrings* epdFields) {
    Board = clsBoard();
    StartFen = StartPositionFen;
    const clsString& text = fen.IsEmpty() ? StartFen : fen;

    // The placement, from a8 down to h1; "/" takes back its own step, so only the squares count.
    int i = 0;
    for (uint64_t cursor = 1ULL << 63; cursor != 0; cursor >>= 1) {
        const char c = At(text, i);
        if (c == 0) break;
        ++i;
        if (c == ' ') break;
        int piece;
        bool white;
        if (c == '/')
            cursor <<= 1;
        else if (c >= '2' && c <= '8')
            cursor >>= c - '1';
        else if (PieceOfLetter(c, piece, white)) {
            Board.Word(piece) |= cursor;
            (white ? Board.Mine : Board.Theirs) |= cursor;
        }
    }
    if (At(text, i + 1) == 'b') {
        std::swap(Board.Mine, Board.Theirs);
        Board.SideToMove = 1;
    }

    int position = i + 3;
    const clsString rights = text.NextWord(' ', position);
    for (int k = 0; k < rights.Size(); ++k)
        for (const auto& right : RightLetters)
            if (At(rights, k) == right.Letter) Board.CastleRights |= right.Bits;
    const clsString enPassant = text.NextWord(' ', position);
    // The counters are optional: what is not a number begins the EPD operations.
    for (int32_t* counter : {&HalfMoveClock, &MoveNumber}) {
        int next = position;
        const clsString field = text.NextWord(' ', next);
        if (!IsDigit(At(field, 0))) break;
        *counter = FieldNumber(field);
        position = next;
    }
    if (epdFields) ReadEpdOperations(position < 0 ? clsString() : text.From(position), *epdFields);

    Board.EnPassant = TextToSquare(enPassant.Text());
    Board.Occupied = Board.Mine | Board.Theirs;
    ScratchHash(Board);
    for (int colour = 0; colour < 2; ++colour) {
        const uint64_t men = Board.MenOf(colour);
        Board.PawnCount[colour] = CountBits(men & Board.Pawns);
        Board.PieceCount[colour] = CountBits(men) - Board.PawnCount[colour];
    }
    ComputeMaterial();
    ResetNodes();
    return true;
}

clsString clsChessCore::GetPosition() const {
    clsString fen;
    const uint64_t black = Board.MenOf(1);
    int empty = 0;
    for (int sq = 63; sq >= 0; --sq) {
        const uint64_t bit = 1ULL << sq;
        if (!(bit & Board.Occupied)) {
            ++empty;
        } else {
            if (empty) fen += static_cast<char>('0' + empty);
            empty = 0;
            char letter = '.';
            for (const int piece : {PiecePawn, PieceKnight, PieceQueen, PieceBishop, PieceRook, PieceKing})
                if (Board.Word(piece) & bit) {
                    letter = PieceLetters[piece];
                    break;
                }
            fen += bit & black ? static_cast<char>(letter | 0x20) : letter;
        }
        if (sq % 8 == 0) {
            if (empty) fen += static_cast<char>('0' + empty);
            empty = 0;
            fen += sq == 0 ? ' ' : '/';
        }
    }
    fen += Board.SideToMove == 0 ? "w " : "b ";
    const int before = fen.Size();
    for (const auto& right : RightLetters)
        if ((Board.CastleRights & right.Bits) == right.Bits) fen += right.Letter;
    if (fen.Size() == before) fen += '-';
    fen += ' ';
    fen += Board.EnPassant ? SquareToText(Board.EnPassant) : clsString("-");
    return fen;
}

namespace {

// The text of MoveText into out, which holds MoveTextSize bytes and is NUL-padded.
void WriteMoveText(const clsMove& move, bool longForm, char* out) {
    std::fill(out, out + MoveTextSize, '\0');
    int at = 0;
    if (longForm) out[at++] = PieceLetters[move.Piece()];
    SquareToChars(move.From, out + at);
    at += 2;
    if (longForm) {
        out[at++] = move.Captured() ? 'x' : '-';
        if (move.Captured()) out[at++] = PieceLetters[move.Captured()];
    }
    SquareToChars(move.To, out + at);
    at += 2;
    if (move.Promotion()) {
        out[at++] = '=';
        out[at] = PromotionLetters[move.Promotion()];
    }
}

} // namespace

clsString clsChessCore::MoveText(const clsMove* move, bool longForm) const {
    if (!move) return clsString("------");
    char text[MoveTextSize + 1] = {};
    WriteMoveText(*move, longForm, text);
    return clsString(text);
}

void clsChessCore::PrintMove(const clsMove* move) {
    if (!move) {
        WriteLine(clsString("???"));
        return;
    }
    clsString line = MoveText(move, true);
    line += " a(";
    line += clsString().FromDouble(move->Score / 105.0, 2);
    line += ") v(";
    line += clsString().FromDouble(move->Value / 105.0, 2);
    line += ")";
    const struct {
        uint32_t Flag;
        const char* Mark;
    } marks[4] = {{MoveIllegal, " *"}, {MoveLoses, " ?"}, {MoveWins, " #"}, {MoveRefuted, " \\"}};
    for (const auto& mark : marks)
        if (move->Flags & mark.Flag) line += mark.Mark;
    WriteLine(line);
}

void clsChessCore::PrintMoves(bool) {
    WriteLine(clsString("__moves__"));
    for (const clsMove* move = Current->Moves; move != Current->End(); ++move) PrintMove(move);
    WriteLine(clsString(" ^^^"));
}

clsString clsChessCore::MovesAsText() {
    clsString text;
    if (Current != Root) return text;
    if (Root->Moves == Root->End()) Generate(-1);
    for (const clsMove* move = Root->Moves; move != Root->End(); ++move) {
        text += MoveText(move, true);
        text += ' ';
    }
    return text;
}

// Matches the root's long move texts as MovesAsText lists them, written one at a time into a buffer.
const clsMove* clsChessCore::FindSanMove(const clsString& san, bool legalOnly) {
    const clsString pattern = SanToPattern(san);
    if (pattern.IsEmpty() || Current != Root) return nullptr;
    if (Root->Moves == Root->End()) Generate(-1);
    char candidate[MoveTextSize + 1] = {};
    const char piece = At(pattern, 0);
    for (const clsMove* move = Root->Moves; move != Root->End(); ++move) {
        if (piece != '?' && piece != PieceLetters[move->Piece()]) continue;
        WriteMoveText(*move, true, candidate);
        if (FitsPattern(candidate, pattern) && (!legalOnly || IsLegalAtCurrent(*move))) return move;
    }
    return nullptr;
}

clsString clsChessCore::SanToCoordinates(const clsString& san, bool generateFirst) {
    if (generateFirst) Perft(1, false);
    const clsMove* move = FindSanMove(san);
    if (!move) return clsString();
    char candidate[MoveTextSize + 1] = {};
    WriteMoveText(*move, true, candidate);
    return CoordinatesOf(candidate);
}

bool clsChessCore::MakeMoveText(const clsString& text) {
    const clsCoordinateMove move = ParseCoordinateMove(text);
    return MakeMove(move.From, move.To, move.Promotion);
}

} // namespace nvoChess
