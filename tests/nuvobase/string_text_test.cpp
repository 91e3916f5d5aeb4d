// clsString: substrings, trimming and replacing; quoting, case and paths; numbers to text and back.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <string>

#include "nuvobase/clsstring.h"
#include "rows.h"

using nuvobase::clsString;
using nuvobase_test::Bytes;
using nuvobase_test::CheckRows;

TEST(StringText, CutsPresentationPathsAndNumbers) {
    const clsString s("hello"), pair("key=value=x");
    CheckRows<std::string>({TEXT(s.Left(10), "hello"),
                            TEXT(s.Left(-1), ""),
                            TEXT(s.Right(3), "llo"),
                            TEXT(s.Right(5), "hello"),
                            TEXT(s.Right(6), ""), // beyond the length: nothing
                            TEXT(s.Mid(1, 3), "ell"),
                            TEXT(s.Mid(3, 10), "lo"),
                            TEXT(s.Mid(-1, 2), ""),
                            TEXT(pair.BeforeChar('='), "key"),
                            TEXT(pair.BeforeChar('#'), "key=value=x"),
                            TEXT(pair.BeforeChar('k'), ""),
                            TEXT(pair.AfterChar('='), "value=x"),
                            TEXT(pair.AfterChar('#'), ""),
                            TEXT(pair.AfterLastChar('='), "x"),
                            TEXT(pair.AfterLastChar('#'), "key=value=x"),
                            TEXT(clsString(s).Delete(3, 100), "hel"),
                            TEXT(clsString(s).Delete(-1, 1), "hello"),
                            TEXT(clsString(s).RemoveChar('l'), "heo"),
                            TEXT(clsString("  ab  ").Trim(), "ab"),
                            TEXT(clsString("  ab  ").Trim(' ', false), "ab  "),
                            TEXT(clsString("  ab  ").Trim(' ', false, true), "  ab"),
                            TEXT(clsString("    ").Trim(), ""),
                            TEXT(clsString("\xEF\xBB\xBFtext").StripUtf8Bom(), "text"),
                            TEXT(clsString("\xEF\xBB").StripUtf8Bom(), "\xEF\xBB"),
                            TEXT(clsString("aaaa").ReplaceAll("aa", "a"), "aa"),
                            TEXT(clsString("Hello hello").ReplaceAll("HELLO", "bye"), "bye bye"),
                            TEXT(clsString("abc").ReplaceAll("", "yy"), "abc"),
                            TEXT(clsString("a-b-c").ReplaceAll("-", nullptr), "abc"),
                            TEXT(clsString("a-b").ReplaceAll("-", "--"), "a--b")});

    clsString tags("x[a]y[bc]");
    int position = 0;
    EXPECT_EQ(Bytes(tags.Between('[', ']', position)), "a");
    EXPECT_EQ(position, 4);
    EXPECT_EQ(Bytes(tags.Between('[', ']', position)), "bc");
    EXPECT_EQ(position, -1); // the close was the last character

    clsString self("abab");
    self.ReplaceAll(self.Text() + 2, "X");
    EXPECT_EQ(Bytes(self), "XX");

    // UnescapeC reads octal only as three digits; case changes touch ASCII letters only.
    CheckRows<std::string>(
        {TEXT(clsString().Quote('"'), "\"\""), TEXT(clsString("'abc\"").Unquote(), "'abc\""),
         TEXT(clsString("'").Unquote(), "'"),
         TEXT(clsString("a&b<'c'>\"").ToXml(), "a&amp;b&lt;&apos;c&apos;&gt;&quot;"),
         TEXT(clsString("a\\nb\\t\\\\\\'\\\"\\101\\0x\\q\\r\\v\\b\\f").UnescapeC(),
              std::string("a\nb\t\\'\"A\0xq\r\v\b\f", 15)),
         TEXT(clsString("\\012\\08").UnescapeC(), std::string("\n\0"
                                                              "8",
                                                              3)),
         TEXT(clsString("ab\\").UnescapeC(), "ab\\"), TEXT(clsString("aBc-\xE9").Upper(), "ABC-\xE9"),
         TEXT(clsString("AbC-\xC9").Lower(), "abc-\xC9"),
         TEXT(clsString("hELLO wORLD-fOO x2y").Capitalise(), "Hello World-Foo X2Y")});

    // One separator between the parts, every '\' turned into '/'; the extension is that of the last part.
    CheckRows<std::string>(
        {TEXT(clsString("logs/").PathJoin("test"), "logs/test"),
         TEXT(clsString("logs\\").PathJoin("\\test"), "logs/test"),
         TEXT(clsString().PathJoin("test"), "test"), TEXT(clsString("a\\b").PathJoin("c\\d"), "a/b/c/d"),
         TEXT(clsString("dir/sub/game.pgn").FileName(true), "dir/sub/game"),
         TEXT(clsString("dir.x/name").FileName(), "name"), TEXT(clsString("a\\b.c").FileName(), "b"),
         TEXT(clsString("a.tar.gz").FileName(), "a.tar")});

    // Numbers to text and back.
    clsString number;
    CheckRows<std::string>({TEXT(number.FromInt(INT64_MIN), "-9223372036854775808"),
                            // Doubles: -1 decimals cuts trailing zeros only behind a point.
                            TEXT(number.FromDouble(1.0 / 3), "0.3333333333"),
                            TEXT(number.FromDouble(1000, -1), "1000"),
                            TEXT(number.FromDouble(1e300, 2), "0"), // longer than the formatting area
                            // ToHexFixed fills the characters there are from the right.
                            TEXT(clsString("000000").ToHexFixed(255), "0000FF"),
                            TEXT(clsString("00").ToHexFixed(0x1234), "34")});

    // From text.
    CheckRows<uint64_t>({ROW(clsString("-12").ToUInt64(), 12u), ROW(clsString("0X1f").ToUInt64(), 31u),
                         ROW(clsString("0b101").ToUInt64(), 5u),
                         ROW(clsString("x0b11").ToUInt64(), 3u), // the prefix may stand at offset 1
                         ROW(clsString("  42abc").ToUInt64(), 42u), ROW(clsString("0x").ToUInt64(), 0u),
                         ROW(clsString("18446744073709551617").ToUInt64(), 1u)}); // 2^64 + 1 wraps

    CheckRows<double>({ROW(clsString("1,234.5").ToDouble(), 1234.5), ROW(clsString("   ").ToDouble(7.5), 7.5),
                       ROW(clsString().ToDouble(-1), -1),
                       ROW(clsString("abc").ToDouble(7.5), 0), // not blank: no fallback
                       ROW(clsString("2.5E-2").ToDouble(), 0.025), ROW(clsString("0x1F").ToDouble(), 31),
                       ROW(clsString("12,5").ToDouble(), 125), // a comma in the integer part is a separator
                       ROW(clsString("0.000000000001").ToDouble(), 1e-12), // 12 fraction digits
                       ROW(clsString::ParseDouble("1e2e1"), 1e20), // the exponent has its own exponent
                       ROW(clsString::ParseDouble(nullptr), 0)});
    std::string nested;
    for (int i = 0; i < 5000; i++) nested += "1e";
    EXPECT_TRUE(std::isinf(clsString::ParseDouble(nested.c_str())));

    // ToSigned: every '-' negates, any other character adds c-48 (c-55 above '9'). ToSeconds: "mm:ss".
    CheckRows<int64_t>({ROW(clsString("12-").ToSigned(), -12), ROW(clsString("1A").ToSigned(), 20),
                        ROW(clsString().ToSigned(), 0), ROW(clsString("5").ToSeconds(), 300),
                        ROW(clsString("2:15").ToSeconds(), 135), ROW(clsString().ToSeconds(), 0)});

    struct Cell {
        const char* text;
        int column, row;
    };
    const Cell cells[] = {{"$B$12", 2, 12}, {"AA1", 27, 1}, {"C-3", 3, -3}, {"12", 0, 12}, {"", 0, 0}};
    for (const Cell& cell : cells) {
        SCOPED_TRACE(cell.text);
        int column = -1, row = -1;
        clsString(cell.text).ParseCell(column, row);
        EXPECT_EQ(column, cell.column);
        EXPECT_EQ(row, cell.row);
    }
}
