#include "search/clsembeddedplayer.h"

#include "match/clstourney.h"
#include "nuvobase/platform.h"

using nuvobase::clsString;

namespace nvoChess {

namespace {
constexpr const char* StartPosition = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
}

clsEmbeddedPlayer::clsEmbeddedPlayer(const clsString& name, nuvobase::clsTSafeOutput* output,
                                     clsTourneyGame* game)
    : clsEngineCorvane(&Table, name, output, game) {
    Table.ResizeTable(TableMb);
    // A learning run hands its candidate soul to the player through a file; its numbers may be joined by
    // tabs or by blanks.
    clsString soul;
    if (soul.LoadFromFile(clsTourney::SoulFile) > 0) LoadSoulText(soul.ReplaceAll("\t", " "));
    // Nothing to start and no handshake: the player is ready and working from the beginning.
    Ready = true;
    clsEngineInterface::Stopped = false;
}

clsEmbeddedPlayer::~clsEmbeddedPlayer() {
    StopEngine();
}

void clsEmbeddedPlayer::Think() {
    StopEngine();
    SetPosition(StartPosition);
    int position = 0;
    while (position >= 0) {
        const clsString move = MoveHistory.NextWord(' ', position, false, true);
        if (!move.IsEmpty()) MakeMoveText(move);
    }
    const int64_t allowance = (int64_t(OwnTimeMs) - ReserveMs) / MovesLeft;
    Deadline = nuvobase::ClockMs() + uint64_t(allowance > 0 ? allowance : 0);
    Thinking = true;
    Start();
}

clsString clsEmbeddedPlayer::ReadReply() {
    if (!Thinking) return clsString();
    int score = 0;
    if (IsRunning()) {
        // The search is stopped once its time is up and it has a move to give.
        if (nuvobase::ClockMs() <= Deadline || GetBestMoveText(false, score).IsEmpty()) return clsString();
        StopEngine();
    }
    Wait();
    Thinking = false;
    const clsString best = GetBestMoveText(true, score);
    return best.IsEmpty() ? best : "move " + best;
}

} // namespace nvoChess
