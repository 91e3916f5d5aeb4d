// clsString: quoting, escapes, case, encoding and file names.
#include <gtest/gtest.h>

#include <string>

#include "nuvobase/clsstring.h"
#include "rows.h"

using nuvobase::clsString;
using nuvobase_test::CheckRows;

TEST(StringText, Presentation) {
    // Unquote takes only a text enclosed in the quote asked for (either one by default) and keeps a single
    // inner quote; UnescapeC reads octal only as three digits and leaves a backslash at the end; case
    // changes touch ASCII letters only; Reverse moves a short last group to the front.
    CheckRows<std::string>(
        {TEXT(clsString("it's").Quote('\''), "'it''s'"), TEXT(clsString().Quote('"'), "\"\""),
         TEXT(clsString("'it''s'").Unquote(), "it's"), TEXT(clsString("\"a\"\"b\"").Unquote(), "a\"b"),
         TEXT(clsString("'x'").Unquote('"'), "'x'"), TEXT(clsString("'abc\"").Unquote(), "'abc\""),
         TEXT(clsString("'").Unquote(), "'"), TEXT(clsString("'a'b'").Unquote(), "a'b"),
         TEXT(clsString("a&b<'c'>\"").ToXml(), "a&amp;b&lt;&apos;c&apos;&gt;&quot;"),
         TEXT(clsString("a\\nb\\t\\\\\\'\\\"\\101\\0x\\q\\r\\v\\b\\f").UnescapeC(),
              std::string("a\nb\t\\'\"A\0xq\r\v\b\f", 15)),
         TEXT(clsString("\\012\\08").UnescapeC(), std::string("\n\0"
                                                              "8",
                                                              3)),
         TEXT(clsString("ab\\").UnescapeC(), "ab\\"), TEXT(clsString("aBc-\xE9").Upper(), "ABC-\xE9"),
         TEXT(clsString("AbC-\xC9").Lower(), "abc-\xC9"),
         TEXT(clsString("hELLO wORLD-fOO x2y").Capitalise(), "Hello World-Foo X2Y"),
         TEXT(clsString("abc def").UpperFirst(), "Abc def"),
         TEXT(clsString("a\xFF\x80").ToUtf8(), "a\xC3\xBF\xC2\x80"),
         TEXT(clsString("abcde").Reverse(2), "ecdab"), TEXT(clsString("abcdef").Reverse(0), "abcdef")});

    // Quoting and unquoting give the text back.
    clsString text("a'b''c'");
    EXPECT_EQ(nuvobase_test::Bytes(text.Quote('\'').Unquote('\'')), nuvobase_test::Bytes(text));
}

TEST(StringText, Paths) {
    // One separator between the parts, every '\' turned into '/'; the extension is that of the last part.
    CheckRows<std::string>(
        {TEXT(clsString("logs/").PathJoin("test"), "logs/test"),
         TEXT(clsString("logs\\").PathJoin("\\test"), "logs/test"),
         TEXT(clsString("logs").PathJoin("/test"), "logs/test"), TEXT(clsString().PathJoin("test"), "test"),
         TEXT(clsString("a\\b").PathJoin("c\\d"), "a/b/c/d"),
         TEXT(clsString("a\\b\\c").ToForwardSlashes(), "a/b/c"),
         TEXT(clsString("dir/sub/game.pgn").FileName(true), "dir/sub/game"),
         TEXT(clsString("dir.x/name").FileName(), "name"), TEXT(clsString("a\\b.c").FileName(), "b"),
         TEXT(clsString("a.tar.gz").FileName(), "a.tar"),
         TEXT(clsString("tests/perft.txt").ChangeExtension(".out.txt"), "tests/perft.out.txt"),
         TEXT(clsString("a.b").ChangeExtension("txt"), "a.txt"),
         TEXT(clsString("dir.d/name").ChangeExtension(".x"), "dir.d/name.x"),
         TEXT(clsString("name.old").ChangeExtension(""), "name")});
}
