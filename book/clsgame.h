// A game as the tournament writes it and the PGN reader reads it: the result word, the tags, the move text
// and the comments. The tournament's game derives from it.
#pragma once

#include <cstdint>

#include "nuvobase/clsstring.h"
#include "nuvobase/clsstrings.h"

namespace nvoChess {

class clsBoard;
class clsChessCore;
class clsFENTable;
class clsMove;

// Sees the moves of games as they are replayed, and the end of each game.
class clsPlyListener {
public:
    virtual ~clsPlyListener() = default;
    // A legal move, played from the position before to the position after.
    virtual void Played(const clsBoard& before, const clsMove& move, const clsBoard& after) = 0;
    // The game whose moves came last has ended with this result word.
    virtual void GameEnded(uint32_t code) = 0;
    // Whether a SAN move that fits a pinned man as well as a free one means the free one, as other programs
    // read it; the program's own books end the game there.
    virtual bool SkipsIllegalFits() const { return false; }
};

// Bits of the result word.
enum GameCodeBits : uint32_t {
    CodeUndecided = 0x0001,
    CodeDecisive = 0x0002,
    CodeWhiteWon = 0x0004,
    CodeBlackWon = 0x0008,
    CodeMate = 0x0010,
    CodeTimeForfeit = 0x0020,
    CodeResignation = 0x0040,
    CodeAdjudication = 0x0080,
    CodeIllegalMove = 0x0100,
    CodeDraw = 0x0200,
    CodeFiftyMoves = 0x0400,
    CodeRepetition = 0x0800,
    CodeStalemate = 0x1000,
    CodeInsufficientMaterial = 0x2000,
    CodeEngineCrash = 0x4000,
    CodeAborted = 0x8000,
};

// Result words of whole outcomes.
constexpr uint32_t CodeRunning = CodeUndecided;
constexpr uint32_t CodeWhiteWins = CodeDecisive | CodeWhiteWon;
constexpr uint32_t CodeBlackWins = CodeDecisive | CodeBlackWon;

class clsGame {
public:
    uint32_t Code = CodeRunning;
    nuvobase::clsStrings Tags; // name to value, in order of first setting
    nuvobase::clsString MoveText;
    nuvobase::clsStrings Comments; // of a read game: the ply before the comment as name
    int32_t FirstMoveNumber = 0;   // of a read game: the first move number met, 0 before one
    int32_t PlyCount = 0;          // of a read game: the moves read so far

    clsGame() = default;
    virtual ~clsGame() = default;

    // Back to a running game without moves; the tags stay with keepTags.
    virtual void Reset(bool keepTags);
    // Stores the word and writes the tags "Result" and "Reason" from it.
    void SetCode(uint32_t code);
    // "1-0", "0-1", "1/2-1/2", "*", "?" or empty.
    nuvobase::clsString ResultText() const;
    // Why the game ended, by the first reason bit of the word; empty when it has none.
    nuvobase::clsString ReasonText() const;

    // Reads one game of PGN text from the start position on the core: the tags, then the main line up to the
    // first token that is no legal move. MoveText takes the coordinate moves, each followed by a blank.
    // Every position before a move is counted in fens, when given, by the result known at that point.
    // maxPlies 0 reads the whole game. listener, when given, sees the moves that replaying MoveText plays.
    void ReadPgn(const nuvobase::clsString& text, clsChessCore& core, clsFENTable* fens, int maxPlies,
                 clsPlyListener* listener = nullptr);
    // Reads the tag lines at the head of PGN text into Tags (a "Result" tag sets the word) and returns the
    // rest, the move text, on one line without check and mate signs.
    nuvobase::clsString ReadTags(const nuvobase::clsString& text);
    // "1-0", "0-1", "1/2-1/2", "*" and "?" in any case set the word and its tags; any other text leaves a
    // running game and the tags alone.
    void SetResultText(const nuvobase::clsString& text);
};

} // namespace nvoChess
