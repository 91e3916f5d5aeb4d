#include "search/clsembeddedplayer.h"

#include "nuvobase/platform.h"
#include "search/clstimerule.h"

using nuvobase::clsString;

namespace nvoChess {

namespace {
constexpr int CentipawnsPerPawn = 100;
} // namespace

clsEmbeddedPlayer::clsEmbeddedPlayer(const clsString& name, nuvobase::clsTSafeOutput* output,
                                     clsTourneyGame* game, const clsString& soul)
    : clsEngineCorvane(&Table, name, output, game) {
    Table.ResizeTable(TableMb);
    if (!soul.IsEmpty()) LoadSoulText(clsString(soul).ReplaceAll("\t", " "));
    // Nothing to start and no handshake: the player is ready and working from the beginning.
    Ready = true;
    clsEngineInterface::Stopped = false;
}

clsEmbeddedPlayer::~clsEmbeddedPlayer() {
    StopEngine();
}

void clsEmbeddedPlayer::Think() {
    StopEngine();
    SetPosition(OpeningFen.IsEmpty() ? clsString(StartPositionFen) : OpeningFen);
    int position = 0;
    while (position >= 0) {
        const clsString move = MoveHistory.NextWord(' ', position, false, true);
        if (!move.IsEmpty()) MakeMoveText(move);
    }
    Deadline = nuvobase::ClockMs() + uint64_t(TournamentPlayerTimeRule.Allowance(OwnTimeMs));
    Thinking = true;
    Start();
}

clsString clsEmbeddedPlayer::ReadReply() {
    if (!Thinking) return clsString();
    int score = NoValue;
    if (IsRunning()) {
        // The search is stopped once its time is up and it has a move to give.
        if (nuvobase::ClockMs() <= Deadline || GetBestMoveText(false, score).IsEmpty()) return clsString();
        StopEngine();
    }
    Wait();
    Thinking = false;
    const clsString best = GetBestMoveText(true, score);
    if (score != NoValue) ReportScore(score * CentipawnsPerPawn / PawnValue());
    return best.IsEmpty() ? best : "move " + best;
}

} // namespace nvoChess
