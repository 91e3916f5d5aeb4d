// The Vesko core driven directly through its block.
#include "vesko/veskoblock.h"
#include "vesko/veskomoves.h"
#include "vesko/veskosearch.h"
#include "vesko/veskotext.h"

#include "chess/chesstest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <string>
#include <utility>
#include <vector>

using namespace nvoChess;
using nvoChessTest::PerftCase;
using nvoChessTest::ReferenceCounts;

namespace {

// A zeroed, aligned block and the commands on it.
class TestBlock {
public:
    TestBlock() : Block(VeskoAllocate(Raw, Size)) {}
    ~TestBlock() { VeskoFree(Raw); }
    TestBlock(const TestBlock&) = delete;
    TestBlock& operator=(const TestBlock&) = delete;

    void Run(uint64_t command) {
        VeskoShared(Block->Command).store(command);
        VeskoExecute(Block);
    }

    void SetFen(const std::string& fen) {
        std::strncpy(Block->Text, fen.c_str(), sizeof Block->Text - 1);
        Run(VeskoCommandSetPosition);
    }

    std::string Fen() {
        Run(VeskoCommandGetPosition);
        return Block->Text;
    }

    void Count(int64_t depth) {
        Block->Depth = depth;
        Run(VeskoCommandCount);
    }

    void Search(int64_t maxDepth) {
        Block->MaxDepth = maxDepth;
        Block->BestMove = 0;
        Run(VeskoCommandSearch);
    }

    std::string BestMove() const {
        char text[9] = {};
        std::memcpy(text, &Block->BestMove, 8);
        return text;
    }

    bool MakeMove(const char* text) {
        std::memset(Block->MoveText, 0, sizeof Block->MoveText);
        std::memcpy(Block->MoveText, text, std::min(std::strlen(text), sizeof Block->MoveText));
        Run(VeskoCommandMakeMove);
        return Block->Error == 0;
    }

    VeskoNode* Root() { return &Block->NodeStack[VeskoRootIndex]; }

    // The first move of the root list with the squares of `text`.
    VeskoMove* RootMove(const char* text) {
        for (VeskoMove* move = Root()->FirstMove; move != Root()[1].FirstMove; ++move)
            if (move->From == VeskoTextToSquare(text) && move->To == VeskoTextToSquare(text + 2)) return move;
        return nullptr;
    }

private:
    void* Raw = nullptr;
    std::size_t Size = 0;

public:
    VeskoBlock* Block;
};

} // namespace

// The positions of Corvane's perft test and a few more, each counted once to the deepest ply within a
// budget; every ply's count is compared.
TEST(VeskoCore, PerftCountsPositionTextsAndHostileBlocks) {
    constexpr uint64_t budget = 2000000;
    std::map<std::string, std::vector<PerftCase>> table;
    for (const char* name : {"perft.txt", "vesko_perft.txt"})
        for (const PerftCase& line : ReferenceCounts(name)) table[line.Fen].push_back(line);
    ASSERT_GE(table.size(), 30u);
    TestBlock engine;
    for (const auto& [fen, lines] : table) {
        int depth = 0;
        for (const PerftCase& line : lines)
            if (line.Count <= budget) depth = std::max(depth, line.Depth);
        engine.SetFen(fen);
        engine.Count(depth);
        for (const PerftCase& line : lines) {
            if (line.Depth <= depth) {
                EXPECT_EQ(engine.Block->PlyCounts[line.Depth - 1], line.Count)
                    << fen << " ply " << line.Depth;
            }
        }
        EXPECT_EQ(engine.Block->PlyCounts[depth], 0u) << fen;
        EXPECT_EQ(engine.Block->Nodes, 0u) << "a count evaluates nothing";
    }

    engine.SetFen("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1");
    EXPECT_EQ(engine.Fen(), "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w - -");
    engine.SetFen("r3k2r/8/8/3pP3/8/8/8/R3K2R w Kq d6 0 12");
    EXPECT_EQ(engine.Fen(), "r3k2r/8/8/3pP3/8/8/8/R3K2R w - d6");
    // Unknown letters take a square; a text that stops early keeps what it has.
    engine.SetFen("rnbqkbnr/ppxppppp/8/8/8/8/PPPPPPPP/RNBQKBNR b");
    EXPECT_EQ(engine.Fen(), "rnbqkbnr/pp1ppppp/8/8/8/8/PPPPPPPP/RNBQKBNR b - -");
    engine.SetFen("");
    EXPECT_EQ(engine.Fen(), "8/8/8/8/8/8/8/8 w - -");

    // Hostile blocks stay in bounds.
    std::memset(engine.Block->Text, 'Q', sizeof engine.Block->Text);
    engine.Run(VeskoCommandSetPosition);
    EXPECT_EQ(engine.Fen(), "QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ w - -");
    engine.Count(2);
    EXPECT_EQ(engine.Block->PlyCounts[0], 0u); // white has no free square, black no men
    // A count deeper than the node stack is cut; a mated side ends it at once.
    engine.SetFen("R5k1/5ppp/8/8/8/8/8/6K1 b - - 0 1");
    engine.Count(200);
    EXPECT_EQ(engine.Block->Depth, 124);
    EXPECT_EQ(engine.Block->PlyCounts[0], 0u);
}

// Leaf values worked out by hand from the weights. White: Kh1 Rb6 pawns a2 c2 d2 h3 g6; black: Kh8 Na5
// Bc5. White has 23 pseudo-legal moves (Kg1 is left to the legality test: stockfish counts 22 legal ones),
// and Rb6-b7 is played. The second case is its mirror image with black to move.
TEST(VeskoCore, EvaluationDeepeningAndMovesMadeByText) {
    struct Case {
        const char* Fen;
        const char* Move;
        int64_t Value;
    };
    const Case cases[] = {
        // Material 500 + 5 * 105 - 303 - 303 = 419; mobility 23 >> 1 = 11; rook on the seventh +20; pawn
        // g6 on the sixth +10; pairs a2/d2 and h3/c2 (three bits apart across the edge of the rank) -30;
        // black bishop in the centre -7; black knight on the rim +25.
        {"7k/8/1R4P1/n1b5/8/7P/P1PP4/7K w - - 0 1", "b6b7", 419 + 11 + 20 + 10 - 30 - 7 + 25},
        // The same for black, but only a7/d7 are three bits apart: -15.
        {"7k/p1pp4/7p/8/N1B5/1r4p1/8/7K b - - 0 1", "b3b2", 419 + 11 + 20 + 10 - 15 - 7 + 25},
    };
    TestBlock engine;
    for (const Case& test : cases) {
        engine.SetFen(test.Fen);
        engine.Count(1);
        ASSERT_EQ(engine.Root()->MoveCount, 23u) << test.Fen;
        ASSERT_EQ(engine.Block->PlyCounts[0], 22u) << test.Fen;
        VeskoMove* played = engine.RootMove(test.Move);
        ASSERT_NE(played, nullptr) << test.Fen;
        VeskoMake(engine.Root(), played);
        EXPECT_EQ(VeskoEvaluate(engine.Block->Weights, engine.Root()), test.Value) << test.Fen;
    }

    // White's mate in one is found through the engine's interface; here Black's, and positions without moves.
    engine.SetFen("r5k1/8/8/8/8/8/5PPP/6K1 b - - 0 1");
    engine.Search(0);
    EXPECT_EQ(engine.BestMove(), "a8a1");
    EXPECT_GE(engine.Block->BestScore, 10000);
    EXPECT_EQ(engine.Block->Depth, 2);
    for (const char* fen : {"7k/5Q2/6K1/8/8/8/8/8 b - - 0 1", "R5k1/5ppp/8/8/8/8/8/6K1 b - - 0 1"}) {
        engine.SetFen(fen);
        engine.Search(0);
        EXPECT_EQ(engine.Block->BestMove, 0u) << fen;
    }

    // Max depth 6 runs depths 2 and 4; below 6 only 2.
    engine.SetFen("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1");
    engine.Search(2);
    const uint64_t depthTwoNodes = engine.Block->Nodes;
    for (int64_t maxDepth = 1; maxDepth <= 5; ++maxDepth) {
        engine.Search(maxDepth);
        EXPECT_EQ(engine.Block->Depth, 2) << maxDepth;
        EXPECT_EQ(engine.Block->Nodes, depthTwoNodes) << maxDepth;
        EXPECT_FALSE(engine.BestMove().empty());
    }
    engine.Search(6);
    EXPECT_EQ(engine.Block->Depth, 4);
    EXPECT_GT(engine.Block->Nodes, depthTwoNodes);
    engine.Search(8);
    EXPECT_EQ(engine.Block->Depth, 6);
    EXPECT_EQ(engine.Fen(), "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w - -")
        << "the search keeps the position";

    // Moves made by text in turn, each taken or refused; a refused move leaves the position as it was.
    const char* castling = "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1";
    const char* promotion = "8/4P3/8/8/8/8/k7/4K3 w - - 0 1";
    const struct {
        const char* Fen;
        std::vector<std::pair<const char*, bool>> Moves;
        const char* After;
    } games[] = {
        {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
         {{"e2e5", false}, {"e7e5", false}, {"", false}, {"zz", false}, {"e2", false}, {"e2e4", true}},
         "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b - e3"},
        // The bishop is pinned, but its move is in the list: make move ignores the mark.
        {"4k3/4r3/8/8/8/8/4B3/4K3 w - - 0 1", {{"e2d3", true}}, "4k3/4r3/8/8/8/3B4/8/4K3 b - -"},
        {promotion, {{"e7e8", true}}, "4Q3/8/8/8/8/8/k7/4K3 b - -"},
        {promotion, {{"e7e8r", true}}, "4R3/8/8/8/8/8/k7/4K3 b - -"},
        {promotion, {{"e7e8n", true}}, "4N3/8/8/8/8/8/k7/4K3 b - -"},
        {promotion, {{"e7e8B", true}}, "4B3/8/8/8/8/8/k7/4K3 b - -"},
        {promotion, {{"e7e8k", true}}, "4Q3/8/8/8/8/8/k7/4K3 b - -"},
        {castling, {{"e1g1", true}, {"e8c8", true}}, "2kr3r/8/8/8/8/8/8/R4RK1 w - -"},
        // Castling rights go with the king and with the rook.
        {castling,
         {{"e1f1", true},
          {"a8a7", true},
          {"f1e1", true},
          {"a7a8", true},
          {"e1g1", false},
          {"e1c1", false},
          {"a1b1", true},
          {"e8c8", false},
          {"e8g8", true}},
         "r4rk1/8/8/8/8/8/8/1R2K2R w - -"},
        // After the double step the only black move takes en passant.
        {"7k/7P/6K1/8/3p4/3P4/4P3/8 w - - 0 1",
         {{"e2e4", true}, {"d4e3", true}},
         "7k/7P/6K1/8/8/3Pp3/8/8 w - -"},
    };
    for (const auto& game : games) {
        SCOPED_TRACE(game.Fen);
        engine.SetFen(game.Fen);
        for (const auto& [move, taken] : game.Moves) {
            const std::string before = engine.Fen();
            ASSERT_EQ(engine.MakeMove(move), taken) << move;
            if (!taken) {
                EXPECT_EQ(engine.Fen(), before) << move;
            }
        }
        EXPECT_EQ(engine.Fen(), game.After);
    }
}
