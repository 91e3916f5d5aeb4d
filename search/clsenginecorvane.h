// The program's own engine: a position, a soul and everything a search needs
// in one object, searched on a thread of its own that lives for one search.
#pragma once

#include <atomic>
#include <cstdint>

#include "match/clsengineinterface.h"
#include "nuvobase/clsstrings.h"
#include "search/clstreesearch.h"

namespace nvoChess {

class clsEngineCorvane : public clsEngineInterface, public clsTreeSearch {
public:
    // The program's command-line table; each engine copies it into
    // SearchFlags when it is made.
    static nuvobase::clsStrings CommandLine;
    // The book read when the option "book" names none, in the working folder.
    static constexpr const char* DefaultBook = "corvane.cbk";

    // The table is shared, not owned, and may be null.
    clsEngineCorvane(clsEngineShare* share, const nuvobase::clsString& name, nuvobase::clsTSafeOutput* output,
                     clsTourneyGame* game = nullptr);
    // Ends the search. A class derived from this one ends it in its own destructor too, before its
    // parts go, since the search calls virtual operations of the whole object.
    ~clsEngineCorvane() override;

    // Starts a search unless one runs. The stop flag is cleared here rather
    // than on the new thread, so that a stop right behind the start is seen.
    bool Start() override;
    // One search of the board's position into BestMove: the thread's body.
    bool Run() override;
    // Raises the stop flag and waits for the thread; true unless the wait fails.
    bool StopEngine() override;
    // Raises the stop flag as well, without waiting.
    void SetStopped() override;
    // The legal moves of the position with their book counters, best last.
    int GetBookEntries(nuvobase::clsPCollection<clsBookEntryExt>& list, bool generate) override;
    // Takes a book move into BestMove, chosen uniformly among those played often
    // enough; false when the book has none, and the search runs.
    bool PlayBookMove() override;
    // Every legal move with its book position's key and counters, then the best again.
    void ListBookMoves() override;
    nuvobase::clsString GetStatistics(int64_t elapsedMs) override;
    bool IsWhiteToMove() override;
    int SetMaxDepth(int depth) override;
    void PrintMoves(bool flag) override;
    // Plays the move and marks its position in the table as one of the game.
    bool MakeMoveText(const nuvobase::clsString& move) override;
    int SearchFixedDepth(int depth, int64_t& nodes) override;
    bool SetPosition(const nuvobase::clsString& fen) override;
    // "depth score  centiseconds nodes move" of the running search.
    nuvobase::clsString GetInfoLine() override;
    nuvobase::clsString GetPosition() override;
    nuvobase::clsString GetBestMoveText(bool consume, int& score) override;
    nuvobase::clsString GetSpareText() override;
    bool MakeMove(uint64_t from, uint64_t to, char promotion) override;
    uint64_t PositionHash() override;
    nuvobase::clsString ReadReply() override;
    int PawnValue() override;
    void CrossSoul(clsEngineInterface* other) override;
    // The sixteen parameters, each followed by a tab.
    nuvobase::clsString GetSoulText() override;
    void LoadDefaultSoul() override;
    uint64_t Perft(int depth, bool divide) override;
    nuvobase::clsString SanToCoordinates(const nuvobase::clsString& san, bool generateFirst) override;
    void SendLine(const nuvobase::clsString& line) override;

    // A built-in soul by name; an empty name falls back to the "soul" option,
    // then to -soul, then to Simple5. An unknown name changes nothing.
    void SelectSoul(const nuvobase::clsString& name);
    // "name=p0 p1 ... p15".
    void LoadSoulText(const nuvobase::clsString& text);
    void RandomizeSoul();

    int64_t TotalTime = 0;   // ms of all searches
    int64_t SearchCount = 0; // searches run

protected:
    // The UCI line of the depth, when the front end asked for one.
    void DepthFinished() override;
    // Divide lines of perft go to the output and to the engine's list of lines.
    void WriteLine(const nuvobase::clsString& line) override;

private:
    // The sizes of the records a search is made of, for the log.
    void PostRecordSizes();
    // The book named by the option "book", or the default book, if it can be opened.
    void LoadBook();
    // Makes a record of the current node; false, before the sides swap, when it leaves the mover in check.
    bool PlayLegal(const clsMove& move);
    // The record of a book move drawn from list, or null; the board must be restored after it.
    const clsMove* ChooseBookMove(nuvobase::clsPCollection<clsBookEntryExt>& list);
    // The same from the polyglot book: drawn in proportion to the weights; null when the position has no
    // move of weight above 0, or a move that is not legal.
    const clsMove* ChoosePolyglotMove();
    // The book moves of the position with their weights and shares.
    void ListPolyglotMoves();

    bool HasFlag(const char* name) const;
    nuvobase::clsString Flag(const char* name) const;

    std::atomic<uint64_t> SearchStart{0}; // clock at the start of the search
};

} // namespace nvoChess
