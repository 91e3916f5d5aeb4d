#include "vesko/clsenginevesko.h"

#include "nuvobase/platform.h"

#include <algorithm>
#include <cstring>
#include <new>

using nuvobase::clsString;

namespace nvoChess {

namespace {

clsString PackedMoveText(uint64_t packed) {
    char text[9] = {};
    std::memcpy(text, &packed, 8);
    return clsString(text);
}

} // namespace

clsEngineVesko::clsEngineVesko(const clsString& name, nuvobase::clsTSafeOutput* output, clsTourneyGame* game)
    : clsEngineInterface(name, output, game), RawBlock(nullptr), RawSize(0),
      Block(VeskoAllocate(RawBlock, RawSize)) {
    if (!Block) throw std::bad_alloc();
}

bool clsEngineVesko::Start() {
    if (!IsRunning()) VeskoShared(Block->Command).store(0);
    return clsEngineInterface::Start();
}

bool clsEngineVesko::Run() {
    SearchStart = nuvobase::ClockMs();
    Execute(VeskoCommandSearch);
    return true;
}

void clsEngineVesko::IterationDone(void* engine) {
    auto* self = static_cast<clsEngineVesko*>(engine);
    VeskoBlock* const block = self->Block;
    const int64_t depth = VeskoShared(block->Depth).load();
    const int64_t score = VeskoShared(block->BestScore).load();
    // A forced result ends the deepening at the first depth that sees it: a mate within half that depth.
    const int32_t mate = score >= VeskoWinScore    ? int32_t(depth / 2)
                         : score <= -VeskoWinScore ? -int32_t(depth / 2)
                                                   : 0;
    self->DepthLine(int32_t(depth), int32_t(score * 100 / self->PawnValue()), mate,
                    VeskoShared(block->Nodes).load(), int64_t(nuvobase::ClockMs() - self->SearchStart),
                    PackedMoveText(VeskoShared(block->BestMove).load()));
}

clsEngineVesko::~clsEngineVesko() {
    SetStopped();
    Wait();
    VeskoFree(RawBlock);
}

void clsEngineVesko::SetStopped() {
    VeskoShared(Block->Command).fetch_or(VeskoCommandStop);
}

clsString clsEngineVesko::GetStatistics(int64_t elapsedMs) {
    const int64_t nodes = int64_t(VeskoShared(Block->Nodes).load());
    clsString text = clsString(nodes) + " nodes - ";
    if (elapsedMs) text += clsString(elapsedMs) + " ms " + clsString(nodes / elapsedMs) + " Knps";
    return text;
}

bool clsEngineVesko::SetPosition(const clsString& fen) {
    Command(VeskoCommandSetPosition, 0, fen.Text());
    return Block->Error == 0;
}

clsString clsEngineVesko::GetInfoLine() {
    clsString line;
    if (ResultLock.Lock() != 0) return line;
    const uint64_t move = VeskoShared(Block->BestMove).load();
    if (move) {
        line = clsString(int64_t(VeskoShared(Block->Depth).load())) + " " +
               clsString(int64_t(VeskoShared(Block->BestScore).load())) + " 0 " +
               clsString(int64_t(VeskoShared(Block->Nodes).load())) + " " + PackedMoveText(move);
    }
    ResultLock.Unlock();
    return line;
}

clsString clsEngineVesko::GetPosition() {
    Command(VeskoCommandGetPosition);
    return clsString(Block->Text);
}

clsString clsEngineVesko::GetBestMoveText(bool consume, int& score) {
    clsString text;
    if (ResultLock.Lock() != 0) return text;
    const uint64_t move = VeskoShared(Block->BestMove).load();
    if (move) {
        text = PackedMoveText(move);
        score = int(VeskoShared(Block->BestScore).load());
        if (consume) VeskoShared(Block->BestMove).store(0);
    }
    ResultLock.Unlock();
    return text;
}

clsString clsEngineVesko::GetSpareText() {
    return clsString();
}

bool clsEngineVesko::MakeMove(uint64_t from, uint64_t to, char promotion) {
    char text[8] = {};
    SquareToChars(from, text);
    SquareToChars(to, text + 2);
    text[4] = promotion;
    Command(VeskoCommandMakeMove, 0, nullptr, text);
    return Block->Error == 0;
}

uint64_t clsEngineVesko::PositionHash() {
    return 0;
}

clsString clsEngineVesko::ReadReply() {
    return clsString();
}

int clsEngineVesko::PawnValue() {
    return 100;
}

void clsEngineVesko::CrossSoul(clsEngineInterface*) {}

clsString clsEngineVesko::GetSoulText() {
    return clsString();
}

void clsEngineVesko::LoadDefaultSoul() {}

uint64_t clsEngineVesko::Perft(int depth, bool) {
    Command(VeskoCommandCount, depth);
    for (int ply = 0; ply < Block->Depth && Block->PlyCounts[ply]; ++ply)
        Info(clsString(ply + 1) + "\t" + clsString(int64_t(Block->PlyCounts[ply])));
    return Block->Depth > 0 ? Block->PlyCounts[Block->Depth - 1] : 0;
}

clsString clsEngineVesko::SanToCoordinates(const clsString&, bool) {
    return clsString();
}

void clsEngineVesko::SendLine(const clsString&) {}

void clsEngineVesko::Execute(uint64_t command, int64_t depth, const char* text, const char* moveText) {
    const bool search = command == VeskoCommandSearch;
    // A search keeps a stop that came since Start; the owner's commands run with no search
    // about, and an old stop must not cut them short.
    VeskoShared(Block->Command).fetch_and(search ? VeskoCommandStop : 0);
    VeskoShared(Block->Command).fetch_or(command);
    VeskoShared(Block->Depth).store(depth);
    // A depth asked for by the front end bounds this search alone. The deepening runs the depths below the
    // limit less one, so the limit lies two above the deepest depth to finish, and never above its own.
    Block->MaxDepth =
        search && Limits.Plies > 0 ? std::min<int64_t>(Limits.Plies + 2, VeskoDepthLimit) : MaxDepth;
    Block->NodeLimit = search ? Limits.Nodes : 0;
    Block->IterationDone = search && Limits.DepthLines ? IterationDone : nullptr;
    Block->Listener = this;
    if (text) {
        // A longer text is cut to the field.
        std::strncpy(Block->Text, text, sizeof Block->Text - 1);
        Block->Text[sizeof Block->Text - 1] = 0;
    }
    if (moveText) std::memcpy(Block->MoveText, moveText, sizeof Block->MoveText);
    VeskoShared(Block->BestMove).store(0);
    VeskoExecute(Block);
}

void clsEngineVesko::Command(uint64_t command, int64_t depth, const char* text, const char* moveText) {
    if (IsRunning()) {
        SetStopped();
        Wait();
    }
    Execute(command, depth, text, moveText);
}

} // namespace nvoChess
