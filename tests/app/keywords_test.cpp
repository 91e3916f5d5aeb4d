// The keyword splitter of setoption and position, and the reading of typed numbers.
#include "app/clschessapplication.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <utility>

using nuvobase::clsString;
using nvoChess::clsChessApplication;

namespace {

std::pair<std::string, std::string> Split(const char* text, const char* first, const char* second) {
    clsString firstValue("left over"), secondValue("left over");
    clsChessApplication::SplitKeywords(clsString(text), first, second, firstValue, secondValue);
    return {firstValue.Text(), secondValue.Text()};
}

using Values = std::pair<std::string, std::string>;

} // namespace

TEST(KeywordSplitter, NameAndValue) {
    EXPECT_EQ(Split("name soul value Simple5", "name", "value"), Values("soul", "Simple5"));
    // Blanks are cut from both ends; blanks inside a value stay.
    EXPECT_EQ(Split("  name   Clear Hash   value  a  b  ", "name", "value"), Values("Clear Hash", "a  b"));
    // Keywords ignore case; values keep theirs.
    EXPECT_EQ(Split("NAME Soul VaLuE Aggressive", "name", "value"), Values("Soul", "Aggressive"));
    EXPECT_EQ(Split("name Ponder", "name", "value"), Values("Ponder", ""));
    EXPECT_EQ(Split("", "name", "value"), Values("", ""));
}

TEST(KeywordSplitter, KeywordsMatchInsideWords) {
    // "value" is found inside "valuename", so the name ends there.
    EXPECT_EQ(Split("name valuename value 3", "name", "value"), Values("", "name value 3"));
    // "name" inside "rename": its value starts behind those letters.
    EXPECT_EQ(Split("rename x value 1", "name", "value"), Values("x", "1"));
}

TEST(KeywordSplitter, SecondKeywordIsSoughtBehindTheFirst) {
    // A "value" in front of "name" is not seen: the search for it starts behind "name".
    EXPECT_EQ(Split("value 3 name x", "name", "value"), Values("x", ""));
    // Without the first keyword the second is sought from the start.
    EXPECT_EQ(Split("value 3", "name", "value"), Values("", "3"));
}

TEST(KeywordSplitter, QuotedSpansHideKeywords) {
    EXPECT_EQ(Split("name \"a value b\" value 7", "name", "value"), Values("\"a value b\"", "7"));
    EXPECT_EQ(Split("name 'the value' value 'x'", "name", "value"), Values("'the value'", "'x'"));
    // Inside single quotes a double quote is plain text, and the other way round.
    EXPECT_EQ(Split("name 'a\"b' value c", "name", "value"), Values("'a\"b'", "c"));
    // A quote that is never closed hides the rest of the text.
    EXPECT_EQ(Split("name \"abc value 5", "name", "value"), Values("\"abc value 5", ""));
}

TEST(KeywordSplitter, EmptyKeywordIsFoundAtTheStart) {
    EXPECT_EQ(Split("startpos moves e2e4 e7e5", "", "moves"), Values("startpos", "e2e4 e7e5"));
    EXPECT_EQ(Split("moves e2e4", "", "moves"), Values("", "e2e4"));
    EXPECT_EQ(Split("fen 8/8/8/8/8/8/8/K1k5 w - - 0 1", "", "moves"),
              Values("fen 8/8/8/8/8/8/8/K1k5 w - - 0 1", ""));
    EXPECT_EQ(Split("STARTPOS MOVES e2e4", "", "moves"), Values("STARTPOS", "e2e4"));
    EXPECT_EQ(Split("startpos moves", "", "moves"), Values("startpos", ""));
}

TEST(TypedNumbers, DecimalReading) {
    EXPECT_EQ(clsChessApplication::ReadDecimal(clsString("64")), 64);
    EXPECT_EQ(clsChessApplication::ReadDecimal(clsString("-250")), -250);
    EXPECT_EQ(clsChessApplication::ReadDecimal(clsString(" 12ms")), 12);
    EXPECT_EQ(clsChessApplication::ReadDecimal(clsString("abc")), 0);
    EXPECT_EQ(clsChessApplication::ReadDecimal(clsString("")), 0);
    // Decimal only: no hexadecimal prefix, and a leading zero is no octal mark.
    EXPECT_EQ(clsChessApplication::ReadDecimal(clsString("0x10")), 0);
    EXPECT_EQ(clsChessApplication::ReadDecimal(clsString("010")), 10);
    EXPECT_EQ(clsChessApplication::ReadDecimal(clsString("99999999999999999999999")), LLONG_MAX);
}
