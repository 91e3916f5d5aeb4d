// Reading PGN: the tokens of one game, the cut of a file into games, and text that is no PGN at all; the
// result word of a game: its result and reason texts, the tags SetCode writes, and Reset.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "book/clsgame.h"
#include "book/clspgnfile.h"
#include "bookfixture.h"
#include "chess/clschesscore.h"

namespace {

using nvoChess::clsChessCore;
using nvoChess::clsGame;
using nvoChess::clsPGNFile;

constexpr const char* Tags = "[Event \"t\"]\n[Result \"1-0\"]\n";

struct GameCase {
    const char* Name;
    std::string Text;
    int MaxPlies;
    const char* Moves; // the coordinate moves read
    uint32_t Code;
    int FirstMoveNumber;
};

const GameCase GameCases[] = {
    {"tags then moves", std::string(Tags) + "1. e4 e5 2. Nf3 Nc6 1-0\n", 0, "e2e4 e7e5 g1f3 b8c6 ", 0x6, 1},
    {"no blank after dot", std::string(Tags) + "1.e4 e5 2.Nf3 *\n", 0, "e2e4 e7e5 g1f3 ", 0x6, 1},
    {"check signs and castling",
     "7. e4 e5 2. Nf3 Nc6 3. Bc4 Nf6 4. Ng5 d5 5. exd5 Nxd5 6. Nxf7 Kxf7 7. Qf3+ Ke6 "
     "8. O-O Qd6\n",
     0, "e2e4 e7e5 g1f3 b8c6 f1c4 g8f6 f3g5 d7d5 e4d5 f6d5 g5f7 e8f7 d1f3 f7e6 e1g1 d8d6 ", 0x1, 7},
    {"comment with blanks", "1. e4 {best by test} e5 {good}\n", 0, "e2e4 e7e5 ", 0x1, 1},
    {"variation ends the moves", "1. e4 e5 2. Nf3 (2. Nc3) Nc6\n", 0, "e2e4 e7e5 g1f3 ", 0x1, 1},
    {"annotation glyph ends the moves", "1. e4 $1 e5\n", 0, "e2e4 ", 0x1, 1},
    {"black move number ends the moves", "1. e4 {x} 1... e5\n", 0, "e2e4 ", 0x1, 1},
    {"last result wins over the tag", std::string(Tags) + "1. e4 e5 1/2-1/2\n", 0, "e2e4 e7e5 ", 0x200, 1},
    {"lower-case result tag", "[result \"0-1\"]\n1. d4\n", 0, "d2d4 ", 0xA, 1},
    // the result behind the mate is never read
    {"mate then more tokens", "1. f3 e5 2. g4 Qh4# 3. a3 1-0\n", 0, "f2f3 e7e5 g2g4 d8h4 ", 0x1, 1},
    {"illegal SAN", "1. e4 e5 2. Ke3 Nc6\n", 0, "e2e4 e7e5 ", 0x1, 1},
    {"ply limit", "1. e4 e5 2. Nf3 Nc6 3. Bb5 a6\n", 3, "e2e4 e7e5 g1f3 ", 0x1, 1},
    {"unclosed comment", "1. e4 {runs on e5 2. Nf3\n", 0, "e2e4 ", 0x1, 1},
};

TEST(PgnGame, TokensTagsAndResultTexts) {
    clsChessCore core;
    for (const GameCase& c : GameCases) {
        SCOPED_TRACE(c.Name);
        clsGame game;
        game.ReadPgn(c.Text.c_str(), core, nullptr, c.MaxPlies);
        EXPECT_STREQ(game.MoveText.Text(), c.Moves);
        EXPECT_EQ(game.Code, c.Code);
        EXPECT_EQ(game.FirstMoveNumber, c.FirstMoveNumber);
    }

    // Tags are kept.
    clsGame game;
    game.ReadPgn("[White \"A B\"]\n[Black]\n1. e4 {best by test} e5\n", core, nullptr, 0);
    EXPECT_STREQ(game.Tags.GetValue("White").Text(), "A B");
    EXPECT_EQ(game.Tags.Count, 2);
    EXPECT_EQ(game.PlyCount, 2);

    // Result texts set the code, and the tags unless unknown.
    const std::pair<const char*, uint32_t> cases[] = {{"1-0", 0x6},  {"0-1", 0xA}, {"1/2-1/2", 0x200},
                                                      {"*", 0x8000}, {"?", 0x1},   {"2-0", 0x1}};
    for (const auto& [text, code] : cases) {
        clsGame game;
        game.SetResultText(text);
        EXPECT_EQ(game.Code, code) << text;
        EXPECT_EQ(game.Tags.Count, code == 0x1 && text[0] != '?' ? 0 : 2) << text;
    }
}

struct CodeCase {
    uint32_t Code;
    const char* Result;
    const char* Reason;
};

const CodeCase CodeCases[] = {
    {0x0001, "?", "?"},
    {0x0016, "1-0", "mate"},
    {0x001A, "0-1", "mate"},
    {0x1200, "1/2-1/2", "stalemate"},
    {0x2200, "1/2-1/2", "insufficient material"},
    {0x0A00, "1/2-1/2", "triple repetition"},
    {0x0200, "1/2-1/2", ""},
    {0x002A, "0-1", "forfeit"},
    {0x0046, "1-0", "resign"},
    {0x010A, "0-1", "illegal move"},
    {0x4006, "1-0", "engine crashed"},
    {0x8000, "*", "game aborted"},
    {0x0082, "1-0", "adjudication"},
    {0x0602, "1/2-1/2", "50 moves"},
    {0x0000, "", ""},
    // the undecided bit comes first in both texts, whatever else is set
    {0x8017, "?", "?"},
};

TEST(GameTexts, ResultAndReasonTagsAndReset) {
    for (const CodeCase& c : CodeCases) {
        nvoChess::clsGame game;
        game.Tags.SetValue("Event", "test");
        game.SetCode(0x0016);
        game.SetCode(c.Code);
        SCOPED_TRACE(c.Code);
        EXPECT_STREQ(game.ResultText().Text(), c.Result);
        EXPECT_STREQ(game.ReasonText().Text(), c.Reason);
        // replaced, not added twice
        EXPECT_EQ(game.Tags.Count, 3);
        EXPECT_STREQ(game.Tags.GetValue("result").Text(), c.Result);
        EXPECT_STREQ(game.Tags.GetValue("Reason").Text(), c.Reason);
    }

    // Reset keeps the tags only when asked.
    for (const bool keepTags : {false, true}) {
        nvoChess::clsGame game;
        game.SetCode(0x001A);
        game.MoveText = "e2e4 ";
        game.Comments.SetValue("1", "good");
        game.Reset(keepTags);
        EXPECT_EQ(game.Code, 1u);
        EXPECT_TRUE(game.MoveText.IsEmpty());
        EXPECT_EQ(game.Comments.Count, 0);
        EXPECT_EQ(game.Tags.Count, keepTags ? 2 : 0);
    }
}

class PgnFiles : public booktest::BookFiles {
protected:
    // Loads text written as the file name into the book of pgn and gives the games read.
    int LoadText(clsPGNFile& pgn, const std::string& name, const std::string& text, bool extractFen = false) {
        Write(name, text);
        return pgn.Load(PathTo(name), Core, 0, extractFen);
    }
    clsChessCore Core;
    clsPGNFile Pgn;
};

struct FileCase {
    const char* Name;
    std::string Text;
    int Games;
    int Positions;
};

// Positions of "1. e4 e5 2. Nf3" and of "1. d4": 3 and 1.
const FileCase FileCases[] = {
    {"no blank line between games", "[A \"1\"]\n1. e4 e5 2. Nf3\n[B \"2\"]\n1. d4\n", 2, 4},
    {"no final line end", "[A \"1\"]\n\n1. e4 e5 2. Nf3", 1, 3},
    {"CR LF lines", "[A \"1\"]\r\n\r\n1. e4 e5\r\n2. Nf3\r\n\r\n[B \"2\"]\r\n\r\n1. d4\r\n", 2, 4},
    {"blanks before tags", "  [A \"1\"]\n1. e4 e5 2. Nf3\n   [B \"2\"]\n1. d4\n", 2, 4},
    {"CR only: one line of tags", "[A \"1\"]\r\r1. e4 e5\r", 1, 0},
    {"byte order mark", "\xEF\xBB\xBF[A \"1\"]\n\n1. e4 e5 2. Nf3\n[B \"2\"]\n1. d4\n", 2, 4},
    {"NUL bytes", std::string("[A \"1\"]\n\n1. e4\0 e5 2. Nf3\n", 26), 1, 3},
    {"unbalanced braces", "[A \"1\"]\n\n1. e4 } e5 {{ 2. Nf3 }\n[B \"2\"]\n1. d4 {\n", 2, 2},
    {"empty file", "", 0, 0},
    {"blank lines only", "\n\n  \n", 0, 0},
};

TEST_F(PgnFiles, CutIntoGamesBadFilesAndThePositionTable) {
    for (const FileCase& c : FileCases) {
        SCOPED_TRACE(c.Name);
        clsPGNFile pgn;
        EXPECT_EQ(LoadText(pgn, "cut.pgn", c.Text), c.Games);
        EXPECT_EQ(pgn.Book.Count, c.Positions);
    }

    EXPECT_EQ(Pgn.Load(PathTo("none.pgn"), Core, 0, true), 0);
    EXPECT_EQ(Pgn.Book.Count, 0);
    const std::string shuffle = "1. Nf3 Nf6 2. Ng1 Ng8 ";
    std::string longGame = "[A \"1\"]\n\n";
    for (int i = 0; i < 2500; ++i) longGame += "1. Nf3 Nf6 2. Ng1 Ng8\n";
    EXPECT_EQ(LoadText(Pgn, "long.pgn", longGame), 1);
    // the start position comes back every fourth ply: four positions in all
    EXPECT_EQ(Pgn.Book.Count, 4);
    EXPECT_EQ(Pgn.Book.At(0)->Draws + Pgn.Book.At(1)->Draws + Pgn.Book.At(2)->Draws + Pgn.Book.At(3)->Draws,
              10000u);

    std::string hugeLine = "[A \"1\"]\n\n1. e4 {" + std::string(10 << 20, 'x') + "} e5\n";
    clsPGNFile huge;
    EXPECT_EQ(LoadText(huge, "huge.pgn", hugeLine), 1);
    EXPECT_EQ(huge.Book.Count, 2);

    std::mt19937 random(7);
    std::string noise(1 << 20, '\0');
    for (char& c : noise) c = char(random());
    clsPGNFile bytes;
    EXPECT_GE(LoadText(bytes, "noise.pgn", noise, true), 1);

    // The position table folds repeated positions.
    const std::string games = "[Result \"1-0\"]\n1. e4 e5 1-0\n[Result \"0-1\"]\n1. e4 c5 0-1\n"
                              "[Result \"1/2-1/2\"]\n1. d4 1/2-1/2\n[Result \"*\"]\n1. e4 *\n";
    EXPECT_EQ(LoadText(Pgn, "a.b.pgn", games, true), 4);
    // The lines in text order. After 1. e4 one win each side; the start position also one draw, and the
    // aborted game nowhere.
    EXPECT_EQ(Read("a.b.txt"), "1\t0\t1\trnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3\r\n"
                               "1\t1\t1\trnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -\r\n");
}

} // namespace
