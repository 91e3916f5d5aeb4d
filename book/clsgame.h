// A game as the tournament writes it and the PGN reader reads it: the result word, the tags, the move text
// and the comments. The tournament's game derives from it.
#pragma once

#include <cstdint>

#include "nuvobase/clsstring.h"
#include "nuvobase/clsstrings.h"

namespace nvoChess {

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
};

} // namespace nvoChess
