#include "match/clsexternalengine.h"

#include "nuvobase/platform.h"

using nuvobase::clsString;

namespace nvoChess {

namespace {
constexpr int ExternalPawnValue = 100;
// The longest a line waits for the child to be started.
constexpr int StartWaitMs = 10000;
// The most lines one ReadReply passes over, so that a child that never stops writing still lets the
// game look at its clock.
constexpr int LinesPerReply = 4096;
} // namespace

clsExternalEngine::clsExternalEngine(const clsString& name, nuvobase::clsTSafeOutput* output,
                                     clsTourneyGame* game)
    : clsEngineInterface(name, output, game) {}

clsExternalEngine::~clsExternalEngine() {
    EndChild();
}

void clsExternalEngine::EndChild() {
    QuitEngine();
    TerminateChild();
    // With the child gone the reader sees the end of its output and returns.
    Wait();
    Stopped = true;
}

bool clsExternalEngine::Run() {
    ReaderLoop();
    // Whoever waits for a reply wakes to an engine already stopped.
    Stopped = true;
    Wake();
    return true;
}

void clsExternalEngine::OnExit() {
    Stopped = true;
}

bool clsExternalEngine::StopEngine() {
    EndChild();
    return true;
}

bool clsExternalEngine::MakeMoveText(const clsString& move) {
    SendLine(move);
    return true;
}

bool clsExternalEngine::SetPosition(const clsString& fen) {
    SendLine("setboard " + fen);
    return true;
}

bool clsExternalEngine::MakeMove(uint64_t from, uint64_t to, char promotion) {
    clsString move = SquareToText(from) + SquareToText(to);
    if (promotion != 0) {
        move += '=';
        move += promotion;
    }
    SendLine(move);
    return true;
}

clsString clsExternalEngine::ReadReply() {
    for (int lines = 0; lines < LinesPerReply; ++lines) {
        const clsString line = ReadLine(&ReplyArrivalUs);
        if (line.IsEmpty()) break;
        const clsString reply = ParseLine(line);
        if (!reply.IsEmpty()) return reply;
    }
    return clsString();
}

void clsExternalEngine::WaitForReply(int timeoutMs) {
    WaitForLine(timeoutMs);
}

void clsExternalEngine::SendLine(const clsString& line) {
    // A line sent while the reader is still starting the child waits for it rather than being lost.
    if (IsRunning()) WaitForStart(StartWaitMs);
    if (Running) WriteLine(line);
    if (PaceMs > 0) nuvobase::SleepMs(unsigned(PaceMs));
}

bool clsExternalEngine::IsWorking() {
    return Ready && IsRunning();
}

void clsExternalEngine::Quit() {
    QuitEngine();
    TerminateChild();
}

clsString clsExternalEngine::GetInfoLine() {
    return clsString();
}

clsString clsExternalEngine::GetPosition() {
    return clsString();
}

clsString clsExternalEngine::GetBestMoveText(bool, int&) {
    return clsString();
}

clsString clsExternalEngine::GetSpareText() {
    return clsString();
}

uint64_t clsExternalEngine::PositionHash() {
    return 0;
}

int clsExternalEngine::PawnValue() {
    return ExternalPawnValue;
}

void clsExternalEngine::CrossSoul(clsEngineInterface*) {}

clsString clsExternalEngine::GetSoulText() {
    return clsString();
}

void clsExternalEngine::LoadDefaultSoul() {}

uint64_t clsExternalEngine::Perft(int, bool) {
    return 0;
}

clsString clsExternalEngine::SanToCoordinates(const clsString&, bool) {
    return clsString();
}

} // namespace nvoChess
