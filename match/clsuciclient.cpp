#include "match/clsuciclient.h"

#include "match/clsengineinterface.h"

using nuvobase::clsString;

namespace nvoChess {

namespace {
// A mate in n moves counts as this many centipawns less n: beyond any score of material.
constexpr int32_t MateCentipawns = 30000;
} // namespace

clsUciClient::clsUciClient(clsEngineInterface& engine) : clsProtocolClient(engine, clsEngineInterface::Uci) {}

void clsUciClient::Handshake() {
    Engine.SendLine("uci");
}

void clsUciClient::NewGame() {
    const nuvobase::clsStrings& options = Engine.EngineOptions;
    for (int i = 0; i < options.Count; ++i)
        Engine.SendLine("setoption name " + options.GetName(i) + " value " + options.GetAt(i));
    Engine.SendLine("ucinewgame");
    Engine.SendLine(PositionLine());
    Engine.Synchronise();
}

void clsUciClient::Go() {
    const clsEngineInterface& e = Engine;
    const bool white = e.Side == 0;
    Engine.SendLine("go wtime " + clsString(white ? e.OwnTimeMs : e.OpponentTimeMs) + " btime " +
                    clsString(white ? e.OpponentTimeMs : e.OwnTimeMs) + " winc " +
                    clsString(white ? e.OwnIncrementMs : e.OpponentIncrementMs) + " binc " +
                    clsString(white ? e.OpponentIncrementMs : e.OwnIncrementMs));
}

void clsUciClient::OpponentMoved(const clsString&) {
    Engine.SendLine(PositionLine());
    Engine.Go();
}

void clsUciClient::Settle() {
    Engine.SendLine("stop");
    Synchronise();
}

void clsUciClient::Synchronise() {
    Engine.SendLine("isready");
}

clsString clsUciClient::PositionLine() const {
    const clsString& fen = Engine.OpeningFen;
    clsString line = fen.IsEmpty() ? clsString("position startpos") : "position fen " + fen;
    if (!Engine.MoveHistory.IsEmpty()) line += " moves " + Engine.MoveHistory;
    return line;
}

clsString clsUciClient::ParseLine(const clsString& line, const clsString& word, const clsString& rest) {
    if (word == "readyok" || word == "uciok") Engine.Ready = true;
    // "time N" in an info line gives the milliseconds searched so far.
    const bool remark = rest.Compare("string ", clsString::CompareStartsWith);
    for (int position = word == "info" && !remark ? 0 : -1; position >= 0;) {
        if (rest.NextWord(' ', position) == "time" && position >= 0) {
            Engine.ReportedSearchMs = int32_t(rest.NextWord(' ', position).ToDecimal());
            break;
        }
    }
    if (word == "bestmove") return "move " + clsString(rest).Lower();
    if (word == "info") ReadScore(line);
    return clsString();
}

void clsUciClient::ReadScore(const clsString& line) {
    clsString text = line;
    text.Trim(' ', true);
    int position = 0;
    text.NextWord(' ', position, false, true); // "info"
    int32_t value = 0;
    while (position >= 0) {
        if (text.NextWord(' ', position, false, true) != "score" || position < 0) continue;
        const clsString unit = text.NextWord(' ', position, false, true);
        if (position < 0 || !ReadSigned(text.NextWord(' ', position, false, true), value)) return;
        if (unit == "cp") Engine.ReportScore(value);
        if (unit == "mate") Engine.ReportScore(value > 0 ? MateCentipawns - value : -MateCentipawns - value);
        return;
    }
}

} // namespace nvoChess
