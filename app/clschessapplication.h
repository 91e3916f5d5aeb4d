#pragma once
// The application object: the thread that reads commands, hands them to the front end of the current
// protocol, watches the running engine and delivers its moves.

#include "app/clsstrictuci.h"
#include "chess/clschesscore.h"
#include "match/clsengineinterface.h"
#include "match/clstourney.h"
#include "nuvobase/clsprotected.h"
#include "nuvobase/clsstring.h"
#include "nuvobase/clsstrings.h"
#include "nuvobase/clsthread.h"
#include "nuvobase/clstsafeoutput.h"
#include "search/clsengineshare.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace nvoChess {

using nuvobase::clsString;

class clsChessApplication final : public nuvobase::clsThread {
public:
    // What the command loop hands a handler's result: 4 ends the loop.
    static constexpr int QuitResult = 4;
    // What the application expects of the engine.
    static constexpr int32_t StateIdle = 0;
    static constexpr int32_t StateStopped = 1;
    static constexpr int32_t StateEngineWhite = 2;
    static constexpr int32_t StateEngineBlack = 3;
    static constexpr int32_t StateEpd = 5;
    static constexpr int32_t StateLearning = 6;

    // Both clocks at start, and what XBoard new sets them to.
    static constexpr int64_t StartClockMs = 300000;

    // arguments: the name/value table of the command line.
    explicit clsChessApplication(const nuvobase::clsStrings& arguments);
    // Stops the engine and the input reader, flushes and gives the output a moment before the fields go.
    ~clsChessApplication() override;

    bool Run() override;
    // Splits line at the first blank and hands it to the front end of the current protocol.
    virtual void ExecuteCommand(const clsString& line);

    // "vesko" or "corvane", any case, replaces the current engine; other names change nothing.
    // True when the engine was replaced.
    bool SetEngine(const clsString& name);
    // Resizes the shared table; false, and nothing done, while the engine searches.
    bool SetMemory(int64_t megabytes);
    // Sets the engine's position and publishes it.
    bool SetBoard(const clsString& fen);
    // The last published position.
    clsString GetFen();
    // Stops the engine, works out the time for this move and starts the search; the result of Start.
    bool StartThinking();
    // With Post set, the engine's line about its running search.
    void ShowProgress();
    // Answers a ping that waited for the end of a search.
    void SendPong();
    // The engine's name, the program and whether the processor's population count is used.
    void ShowBanner();

    // Stops the engine and waits until its thread has ended, so that its position may be touched.
    void HaltEngine();
    // Stops the engine, waits for its thread and hands over the move that a front end waits for at once,
    // before the next line can touch the engine's position or start another search.
    void FinishSearch();

    // \epd: seconds per position ("mm:ss" or minutes) and the file; starts the run in the command loop.
    void StartEpdRun(const clsString& arguments);
    // Sets the board to one line of the file under test and starts its search.
    void TestPosition(const clsString& line);
    // \play: one game between two Corvane engines with the given souls.
    void PlayCommand(const clsString& arguments);
    // One game from fen, first to move; +1 when first won, -1 when second won, 0 for anything else.
    // Each engine thinks msPerMove of wall time; maxMoves counts single moves.
    int PlaySelfGame(clsEngineInterface& first, clsEngineInterface& second, int64_t msPerMove,
                     int64_t maxMoves, const clsString& fen);

    // \learn: a population of engines plays itself for generations, the result file resumed if it exists.
    void LearnPopulation(const clsString& file, int64_t generations, int64_t enginesCount, int64_t msPerMove,
                         int64_t maxMoves);

    // The front ends and the console; each returns QuitResult to end the command loop.
    int HandleUci(const clsString& command, const clsString& arguments);
    int HandleXBoard(const clsString& command, const clsString& arguments, bool echo);
    int HandleConsole(const clsString& command, const clsString& arguments);

    // The values of two keywords in text: each keyword is searched, ignoring case and quoted spans,
    // behind the end of the one before; its value runs to the next keyword found or to the end and is
    // trimmed of blanks. A keyword not found has an empty value; an empty keyword is found at the start.
    static void SplitKeywords(const clsString& text, const char* firstKeyword, const char* secondKeyword,
                              clsString& firstValue, clsString& secondValue);
    // Sets the position of the arguments of "position" on anything that takes a FEN and coordinate moves: a
    // move that fails is skipped. No text, or "startpos", is the start position.
    template <class Board> static void SetUpPosition(Board& board, const clsString& arguments);

    nuvobase::clsTSafeOutput* Output;
    int32_t DefaultMemoryMb = 64;
    clsEngineShare Share;
    std::unique_ptr<clsEngineInterface> Engine; // never null once constructed
    nuvobase::clsStrings Arguments;             // the command line, copied
    nuvobase::clsStrings Features;
    clsString LogFile;
    nuvobase::clsCStrings TestLines;
    int32_t TestIndex = 0;
    std::vector<std::unique_ptr<clsTourney>> Tourneys; // started by \tourney, numbered from 1
    nuvobase::clsCStrings FenHistory;
    int32_t State = StateIdle;
    int32_t TestScore = 0;
    bool Ponder = false;
    bool Post = false;
    bool ShowBoard = false;
    int64_t InitialTimeMs = StartClockMs;
    int64_t MovesPerControl = 0;
    int64_t BaseTimeMs = 0;
    int64_t IncrementMs = 0;
    int64_t EngineTimeMs = StartClockMs;
    int64_t OpponentTimeMs = StartClockMs;
    uint64_t ThinkStart = 0;
    uint64_t Deadline = 0;
    uint64_t LastProgress = 0;
    // A search was started for a move that is not handed over yet; a position change that drops the
    // search clears it.
    bool AnswerDue = false;
    nuvobase::clsProtectedString PublishedFen;
    clsString PendingPing;
    clsString IcsHost;
    nuvobase::clsStrings LearnBookLines;
    // The UCI front end of -strictuci; null without the switch.
    std::unique_ptr<clsStrictUci> Strict;
    // Reads the operations and the SAN of the line under test, whichever engine searches it.
    std::unique_ptr<clsChessCore> EpdNotation;

protected:
    // Writes one line to Output.
    void WriteLine(const clsString& text);

private:
    // One pass of the command loop; false once the loop is to end.
    bool CommandLoopPass();
    // Stops the search at its deadline, or shows its progress.
    void WatchSearch(uint64_t now);
    // Hands the move of a finished search to the protocol that asked for it.
    void DeliverMove(uint64_t now);
    // Plays best, or tells that the position has no move.
    void AnswerGo(const clsString& best, uint64_t now);
    // A legal move of the position searched, for a search stopped before it found one: a GUI must get a
    // move whenever the position has one. Empty text when it has none.
    clsString FirstLegalMove();
    // Scores the answer to the line under test and starts the next one, or shows the results.
    void EpdStep(const clsString& best);
    // True while the search of a position under test has no move yet.
    bool AwaitingEpdAnswer();
    // True while lines of an EPD run wait for their answer.
    bool EpdRunning() const;
    int Dispatch(const clsString& command, const clsString& arguments);
    int UciPosition(const clsString& arguments);
    int UciGo(const clsString& arguments);
    // Whether the UCI words go to the front end of -strictuci.
    bool IsStrict() const { return Strict && Engine->Protocol == clsEngineInterface::Uci; }
};

template <class Board> void clsChessApplication::SetUpPosition(Board& board, const clsString& arguments) {
    clsString fen, moves;
    SplitKeywords(arguments, "", "moves", fen, moves);
    if (fen.BeforeChar(' ') == "fen") {
        fen = fen.AfterChar(' ');
        fen.Trim(' ');
    }
    // No position at all is the start position too, whatever an engine makes of an empty text.
    if (fen == "startpos" || fen.IsEmpty()) fen = StartPositionFen;
    board.SetPosition(fen);
    int position = 0;
    while (position >= 0) {
        const clsString move = moves.NextWord(' ', position);
        if (!move.IsEmpty()) board.MakeMoveText(move);
    }
}

} // namespace nvoChess
