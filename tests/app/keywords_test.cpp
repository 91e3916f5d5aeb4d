// The readers of typed text: the keyword splitter of setoption and position, the words of console commands,
// typed numbers, and the names of the learner's per-generation files.
#include "app/clschessapplication.h"
#include "app/clscommandwords.h"
#include "app/learnfile.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

using nuvobase::clsString;
using namespace nvoChess;

TEST(TypedText, KeywordsQuotedWordsNumbersAndFileNames) {
    const struct {
        const char *Text, *First, *Second, *FirstValue, *SecondValue;
    } rows[] = {
        {"name soul value Simple5", "name", "value", "soul", "Simple5"},
        // Blanks are cut from both ends; blanks inside a value stay.
        {"  name   Clear Hash   value  a  b  ", "name", "value", "Clear Hash", "a  b"},
        // Keywords ignore case; values keep theirs.
        {"NAME Soul VaLuE Aggressive", "name", "value", "Soul", "Aggressive"},
        {"name Ponder", "name", "value", "Ponder", ""},
        {"", "name", "value", "", ""},
        // Keywords match inside words: "value" inside "valuename" ends the name there, and the value of
        // "name" inside "rename" starts behind those letters.
        {"name valuename value 3", "name", "value", "", "name value 3"},
        {"rename x value 1", "name", "value", "x", "1"},
        // The second keyword is sought behind the first, or from the start without it.
        {"value 3 name x", "name", "value", "x", ""},
        {"value 3", "name", "value", "", "3"},
        // Quoted spans hide keywords; inside single quotes a double quote is plain text, and the other way
        // round; a quote that is never closed hides the rest of the text.
        {"name \"a value b\" value 7", "name", "value", "\"a value b\"", "7"},
        {"name 'the value' value 'x'", "name", "value", "'the value'", "'x'"},
        {"name 'a\"b' value c", "name", "value", "'a\"b'", "c"},
        {"name \"abc value 5", "name", "value", "\"abc value 5", ""},
        // An empty first keyword is found at the start; the forms of position are played end to end.
        {"moves e2e4", "", "moves", "", "e2e4"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.Text);
        clsString first("left over"), second("left over");
        clsChessApplication::SplitKeywords(clsString(row.Text), row.First, row.Second, first, second);
        EXPECT_EQ(std::string(first.Text()), row.FirstValue);
        EXPECT_EQ(std::string(second.Text()), row.SecondValue);
    }

    // Command words: quoted words keep their blanks.
    const struct {
        const char* Text;
        std::vector<std::string> Words;
    } phrases[] = {
        {"my books all.cbk 5", {"my", "books", "all.cbk", "5"}},
        {"\"my books\" \"my books\\all.cbk\"  5 ", {"my books", "my books\\all.cbk", "5"}},
        // Two quotes inside stand for one; single quotes are plain letters.
        {"  \"a \"\"b\"\"\" 'c d' it's", {"a \"b\"", "'c", "d'", "it's"}},
        {"\"\" x", {"", "x"}},
        {"\"never closed x", {"\"never closed x"}},
        {"", {}},
    };
    for (const auto& row : phrases) {
        SCOPED_TRACE(row.Text);
        nvoChess::clsCommandWords words{clsString(row.Text)};
        for (const std::string& expected : row.Words) EXPECT_EQ(std::string(words.Next().Text()), expected);
        EXPECT_TRUE(words.Next().IsEmpty());
    }

    // Decimal only: no hexadecimal prefix, and a leading zero is no octal mark; too large stays at the top.
    const struct {
        const char* Text;
        long long Value;
    } numbers[] = {{"64", 64}, {"-250", -250}, {" 12ms", 12}, {"abc", 0},
                   {"", 0},    {"0x10", 0},    {"010", 10},   {"99999999999999999999999", LLONG_MAX}};
    for (const auto& row : numbers) EXPECT_EQ(clsString(row.Text).ToDecimal(), row.Value) << row.Text;

    // The names of the learner's per-generation files.
    const struct {
        const char* File;
        int64_t Generation;
        const char* Expected;
    } files[] = {
        {"learn.csv", 7, "learn.007.csv"},
        {"runs/learn.csv", 1234, "runs/learn.1234.csv"},
        {"runs.old/learn", 12, "runs.old/learn.012"},
    };
    for (const auto& file : files)
        EXPECT_STREQ(GenerationFile(clsString(file.File), file.Generation).Text(), file.Expected)
            << file.File;
}
