#pragma once
// One refereed, timed game of a tournament between two players, on a thread of its own. It leaves a PGN
// file and a log file behind, whatever the engines do.

#include "book/clsgame.h"
#include "chess/clschesscore.h"
#include "match/clsadjudicator.h"
#include "match/clsengineinterface.h"
#include "match/clsexternalengine.h"
#include "match/clsplayer.h"
#include "nuvobase/clsstring.h"
#include "nuvobase/clsstrings.h"
#include "nuvobase/clsthread.h"
#include "nuvobase/clstsafeoutput.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace nvoChess {

class clsTourneyGame final : public nuvobase::clsThread, public clsGame {
public:
    // Makes the engine of an "embedded" player: an engine of this program that answers like any other.
    // The application registers it at start; without one an embedded player cannot play.
    using EngineMaker = std::function<std::unique_ptr<clsEngineInterface>(
        const nuvobase::clsString& name, nuvobase::clsTSafeOutput* output, clsTourneyGame* game)>;
    static EngineMaker MakeEmbedded;

    // Sides of GameLog.
    static constexpr int White = 0, Black = 1, Neither = 2;
    // How far beyond its clock a mover may answer and still be in time.
    static constexpr int64_t ForfeitGraceMs = 50;
    // How long a started program gets before it is spoken to, and how often it is then asked for its
    // answer to the handshake, one millisecond apart. Without a pause behind the lines sent the program
    // is spoken to at once, and the same span bounds the wait for its answer.
    static constexpr unsigned StartupWaitMs = 1500;
    static constexpr int HandshakePolls = 20000;
    // The longest a game waits for a reply before it looks at its clock and at an abort again.
    static constexpr int ReplyWaitMs = 100;
    // How long a UCI program gets at the end of a game to say it is ready for the next one.
    static constexpr uint64_t SettleWaitMs = 1000;

    clsTourneyGame(int32_t gameId, int32_t clockMoves, int32_t clockGameMs, int32_t clockIncrementMs,
                   clsPlayer* white, clsPlayer* black, const nuvobase::clsString& pgnFile,
                   nuvobase::clsTSafeOutput* output);
    // Ends a game still running: it is aborted and waited for.
    ~clsTourneyGame() override;

    // Plays the game; false when it was aborted or not decided.
    bool Run() override;
    // Also forgets the positions, the log, the side and move number and the finished mark.
    void Reset(bool keepTags) override;

    // Clears an abort left from an earlier run and starts the game.
    bool Start() override;
    // Ends the game as aborted: a running game at its next turn, a waiting one at once.
    void Abort();
    // Asks a running game to end as aborted at its next turn; safe from any thread.
    void RequestAbort() { AbortRequested = true; }
    // side 0 white, 1 black, 2 neither. Lines about time forfeits also go to the console.
    void GameLog(int side, const nuvobase::clsString& text);
    // The tags, an empty line and the moves, lines ending in CR LF.
    nuvobase::clsString PgnText() const;
    // Writes the log and the PGN beside PgnFile; nothing when PgnFile is empty.
    void SaveFiles() const;
    // The mover has lost on time when its answer came later than its clock allows.
    static bool IsOverTime(int64_t elapsedMs, int64_t clockMs) {
        return elapsedMs > clockMs + ForfeitGraceMs;
    }
    // The position after the newest of hashes (one per move played) stands there for the fourth time.
    static bool IsFourthOccurrence(const std::vector<uint64_t>& hashes);
    // The points that a result word gives white and black.
    static void Points(uint32_t code, int32_t& white, int32_t& black);

    nuvobase::clsTSafeOutput* Output; // not owned
    int32_t GameId;
    int32_t Round = 0; // the tournament round the game plays
    std::atomic<int32_t> SideToMove{0};
    std::atomic<int32_t> MoveNumber{0};
    std::atomic<bool> Finished{false};
    nuvobase::clsCStrings LogLines;
    int32_t ClockMoves, ClockGameMs, ClockIncrementMs;
    clsPlayer* WhitePlayer; // not owned
    clsPlayer* BlackPlayer; // not owned
    std::vector<uint64_t> PositionHashes;
    std::vector<int32_t> TurnMs; // wall time of each turn that ended in a move, engines' thinking included
    // Called on the game's thread once its files are written; the tournament wakes its scheduler here.
    std::function<void()> OnFinished;
    nuvobase::clsString PgnFile;
    // Where the game starts: a FEN of all six fields (empty for the usual start), and coordinate moves
    // played from there before the engines' first move, each followed by a blank.
    nuvobase::clsString StartFen;
    nuvobase::clsString OpeningMoves;
    // Every move of the game in standard notation, the opening's included.
    std::vector<nuvobase::clsString> SanMoves;
    clsAdjudicator Adjudicator;
    bool Verbose = false;
    // The pause behind each line sent to another program.
    int PaceMs = clsExternalEngine::DefaultPaceMs;

private:
    // The game from the first move to its end; false when nobody scored.
    bool Play();
    // An engine for the player, or null when the player cannot have one. Without pauses it is the
    // player's program waiting from an earlier game, when there is one.
    std::unique_ptr<clsEngineInterface> MakeEngine(clsPlayer& player);
    // Without pauses each UCI program still running that answers "isready" after "stop" waits with its
    // player for the next game: starting a program anew takes longer than the first moves of a game.
    void KeepSoundEngines();
    // Sets the engine's side and clocks and, when it is not ready, starts it and sends the handshake; with
    // pauses it also waits for the answer.
    void LaunchPlayer(clsEngineInterface& engine, int side);
    // Once the engine has answered, starts a new game on it; Ready.
    bool OpenGame(clsEngineInterface& engine);
    // Reads the engine's answers until it is ready, it has ended, the bound passes, or it gives a reply.
    // Settling at the end of a game the bound is SettleWaitMs and replies are passed over.
    void AwaitReady(clsEngineInterface& engine, bool settling = false);
    // Sends what starts the mover's turn and starts the turn's clock: behind the lines when they are
    // sent without a pause, else before them, so that the pauses count in the mover's time.
    void StartTurn(const std::function<void()>& send);
    // One reply of the mover; returns the result word it gives, or 1 while the game goes on.
    uint32_t HandleReply(const nuvobase::clsString& reply, int64_t elapsedMs);
    // Plays a move of the mover on the referee and hands it to both engines.
    uint32_t HandleMove(const nuvobase::clsString& rest, int64_t elapsedMs);
    // Adds the points of the result to both players and logs them.
    void Score();
    // Puts the referee on the start position and plays the opening's moves; the first to move.
    int SetUpOpening();
    // Writes a legal move of side into the move texts.
    void RecordMove(const nuvobase::clsString& move, const nuvobase::clsString& san, int side);
    // The coordinates of a move that an engine wrote as coordinates or in standard notation; empty text
    // when it names no legal move.
    nuvobase::clsString CoordinatesOf(const nuvobase::clsString& text);
    // After a legal move that left the game on: the result word of the adjudication rules, or 1.
    uint32_t Adjudicate(clsEngineInterface& mover, int side);

    std::unique_ptr<clsChessCore> Referee; // holds the game's position while the game runs
    std::vector<std::unique_ptr<clsEngineInterface>> Engines;
    uint64_t TurnStartUs = 0;
    size_t OpeningPlies = 0;
    nuvobase::clsString AdjudicationRule; // the rule that ended the game, for its "Reason" tag
    std::atomic<bool> AbortRequested{false};
};

} // namespace nvoChess
