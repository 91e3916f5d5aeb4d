// clsString: comparison operators, the Compare family and searching.
#include <gtest/gtest.h>

#include "nuvobase/clsstring.h"

using nuvobase::clsString;

namespace {

// A string with a buffer but no characters (a C string "" gives no buffer at all).
clsString EmptyWithBuffer() {
    clsString s("x");
    s.Clear();
    return s;
}

} // namespace

TEST(StringCompare, OperatorsIgnoreCase) {
    EXPECT_TRUE(clsString("Abc") == clsString("aBC"));
    EXPECT_TRUE(clsString("Abc") == "aBC");
    EXPECT_TRUE(clsString() == EmptyWithBuffer());
    EXPECT_TRUE(clsString() == nullptr);
    EXPECT_TRUE(clsString() != "a");
    EXPECT_TRUE(clsString("abc") < clsString("ABD"));
    EXPECT_TRUE(clsString("ab") < clsString("abc")); // common prefix, then length
    EXPECT_FALSE(clsString("abc") < clsString("ab"));
    EXPECT_TRUE(clsString("b") > clsString("A"));
    EXPECT_FALSE(clsString("a") > clsString("A"));
    EXPECT_TRUE(clsString("_") < clsString("a")); // letters compare as lower case
}

namespace {

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

TEST(StringCompare, Flags) {
    // 2 equal, 32 starts with, 64 ends with, 16 contains, 1024 contained in, 1 order.
    const CompareCase single[] = {
        {"ab cd", "AB CD", 2, 1}, {"ab cd", "ab", 2, 0},  {"ab cd", "AB", 32, 1},  {"ab cd", "cd", 32, 0},
        {"ab cd", "CD", 64, 1},   {"ab cd", "ab", 64, 0}, {"ab cd", "B C", 16, 1}, {"ab cd", "ab cd!", 16, 0},
        {"b", "AbC", 1024, 1},    {"xx", "abc", 1024, 0}, {"abc", "ABD", 1, -1},   {"abd", "ABC", 1, 1},
        {"ab", "ABC", 1, -1},     {"abc", "ABC", 1, 0}};
    CheckCompare(single);
    // 128: first%middle%last, each part optional; without '%' the whole pattern is the start. Start and end
    // may not overlap, and the middle lies between them.
    const CompareCase pattern[] = {{"ab cd", "a%b c%d", 128, 1},   {"ab cd", "%CD", 128, 1},
                                   {"ab cd", "ab%", 128, 1},       {"ab cd", "%b c%", 128, 1},
                                   {"ab cd", "%", 128, 1},         {"ab cd", "ab", 128, 1},
                                   {"ab cd", "%xy%", 128, 0},      {"ab cd", "a%z", 128, 0},
                                   {"ab cd", "ab c%b cd", 128, 0}, {"abXcd", "abX%X%cd", 128, 0}};
    CheckCompare(pattern);
    // 512 exact: case counts, and it decides alone. 256 drops trailing spaces of both sides first.
    const CompareCase exact[] = {
        {"ABC", "abc", 512, 0},     {"ABC", "ABC", 512, 1},  {"ABC", "ABC ", 512, 0},
        {"ABC", "abc", 512 | 2, 0}, {nullptr, "", 512, 1},   {"abc  ", "ABC ", 2 | 256, 1},
        {"abc  ", "ABC ", 2, 0},    {"   ", "", 2 | 256, 1}, {"xabc  ", "abc", 64 | 256, 1}};
    CheckCompare(exact);
    // The first flag in the order 1/2, 32, 64, 16, 1024, 128 gives the answer.
    const CompareCase precedence[] = {{"abc", "abd", 1 | 2, -1},    {"abcab", "ab", 32 | 64, 1},
                                      {"abcab", "cab", 32 | 64, 0}, {"abcab", "cab", 64 | 16, 1},
                                      {"abcab", "bc", 64 | 16, 0},  {"abc", "abc", 0, 0}};
    CheckCompare(precedence);
    // A null side equals only another null side and orders first.
    const CompareCase null[] = {{nullptr, nullptr, 1, 0}, {nullptr, "x", 1, -1},      {nullptr, "", 1, -1},
                                {"x", nullptr, 1, 1},     {nullptr, nullptr, 2, 1},   {nullptr, "", 2, 0},
                                {"x", nullptr, 32, 0},    {nullptr, nullptr, 128, 1}, {nullptr, "", 128, 0},
                                {nullptr, "x", 16, 0},    {nullptr, "x", 1024, 1}};
    CheckCompare(null);
    // An empty side: contained in anything, but starts or ends nothing that has characters.
    const CompareCase empty[] = {{"", "", 2, 1},    {"", "a", 2, 0},  {"", "a", 1, -1},
                                 {"a", "", 16, 1},  {"", "a", 16, 0}, {"a", "", 32, 0},
                                 {"a", "", 128, 0}, {"", "", 32, 1},  {"", "a", 1024, 1}};
    CheckCompare(empty);

    // length limits the text; lengths are clipped at the first NUL.
    EXPECT_TRUE(clsString("abc").Compare("abcdef", 2, 3));
    EXPECT_TRUE(clsString("ab").Compare("ab\0cd", 2, 5));
    // The clsString form passes a null buffer on as null.
    EXPECT_TRUE(EmptyWithBuffer().Compare(clsString(), 16));
    EXPECT_TRUE(clsString("a").Compare(clsString("A"), 2));
}

TEST(StringSearch, Find) {
    clsString s("abcabc");
    EXPECT_EQ(s.Find('c'), 2);
    EXPECT_EQ(s.Find('c', 3), 5);
    EXPECT_EQ(s.Find('a', 6), -1);
    EXPECT_EQ(s.Find('a', -1), -1);
    EXPECT_EQ(s.FindLast('b'), 4);
    EXPECT_EQ(clsString().Find('a'), -1);
    EXPECT_EQ(clsString().FindLast('a'), -1);

    clsString said("say 'x AND y' and z");
    EXPECT_EQ(said.FindOutsideQuotes("and", 0, '\''), 14);
    EXPECT_EQ(said.FindOutsideQuotes("and"), 7); // without quote characters, and ignoring case
    EXPECT_EQ(said.FindOutsideQuotes("and", 15, '\''), -1);
    EXPECT_EQ(said.FindOutsideQuotes("and", 20), -1);
    EXPECT_EQ(said.FindOutsideQuotes(""), -1);
    EXPECT_EQ(clsString("a 'b and").FindOutsideQuotes("and", 0, '\''), -1); // the quote never closes
    EXPECT_EQ(clsString("\"x\" 'y' x y").FindOutsideQuotes("y", 0, '\'', '"'), 10);
    EXPECT_EQ(clsString().FindOutsideQuotes("a"), -1);
}
