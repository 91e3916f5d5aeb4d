// What a tournament game reads from an engine besides its moves: the scores of its search, and the moves
// of the older XBoard forms that some programs still write.
#include "match/clsengineinterface.h"

#include "chess/coordinates.h"

#include <cstdlib>

using nuvobase::clsString;

namespace nvoChess {

namespace {

// A mate in n moves counts as this many centipawns less n: beyond any score of material.
constexpr int32_t MateCentipawns = 30000;
// The two older forms of an XBoard move.
constexpr int NumberedForm = 1, AnnouncedForm = 2;
constexpr const char* Announcement = "My move is";

bool IsDigits(const clsString& word) {
    if (word.IsEmpty()) return false;
    for (const char* c = word.Text(); *c; ++c)
        if (*c < '0' || *c > '9') return false;
    return true;
}

// A whole signed decimal number, "+15" and "-3" included.
bool ReadSigned(const clsString& word, int32_t& value) {
    const char* start = word.Text();
    char* end = nullptr;
    const long number = std::strtol(start, &end, 10);
    if (word.IsEmpty() || *end != 0 || end == start) return false;
    value = int32_t(number);
    return true;
}

} // namespace

void clsEngineInterface::ReadScore(const clsString& line) {
    clsString text = line;
    text.Trim(' ', true);
    int position = 0;
    const clsString first = text.NextWord(' ', position, false, true);
    int32_t value = 0;
    if (Protocol == Uci) {
        // "info ... score cp 31 ..." or "info ... score mate -3 ...".
        while (position >= 0) {
            if (text.NextWord(' ', position, false, true) != "score" || position < 0) continue;
            const clsString unit = text.NextWord(' ', position, false, true);
            if (position < 0 || !ReadSigned(text.NextWord(' ', position, false, true), value)) return;
            if (unit == "cp") ReportScore(value);
            if (unit == "mate") ReportScore(value > 0 ? MateCentipawns - value : -MateCentipawns - value);
            return;
        }
        return;
    }
    // A thinking line: ply, score, time, nodes, then the principal variation.
    if (!IsDigits(first) || position < 0) return;
    if (ReadSigned(text.NextWord(' ', position, false, true), value)) ReportScore(value);
}

void clsEngineInterface::ReportScore(int32_t centipawns) {
    ScoreCp = centipawns;
    ScoreKnown = true;
}

bool clsEngineInterface::TakeScore(int32_t& centipawns) {
    const bool known = ScoreKnown;
    centipawns = ScoreCp;
    ScoreKnown = false;
    return known;
}

clsString clsEngineInterface::OldFormMove(const clsString& line) {
    clsString text = line;
    text.Trim(' ', true);
    clsString move;
    int kind = 0;
    if (text.Compare(Announcement, clsString::CompareStartsWith)) {
        // "My move is : g1f3"
        move = text.AfterChar(':');
        kind = AnnouncedForm;
    } else {
        // "1. ... g1f3"; "1. e2e4" without the dots repeats the opponent's move.
        int position = 0;
        const clsString number = text.NextWord(' ', position, false, true);
        const clsString dots = position >= 0 ? text.NextWord(' ', position, false, true) : clsString();
        if (number.Size() < 2 || number.Text()[number.Size() - 1] != '.' ||
            !IsDigits(number.Left(number.Size() - 1)) || dots != "..." || position < 0)
            return clsString();
        move = text.NextWord(' ', position, false, true);
        kind = NumberedForm;
    }
    move.Trim(' ', true);
    if (move.IsEmpty()) return move;
    // One move written in both forms is read once.
    if (move == OldFormMoveText && kind != OldFormKind) {
        OldFormMoveText.Clear();
        return clsString();
    }
    OldFormMoveText = move;
    OldFormKind = kind;
    return MoveReplyText(move);
}

clsString clsEngineInterface::MoveReplyText(const clsString& text) {
    clsString lower = text;
    lower.Lower();
    const clsCoordinateMove coordinates = ParseCoordinateMove(lower);
    return coordinates.From != 0 && coordinates.To != 0 ? lower : text;
}

} // namespace nvoChess
