// Reading one game of PGN text into a clsGame.
#include <cctype>

#include "book/clsfentable.h"
#include "book/clsgame.h"
#include "chess/clschesscore.h"

namespace nvoChess {

namespace {

using nuvobase::clsString;

bool IsDigit(char c) {
    return std::isdigit(static_cast<unsigned char>(c)) != 0;
}

// The move text as one line: line ends become blanks, check and mate signs go, and every run of blanks
// shrinks as two passes that halve it would leave it: n blanks become n / 4, rounded up. The signs go
// after the runs have shrunk, so a sign between two runs keeps them apart. One pass in place.
void CleanMoveText(clsString& moves) {
    char* text = moves.Data();
    const int size = moves.Size();
    int kept = 0;
    for (int i = 0; i < size;) {
        const auto isBlank = [&](int at) { return text[at] == ' ' || text[at] == '\n' || text[at] == '\r'; };
        if (!isBlank(i)) {
            if (text[i] != '+' && text[i] != '#') text[kept++] = text[i];
            ++i;
            continue;
        }
        int run = 0;
        for (; i < size && isBlank(i); ++i) ++run;
        for (int blank = 0; blank < (run + 3) / 4; ++blank) text[kept++] = ' ';
    }
    moves.SetLength(kept);
}

// The next token from position into token: a number runs up to the next '.', anything else up to the next
// blank. The position moves behind the separator; the token is trimmed of blanks and may be empty.
void NextToken(const clsString& moves, int& position, clsString& token) {
    const int start = position;
    int end = moves.Find(IsDigit(moves.Text()[start]) ? '.' : ' ', start);
    if (end < 0) end = moves.Size();
    position = end + 1;
    token.Assign(moves.Text() + start, end - start);
    token.Trim(' ', true);
}

// The nodes a generation at the root and a legality test of its moves use.
constexpr int32_t RootNodes = 2;

// A record of the list that takes a king: the side not to move stands in check, which no perft counts.
bool CapturesKing(const clsChessCore& core) {
    for (const clsMove* move = core.Root->Moves; move != core.Root->End(); ++move)
        if (move->Captured() == PieceKing) return true;
    return false;
}

} // namespace

void clsGame::SetResultText(const clsString& text) {
    struct clsResultWord {
        const char* Text;
        uint32_t Code;
    };
    static const clsResultWord ResultWords[] = {
        {"1/2-1/2", CodeDraw}, {"1-0", CodeWhiteWins}, {"0-1", CodeBlackWins},
        {"?", CodeUndecided},  {"*", CodeAborted},
    };
    Code = CodeRunning;
    for (const clsResultWord& word : ResultWords)
        if (text.Compare(word.Text) != 0) return SetCode(word.Code);
}

clsString clsGame::ReadTags(const clsString& text) {
    clsString moves;
    bool inMoves = false;
    for (int position = 0; position >= 0;) {
        const clsString line = text.NextWord('\n', position);
        inMoves = inMoves || line.Text()[0] != '[';
        if (inMoves) {
            moves.Append(line).Append(' ');
            continue;
        }
        const int blank = line.Find(' ');
        const clsString name = line.Mid(1, blank < 0 ? -1 : blank - 1);
        int quote = 0;
        const clsString value = line.Between('"', '"', quote);
        Tags.SetValue(name, value, false);
        if (name.Compare("RESULT") != 0) SetResultText(value);
    }
    CleanMoveText(moves);
    return moves;
}

void clsGame::ReadPgn(const clsString& text, clsChessCore& core, clsFENTable* fens, int maxPlies,
                      clsPlyListener* listener) {
    Code = CodeRunning;
    FirstMoveNumber = 0;
    const clsString moves = ReadTags(text);

    core.SetPosition(clsString());
    PlyCount = 0;
    bool replayEnded = false;
    clsString token, comment;
    for (int position = 0; position < moves.Size();) {
        if (maxPlies != 0 && PlyCount >= maxPlies) return;
        const bool number = IsDigit(moves.Text()[position]);
        NextToken(moves, position, token);
        if (token.IsEmpty()) continue;
        if (number) {
            if (token == "1-0" || token == "0-1" || token == "1/2-1/2")
                SetResultText(token);
            else if (FirstMoveNumber == 0)
                FirstMoveNumber = int32_t(token.ToDecimal());
            continue;
        }
        if (token.Text()[0] == '{') {
            comment = token;
            if (comment.Text()[comment.Size() - 1] != '}') {
                int close = moves.Find('}', position);
                if (close < 0) close = moves.Size();
                comment.Append(' ').Append(moves.Text() + position, close - position);
                position = close + 1;
            }
            comment.RemoveChar('{').RemoveChar('}').Trim(' ', true);
            Comments.SetValue(clsString(PlyCount), comment);
            continue;
        }
        // The list a perft of depth 1 walks; its count is needed only when the fitting move is illegal.
        core.ResetNodes(RootNodes);
        core.Generate(-1);
        if (CapturesKing(core)) return;
        const clsMove* found = core.FindSanMove(token, listener != nullptr && listener->SkipsIllegalFits());
        if (found == nullptr) return;
        const bool legal = core.IsLegalAtCurrent(*found);
        clsString move = core.MoveText(found, false);
        move.RemoveChar('=');
        if (!legal && core.Perft(1, false) == 0) return;
        ++PlyCount;
        MoveText.Append(move).Append(' ');
        if (fens != nullptr) fens->Add(core.GetPosition(), Code);
        // An illegal move stays in the text but is not played, and a replay of the text ends there.
        if (!legal) {
            replayEnded = true;
            continue;
        }
        const clsBoard before = core.Board;
        core.PlayMove(*found);
        if (listener != nullptr && !replayEnded) listener->Played(before, *found, core.Board);
    }
}

} // namespace nvoChess
