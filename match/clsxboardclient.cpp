#include "match/clsxboardclient.h"

#include "chess/coordinates.h"
#include "match/clsengineinterface.h"
#include "nuvobase/asciichars.h"
#include "nuvobase/platform.h"

using nuvobase::clsString;

namespace nvoChess {

namespace {

constexpr int MsPerSecond = 1000;
constexpr int MsPerCentisecond = 10;
// The two older forms of a move.
constexpr int NumberedForm = 1, AnnouncedForm = 2;
constexpr const char* Announcement = "My move is";

} // namespace

clsXBoardClient::clsXBoardClient(clsEngineInterface& engine)
    : clsProtocolClient(engine, clsEngineInterface::XBoard) {}

void clsXBoardClient::Handshake() {
    Engine.PingFeature = false;
    HandshakeMs = nuvobase::ClockMs();
    Engine.SendLine("xboard");
    Engine.SendLine("protover 2");
    Engine.Ready = true;
}

void clsXBoardClient::NewGame() {
    ForceMode = false;
    Engine.SendLine("new");
    Engine.SendLine("post");
    Engine.SendLine("level 0 " + clsString(Engine.OwnTimeMs / MsPerSecond) + " " +
                    clsString(Engine.OwnIncrementMs / MsPerSecond));
    const nuvobase::clsStrings& options = Engine.EngineOptions;
    for (int i = 0; i < options.Count; ++i)
        Engine.SendLine("option " + options.GetName(i) + "=" + options.GetAt(i));
    const clsString& fen = Engine.OpeningFen;
    const clsString& moves = Engine.OpeningMoves;
    if (fen.IsEmpty() && moves.IsEmpty()) return;
    // In force mode the program takes moves for both sides without thinking.
    Engine.SendLine("force");
    ForceMode = true;
    if (!fen.IsEmpty()) Engine.SendLine("setboard " + fen);
    for (int position = 0; position >= 0;) {
        const clsString move = moves.NextWord(' ', position, false, true);
        if (!move.IsEmpty()) Engine.SendLine(MoveLine(move));
    }
}

void clsXBoardClient::SendClocks() {
    Engine.SendLine("time " + clsString(Engine.OwnTimeMs / MsPerCentisecond));
    Engine.SendLine("otim " + clsString(Engine.OpponentTimeMs / MsPerCentisecond));
}

void clsXBoardClient::Go() {
    SendClocks();
    Engine.SendLine("go");
    ForceMode = false;
}

void clsXBoardClient::OpponentMoved(const clsString& move) {
    SendClocks();
    Engine.SendLine(MoveLine(move));
    // The program that waited in force mode for its first turn is sent thinking.
    if (ForceMode) {
        Engine.SendLine("go");
        ForceMode = false;
    }
    Engine.Think();
}

void clsXBoardClient::Synchronise() {
    if (Engine.PingFeature)
        Engine.SendLine("ping " + clsString(++Engine.PingCounter));
    else
        Engine.Ready = true;
}

clsString clsXBoardClient::MoveLine(const clsString& move) const {
    return Engine.HasFeature("usermove") ? "usermove " + move : move;
}

bool clsXBoardClient::FeaturesPending() const {
    if (Engine.HasFeature("done")) return false;
    return !Engine.Options.GetValue("done").IsEmpty() || nuvobase::ClockMs() - HandshakeMs < FeatureGraceMs;
}

void clsXBoardClient::NudgeFeatures() {
    const uint64_t now = nuvobase::ClockMs();
    if (!FeaturesPending() || now - NudgeMs < FeatureNudgeMs || now - HandshakeMs < FeatureNudgeMs) return;
    NudgeMs = now;
    Engine.SendLine("accepted done");
}

clsString clsXBoardClient::ParseLine(const clsString& line, const clsString& word, const clsString& rest) {
    if (word == "pong") {
        Engine.Ready = rest.ToDecimal() == Engine.PingCounter;
    } else if (word == "move") {
        OldFormMoveText.Clear();
        return "move " + MoveReplyText(rest);
    } else if (word == "resign") {
        return clsString("resign");
    } else if (word == "feature") {
        ReadFeatures(rest);
    } else if (word.Size() >= 2 && word.Text()[0] >= '0' && word.Text()[0] <= '9' &&
               (word.Text()[1] == '-' || word.Text()[1] == '/')) {
        return "result " + word;
    } else {
        const clsString move = OldFormMove(line);
        if (!move.IsEmpty()) return "move " + move;
        ReadScore(line);
    }
    return clsString();
}

void clsXBoardClient::ReadFeatures(const clsString& pairs) {
    Engine.PingFeature = false;
    Engine.Ready = true;
    // Pairs are cut at "=" and the next blank: a quoted value is taken as it stands.
    int position = 0;
    while (position >= 0) {
        const clsString key = pairs.NextWord('=', position);
        const clsString value = position >= 0 ? pairs.NextWord(' ', position) : clsString();
        if (key.IsEmpty()) continue;
        Engine.Options.SetValue(key, value, false);
        if (key == "done") {
            Engine.Ready = value.ToDecimal() != 0;
        } else if (key == "ping") {
            Engine.PingFeature = value.ToDecimal() != 0;
            Engine.Ready = !Engine.PingFeature;
        }
    }
    if (Engine.PingFeature) Engine.Synchronise();
}

void clsXBoardClient::ReadScore(const clsString& line) {
    clsString text = line;
    text.Trim(' ', true);
    int position = 0;
    const clsString ply = text.NextWord(' ', position, false, true);
    int32_t value = 0;
    if (!nuvobase::IsAsciiDigits(ply.Text()) || position < 0) return;
    if (ReadSigned(text.NextWord(' ', position, false, true), value)) Engine.ReportScore(value);
}

clsString clsXBoardClient::OldFormMove(const clsString& line) {
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
            !nuvobase::IsAsciiDigits(number.Left(number.Size() - 1).Text()) || dots != "..." || position < 0)
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

clsString clsXBoardClient::MoveReplyText(const clsString& text) {
    clsString lower = text;
    lower.Lower();
    const clsCoordinateMove coordinates = ParseCoordinateMove(lower);
    return coordinates.From != 0 && coordinates.To != 0 ? lower : text;
}

} // namespace nvoChess
