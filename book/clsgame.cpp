#include "book/clsgame.h"

namespace nvoChess {

namespace {

struct clsReason {
    uint32_t Bit;
    const char* Text;
};

// Tested in this order: the first bit set gives the reason.
const clsReason Reasons[] = {
    {CodeUndecided, "?"},
    {CodeMate, "mate"},
    {CodeTimeForfeit, "forfeit"},
    {CodeResignation, "resign"},
    {CodeAdjudication, "adjudication"},
    {CodeIllegalMove, "illegal move"},
    {CodeFiftyMoves, "50 moves"},
    {CodeRepetition, "triple repetition"},
    {CodeStalemate, "stalemate"},
    {CodeInsufficientMaterial, "insufficient material"},
    {CodeEngineCrash, "engine crashed"},
    {CodeAborted, "game aborted"},
};

} // namespace

void clsGame::Reset(bool keepTags) {
    Code = CodeRunning;
    MoveText.Clear();
    Comments.Clear();
    if (!keepTags) Tags.Clear();
}

void clsGame::SetCode(uint32_t code) {
    Code = code;
    Tags.SetValue("Result", ResultText());
    Tags.SetValue("Reason", ReasonText());
}

nuvobase::clsString clsGame::ResultText() const {
    if (Code & CodeUndecided) return "?";
    if (Code & CodeDraw) return "1/2-1/2";
    if (Code & CodeDecisive) return Code & CodeBlackWon ? "0-1" : "1-0";
    if (Code & CodeAborted) return "*";
    return nuvobase::clsString();
}

nuvobase::clsString clsGame::ReasonText() const {
    for (const clsReason& reason : Reasons)
        if (Code & reason.Bit) return reason.Text;
    return nuvobase::clsString();
}

} // namespace nvoChess
