// clsString: numbers to text and text to numbers, odd inputs included.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <string>

#include "nuvobase/clsstring.h"

using nuvobase::clsString;

static std::string Bytes(const clsString& s) {
    return std::string(s.Text(), size_t(s.Size()));
}

TEST(StringNumberText, Integers) {
    clsString s;
    EXPECT_EQ(Bytes(s.FromInt(-42)), "-42");
    EXPECT_EQ(Bytes(s.FromInt(0)), "0");
    EXPECT_EQ(Bytes(s.FromInt(INT64_MIN)), "-9223372036854775808");
    EXPECT_EQ(Bytes(s.FromUInt(255, false, 16, 4)), "00FF");
    EXPECT_EQ(Bytes(s.FromUInt(5, true, 2)), "-101");
    EXPECT_EQ(Bytes(s.FromUInt(0, false, 16)), "0");
    EXPECT_EQ(Bytes(s.FromUInt(35, false, 36)), "Z");
    EXPECT_EQ(Bytes(s.FromUInt(UINT64_MAX)), "18446744073709551615");
    EXPECT_EQ(Bytes(s.FromUInt(12, false, 10, 1)), "12"); // minDigits below the digit count
}

TEST(StringNumberText, Doubles) {
    clsString s;
    EXPECT_EQ(Bytes(s.FromDouble(0.0, -1)), "0");
    EXPECT_EQ(Bytes(s.FromDouble(1.5, 3)), "1.500");
    EXPECT_EQ(Bytes(s.FromDouble(12.5, -1)), "12.5");
    EXPECT_EQ(Bytes(s.FromDouble(12.0, -1)), "12");
    EXPECT_EQ(Bytes(s.FromDouble(-0.25)), "-0.25");
    EXPECT_EQ(Bytes(s.FromDouble(1.0 / 3)), "0.3333333333");
    EXPECT_EQ(Bytes(s.FromDouble(100, 0)), "100"); // no point: zeros before it stay
    EXPECT_EQ(Bytes(s.FromDouble(1000, -1)), "1000");
    EXPECT_EQ(Bytes(s.FromDouble(1e300, 2)), "0"); // longer than the formatting area
}

TEST(StringNumberText, HexFixedFillsExistingCharacters) {
    EXPECT_EQ(Bytes(clsString("0000").ToHexFixed(0xBEEF)), "BEEF");
    EXPECT_EQ(Bytes(clsString("000000").ToHexFixed(255)), "0000FF");
    EXPECT_EQ(Bytes(clsString("00").ToHexFixed(0x1234)), "34");
    EXPECT_EQ(clsString().ToHexFixed(1).Size(), 0);
}

TEST(StringTextNumber, UnsignedReading) {
    EXPECT_EQ(clsString("-12").ToUInt64(), 12u);
    EXPECT_EQ(clsString("0x1F").ToUInt64(), 31u);
    EXPECT_EQ(clsString("0X1f").ToUInt64(), 31u);
    EXPECT_EQ(clsString("0b101").ToUInt64(), 5u);
    EXPECT_EQ(clsString("x0b11").ToUInt64(), 3u); // the prefix may stand at offset 1
    EXPECT_EQ(clsString("  42abc").ToUInt64(), 42u);
    EXPECT_EQ(clsString("- 7").ToUInt64(), 7u);
    EXPECT_EQ(clsString("1a").ToUInt64(), 1u);
    EXPECT_EQ(clsString("0x").ToUInt64(), 0u);
    EXPECT_EQ(clsString("z").ToUInt64(), 0u);
    EXPECT_EQ(clsString().ToUInt64(), 0u);
    EXPECT_EQ(clsString("18446744073709551617").ToUInt64(), 1u); // 2^64 + 1 wraps
}

TEST(StringTextNumber, DoubleReading) {
    EXPECT_DOUBLE_EQ(clsString("1,234.5").ToDouble(), 1234.5);
    EXPECT_DOUBLE_EQ(clsString("   ").ToDouble(7.5), 7.5);
    EXPECT_DOUBLE_EQ(clsString("").ToDouble(7.5), 7.5);
    EXPECT_DOUBLE_EQ(clsString().ToDouble(-1), -1);
    EXPECT_DOUBLE_EQ(clsString("abc").ToDouble(7.5), 0); // not blank: no fallback
    EXPECT_DOUBLE_EQ(clsString(" -2.5").ToDouble(), -2.5);
    EXPECT_DOUBLE_EQ(clsString("1e3").ToDouble(), 1000);
    EXPECT_DOUBLE_EQ(clsString("2.5E-2").ToDouble(), 0.025);
    EXPECT_DOUBLE_EQ(clsString("0x1F").ToDouble(), 31);
    EXPECT_DOUBLE_EQ(clsString("12,5").ToDouble(), 125); // a comma in the integer part is a separator
    EXPECT_DOUBLE_EQ(clsString("0.000000000001").ToDouble(), 1e-12); // 12 fraction digits
    EXPECT_DOUBLE_EQ(clsString("3.25xyz").ToDouble(), 3.25);
    EXPECT_EQ(clsString("0.5").ToDouble(), 0.5);
    EXPECT_DOUBLE_EQ(clsString::ParseDouble("1e2e1"), 1e20); // the exponent has its own exponent
    EXPECT_DOUBLE_EQ(clsString::ParseDouble("-0.75"), -0.75);
    EXPECT_DOUBLE_EQ(clsString::ParseDouble(nullptr), 0);

    std::string nested;
    for (int i = 0; i < 5000; i++) nested += "1e";
    EXPECT_TRUE(std::isinf(clsString::ParseDouble(nested.c_str())));
}

TEST(StringTextNumber, SignedSecondsAndCells) {
    EXPECT_EQ(clsString("-12").ToSigned(), -12);
    EXPECT_EQ(clsString("12-").ToSigned(), -12);
    EXPECT_EQ(clsString("1A").ToSigned(), 20); // 'A' counts as 10
    EXPECT_EQ(clsString().ToSigned(), 0);

    EXPECT_EQ(clsString("5").ToSeconds(), 300);
    EXPECT_EQ(clsString("0:30").ToSeconds(), 30);
    EXPECT_EQ(clsString("2:15").ToSeconds(), 135);
    EXPECT_EQ(clsString().ToSeconds(), 0);

    struct Cell {
        const char* text;
        int column, row;
    };
    const Cell cells[] = {{"$B$12", 2, 12}, {"z9", 26, 9}, {"AA1", 27, 1},  {"$AB$7", 28, 7},
                          {"C-3", 3, -3},   {"12", 0, 12}, {"A1:B2", 1, 1}, {"", 0, 0}};
    for (const Cell& cell : cells) {
        int column = -1, row = -1;
        clsString(cell.text).ParseCell(column, row);
        EXPECT_EQ(column, cell.column) << cell.text;
        EXPECT_EQ(row, cell.row) << cell.text;
    }
}
