// clsString: numbers to text and text to numbers, odd inputs included.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <string>

#include "nuvobase/clsstring.h"
#include "rows.h"

using nuvobase::clsString;
using nuvobase_test::CheckRows;

TEST(StringNumber, ToText) {
    clsString s;
    CheckRows<std::string>(
        {TEXT(s.FromInt(INT64_MIN), "-9223372036854775808"), TEXT(s.FromUInt(255, false, 16, 4), "00FF"),
         TEXT(s.FromUInt(5, true, 2), "-101"), TEXT(s.FromUInt(0, false, 16), "0"),
         TEXT(s.FromUInt(35, false, 36), "Z"), TEXT(s.FromUInt(UINT64_MAX), "18446744073709551615"),
         // Doubles: '.' in any locale; -1 decimals cuts trailing zeros and a bare point.
         TEXT(s.FromDouble(0.0, -1), "0"), TEXT(s.FromDouble(1.5, 3), "1.500"),
         TEXT(s.FromDouble(12.5, -1), "12.5"), TEXT(s.FromDouble(-0.25), "-0.25"),
         TEXT(s.FromDouble(1.0 / 3), "0.3333333333"),
         TEXT(s.FromDouble(100, 0), "100"), // no point: zeros before it stay
         TEXT(s.FromDouble(1000, -1), "1000"),
         TEXT(s.FromDouble(1e300, 2), "0"), // longer than the formatting area
         // ToHexFixed fills the characters there are from the right.
         TEXT(clsString("000000").ToHexFixed(255), "0000FF"), TEXT(clsString("00").ToHexFixed(0x1234), "34"),
         TEXT(clsString().ToHexFixed(1), "")});
}

TEST(StringNumber, FromText) {
    CheckRows<uint64_t>({ROW(clsString("-12").ToUInt64(), 12u), ROW(clsString("0X1f").ToUInt64(), 31u),
                         ROW(clsString("0b101").ToUInt64(), 5u),
                         ROW(clsString("x0b11").ToUInt64(), 3u), // the prefix may stand at offset 1
                         ROW(clsString("  42abc").ToUInt64(), 42u), ROW(clsString("- 7").ToUInt64(), 7u),
                         ROW(clsString("0x").ToUInt64(), 0u), ROW(clsString("z").ToUInt64(), 0u),
                         ROW(clsString().ToUInt64(), 0u),
                         ROW(clsString("18446744073709551617").ToUInt64(), 1u)}); // 2^64 + 1 wraps

    CheckRows<double>({ROW(clsString("1,234.5").ToDouble(), 1234.5), ROW(clsString("   ").ToDouble(7.5), 7.5),
                       ROW(clsString().ToDouble(-1), -1),
                       ROW(clsString("abc").ToDouble(7.5), 0), // not blank: no fallback
                       ROW(clsString(" -2.5").ToDouble(), -2.5), ROW(clsString("2.5E-2").ToDouble(), 0.025),
                       ROW(clsString("0x1F").ToDouble(), 31),
                       ROW(clsString("12,5").ToDouble(), 125), // a comma in the integer part is a separator
                       ROW(clsString("0.000000000001").ToDouble(), 1e-12), // 12 fraction digits
                       ROW(clsString("3.25xyz").ToDouble(), 3.25),
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
    const Cell cells[] = {{"$B$12", 2, 12}, {"z9", 26, 9}, {"AA1", 27, 1},  {"$AB$7", 28, 7},
                          {"C-3", 3, -3},   {"12", 0, 12}, {"A1:B2", 1, 1}, {"", 0, 0}};
    for (const Cell& cell : cells) {
        SCOPED_TRACE(cell.text);
        int column = -1, row = -1;
        clsString(cell.text).ParseCell(column, row);
        EXPECT_EQ(column, cell.column);
        EXPECT_EQ(row, cell.row);
    }
}
