// The result word of a game: its result and reason texts, the tags SetCode writes, and Reset.
#include <gtest/gtest.h>

#include "book/clsgame.h"

namespace {

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

TEST(GameTexts, ResultAndReasonFollowTheWordAndSetCodeWritesThemAsTags) {
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
}

TEST(GameTexts, ResetKeepsTagsOnlyWhenAsked) {
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

} // namespace
