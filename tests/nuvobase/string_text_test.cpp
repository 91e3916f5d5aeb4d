// clsString: quoting, escapes, case, encoding and file names.
#include <gtest/gtest.h>

#include <string>

#include "nuvobase/clsstring.h"

using nuvobase::clsString;

static std::string Bytes(const clsString& s) {
    return std::string(s.Text(), size_t(s.Size()));
}

TEST(StringText, QuoteAndUnquote) {
    EXPECT_EQ(Bytes(clsString("it's").Quote('\'')), "'it''s'");
    EXPECT_EQ(Bytes(clsString("it's").Quote(0)), "it's");
    EXPECT_EQ(Bytes(clsString().Quote('"')), "\"\"");

    EXPECT_EQ(Bytes(clsString("'it''s'").Unquote()), "it's");
    EXPECT_EQ(Bytes(clsString("\"a\"\"b\"").Unquote()), "a\"b");
    EXPECT_EQ(Bytes(clsString("\"a\"\"b\"").Unquote('"')), "a\"b");
    EXPECT_EQ(Bytes(clsString("'x'").Unquote('"')), "'x'");    // another quote character
    EXPECT_EQ(Bytes(clsString("'abc\"").Unquote()), "'abc\""); // not enclosed
    EXPECT_EQ(Bytes(clsString("''").Unquote()), "");
    EXPECT_EQ(Bytes(clsString("'").Unquote()), "'");
    EXPECT_EQ(Bytes(clsString("'a'b'").Unquote()), "a'b"); // a single inner quote stays

    // Quoting and unquoting give the text back.
    clsString text("a'b''c'");
    EXPECT_EQ(Bytes(text.Quote('\'').Unquote('\'')), Bytes(text));
}

TEST(StringText, XmlAndEscapes) {
    EXPECT_EQ(Bytes(clsString("a&b<'c'>\"").ToXml()), "a&amp;b&lt;&apos;c&apos;&gt;&quot;");
    EXPECT_EQ(Bytes(clsString("&amp;").ToXml()), "&amp;amp;");
    EXPECT_EQ(Bytes(clsString().ToXml()), "");

    clsString escaped("a\\nb\\t\\\\\\'\\\"\\101\\0x\\q\\r\\v\\b\\f");
    EXPECT_EQ(Bytes(escaped.UnescapeC()), std::string("a\nb\t\\'\"A\0xq\r\v\b\f", 15));
    EXPECT_EQ(Bytes(clsString("\\012\\0").UnescapeC()), std::string("\n\0", 2)); // octal before NUL
    EXPECT_EQ(Bytes(clsString("\\08").UnescapeC()), std::string("\0"
                                                                "8",
                                                                2));
    EXPECT_EQ(Bytes(clsString("ab\\").UnescapeC()), "ab\\"); // a lone backslash at the end stays
}

TEST(StringText, CaseAndEncoding) {
    EXPECT_EQ(Bytes(clsString("aBc-\xE9").Upper()), "ABC-\xE9"); // ASCII letters only
    EXPECT_EQ(Bytes(clsString("AbC-\xC9").Lower()), "abc-\xC9");
    EXPECT_EQ(Bytes(clsString("hELLO wORLD-fOO x2y").Capitalise()), "Hello World-Foo X2Y");
    EXPECT_EQ(Bytes(clsString("abc def").UpperFirst()), "Abc def");
    EXPECT_EQ(Bytes(clsString().UpperFirst()), "");

    EXPECT_EQ(Bytes(clsString("a\xE9").ToUtf8()), "a\xC3\xA9");
    EXPECT_EQ(Bytes(clsString("\xFF\x80").ToUtf8()), "\xC3\xBF\xC2\x80");

    EXPECT_EQ(Bytes(clsString("abcdef").Reverse()), "fedcba");
    EXPECT_EQ(Bytes(clsString("abcdef").Reverse(2)), "efcdab");
    EXPECT_EQ(Bytes(clsString("abcde").Reverse(2)), "ecdab"); // the short last group goes first
    EXPECT_EQ(Bytes(clsString("abcdef").Reverse(0)), "abcdef");
    EXPECT_EQ(Bytes(clsString("ab").Reverse(4)), "ab");
}

TEST(StringText, Paths) {
    EXPECT_EQ(Bytes(clsString("logs").PathJoin("test")), "logs/test");
    EXPECT_EQ(Bytes(clsString("logs/").PathJoin("test")), "logs/test");
    EXPECT_EQ(Bytes(clsString("logs\\").PathJoin("\\test")), "logs/test");
    EXPECT_EQ(Bytes(clsString("logs").PathJoin("/test")), "logs/test");
    EXPECT_EQ(Bytes(clsString().PathJoin("test")), "test");
    EXPECT_EQ(Bytes(clsString("a\\b").PathJoin("c\\d")), "a/b/c/d");
    EXPECT_EQ(Bytes(clsString("/").PathJoin("x")), "/x");
    EXPECT_EQ(Bytes(clsString("a\\b").PathJoin(nullptr)), "a/b");

    EXPECT_EQ(Bytes(clsString("a\\b\\c").ToForwardSlashes()), "a/b/c");

    EXPECT_EQ(Bytes(clsString("dir/sub/game.pgn").FileName()), "game");
    EXPECT_EQ(Bytes(clsString("dir/sub/game.pgn").FileName(true)), "dir/sub/game");
    EXPECT_EQ(Bytes(clsString("dir.x/name").FileName()), "name");
    EXPECT_EQ(Bytes(clsString("a\\b.c").FileName()), "b");
    EXPECT_EQ(Bytes(clsString("a.tar.gz").FileName()), "a.tar");

    EXPECT_EQ(Bytes(clsString("tests/perft.txt").ChangeExtension(".out.txt")), "tests/perft.out.txt");
    EXPECT_EQ(Bytes(clsString("a.b").ChangeExtension("txt")), "a.txt");
    EXPECT_EQ(Bytes(clsString("dir.d/name").ChangeExtension(".x")), "dir.d/name.x");
    EXPECT_EQ(Bytes(clsString("name.old").ChangeExtension("")), "name");
}
