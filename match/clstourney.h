#pragma once
// A tournament from an XML file: players, pairings, rounds on a limited number of game threads, scores,
// a tournament log and the files of every game. It runs on a thread of its own.

#include "book/clspgnexport.h"
#include "match/clsadjudicator.h"
#include "match/clsopenings.h"
#include "match/clsplayer.h"
#include "match/clssprt.h"
#include "match/clsstandings.h"
#include "match/clstourneygame.h"
#include "nuvobase/clscondition.h"
#include "nuvobase/clsmutex.h"
#include "nuvobase/clsstring.h"
#include "nuvobase/clsstrings.h"
#include "nuvobase/clsthread.h"
#include "nuvobase/clstsafeoutput.h"
#include "nuvobase/clsxml.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <utility>
#include <vector>

namespace nvoChess {

class clsTourney final : public nuvobase::clsThread {
public:
    enum TourneyTypes : int32_t { RoundRobin = 0, Gauntlet = 1, Learning = 2 };
    // The text "NuvoSoftware" carries.
    static constexpr const char* Software = "Corvane 1.0";
    // How often the scheduler looks at the games, and how often it writes its progress line.
    static constexpr unsigned SchedulerMs = 1000;
    // How long Stop waits for the thread to end by itself.
    static constexpr unsigned StopWaitMs = 3000;

    // Loads the file; one that does not load leaves the document empty and the thread ends at once.
    clsTourney(int32_t id, const nuvobase::clsString& path, nuvobase::clsTSafeOutput* output);
    // Stops a running tournament and ends its games.
    ~clsTourney() override;

    bool Run() override;
    // Aborts the running games, logs "cancel" and ends the thread.
    bool Stop() override;

    // One line of the tournament log, to the output and to the log file.
    void Log(int32_t gameId, const nuvobase::clsString& text);
    // Rewrites the log file with every line so far.
    void FlushLog();
    // Generations of a learning tournament; tests set fewer.
    static int32_t LearningGenerations;
    // The file through which the pupil of a learning tournament takes up the soul of a candidate.
    static constexpr const char* SoulFile = "soul.txt";

    // Moves some of the player's soul parameters most of the way to those of the best candidate, within 0 and
    // the pawn value of the player's engine.
    void BreedTowards(clsPlayer& player, const clsPlayer& best);

    // The "TimeControl" tag of a time control.
    static nuvobase::clsString TimeControlTag(int32_t moves, int32_t gameMs, int32_t incrementMs);

    nuvobase::clsTSafeOutput* Output; // not owned
    int32_t Id;
    std::atomic<int32_t> Round{0};
    int32_t Rounds = 1;
    int32_t Threads = 1;
    bool Verbose = false;
    int PaceMs = 100;
    nuvobase::clsString PathPrefix;
    int32_t ClockMoves = 0, ClockGameMs = 60000, ClockIncrementMs = 0;
    uint64_t StartMs = 0;
    nuvobase::clsXML Document;
    nuvobase::clsXML* Root = nullptr;
    nuvobase::clsCStrings LogLines;
    nuvobase::clsString LogFolder;
    nuvobase::clsString LogFile;
    nuvobase::clsString Name;
    // Wakes the scheduler when a game has ended. Declared before the games: a game ending while they
    // are destroyed still reaches them.
    nuvobase::clsMutex WakeLock;
    nuvobase::clsCondition GameEnded{WakeLock};
    bool GameEndedSinceLook = false; // guarded by WakeLock
    std::vector<std::unique_ptr<clsPlayer>> Players;
    // The first PairingCount games are the pairings in order, their index + 1 the game id. Without pauses a
    // pairing may play in two rounds at once; the scheduler then adds a game of the same id behind them.
    std::vector<std::unique_ptr<clsTourneyGame>> Games;
    size_t PairingCount = 0;
    int32_t Type = RoundRobin;
    nuvobase::clsStrings HeaderTags; // the extra PGN tags of the file, in file order
    clsOpenings Openings;            // empty without an openings element
    nuvobase::clsString OpeningsFile;
    clsAdjudicationRules Adjudication;
    nuvobase::clsString PgnOut;              // the file every finished game is appended to; empty for none
    std::unique_ptr<clsStandings> Standings; // kept when the file has openings, pgnout or sprt
    std::optional<clsSprt> Sprt;             // the test of the sprt element, for a match of two players
    // Set before Start. Resume keeps the games already in pgnout and plays the rest. Shard K of N (K from 1)
    // plays the rounds r with (r - 1) mod N = K - 1, and its files carry ".SK" behind the name; a count of 0
    // plays every round.
    bool Resume = false;
    int32_t ShardIndex = 0, ShardCount = 0;
    // Reads "K/N" into the shard fields; false, leaving them, when it is no such pair.
    bool SetShard(const nuvobase::clsString& text);
    // How long an XBoard engine gets to announce its features before it is judged by what it has said.
    static constexpr unsigned FeatureWaitMs = 5000;

private:
    // The settings of the options, clock and header elements.
    // False when the tournament cannot be played as the file says.
    bool ReadSettings();
    void MakePlayers(nuvobase::clsXML& engines);
    void MakeGames();
    // Adds a game of the pairing of white and black, ready to be started.
    clsTourneyGame& AddGame(int32_t id, clsPlayer* white, clsPlayer* black);
    // Plays the rounds on Threads game slots. With pauses a round starts when the previous one has ended;
    // without them a free slot takes the next game of the schedule whatever its round.
    void PlayRounds();
    // A game of the pairing that is not playing, added when every one of them is.
    clsTourneyGame& IdleGame(size_t pairing, const std::vector<clsTourneyGame*>& playing);
    // Sets the game up for its round and starts it.
    void StartGame(clsTourneyGame& game, int32_t round, int position);
    // The tags of a game at the start of its round.
    void SetTags(clsTourneyGame& game, int position);
    // Logs the result of the game, which has ended, and counts it.
    void Report(clsTourneyGame& game);
    // A line of the log that belongs to the round.
    void LogInRound(int32_t round, int32_t gameId, const nuvobase::clsString& text);
    // Tells the scheduler that a game has ended; called on the game's thread.
    void WakeScheduler();
    // Waits up to timeoutMs for a game to end, or returns at once when one has ended since the last look.
    void AwaitGameEnd(int timeoutMs);
    // The openings element; false, with a message, when its file gives no opening.
    bool ReadOpenings(nuvobase::clsXML& options);
    // Every XBoard engine can take the set-up positions of the openings; false, with a message, if not.
    bool EnginesTakeOpenings();
    // Starts the player's program, reads its features and ends it: whether it takes "setboard".
    bool TakesSetBoard(const clsPlayer& player);
    // The game's opening and adjudication for the round.
    void SetOpening(clsTourneyGame& game);
    // Appends the finished game to PgnOut and counts it in the standings.
    void RecordResult(const clsTourneyGame& game);
    // The game as standard PGN.
    clsPgnExport ExportOf(const clsTourneyGame& game) const;
    // Writes NAME.results.json; with print also the table to the output.
    void WriteStandings(bool print);
    // The name that the files of this tournament or shard begin with.
    nuvobase::clsString FileStem() const;
    // The round is one that this tournament or shard plays.
    bool PlaysRound(int32_t round) const;
    // New games may start: no stop was asked for and no test has given its verdict.
    bool MayStartGames() const;
    // The sprt element, for a match of two players; false, with a message, when it makes no test.
    bool ReadSprt(nuvobase::clsXML& options);
    // Takes up the games of an earlier run from pgnout: they count in the standings and scores and are not
    // played again. The file keeps each whole, decided game of the tournament once and nothing cut short.
    // False, with a message, when there is no pgnout to resume from.
    bool TakeUpPlayedGames();
    // Breeds candidate souls, each judged by a whole round loop of the pupil against the others.
    void LearningRun();

    std::set<std::pair<int32_t, int32_t>> PlayedGames; // round and game id of the games taken up
    nuvobase::clsMutex LogLock;                        // guards LogLines: Stop logs from another thread
    nuvobase::clsMutex GamesLock;                      // guards Games while it grows: Stop walks it
    std::atomic<bool> StopRequested{false};
};

} // namespace nvoChess
