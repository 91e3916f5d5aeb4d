#pragma once
// The one abstract engine: the application, the tournament code and the test runners
// hold every engine, embedded or external, through this class.
#include "book/clsbook.h"
#include "book/clsbookentry.h"
#include "book/clspolyglotbook.h"
#include "match/clsgolimits.h"
#include "match/clsprotocolclient.h"
#include "nuvobase/clscollection.h"
#include "nuvobase/clsmutex.h"
#include "nuvobase/clsstring.h"
#include "nuvobase/clsstrings.h"
#include "nuvobase/clsthread.h"
#include "nuvobase/clstsafeoutput.h"

#include <atomic>
#include <cstdint>
#include <memory>

namespace nvoChess {

class clsTourneyGame;

// What a front end asks of the next search alone, beyond the engine's own settings; each search reads
// them when it starts. Zero means no limit.
struct clsSearchLimits {
    int32_t Plies = 0;       // the deepest nominal depth to finish
    uint64_t Nodes = 0;      // the nodes to count, as the engine counts them
    bool DepthLines = false; // an "info depth" line at the end of every finished depth
};

// A thread with an engine's life cycle, the engine's side of a game (side, clocks,
// moves) and the operations every engine answers. Run, the thread body, does one
// search and ends.
class clsEngineInterface : public nuvobase::clsThread, public nuvobase::clsOutBuffer {
public:
    // Protocol values; the same field selects the dialect of Info.
    static constexpr uint32_t XBoard = 0;
    static constexpr uint32_t Uci = 1;

    clsEngineInterface(const nuvobase::clsString& name, nuvobase::clsTSafeOutput* output,
                       clsTourneyGame* game = nullptr);
    ~clsEngineInterface() override;

    virtual bool IsStopped();
    virtual void SetStopped();
    // Clears Stopped, then starts the thread.
    virtual void StartEngine();
    // Asks the engine to stop; true.
    virtual bool StopEngine();
    virtual void ListBookMoves();
    // A polyglot book when the name ends in ".bin", the other kind emptied; else a .cbk book filtered by
    // limit, which empties the polyglot book. False when the file is missing or damaged, with the reason, if
    // known, in error; a damaged polyglot book is not used.
    bool LoadBookFile(const nuvobase::clsString& file, int limit, nuvobase::clsString& error);
    // True when a book move was chosen.
    virtual bool PlayBookMove();
    // Text about the finished search that took elapsedMs.
    virtual nuvobase::clsString GetStatistics(int64_t elapsedMs);
    // The board through Info, one line per rank, then side and FEN.
    virtual void PrintBoard();
    // The board part of GetPosition: a line per rank from rank 8, "-" for an empty
    // square, lines joined by CR LF.
    virtual nuvobase::clsString BoardText();
    virtual bool IsWhiteToMove();
    // Stores MaxDepth and returns what was stored.
    virtual int SetMaxDepth(int depth);
    virtual void SetMaxNodes(int64_t count);
    virtual void SetMateDepth(int moves);
    // The book moves of the position, best last; returns their count.
    virtual int GetBookEntries(nuvobase::clsPCollection<clsBookEntryExt>& list, bool generate);
    virtual void PrintMoves(bool flag);
    virtual void SetDebug(bool debug);
    // Adds the pair to Options or replaces the value of that name; true.
    virtual bool SetOption(const nuvobase::clsString& name, const nuvobase::clsString& value);
    // Writes file letter and rank digit of a one-bit square word into text[0..1].
    virtual void SquareToChars(uint64_t square, char* text);
    virtual nuvobase::clsString SquareToText(uint64_t square);
    // "e4" -> its one-bit word; anything else gives 0.
    virtual uint64_t TextToSquare(const nuvobase::clsString& text);
    // Coordinates with an optional promotion letter, "e7e8q" or "e7e8=q".
    virtual bool MakeMoveText(const nuvobase::clsString& move);
    // The value of the position at a depth, and the nodes it took.
    virtual int SearchFixedDepth(int depth, int64_t& nodes);

    virtual bool SetPosition(const nuvobase::clsString& fen) = 0;
    // One line about the running search; empty while there is nothing to say.
    virtual nuvobase::clsString GetInfoLine() = 0;
    // The position as FEN.
    virtual nuvobase::clsString GetPosition() = 0;
    // The move found, with its score; with consume set it is handed out once.
    virtual nuvobase::clsString GetBestMoveText(bool consume, int& score) = 0;
    virtual nuvobase::clsString GetSpareText() = 0;
    virtual bool MakeMove(uint64_t from, uint64_t to, char promotion) = 0;
    virtual uint64_t PositionHash() = 0;
    virtual nuvobase::clsString ReadReply() = 0;
    virtual int PawnValue() = 0;
    virtual void CrossSoul(clsEngineInterface* other) = 0;
    virtual nuvobase::clsString GetSoulText() = 0;
    virtual void LoadDefaultSoul() = 0;
    // Counts the moves to depth; returns the count of the last ply.
    virtual uint64_t Perft(int depth, bool divide) = 0;
    virtual nuvobase::clsString SanToCoordinates(const nuvobase::clsString& san, bool generateFirst) = 0;
    // Sends one line, without line end, to the engine.
    virtual void SendLine(const nuvobase::clsString& line) = 0;
    // Waits up to timeoutMs for a reply, or less: an engine that cannot tell when one arrives is looked
    // at again after a millisecond.
    virtual void WaitForReply(int timeoutMs);
    virtual void OnEngineOutput(const nuvobase::clsString& text);
    // Runs Perft(depth, divide) on every "FEN,...,count" line of file and appends one result line per
    // position to the file's ".out.txt", continuing behind the lines that file already holds. An empty file
    // tests the current position and writes its result line to Output instead. Returns 0.
    virtual int RunFileTest(const nuvobase::clsString& file, int depth, bool divide);
    // Called when the engine has been asked to move in a game, behind the lines sent: an engine
    // of this process starts its search on the clocks here. Does nothing for another program.
    virtual void Think();

    // The slots of SetClock.
    enum eClockSlot {
        ClockWhiteTime,
        ClockBlackTime,
        ClockWhiteIncrement,
        ClockBlackIncrement,
        ClockMovesToGo
    };
    // The depth of a go that searches until stopped.
    static constexpr int InfiniteDepth = 64;
    // Stores a clock by colour; own and opponent follow Side.
    void SetClock(int which, int value);
    // A go of the plain UCI dialect: the clock words go to SetClock, movetime to the moves-to-go slot, depth,
    // nodes and mate to their setters; infinite behind the last depth is InfiniteDepth. A word that did not
    // come changes nothing; values are cut to the range of int.
    void TakeGo(const clsGoLimits& limits);
    // A remark for the GUI: "# " in XBoard mode, "info string " in UCI mode.
    void Info(const nuvobase::clsString& text);
    // With DepthLines asked for: the UCI line of a finished depth. mateMoves is 0 unless a result is
    // forced, then the moves to it, negative when the engine is the one mated.
    void DepthLine(int32_t depth, int32_t centipawns, int32_t mateMoves, uint64_t nodes, int64_t elapsedMs,
                   const nuvobase::clsString& move);
    // "e7e8=q" as UCI writes it: "e7e8q".
    static nuvobase::clsString UciMoveText(const nuvobase::clsString& move);

    // The client side of both protocols, as a tournament game drives another program: each operation
    // hands its lines to the client of Protocol (clsUciClient, clsXBoardClient), which sends them through
    // SendLine; other Protocol values send nothing.
    // Opens the protocol; Ready tells when the engine has answered.
    void Handshake();
    // Resets the engine for a new game from OpeningFen and OpeningMoves: the moves of the game so far are
    // the opening's. An XBoard engine gets the opening in force mode and leaves it at its first turn.
    void NewGame();
    // Tells the clocks and asks the engine to move.
    void Go();
    // Records a move of the game; when mover is the opponent the engine is told and sent thinking.
    void NotifyMove(const nuvobase::clsString& move, int mover);
    void QuitEngine();
    // Clears Ready and asks the engine for a sign of life.
    void Synchronise();
    // Clears Ready, ends a search the engine may still run and asks for a sign of life.
    void Settle();
    // One line of the engine's output in its normal form: "move ..." or "result ...", "resign",
    // or empty text for everything else; handshake answers update Ready, PingFeature and Options.
    nuvobase::clsString ParseLine(const nuvobase::clsString& line);
    // The score reported since the last call, in centipawns from the engine's side; false when none was.
    bool TakeScore(int32_t& centipawns);
    // Keeps a score of the engine's search, its own or reported by the program, for TakeScore.
    void ReportScore(int32_t centipawns);
    // An XBoard feature that the engine announced with the value 1.
    bool HasFeature(const char* name) const;
    // An XBoard engine may still be announcing its features (clsXBoardClient::FeaturesPending).
    bool FeaturesPending();
    // While an XBoard engine's features are pending, gives it a line to answer now and then.
    void NudgeFeatures();

    nuvobase::clsTSafeOutput* Output; // not owned
    clsTourneyGame* Game;             // not owned; null outside a tournament game
    nuvobase::clsString MoveHistory;  // the game's moves, each followed by a blank
    nuvobase::clsString Name;
    int32_t PingCounter = 0;
    bool PingFeature = false;
    bool Ready = false;
    std::atomic<bool> Stopped{true}; // also set by a reader thread when a child ends
    bool Debug = false;
    nuvobase::clsStrings Options;
    int32_t Side = 0; // 0 this engine plays white, 1 black
    int32_t OwnTimeMs = 0;
    int32_t MovesToGo = 0;
    int32_t OwnIncrementMs = 0;
    int32_t OpponentTimeMs = 0;
    int32_t OpponentIncrementMs = 0;
    nuvobase::clsMutex ResultLock; // guards the best move of the engine's search
    uint32_t Protocol = XBoard;
    nuvobase::clsStrings EpdFields; // the operations of the last EPD line set, key and value
    nuvobase::clsStrings SearchFlags;
    int32_t MoveNumber = 0;
    int32_t HalfMoveClock = 0;
    int32_t MaxDepth = 0;
    uint32_t Post = 0;
    clsBook Book;                 // empty until the engine loads one
    clsPolyglotBook PolyglotBook; // when not empty, played from in place of Book
    nuvobase::clsString SoulName;
    clsSearchLimits Limits;
    uint64_t ReplyArrivalUs = 0;   // when the last reply read arrived (ClockUs); 0 when nobody can tell
    int32_t ReportedSearchMs = -1; // the search time the engine last reported in this turn; -1 none
    // The game's start position as FEN, empty for the usual start, and the opening moves played from it
    // before the engines' first move, each followed by a blank. Read by NewGame.
    nuvobase::clsString OpeningFen;
    nuvobase::clsString OpeningMoves;
    // Options sent to another program before each game: UCI "setoption", XBoard "option".
    nuvobase::clsStrings EngineOptions;

private:
    // The client that reads the engine's lines: UCI when Protocol is Uci, else XBoard; made again when
    // Protocol has changed since.
    clsProtocolClient& Client();
    // The client that speaks to the engine, or null when Protocol is neither protocol.
    clsProtocolClient* Speaker();

    std::unique_ptr<clsProtocolClient> ProtocolClient;
    bool ScoreKnown = false;
    int32_t ScoreCp = 0;
};

} // namespace nvoChess
