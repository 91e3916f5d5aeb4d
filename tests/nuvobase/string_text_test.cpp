// clsString: quoting, escapes, case, encoding and file names.
#include <gtest/gtest.h>

#include <string>

#include "nuvobase/clsstring.h"
#include "rows.h"

using nuvobase::clsString;
using nuvobase_test::CheckRows;

TEST(StringText, Presentation) {
    CheckRows<std::string>(
        {TEXT(clsString("it's").Quote('\''), "'it''s'"),
         TEXT(clsString("it's").Quote(0), "it's"),
         TEXT(clsString().Quote('"'), "\"\""),
         TEXT(clsString("'it''s'").Unquote(), "it's"),
         TEXT(clsString("\"a\"\"b\"").Unquote(), "a\"b"),
         TEXT(clsString("'x'").Unquote('"'), "'x'"),    // another quote character
         TEXT(clsString("'abc\"").Unquote(), "'abc\""), // not enclosed
         TEXT(clsString("''").Unquote(), ""),
         TEXT(clsString("'").Unquote(), "'"),
         TEXT(clsString("'a'b'").Unquote(), "a'b"), // a single inner quote stays
         TEXT(clsString("a&b<'c'>\"").ToXml(), "a&amp;b&lt;&apos;c&apos;&gt;&quot;"),
         TEXT(clsString("&amp;").ToXml(), "&amp;amp;"),
         TEXT(clsString("a\\nb\\t\\\\\\'\\\"\\101\\0x\\q\\r\\v\\b\\f").UnescapeC(),
              std::string("a\nb\t\\'\"A\0xq\r\v\b\f", 15)),
         TEXT(clsString("\\012\\0").UnescapeC(), std::string("\n\0", 2)), // octal before NUL
         TEXT(clsString("\\08").UnescapeC(), std::string("\0"
                                                         "8",
                                                         2)),
         TEXT(clsString("ab\\").UnescapeC(), "ab\\"),     // a lone backslash at the end stays
         TEXT(clsString("aBc-\xE9").Upper(), "ABC-\xE9"), // ASCII letters only
         TEXT(clsString("AbC-\xC9").Lower(), "abc-\xC9"),
         TEXT(clsString("hELLO wORLD-fOO x2y").Capitalise(), "Hello World-Foo X2Y"),
         TEXT(clsString("abc def").UpperFirst(), "Abc def"),
         TEXT(clsString().UpperFirst(), ""),
         TEXT(clsString("a\xE9").ToUtf8(), "a\xC3\xA9"),
         TEXT(clsString("\xFF\x80").ToUtf8(), "\xC3\xBF\xC2\x80"),
         TEXT(clsString("abcdef").Reverse(), "fedcba"),
         TEXT(clsString("abcdef").Reverse(2), "efcdab"),
         TEXT(clsString("abcde").Reverse(2), "ecdab"), // the short last group goes first
         TEXT(clsString("abcdef").Reverse(0), "abcdef"),
         TEXT(clsString("ab").Reverse(4), "ab")});

    // Quoting and unquoting give the text back.
    clsString text("a'b''c'");
    EXPECT_EQ(nuvobase_test::Bytes(text.Quote('\'').Unquote('\'')), nuvobase_test::Bytes(text));
}

TEST(StringText, Paths) {
    CheckRows<std::string>(
        {TEXT(clsString("logs").PathJoin("test"), "logs/test"),
         TEXT(clsString("logs/").PathJoin("test"), "logs/test"),
         TEXT(clsString("logs\\").PathJoin("\\test"), "logs/test"),
         TEXT(clsString("logs").PathJoin("/test"), "logs/test"), TEXT(clsString().PathJoin("test"), "test"),
         TEXT(clsString("a\\b").PathJoin("c\\d"), "a/b/c/d"),
         TEXT(clsString("a\\b").PathJoin(nullptr), "a/b"),
         TEXT(clsString("a\\b\\c").ToForwardSlashes(), "a/b/c"),
         TEXT(clsString("dir/sub/game.pgn").FileName(), "game"),
         TEXT(clsString("dir/sub/game.pgn").FileName(true), "dir/sub/game"),
         TEXT(clsString("dir.x/name").FileName(), "name"), TEXT(clsString("a\\b.c").FileName(), "b"),
         TEXT(clsString("a.tar.gz").FileName(), "a.tar"),
         TEXT(clsString("tests/perft.txt").ChangeExtension(".out.txt"), "tests/perft.out.txt"),
         TEXT(clsString("a.b").ChangeExtension("txt"), "a.txt"),
         TEXT(clsString("dir.d/name").ChangeExtension(".x"), "dir.d/name.x"),
         TEXT(clsString("name.old").ChangeExtension(""), "name")});
}
