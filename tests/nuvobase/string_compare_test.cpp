// clsString: comparison operators, the Compare family and searching.
#include <gtest/gtest.h>

#include "nuvobase/clsstring.h"

using nuvobase::clsString;

// A string with a buffer but no characters (a C string "" gives no buffer at all).
static clsString EmptyWithBuffer() {
    clsString s("x");
    s.Clear();
    return s;
}

TEST(StringCompare, OperatorsIgnoreCase) {
    EXPECT_TRUE(clsString("Abc") == clsString("aBC"));
    EXPECT_TRUE(clsString("Abc") == "aBC");
    EXPECT_TRUE(clsString() == clsString(""));
    EXPECT_TRUE(clsString() == EmptyWithBuffer());
    EXPECT_TRUE(clsString() == nullptr);
    EXPECT_TRUE(clsString() != "a");
    EXPECT_TRUE(clsString("a") != clsString());
    EXPECT_TRUE(clsString("abc") < clsString("ABD"));
    EXPECT_TRUE(clsString("ab") < clsString("abc")); // common prefix, then length
    EXPECT_FALSE(clsString("abc") < clsString("ab"));
    EXPECT_TRUE(clsString("b") > clsString("A"));
    EXPECT_FALSE(clsString("a") > clsString("A"));
    EXPECT_TRUE(clsString("_") < clsString("a")); // letters compare as lower case
}

TEST(StringCompare, FlagsOnText) {
    clsString s("Hello World");
    EXPECT_TRUE(s.Compare("hello world", 2));
    EXPECT_FALSE(s.Compare("Hello", 2));
    EXPECT_TRUE(s.Compare("HELLO", 32));
    EXPECT_FALSE(s.Compare("World", 32));
    EXPECT_TRUE(s.Compare("WORLD", 64));
    EXPECT_FALSE(s.Compare("Hello", 64));
    EXPECT_TRUE(s.Compare("LO WO", 16));
    EXPECT_FALSE(s.Compare("xyz", 16));
    EXPECT_FALSE(s.Compare("Hello World!", 16));
    EXPECT_TRUE(clsString("lo").Compare("Hello", 1024));
    EXPECT_FALSE(clsString("xx").Compare("Hello", 1024));

    EXPECT_LT(clsString("abc").Compare("ABD", 1), 0);
    EXPECT_GT(clsString("abd").Compare("ABC", 1), 0);
    EXPECT_LT(clsString("ab").Compare("ABC", 1), 0);
    EXPECT_EQ(clsString("abc").Compare("ABC", 1), 0);

    // length limits the text; lengths are clipped at the first NUL.
    EXPECT_TRUE(clsString("abc").Compare("abcdef", 2, 3));
    EXPECT_TRUE(clsString("ab").Compare("ab\0cd", 2, 5));
}

TEST(StringCompare, PatternFlag) {
    clsString s("Hello World");
    EXPECT_TRUE(s.Compare("he%o w%ld", 128));
    EXPECT_TRUE(s.Compare("%world", 128));
    EXPECT_TRUE(s.Compare("hello%", 128));
    EXPECT_TRUE(s.Compare("%lo w%", 128));
    EXPECT_TRUE(s.Compare("%", 128));
    EXPECT_TRUE(s.Compare("hello", 128)); // no '%': the whole pattern is the start
    EXPECT_FALSE(s.Compare("%xyz%", 128));
    EXPECT_FALSE(s.Compare("h%z", 128));
    EXPECT_FALSE(s.Compare("hello w%o world", 128));           // start and end may not overlap
    EXPECT_FALSE(clsString("abXcd").Compare("abX%X%cd", 128)); // the middle lies between them
}

TEST(StringCompare, ExactTrailingAndPrecedence) {
    EXPECT_TRUE(clsString("ABC").Compare("abc", 2));
    EXPECT_FALSE(clsString("ABC").Compare("abc", 512));
    EXPECT_TRUE(clsString("ABC").Compare("ABC", 512));
    EXPECT_FALSE(clsString("ABC").Compare("ABC ", 512));
    EXPECT_FALSE(clsString("ABC").Compare("abc", 512 | 2)); // 512 decides alone
    EXPECT_TRUE(clsString().Compare("", 512));

    EXPECT_TRUE(clsString("abc  ").Compare("ABC ", 2 | 256));
    EXPECT_FALSE(clsString("abc  ").Compare("ABC ", 2));
    EXPECT_TRUE(clsString("   ").Compare("", 2 | 256));
    EXPECT_TRUE(clsString("xabc  ").Compare("abc", 64 | 256));

    // The first flag in the order 1/2, 32, 64, 16, 1024, 128 gives the answer.
    EXPECT_LT(clsString("abc").Compare("abd", 1 | 2), 0);
    EXPECT_TRUE(clsString("abcab").Compare("ab", 32 | 64));
    EXPECT_FALSE(clsString("abcab").Compare("cab", 32 | 64));
    EXPECT_TRUE(clsString("abcab").Compare("cab", 64 | 16));
    EXPECT_FALSE(clsString("abcab").Compare("bc", 64 | 16));
    EXPECT_EQ(clsString("abc").Compare("abc", 0), 0);
}

TEST(StringCompare, NullSides) {
    clsString none;
    clsString x("x");
    EXPECT_EQ(none.Compare(nullptr, 1), 0);
    EXPECT_EQ(none.Compare("x", 1), -1);
    EXPECT_EQ(none.Compare("", 1), -1); // a non-null right side
    EXPECT_EQ(x.Compare(nullptr, 1), 1);
    EXPECT_TRUE(none.Compare(nullptr, 32));
    EXPECT_TRUE(none.Compare(nullptr, 64));
    EXPECT_TRUE(none.Compare(nullptr, 128));
    EXPECT_FALSE(x.Compare(nullptr, 32));
    EXPECT_FALSE(none.Compare("x", 64));
    EXPECT_FALSE(none.Compare("", 128));
    EXPECT_TRUE(x.Compare(nullptr, 16));
    EXPECT_FALSE(none.Compare("x", 16));
    EXPECT_TRUE(none.Compare("x", 1024));
    EXPECT_TRUE(none.Compare(nullptr, 2));
    EXPECT_FALSE(none.Compare("x", 2));
    EXPECT_FALSE(none.Compare("", 2)); // equality agrees with the order: null is not ""
}

TEST(StringCompare, EmptySides) {
    clsString empty = EmptyWithBuffer();
    clsString a("a");
    EXPECT_TRUE(empty.Compare("", 2));
    EXPECT_FALSE(empty.Compare("a", 2));
    EXPECT_EQ(empty.Compare("", 1), 0);
    EXPECT_LT(empty.Compare("a", 1), 0);
    EXPECT_GT(a.Compare("", 1), 0);
    EXPECT_TRUE(a.Compare("", 16)); // an empty text is contained
    EXPECT_FALSE(empty.Compare("a", 16));
    EXPECT_FALSE(a.Compare("", 32)); // but does not start or end anything
    EXPECT_FALSE(a.Compare("", 64));
    EXPECT_FALSE(a.Compare("", 128));
    EXPECT_TRUE(empty.Compare("", 32));
    EXPECT_TRUE(empty.Compare("", 128));
    EXPECT_TRUE(empty.Compare("a", 1024));
    EXPECT_FALSE(a.Compare("b", 1024));
    EXPECT_TRUE(a.Compare(clsString("A"), 2));
    EXPECT_TRUE(empty.Compare(clsString(), 16)); // the clsString form passes the null buffer on
}

TEST(StringSearch, FindCharacters) {
    clsString s("abcabc");
    EXPECT_EQ(s.Find('c'), 2);
    EXPECT_EQ(s.Find('c', 3), 5);
    EXPECT_EQ(s.Find('z'), -1);
    EXPECT_EQ(s.Find('a', 6), -1);
    EXPECT_EQ(s.Find('a', -1), -1);
    EXPECT_EQ(s.FindLast('b'), 4);
    EXPECT_EQ(s.FindLast('z'), -1);
    EXPECT_EQ(clsString().Find('a'), -1);
    EXPECT_EQ(clsString().FindLast('a'), -1);
}

TEST(StringSearch, FindOutsideQuotes) {
    clsString s("say 'x AND y' and z");
    EXPECT_EQ(s.FindOutsideQuotes("and", 0, '\''), 14);
    EXPECT_EQ(s.FindOutsideQuotes("and"), 7); // without quote characters, and ignoring case
    EXPECT_EQ(s.FindOutsideQuotes("and", 15, '\''), -1);
    EXPECT_EQ(s.FindOutsideQuotes("and", 20), -1);
    EXPECT_EQ(s.FindOutsideQuotes("and", -1), -1);
    EXPECT_EQ(s.FindOutsideQuotes(""), -1);
    EXPECT_EQ(s.FindOutsideQuotes(nullptr), -1);
    EXPECT_EQ(clsString("a 'b and").FindOutsideQuotes("and", 0, '\''), -1); // the quote never closes
    EXPECT_EQ(clsString("\"x\" 'y' x y").FindOutsideQuotes("y", 0, '\'', '"'), 10);
    EXPECT_EQ(clsString().FindOutsideQuotes("a"), -1);
}
