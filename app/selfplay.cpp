// Self-play: one game between two embedded engines with a fixed time per move, judged by a referee engine of
// its own. \play plays one such game; the learner plays many.
#include "app/clschessapplication.h"
#include "app/clscommandwords.h"
#include "app/commandnumbers.h"

#include "chess/keys.h"
#include "nuvobase/platform.h"
#include "search/clsenginecorvane.h"

#include <vector>

namespace nvoChess {

namespace {

constexpr int64_t DefaultPlayMs = 3000;
constexpr int64_t MaxPlayMs = MaxClockSeconds * 1000;
// Bits of the referee's game status.
constexpr uint32_t StatusMate = 0x0002, StatusWhiteWins = 0x0004, StatusDraw = 0x0200;
// A position on the board for the fourth time ends the game.
constexpr int RepeatsBeforeDraw = 2;

// How often the newest key stood before, from the entry just before it back to the second entry.
int EarlierOccurrences(const std::vector<uint64_t>& keys) {
    int count = 0;
    for (size_t i = keys.size() - 1; i-- > 1;)
        if (keys[i] == keys.back()) ++count;
    return count;
}

} // namespace

int clsChessApplication::PlaySelfGame(clsEngineInterface& first, clsEngineInterface& second,
                                      int64_t msPerMove, int64_t maxMoves, const clsString& fen) {
    // The referee has no table of its own to share: it only makes moves and judges positions.
    auto referee = std::make_unique<clsEngineCorvane>(nullptr, clsString("Corvane"), Output);
    referee->Protocol = Engine->Protocol;
    first.SetPosition(fen);
    const clsString start = first.GetPosition();
    second.SetPosition(start);
    referee->SetPosition(start);
    const bool whiteBegan = referee->IsWhiteToMove();
    std::vector<uint64_t> keys;
    clsEngineInterface* mover = &first;
    clsEngineInterface* waiting = &second;
    int result = 0;
    for (int64_t played = 0; played < maxMoves; ++played) {
        mover->StopEngine();
        mover->Start();
        nuvobase::SleepMs(msPerMove);
        // On a busy machine the search may not have finished its first iteration: it is stopped once it has a
        // move to give, or when it ends by itself on a position without moves.
        int score = 0;
        while (mover->IsRunning() && mover->GetBestMoveText(false, score).IsEmpty()) nuvobase::SleepMs(1);
        mover->StopEngine();
        const clsString move = mover->GetBestMoveText(true, score);
        Output->Write(move + " ", false);
        if (!move.IsEmpty()) referee->clsEngineInterface::MakeMoveText(move);
        const uint32_t status = referee->GameStatus();
        if (status & StatusMate) {
            const int whiteResult = status & StatusWhiteWins ? 1 : -1;
            Output->Write(clsString(" win ") + clsString(int64_t(whiteResult)), true);
            referee->PrintBoard();
            result = whiteBegan ? whiteResult : -whiteResult;
            break;
        }
        if (status & StatusDraw) break;
        keys.push_back(ScratchHash(referee->Board));
        if (EarlierOccurrences(keys) > RepeatsBeforeDraw) {
            Output->Write("REPT ", false);
            break;
        }
        mover->MakeMoveText(move);
        waiting->MakeMoveText(move);
        std::swap(mover, waiting);
    }
    Output->Write(clsString(int64_t(result)), true);
    return result;
}

void clsChessApplication::PlayCommand(const clsString& arguments) {
    clsCommandWords words(arguments);
    const clsString msWord = words.Next();
    const int64_t msPerMove = msWord.IsEmpty() ? DefaultPlayMs : ReadBounded(msWord, MaxPlayMs);
    const int64_t maxMoves = words.NextNumber();
    words.Next(); // the game file: the game is shown, not stored
    const clsString soulA = words.Next();
    const clsString soulB = words.Next();
    if (msPerMove < 1 || maxMoves < 1) {
        Engine->Info(clsString("\\play ms_per_move max_moves file.pgn [soulA soulB]"));
        return;
    }
    // The players share the table with the current engine, which must not search meanwhile.
    HaltEngine();
    auto first = std::make_unique<clsEngineCorvane>(&Share, clsString("Corvane"), Output);
    auto second = std::make_unique<clsEngineCorvane>(&Share, clsString("Corvane"), Output);
    first->SelectSoul(soulA);
    second->SelectSoul(soulB);
    PlaySelfGame(*first, *second, msPerMove, maxMoves, clsString(StartPositionFen));
}

} // namespace nvoChess
