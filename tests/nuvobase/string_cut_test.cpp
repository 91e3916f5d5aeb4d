// clsString: substrings, deleting, trimming and replacing.
#include <gtest/gtest.h>

#include <string>

#include "nuvobase/clsstring.h"
#include "rows.h"

using nuvobase::clsString;
using nuvobase_test::Bytes;

TEST(StringCut, SubstringsAndTrimming) {
    const clsString s("hello"), pair("key=value=x");
    nuvobase_test::CheckRows<std::string>(
        {TEXT(s.Left(10), "hello"), TEXT(s.Left(-1), ""), TEXT(s.Right(3), "llo"), TEXT(s.Right(5), "hello"),
         TEXT(s.Right(6), ""), // beyond the length: nothing
         TEXT(s.Mid(1, 3), "ell"), TEXT(s.Mid(1, -1), "ello"), TEXT(s.Mid(3, 10), "lo"),
         TEXT(s.Mid(5, 1), ""), TEXT(s.Mid(-1, 2), ""), TEXT(s.From(9), ""), TEXT(clsString().Mid(0, 3), ""),
         TEXT(pair.BeforeChar('='), "key"), TEXT(pair.BeforeChar('#'), "key=value=x"),
         TEXT(pair.BeforeChar('k'), ""), TEXT(pair.AfterChar('='), "value=x"), TEXT(pair.AfterChar('#'), ""),
         TEXT(pair.AfterLastChar('='), "x"), TEXT(pair.AfterLastChar('#'), "key=value=x"),
         TEXT(clsString(s).Delete(1, 2), "hlo"), TEXT(clsString(s).Delete(3, 100), "hel"),
         TEXT(clsString(s).Delete(5, 1), "hello"), TEXT(clsString(s).Delete(-1, 1), "hello"),
         TEXT(clsString(s).Delete(1, -1), "hello"), TEXT(clsString(s).RemoveChar('l'), "heo"),
         TEXT(clsString("  ab  ").Trim(), "ab"), TEXT(clsString("  ab  ").Trim(' ', false), "ab  "),
         TEXT(clsString("  ab  ").Trim(' ', false, true), "  ab"),
         TEXT(clsString("xxabxx").TrimRight('x'), "xxab"), TEXT(clsString("    ").Trim(), ""),
         TEXT(clsString("\xEF\xBB\xBFtext").StripUtf8Bom(), "text"),
         TEXT(clsString("\xEF\xBB").StripUtf8Bom(), "\xEF\xBB"),
         // Blank runs outside quotes become one space, trailing ones go, an open quote runs to the end.
         TEXT(clsString("a  \r\n b 'c   d' \"e  f\"  ").Squeeze(), "a b 'c   d' \"e  f\""),
         TEXT(clsString("\n\n a").Squeeze(), " a"), TEXT(clsString("'a\n  b").Squeeze(), "'a\n  b"),
         TEXT(clsString(" \r\n ").Squeeze(), "")});

    clsString tags("x[a]y[bc]");
    int position = 0;
    EXPECT_EQ(Bytes(tags.Between('[', ']', position)), "a");
    EXPECT_EQ(position, 4);
    EXPECT_EQ(Bytes(tags.Between('[', ']', position)), "bc");
    EXPECT_EQ(position, -1); // the close was the last character
    EXPECT_EQ(Bytes(tags.Between('[', ']', position)), "");
    position = 0;
    EXPECT_EQ(Bytes(clsString("[open").Between('[', ']', position)), "");
    EXPECT_EQ(position, -1);

    clsString dotted("a.b.c");
    EXPECT_EQ(dotted.CutLast('.'), 3);
    EXPECT_EQ(Bytes(dotted), "a.b");
    EXPECT_EQ(dotted.CutLast('#'), 3);
    EXPECT_EQ(dotted.CutLast('#', true), 0);
}

TEST(StringCut, ReplaceAll) {
    nuvobase_test::CheckRows<std::string>(
        {TEXT(clsString("aaaa").ReplaceAll("aa", "a"), "aa"),
         TEXT(clsString("Hello hello").ReplaceAll("HELLO", "bye"), "bye bye"),
         TEXT(clsString("abc").ReplaceAll("x", "yy"), "abc"),
         TEXT(clsString("abc").ReplaceAll("", "yy"), "abc"),
         TEXT(clsString("a-b-c").ReplaceAll("-", nullptr), "abc"),
         TEXT(clsString().ReplaceAll("a", "b"), "")});

    clsString grown("a-b-c");
    grown.ReplaceAll("-", "--");
    EXPECT_EQ(Bytes(grown), "a--b--c");
    EXPECT_EQ(grown.GetCapacity(), 9); // the final length plus 2

    clsString shrunk("x--y--");
    shrunk.ReplaceAll("--", "+");
    EXPECT_EQ(Bytes(shrunk), "x+y+");
    EXPECT_EQ(shrunk.Data()[5], 0); // the byte behind the terminator is zeroed too

    clsString self("abab");
    self.ReplaceAll(self.Text() + 2, "X");
    EXPECT_EQ(Bytes(self), "XX");
}
