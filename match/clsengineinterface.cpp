#include "match/clsengineinterface.h"

#include "nuvobase/platform.h"

#include <algorithm>
#include <bit>
#include <climits>
#include <utility>

using nuvobase::clsString;

namespace nvoChess {

clsEngineInterface::clsEngineInterface(const clsString& name, nuvobase::clsTSafeOutput* output,
                                       clsTourneyGame* game)
    : clsThread(name), Output(output), Game(game), Name(name) {}

clsEngineInterface::~clsEngineInterface() = default;

bool clsEngineInterface::IsStopped() {
    return Stopped;
}

void clsEngineInterface::SetStopped() {
    Stopped = true;
}

void clsEngineInterface::StartEngine() {
    Stopped = false;
    Start();
}

bool clsEngineInterface::StopEngine() {
    SetStopped();
    return true;
}

void clsEngineInterface::ListBookMoves() {}

bool clsEngineInterface::LoadBookFile(const clsString& file, int limit, clsString& error) {
    if (file.Right(4) == ".bin") {
        if (!PolyglotBook.Load(file, error)) return false;
        Book.Clear();
        return true;
    }
    if (!Book.Load(file, limit)) return false;
    PolyglotBook.Clear();
    return true;
}

bool clsEngineInterface::PlayBookMove() {
    return false;
}

clsString clsEngineInterface::GetStatistics(int64_t) {
    return clsString();
}

void clsEngineInterface::PrintBoard() {
    const clsString board = BoardText();
    int position = 0;
    while (position >= 0) {
        clsString line = board.NextWord('\n', position);
        Info(line.TrimRight('\r'));
    }
    Info(clsString(IsWhiteToMove() ? "white [" : "black [") + GetPosition() + "]");
    Info(clsString());
}

clsString clsEngineInterface::BoardText() {
    const clsString fen = GetPosition();
    clsString board;
    for (const char* c = fen.Text(); *c && *c != ' '; ++c) {
        if (*c >= '1' && *c <= '8')
            board += clsString('-', *c - '0');
        else if (*c == '/')
            board += "\r\n";
        else
            board += *c;
    }
    return board;
}

bool clsEngineInterface::IsWhiteToMove() {
    return true;
}

int clsEngineInterface::SetMaxDepth(int depth) {
    return MaxDepth = depth;
}

void clsEngineInterface::SetMaxNodes(int64_t) {}

void clsEngineInterface::SetMateDepth(int) {}

int clsEngineInterface::GetBookEntries(nuvobase::clsPCollection<clsBookEntryExt>&, bool) {
    return 0;
}

void clsEngineInterface::PrintMoves(bool) {}

void clsEngineInterface::SetDebug(bool debug) {
    Debug = debug;
}

bool clsEngineInterface::SetOption(const clsString& name, const clsString& value) {
    Options.SetValue(name, value, true);
    return true;
}

void clsEngineInterface::SquareToChars(uint64_t square, char* text) {
    if (!square) {
        text[0] = text[1] = '-';
        return;
    }
    const int index = std::countr_zero(square);
    text[0] = char('a' + 7 - index % 8);
    text[1] = char('1' + index / 8);
}

clsString clsEngineInterface::SquareToText(uint64_t square) {
    char text[3] = {};
    SquareToChars(square, text);
    return clsString(text);
}

uint64_t clsEngineInterface::TextToSquare(const clsString& text) {
    const char file = *text.At(0);
    const char rank = *text.At(1);
    if (file < 'a' || file > 'h' || rank < '1' || rank > '8') return 0;
    return uint64_t(1) << ((rank - '1') * 8 + 7 - (file - 'a'));
}

bool clsEngineInterface::MakeMoveText(const clsString& move) {
    const uint64_t from = TextToSquare(move.Left(2));
    const uint64_t to = TextToSquare(move.Mid(2, 2));
    char promotion = *move.At(4);
    if (promotion == '=') promotion = *move.At(5);
    return MakeMove(from, to, promotion);
}

int clsEngineInterface::SearchFixedDepth(int, int64_t& nodes) {
    nodes = 0;
    return 0;
}

void clsEngineInterface::OnEngineOutput(const clsString&) {}

void clsEngineInterface::WaitForReply(int) {
    nuvobase::SleepMs(1);
}

void clsEngineInterface::SetClock(int which, int value) {
    const bool black = Side == 1;
    switch (which) {
    case ClockWhiteTime:
        (black ? OpponentTimeMs : OwnTimeMs) = value;
        break;
    case ClockBlackTime:
        (black ? OwnTimeMs : OpponentTimeMs) = value;
        break;
    case ClockWhiteIncrement:
        (black ? OpponentIncrementMs : OwnIncrementMs) = value;
        break;
    case ClockBlackIncrement:
        (black ? OwnIncrementMs : OpponentIncrementMs) = value;
        break;
    case ClockMovesToGo:
        MovesToGo = value;
        break;
    default:
        break;
    }
}

void clsEngineInterface::TakeGo(const clsGoLimits& limits) {
    using Word = clsGoLimits::eNumber;
    const auto value = [&limits](Word word) {
        return int(std::clamp<int64_t>(limits.Value(word), INT_MIN, INT_MAX));
    };
    const std::pair<Word, eClockSlot> clocks[] = {{clsGoLimits::WhiteTime, ClockWhiteTime},
                                                  {clsGoLimits::BlackTime, ClockBlackTime},
                                                  {clsGoLimits::WhiteIncrement, ClockWhiteIncrement},
                                                  {clsGoLimits::BlackIncrement, ClockBlackIncrement},
                                                  {clsGoLimits::MoveTime, ClockMovesToGo}};
    for (const auto& [word, slot] : clocks)
        if (limits.Given(word)) SetClock(slot, value(word));
    if (limits.InfiniteLast)
        SetMaxDepth(InfiniteDepth);
    else if (limits.Given(clsGoLimits::Depth))
        SetMaxDepth(value(clsGoLimits::Depth));
    if (limits.Given(clsGoLimits::Nodes)) SetMaxNodes(value(clsGoLimits::Nodes));
    if (limits.Given(clsGoLimits::Mate)) SetMateDepth(value(clsGoLimits::Mate));
}

void clsEngineInterface::Info(const clsString& text) {
    if (!Output) return;
    if (Protocol == XBoard)
        Output->Write(clsString("# ") + text, true);
    else if (Protocol == Uci)
        Output->Write(clsString("info string ") + text, true);
}

void clsEngineInterface::DepthLine(int32_t depth, int32_t centipawns, int32_t mateMoves, uint64_t nodes,
                                   int64_t elapsedMs, const clsString& move) {
    if (!Limits.DepthLines || !Output) return;
    const int64_t ms = elapsedMs > 0 ? elapsedMs : 0;
    // A rate over less than a millisecond is taken over one.
    const int64_t nps = int64_t(nodes) * 1000 / (ms > 0 ? ms : 1);
    const clsString score =
        mateMoves != 0 ? clsString("mate ") + clsString(mateMoves) : clsString("cp ") + clsString(centipawns);
    Output->Write(clsString("info depth ") + clsString(depth) + " score " + score + " nodes " +
                      clsString(int64_t(nodes)) + " nps " + clsString(nps) + " time " + clsString(ms) +
                      " pv " + UciMoveText(move),
                  true);
}

clsString clsEngineInterface::UciMoveText(const clsString& move) {
    clsString text = move;
    text.RemoveChar('=');
    return text;
}

} // namespace nvoChess
