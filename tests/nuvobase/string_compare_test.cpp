// clsString: comparison, searching and reading words. Tokenising is checked through the XML and JSON readers.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "nuvobase/clsstring.h"
#include "rows.h"

using nuvobase::clsString;
using nuvobase_test::Bytes;
using nuvobase_test::CheckRows;

namespace {

// A string with a buffer but no characters (a C string "" gives no buffer at all).
clsString EmptyWithBuffer() {
    clsString s("x");
    s.Clear();
    return s;
}

// subject: nullptr is a string without buffer, "" one with a buffer and no characters. With flag 1 the
// expected value is the sign of the result; the other tests give 1 or 0.
struct CompareCase {
    const char* subject;
    const char* text;
    int flags, expected;
};

template <size_t N> void CheckCompare(const CompareCase (&cases)[N]) {
    for (const CompareCase& c : cases) {
        SCOPED_TRACE(testing::Message() << (c.subject ? c.subject : "(null)") << " / "
                                        << (c.text ? c.text : "(null)") << " flags " << c.flags);
        const clsString subject = !c.subject   ? clsString()
                                  : *c.subject ? clsString(c.subject)
                                               : EmptyWithBuffer();
        int result = subject.Compare(c.text, c.flags);
        if (c.flags & 1) result = (result > 0) - (result < 0);
        EXPECT_EQ(result, c.expected);
    }
}

} // namespace

TEST(StringCompare, OperatorsAndFlags) {
    // Letters compare as lower case ('_' lies between the cases); a common prefix, then the length.
    CheckRows<bool>({ROW(clsString("Abc") == clsString("aBC"), true), ROW(clsString("Abc") == "aBC", true),
                     ROW(clsString() == EmptyWithBuffer(), true), ROW(clsString() == nullptr, true),
                     ROW(clsString() != "a", true), ROW(clsString("abc") < clsString("ABD"), true),
                     ROW(clsString("ab") < clsString("abc"), true),
                     ROW(clsString("abc") < clsString("ab"), false),
                     ROW(clsString("b") > clsString("A"), true), ROW(clsString("a") > clsString("A"), false),
                     ROW(clsString("_") < clsString("a"), true)});

    // In row order: 2 equal, 32 starts with, 64 ends with, 16 contains, 1024 contained in, 1 order; 128
    // first%middle%last, each part optional, without '%' the whole pattern is the start, start and end may
    // not overlap and the middle lies between them; 512 exact, where case counts and it decides alone; 256
    // drops trailing spaces of both sides first; the first flag in the order 1/2, 32, 64, 16, 1024, 128 gives
    // the answer. A null side equals only another null side and orders first; an empty side is contained in
    // anything but starts or ends nothing that has characters.
    const CompareCase plain[] = {{"ab cd", "AB CD", 2, 1}, {"ab cd", "ab", 2, 0},      {"ab cd", "AB", 32, 1},
                                 {"ab cd", "cd", 32, 0},   {"ab cd", "CD", 64, 1},     {"ab cd", "ab", 64, 0},
                                 {"ab cd", "B C", 16, 1},  {"ab cd", "ab cd!", 16, 0}, {"b", "AbC", 1024, 1},
                                 {"xx", "abc", 1024, 0},   {"abc", "ABD", 1, -1},      {"ab", "ABC", 1, -1}};
    CheckCompare(plain);
    const CompareCase patterns[] = {{"ab cd", "a%b c%d", 128, 1},   {"ab cd", "%CD", 128, 1},
                                    {"ab cd", "ab", 128, 1},        {"ab cd", "a%z", 128, 0},
                                    {"ab cd", "ab c%b cd", 128, 0}, {"abXcd", "abX%X%cd", 128, 0}};
    CheckCompare(patterns);
    const CompareCase exact[] = {{"ABC", "abc", 512 | 2, 0},    {"ABC", "ABC", 512, 1},
                                 {"abc  ", "ABC ", 2 | 256, 1}, {"abc  ", "ABC ", 2, 0},
                                 {"abc", "abd", 1 | 2, -1},     {"abcab", "cab", 32 | 64, 0},
                                 {"abcab", "bc", 64 | 16, 0},   {"abc", "abc", 0, 0}};
    CheckCompare(exact);
    const CompareCase edges[] = {
        {nullptr, nullptr, 1, 0},   {nullptr, "", 1, -1},    {"x", nullptr, 1, 1}, {nullptr, "", 2, 0},
        {nullptr, nullptr, 128, 1}, {nullptr, "x", 1024, 1}, {"", "", 2, 1},       {"a", "", 16, 1},
        {"a", "", 32, 0},           {"", "", 32, 1}};
    CheckCompare(edges);

    // length limits the text; lengths are clipped at the first NUL. The clsString form passes a null
    // buffer on as null.
    CheckRows<int>({ROW(clsString("abc").Compare("abcdef", 2, 3), 1),
                    ROW(clsString("ab").Compare("ab\0cd", 2, 5), 1),
                    ROW(EmptyWithBuffer().Compare(clsString(), 16), 1),
                    ROW(clsString("a").Compare(clsString("A"), 2), 1)});
}

TEST(StringSearch, FindOutsideQuotesAndNextWord) {
    const clsString s("abcabc"), said("say 'x AND y' and z");
    CheckRows<int>(
        {ROW(s.Find('c'), 2), ROW(s.Find('c', 3), 5), ROW(s.Find('a', 6), -1), ROW(s.Find('a', -1), -1),
         ROW(s.FindLast('b'), 4), ROW(clsString().Find('a'), -1), ROW(clsString().FindLast('a'), -1),
         ROW(said.FindOutsideQuotes("and", 0, '\''), 14),
         ROW(said.FindOutsideQuotes("and"), 7), // without quote characters, and ignoring case
         ROW(said.FindOutsideQuotes("and", 15, '\''), -1), ROW(said.FindOutsideQuotes("and", 20), -1),
         ROW(said.FindOutsideQuotes(""), -1),
         ROW(clsString("a 'b and").FindOutsideQuotes("and", 0, '\''), -1), // the quote never closes
         ROW(clsString("\"x\" 'y' x y").FindOutsideQuotes("y", 0, '\'', '"'), 10),
         ROW(clsString().FindOutsideQuotes("a"), -1)});

    // The words NextWord returns, each with the position after it.
    using List = std::vector<std::pair<std::string, int>>;
    auto words = [](const char* text, char separator, bool quoted, bool skipEmpty, int position = 0) {
        List words;
        clsString s(text);
        while (position >= 0) {
            clsString word = s.NextWord(separator, position, quoted, skipEmpty);
            words.emplace_back(Bytes(word), position);
        }
        return words;
    };
    EXPECT_EQ(words("a b  c ", ' ', false, false), (List{{"a", 2}, {"b", 4}, {"", 5}, {"c", -1}}));
    EXPECT_EQ(words("a b  c ", ' ', false, true), (List{{"a", 2}, {"b", 4}, {"c", -1}}));
    EXPECT_EQ(words("x 'a b' \"c d\" e", ' ', true, false),
              (List{{"x", 2}, {"'a b'", 8}, {"\"c d\"", 14}, {"e", -1}}));
    EXPECT_EQ(words(",,", ',', false, true), (List{{"", -1}}));
    EXPECT_EQ(words("abc", ' ', false, false, 7), (List{{"", -1}}));
}
