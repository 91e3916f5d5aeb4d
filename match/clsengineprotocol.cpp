// The client side of XBoard and UCI: what a tournament game says to another chess program, and how the
// program's answers are read. Every operation ends in SendLine, which does nothing on the engines of this
// program.
#include "match/clsengineinterface.h"
#include "nuvobase/platform.h"

#include <cstdlib>

using nuvobase::clsString;

namespace nvoChess {

namespace {

constexpr int MsPerSecond = 1000;
constexpr int MsPerCentisecond = 10;

clsString Number(int64_t value) {
    return clsString(value);
}

// A decimal number at the start of text; 0 for text that is none.
long ReadNumber(const clsString& text) {
    return std::strtol(text.Text(), nullptr, 10);
}

} // namespace

void clsEngineInterface::Handshake() {
    if (Protocol == XBoard) {
        PingFeature = false;
        HandshakeMs = nuvobase::ClockMs();
        SendLine("xboard");
        SendLine("protover 2");
        Ready = true;
    } else if (Protocol == Uci) {
        SendLine("uci");
    }
}

void clsEngineInterface::NewGame() {
    MoveHistory = OpeningMoves;
    ForceMode = false;
    if (Protocol == XBoard) {
        SendLine("new");
        SendLine("post");
        SendLine("level 0 " + Number(OwnTimeMs / MsPerSecond) + " " + Number(OwnIncrementMs / MsPerSecond));
        for (int i = 0; i < EngineOptions.Count; ++i)
            SendLine("option " + EngineOptions.GetName(i) + "=" + EngineOptions.GetAt(i));
        if (OpeningFen.IsEmpty() && OpeningMoves.IsEmpty()) return;
        // In force mode the engine takes moves for both sides without thinking.
        SendLine("force");
        ForceMode = true;
        if (!OpeningFen.IsEmpty()) SendLine("setboard " + OpeningFen);
        for (int position = 0; position >= 0;) {
            const clsString move = OpeningMoves.NextWord(' ', position, false, true);
            if (!move.IsEmpty()) SendLine(XBoardMoveLine(move));
        }
    } else if (Protocol == Uci) {
        for (int i = 0; i < EngineOptions.Count; ++i)
            SendLine("setoption name " + EngineOptions.GetName(i) + " value " + EngineOptions.GetAt(i));
        SendLine("ucinewgame");
        SendLine(PositionLine());
        Synchronise();
    }
}

clsString clsEngineInterface::PositionLine() const {
    clsString line = OpeningFen.IsEmpty() ? clsString("position startpos") : "position fen " + OpeningFen;
    if (!MoveHistory.IsEmpty()) line += " moves " + MoveHistory;
    return line;
}

clsString clsEngineInterface::XBoardMoveLine(const clsString& move) const {
    return HasFeature("usermove") ? "usermove " + move : move;
}

bool clsEngineInterface::FeaturesPending() const {
    if (Protocol != XBoard || HasFeature("done")) return false;
    return !Options.GetValue("done").IsEmpty() || nuvobase::ClockMs() - HandshakeMs < FeatureGraceMs;
}

void clsEngineInterface::NudgeFeatures() {
    const uint64_t now = nuvobase::ClockMs();
    if (!FeaturesPending() || now - NudgeMs < FeatureNudgeMs || now - HandshakeMs < FeatureNudgeMs) return;
    NudgeMs = now;
    SendLine("accepted done");
}

bool clsEngineInterface::HasFeature(const char* name) const {
    for (int i = 0; i < Options.Count; ++i)
        if (Options.GetName(i) == name && Options.GetAt(i) == "1") return true;
    return false;
}

void clsEngineInterface::Go() {
    ReportedSearchMs = -1;
    if (Protocol == XBoard) {
        SendLine("time " + Number(OwnTimeMs / MsPerCentisecond));
        SendLine("otim " + Number(OpponentTimeMs / MsPerCentisecond));
        SendLine("go");
        ForceMode = false;
    } else if (Protocol == Uci) {
        const bool white = Side == 0;
        SendLine("go wtime " + Number(white ? OwnTimeMs : OpponentTimeMs) + " btime " +
                 Number(white ? OpponentTimeMs : OwnTimeMs) + " winc " +
                 Number(white ? OwnIncrementMs : OpponentIncrementMs) + " binc " +
                 Number(white ? OpponentIncrementMs : OwnIncrementMs));
    }
    Think();
}

void clsEngineInterface::NotifyMove(const clsString& move, int mover) {
    MoveHistory += move;
    MoveHistory += ' ';
    if (mover == Side) return;
    ReportedSearchMs = -1;
    if (Protocol == XBoard) {
        SendLine("time " + Number(OwnTimeMs / MsPerCentisecond));
        SendLine("otim " + Number(OpponentTimeMs / MsPerCentisecond));
        SendLine(XBoardMoveLine(move));
        // The engine that waited in force mode for its first turn is sent thinking.
        if (ForceMode) {
            SendLine("go");
            ForceMode = false;
        }
        Think();
    } else if (Protocol == Uci) {
        SendLine(PositionLine());
        Go();
    }
}

void clsEngineInterface::QuitEngine() {
    if (Protocol == XBoard || Protocol == Uci) SendLine("quit");
    Ready = false;
}

void clsEngineInterface::Synchronise() {
    Ready = false;
    if (Protocol == XBoard) {
        if (PingFeature)
            SendLine("ping " + Number(++PingCounter));
        else
            Ready = true;
    } else if (Protocol == Uci) {
        SendLine("isready");
    }
}

clsString clsEngineInterface::ParseLine(const clsString& line) {
    if (line.IsEmpty()) return clsString();
    const clsString word = line.BeforeChar(' ');
    clsString rest = line.AfterChar(' ');
    if (Protocol == Uci) {
        if (word == "readyok" || word == "uciok") Ready = true;
        // "time N" in an info line gives the milliseconds searched so far.
        const bool remark = rest.Compare("string ", clsString::CompareStartsWith);
        for (int position = word == "info" && !remark ? 0 : -1; position >= 0;) {
            if (rest.NextWord(' ', position) == "time" && position >= 0) {
                ReportedSearchMs = int32_t(ReadNumber(rest.NextWord(' ', position)));
                break;
            }
        }
        if (word == "bestmove") return "move " + rest.Lower();
        if (word == "info") ReadScore(line);
        return clsString();
    }
    if (word == "pong") {
        Ready = ReadNumber(rest) == PingCounter;
    } else if (word == "move") {
        OldFormMoveText.Clear();
        return "move " + MoveReplyText(rest);
    } else if (word == "resign") {
        return clsString("resign");
    } else if (word == "feature") {
        PingFeature = false;
        Ready = true;
        // Pairs are cut at "=" and the next blank: a quoted value is taken as it stands.
        int position = 0;
        while (position >= 0) {
            const clsString key = rest.NextWord('=', position);
            const clsString value = position >= 0 ? rest.NextWord(' ', position) : clsString();
            if (key.IsEmpty()) continue;
            Options.SetValue(key, value, false);
            if (key == "done") {
                Ready = ReadNumber(value) != 0;
            } else if (key == "ping") {
                PingFeature = ReadNumber(value) != 0;
                Ready = !PingFeature;
            }
        }
        if (PingFeature) Synchronise();
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

void clsEngineInterface::Think() {}

} // namespace nvoChess
