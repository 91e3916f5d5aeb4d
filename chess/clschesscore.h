// The chess core of the engine: one board, one move pool and one array of nodes, all inside the object, and
// the operations that generate, make and print moves on them. The engine derives from it; a search allocates
// nothing because everything it needs is here.
#pragma once

#include <atomic>
#include <cstdint>

#include "chess/clsboard.h"
#include "chess/clsmove.h"
#include "chess/clssimplenode.h"
#include "nuvobase/clsstring.h"
#include "nuvobase/clsstrings.h"

namespace nvoChess {

// The wildcard pattern of a SAN move, in the shape of a long move text: "Nf3" gives "N??-f3".
nuvobase::clsString SanToPattern(const nuvobase::clsString& san);

// The position a game starts from.
constexpr const char* StartPositionFen = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

constexpr int MovePoolSize = 12801; // 128 plies of 100 moves, and the fake parent move of the root
constexpr int NodeCount = 128;

// Words of GameStatus.
constexpr uint32_t GameOn = 0x0001, WhiteMated = 0x001A, BlackMated = 0x0016, Stalemate = 0x1200,
                   InsufficientMaterial = 0x2200;

class clsChessCore {
public:
    // Starts on the start position.
    clsChessCore();
    virtual ~clsChessCore() = default;
    clsChessCore(const clsChessCore&) = delete;
    clsChessCore& operator=(const clsChessCore&) = delete;

    std::atomic<uint64_t> Nodes{0}; // legal moves counted by the last walk; others read it while it runs
    int32_t CastlingBonus = 0;      // added to Material by a castling move; the soul decides it
    clsBoard Board;
    clsMove* ListEnd = nullptr; // where the generator writes the next record
    clsMove MoveTemplate;       // the fields every record of a routine shares
    clsMove MovePool[MovePoolSize];
    clsSimpleNode Node[NodeCount];
    clsSimpleNode* Current = nullptr;
    clsSimpleNode* Root = nullptr;
    int32_t DepthLimit = NodeCount;
    std::atomic<uint8_t> StopFlag{0}; // raised by any thread, read by the search
    uint8_t PerftDivide = 0;
    nuvobase::clsString StartFen;
    int32_t MoveNumber = 0;
    int32_t HalfMoveClock = 0;
    // Perft below the root may count without making every move; off, it walks every move as the root does.
    bool PerftShortcuts = true;

    // --- generation, on the board and the current node
    // Stage -1 generates everything, 0 to 5 one batch each. Returns the records now in the node's list.
    int32_t Generate(int32_t stage);
    // Whether a man of Theirs attacks the square of bit (the lowest square if several).
    bool IsAttacked(uint64_t bit) const;
    bool RayAttack(int32_t square, int32_t firstRay, uint64_t attackers) const;
    // Drops the records whose making leaves the mover's king attacked; returns how many remain.
    int32_t FilterLegal();
    // The position's legal moves become the root list; the first of them as MoveText gives it, or empty
    // text when the position has none.
    nuvobase::clsString FirstLegalMove();
    // The root's parent move takes the shape of the last move played; the root's board is saved.
    void SetRootNode();
    // Prepares the first nodes (all by default) for a walk from the board's position; a generation at the
    // root alone needs 2.
    void ResetNodes(int32_t nodes = NodeCount);

    // --- making moves
    void ApplyMove(const clsMove& move);
    void SwapSides();
    void RestoreBoard(const clsSimpleNode& node) { Board = node.SavedBoard; }
    void SetEnPassantField(const clsMove& move);
    // Plays a game move given by its squares and a promotion letter. False, and no change, if not legal.
    bool MakeMove(uint64_t from, uint64_t to, char promotion);
    // Plays a generated move of the current node as a game move: the sides swap behind it.
    void PlayMove(const clsMove& move);
    // Whether a generated move of the current node leaves the mover's king safe; the board stays as it was.
    bool IsLegalAtCurrent(const clsMove& move);
    // A coordinate move such as "e2e4", "e7e8q" or "e7e8=q".
    bool MakeMoveText(const nuvobase::clsString& text);
    uint32_t GameStatus();
    void ComputeMaterial();
    int32_t SetMaxDepth(int32_t depth);

    // --- notation
    // Any text gives some position; fields that are absent leave the counters as they were. The operations
    // of an EPD line, key and value, replace what epdFields held, when it is given. Always true.
    bool SetPosition(const nuvobase::clsString& fen, nuvobase::clsStrings* epdFields = nullptr);
    // FEN without the two counters.
    nuvobase::clsString GetPosition() const;
    // "e2e4" or, long, "Pe2-e4", "Pe4xPd5"; promotions end in "=q". "------" for no move.
    nuvobase::clsString MoveText(const clsMove* move, bool longForm) const;
    void PrintMove(const clsMove* move);
    void PrintMoves(bool flag);
    // The long texts of the root's list, each followed by a space; empty unless the root is current.
    nuvobase::clsString MovesAsText();
    // The first record of the root's list whose long text fits the SAN move, illegal ones included unless
    // legalOnly; null for none.
    const clsMove* FindSanMove(const nuvobase::clsString& san, bool legalOnly = false);
    // The coordinate text of a SAN move of the root position, or empty text.
    nuvobase::clsString SanToCoordinates(const nuvobase::clsString& san, bool generateFirst);
    // Standard algebraic notation of a legal coordinate move of the board's position, with "+" or "#"
    // behind a check or a mate; empty text when the move is not legal here. The board stays as it was.
    nuvobase::clsString SanText(const nuvobase::clsString& coordinates);
    // The coordinate text of the legal move whose standard notation the text is ("Nf3", "O-O-O",
    // "e8=Q+", "0-0"); empty text when no legal move has it. Unlike SanToCoordinates, an ambiguous or
    // illegal move is never guessed.
    nuvobase::clsString LegalSanToCoordinates(const nuvobase::clsString& san);

    // --- perft
    uint64_t Perft(int32_t depth, bool divide);
    uint64_t PerftCount(int32_t depth);

protected:
    // One line of output: the divide lines of perft and the move listings.
    virtual void WriteLine(const nuvobase::clsString& line);

private:
    // The walk's node is the current one; the fields of the generator work on it.
    void PrepareNode(clsSimpleNode& node);
    bool Emit(uint64_t to);
    bool EmitCapture(uint64_t to);
    void EmitQuiets(uint64_t targets);
    void EmitCaptures(uint64_t targets);
    void ExpandPromotion();
    void StartRoutine(int piece, uint64_t from);
    void PawnCaptures();
    void PawnQuiets();
    void LeaperMoves(int piece, const uint64_t* table, bool captures);
    template <int... Rays> void SliderCaptures(int piece, const uint64_t* lines);
    template <int... Rays> void SliderQuiets(int piece);
    void Castling();

    // True when the position is one whose descendants the counting shortcuts of perft treat exactly as the
    // full walk does: one king a side, consistent words, rights backed by their men.
    bool IsOrdinaryPosition() const;
    template <bool Bulk> uint64_t PerftWalk(int32_t depth);
    // Legal moves of the position on the board, counted without making most of them; last is the move that
    // led here. Only for ordinary positions.
    uint64_t CountLegalMoves(const clsMove& last);
    bool EnPassantIsLegal(uint64_t from, uint64_t target, const clsMove& last);

    bool BulkBelowRoot = false;
};

} // namespace nvoChess
