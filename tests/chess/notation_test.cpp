#include <gtest/gtest.h>

#include <tuple>
#include <utility>

#include "chess/coordinates.h"
#include "chesstest.h"

using namespace nvoChess;
using nuvobase::clsString;
using nvoChessTest::CoreAt;
using Texts = std::vector<std::string>;

namespace {

std::string Fen(const char* text) {
    return CoreAt(text)->GetPosition().Text();
}

} // namespace

TEST(ChessNotation, SquaresAndFenRoundTrips) {
    EXPECT_EQ(TextToSquare("h1x"), 1u);
    EXPECT_EQ(TextToSquare("a8"), 1ULL << 63);
    for (const char* bad : {"i9", "a0", "A1", "", "e", "-"}) EXPECT_EQ(TextToSquare(bad), 0u) << bad;

    EXPECT_EQ(Fen(""), "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -");
    EXPECT_EQ(Fen("8/8/8/8/8/8/8/8 w - -"), "8/8/8/8/8/8/8/8 w - -");
    for (const char* fen : {"r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq -",
                            "rnbqkbnr/ppp1pppp/8/3pP3/8/8/PPPP1PPP/RNBQKBNR w KQkq d6",
                            "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 b Kq -", "4k3/8/8/8/8/8/8/4K3 w Qk -"})
        EXPECT_EQ(Fen(fen), fen);
    // S and M are bishop and queen; any other character uses up a square.
    EXPECT_EQ(Fen("4k3/8/8/8/8/8/8/SM2K3 w - -"), "4k3/8/8/8/8/8/8/BQ2K3 w - -");
    EXPECT_EQ(Fen("4k3/8/8/8/8/8/8/4KX2 w - -"), "4k3/8/8/8/8/8/8/4K3 w - -");
    EXPECT_EQ(Fen("4k3/8/8/8/8/8/8/4K2xyz w - -"), "4k3/8/8/8/8/8/8/4K3 w - -");
    // A placement that ends early at its own space reads the fields one place late: the side is white
    // and the castling field begins at its second letter.
    EXPECT_EQ(Fen("4k3/8/8/8/8/8/8/4K b KQ -"), "4k3/8/8/8/8/8/8/4K3 w Q -");
    // The rights are not checked against the men.
    EXPECT_EQ(Fen("8/8/8/8/8/8/8/8 b KQkq e3"), "8/8/8/8/8/8/8/8 b KQkq e3");

    // Rows run in order on one core: a FEN without a counter leaves it as it was.
    const auto core = CoreAt("4k3/8/8/8/8/8/8/4K3 w - - 7 42");
    for (const auto& [fen, clock, number] : {std::tuple{"4k3/8/8/8/8/8/8/4K3 b - - 3", 3, 42}, {"", 0, 1}}) {
        core->SetPosition(clsString(fen));
        EXPECT_EQ(std::pair(core->HalfMoveClock, core->MoveNumber), std::pair(clock, number)) << fen;
    }
}

TEST(ChessNotation, EpdOperationsAndPrintMoves) {
    const auto core = CoreAt("");
    nuvobase::clsStrings fields;
    core->SetPosition(clsString("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - bm Nf3; id \"x\";"),
                      &fields);
    EXPECT_EQ(std::string(fields.Join(";", true).Text()), "bm=Nf3;id=\"x\"");
    EXPECT_EQ(core->GetPosition(), clsString("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -"));
    // After the counters; a key without value; a piece without key is dropped.
    core->SetPosition(clsString("4k3/8/8/8/8/8/8/4K3 b - - 5 60  am Kd1 Kf1 ;noop; ; "), &fields);
    EXPECT_EQ(core->MoveNumber, 60);
    EXPECT_EQ(std::string(fields.Join(";", true).Text()), "am=Kd1 Kf1;noop=");
    EXPECT_EQ(std::string(fields.GetValue(clsString("AM")).Text()), "Kd1 Kf1");
    // The next position forgets them.
    core->SetPosition(clsString(""), &fields);
    EXPECT_EQ(fields.Count, 0);

    // Printed moves.
    core->SetPosition(clsString("4k3/8/8/3p4/4P3/8/8/4K3 w - - 0 1"));
    core->Generate(-1);
    clsMove* capture = core->Current->Moves;
    capture->Score = 210;
    capture->Flags |= MoveIllegal | MoveRefuted;
    core->PrintMoves(true);
    ASSERT_GE(core->Lines.size(), 3u);
    EXPECT_EQ(core->Lines.front(), "__moves__");
    EXPECT_EQ(core->Lines[1], "Pe4xPd5 a(2.00) v(1.00) * \\");
    EXPECT_EQ(core->Lines[2], "Ke1-f1 a(0.00) v(0.00)");
    EXPECT_EQ(core->Lines.back(), " ^^^");
    EXPECT_EQ(core->Lines.size(), 2u + core->Current->MoveCount);
    core->Lines.clear();
    core->PrintMove(nullptr);
    EXPECT_EQ(core->Lines, (Texts{R"(???)"}));
    EXPECT_EQ(std::string(core->MoveText(nullptr, false).Text()), "------");
}

TEST(ChessNotation, SanReadLenientlyAndWrittenAndReadBackStrictly) {
    const char* start = "";
    const char* black = "r3k2r/8/8/8/8/5N2/8/4K3 b kq - 0 1";
    const char* knights = "4k3/8/8/6n1/3n4/5P2/8/4K3 b - - 0 1";
    const char* promotion = "3rk3/2P5/8/8/8/8/8/4K3 w - - 0 1";
    const struct {
        const char* Fen;
        const char* San;
        const char* Coordinates;
    } cases[] = {
        {start, "Nd2", ""},
        {start, "Zz9", ""},
        {black, "O-O-O", "e8c8"},
        {black, "Rxf3", ""},
        // Two knights may take on f3: the one generated first wins.
        {knights, "Nxf3+", "d4f3"},
        {knights, "Ngxf3", "g5f3"},
        // The promotion letter in either case; without one the queen, the first of the four.
        {promotion, "cxd8=N", "c7d8n"},
        {promotion, "c8=r", "c7c8r"},
        {promotion, "c8", "c7c8q"},
        // A move that leaves the king attacked is still a candidate.
        {"4k3/4r3/8/8/8/8/4N3/4K3 w - - 0 1", "Nc3", "e2c3"},
        // A rank names the rook; blanks, marks and the long form are read; broken words find nothing.
        {"4k3/4R3/8/8/8/8/8/4RK2 w - - 0 1", "R1e2", "e1e2"},
        {"4k3/8/8/8/7q/8/8/K3R3 b - - 0 1", "  Qh4xe1+ ", "h4e1"},
        {black, "O-O-O#", "e8c8"},
        {"4k3/8/8/8/8/8/8/R3K3 w - - 0 1", "Ra1a8", "a1a8"},
        {black, "O-X", ""},
        {start, "", ""},
        {start, "++", ""},
    };
    for (const auto& c : cases)
        EXPECT_STREQ(CoreAt(c.Fen)->SanToCoordinates(clsString(c.San), true).Text(), c.Coordinates)
            << c.Fen << " " << c.San;

    struct clsRow {
        const char* Fen;
        const char* Move;
        const char* San;
    };
    const clsRow rows[] = {
        {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", "g1f3", "Nf3"},
        {"r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1", "e1c1", "O-O-O"},
        {"r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1", "e8g8", "O-O"},
        {"4k3/8/8/8/8/8/8/1N1K1N2 w - - 0 1", "b1d2", "Nbd2"},
        {"4k3/8/8/8/8/1N6/8/1N2K3 w - - 0 1", "b1d2", "N1d2"},
        {"3r3k/4P3/8/8/8/8/8/4K3 w - - 0 1", "e7d8q", "exd8=Q+"},
        {"rnbqkbnr/pppp1ppp/8/4p3/6P1/5P2/PPPPP2P/RNBQKBNR b KQkq - 0 2", "d8h4", "Qh4#"},
        {"4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1", "e5d6", "exd6"},
        {"4k3/8/8/8/2p5/1P1B4/8/4K3 w - - 0 1", "d3c4", "Bxc4"},
        {"4k3/8/8/8/2p5/1P1B4/8/4K3 w - - 0 1", "b3c4", "bxc4"},
        {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", "e2e5", ""},
    };
    for (const clsRow& row : rows) {
        const auto core = CoreAt(row.Fen);
        EXPECT_STREQ(core->SanText(row.Move).Text(), row.San) << row.Fen;
        if (*row.San) {
            EXPECT_STREQ(core->LegalSanToCoordinates(row.San).Text(), row.Move) << row.San;
        }
    }
    // Zeros for castling and a promotion letter in small: the same moves.
    EXPECT_STREQ(CoreAt("r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1")->LegalSanToCoordinates("0-0").Text(), "e1g1");
    EXPECT_STREQ(CoreAt("3r3k/4P3/8/8/8/8/8/4K3 w - - 0 1")->LegalSanToCoordinates("exd8=q").Text(), "e7d8q");
}
