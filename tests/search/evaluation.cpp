#include "search/clsevaluation.h"

#include <gtest/gtest.h>

#include <memory>

using namespace nvoChess;

namespace {

// An evaluation with Simple5 on the position.
std::unique_ptr<clsEvaluation> Evaluator(const char* fen) {
    auto evaluator = std::make_unique<clsEvaluation>();
    clsSoul soul;
    soul.LoadText(clsSoul::Named[0]);
    evaluator->SetSoul(soul);
    evaluator->SetPosition(fen);
    return evaluator;
}

void GenerateRoot(clsEvaluation& e) {
    e.Current = e.Root;
    e.SetRootNode();
    e.Generate(-1);
}

// Makes a move of the root list and leaves it unswapped, as the walk does before it evaluates a leaf.
void ApplyListed(clsEvaluation& e, const char* move) {
    for (clsMove* m = e.Root->Moves; m != e.Root->End(); ++m)
        if (e.MoveText(m, false) == move) return e.ApplyMove(*m);
    ADD_FAILURE() << "no move " << move;
}

void Apply(clsEvaluation& e, const char* move) {
    GenerateRoot(e);
    ApplyListed(e, move);
}

int32_t EvaluateAfter(const char* fen, const char* move) {
    auto e = Evaluator(fen);
    Apply(*e, move);
    return e->Evaluate();
}

constexpr const char* Start = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

} // namespace

TEST(Evaluation, LeafValuesAndPawnTermsWithSimple5) {
    const char* mate = "7k/8/6K1/8/8/8/8/2B1N3 w - -";
    const struct {
        const char *Fen, *Move;
        int32_t Value;
    } rows[] = {
        // e2-e4: 7 for the centre, 64 as no enemy rook stands on the second rank, 20 for the f2 and d2 pawns
        // before the king, -8 for trading.
        {Start, "e2e4", 83},
        // g1-f3: 5 for the knight off the rim, 64, 30 for three pawns before the king, 20 for the minors at
        // home (3 against 4), -8.
        {Start, "g1f3", 111},
        // A bare king draws by material.
        {"4k3/8/8/8/8/8/8/4K3 w - -", "e1e2", DrawValue},
        {"4k3/8/8/8/8/8/8/3NKN2 w - -", "e1e2", DrawValue},
        // No knight and no bishop: the parity test holds on empty words.
        {"4k3/8/8/8/8/8/8/R3K2R w - -", "e1e2", DrawValue},
        // Bishops on b1 and d1: bit indexes 6 and 4, equal parity.
        {"4k3/8/8/8/8/8/8/1B1BK3 w - -", "e1f2", DrawValue},
        // Bishops on a1 and b2 share a colour but not the parity of their bit indexes (7 and 14): no draw.
        // King room (18 - 13) x 5 = 25, one step of 5 as e8 is no corner region, no bonus for closeness nor
        // for the corner.
        {"4k3/8/8/8/8/8/1B6/B3K3 w - -", "e1e2", 30},
        // King, bishop and knight against the king in h8. King room (18 - 8) x 5, 10 for h8 in a corner
        // region, 5 for the white king next to it, and 20 if h8 is in the corner mask that the bishop picks.
        {mate, "c1d2", 85}, // d2 is outside 0xA5A5..: corners h8, g8, h7, a1, b1, a2
        {mate, "c1f4", 65}, // f4 is inside, though of d2's colour: h8 is not a corner then
    };
    for (const auto& row : rows)
        EXPECT_EQ(EvaluateAfter(row.Fen, row.Move), row.Value) << row.Fen << " " << row.Move;
    // The side with the bare king: the ordinary terms apply.
    EXPECT_NE(EvaluateAfter("4k3/8/8/8/8/8/8/4KN2 b - -", "e8d8"), DrawValue);

    // Five men in all and no queen: the king's placement and shelter are not weighed. A sixth man that weighs
    // in nowhere else adds the shelter of g2, h2 and f2: 3 x 10.
    const int32_t five = EvaluateAfter("1n4k1/8/8/8/8/8/5PPP/R4RK1 w - -", "a1a2");
    const int32_t six = EvaluateAfter("1n4k1/8/3n4/8/8/8/5PPP/R4RK1 w - -", "a1a2");
    EXPECT_EQ(six - five, 30);

    // Pawn terms and their cache.
    const struct {
        const char *Fen, *Move;
        int32_t Score;
    } pawnRows[] = {
        // Doubled passed pawns on b4 and b5: the fold carries them into one file bit (5), and b5 has a pawn
        // behind it (-8); after a black move the terms turn round.
        {"4k3/8/8/1P6/8/1P6/8/4K3 w - -", "b3b4", 5 - 8},
        {"4k3/8/8/1P6/1P6/8/8/4K3 b - -", "e8d8", -5 + 8},
        // Passed pawns on two files count twice; a pawn held by a neighbour-file pawn in front doesn't count.
        {"4k3/8/8/P6P/8/8/8/4K3 w - -", "e1d1", 10},
        {"4k3/8/8/P2p3P/4P3/8/8/4K3 w - -", "e1d1", 10},
    };
    for (const auto& row : pawnRows) {
        auto e = Evaluator(row.Fen);
        Apply(*e, row.Move);
        e->Evaluate();
        EXPECT_EQ(e->Current->PawnKey, e->Board.Pawns) << row.Fen;
        EXPECT_EQ(e->Current->PawnScore, row.Score) << row.Fen;
    }

    // Within one node the cache follows the pawns: each move gives what a fresh node gives, whatever was
    // evaluated before it.
    auto e = Evaluator(Start);
    GenerateRoot(*e);
    for (const char* move : {"g1f3", "e2e4", "b1c3", "d2d4", "d2d4", "b1a3"}) {
        ApplyListed(*e, move);
        EXPECT_EQ(e->Evaluate(), EvaluateAfter(Start, move)) << move;
        e->RestoreBoard(*e->Root);
    }
}
