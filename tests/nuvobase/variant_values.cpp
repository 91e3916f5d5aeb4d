// The variant classes: conversions between kinds, comparison, SQL text, and clsCurrency.
#include <gtest/gtest.h>

#include "nuvobase/clsvariant.h"
#include "rows.h"

using namespace nuvobase;
using nuvobase_test::Bytes;
using nuvobase_test::CheckRows;

namespace {

// A variant of kind V after Set(value).
template <class V, class T> V SetTo(T value) {
    V variant;
    variant.Set(value);
    return variant;
}

} // namespace

TEST(Variant, TextConversions) {
    // GetBool: false for empty text and a first character among 0 F N f n and space.
    for (const char* no : {"", "0", "False", "no", "N", " yes"})
        EXPECT_FALSE(clsVariantString(no).GetBool()) << no;
    for (const char* yes : {"true", "-1", "x"}) EXPECT_TRUE(clsVariantString(yes).GetBool()) << yes;
    EXPECT_EQ(clsVariantString("-12").GetInt64(), -12);
    EXPECT_EQ(clsVariantString("-12").GetUInt64(), 12u); // ToUInt64 skips the sign
    EXPECT_EQ(clsVariantString("0x1F").GetInt(), 0);     // atoi stops at the x
    EXPECT_EQ(clsVariantString("0x1F").GetInt64(), 31);
    EXPECT_EQ(clsVariantString("1,234.5").GetCurrency().Value, 123450);
    clsVariantString s("x");
    s.SetText(nullptr);
    EXPECT_TRUE(s.Value.IsEmpty());

    // Into text: numbers in decimal, doubles through FromDouble(value, -1), bools as 1, a C string as text.
    CheckRows<std::string>(
        {TEXT(SetTo<clsVariantString>(int64_t{-9000000000}).Value, "-9000000000"),
         TEXT(SetTo<clsVariantString>(uint64_t{18446744073709551615u}).Value, "18446744073709551615"),
         TEXT(SetTo<clsVariantString>(2.50).Value, "2.5"), TEXT(SetTo<clsVariantString>(true).Value, "1"),
         TEXT(SetTo<clsVariantString>(clsCurrency(-2.5)).Value, "-2.50"),
         TEXT(SetTo<clsVariantString>("text").Value, "text"),
         TEXT(clsVariantString("it's").ToSqlText(), "'it''s'"),
         // A bool prints as the number it stores, and as true or false in SQL.
         TEXT(SetTo<clsVariantBool>(int64_t{7}).GetString(), "7"),
         TEXT(SetTo<clsVariantBool>(clsString("yes")).ToSqlText(), "true"),
         TEXT(SetTo<clsVariantBool>(clsString("no")).ToSqlText(), "false"),
         TEXT(SetTo<clsVariantDouble>(clsString("  2.5e2")).GetString(), "250")});
}

TEST(Variant, NumberConversions) {
    EXPECT_EQ(SetTo<clsVariantInt>(clsString("42abc")).Value, 42);
    EXPECT_EQ(SetTo<clsVariantInt>(3.99).Value, 3);
    EXPECT_EQ(SetTo<clsVariantInt>(1e20).Value, INT32_MAX); // clamps instead of overflowing
    EXPECT_EQ(SetTo<clsVariantInt64>(clsString("-0x10")).Value, -16);
    EXPECT_EQ(SetTo<clsVariantDouble>(0.125).GetCurrency().Value, 13); // 12.5 cents round away from zero

    // Assign reads the other through the getter of its own kind.
    clsVariantInt i;
    i.Assign(clsVariantDouble(-7.8));
    EXPECT_EQ(i.Value, -7);
    clsVariantBool b;
    b.Assign(clsVariantInt(9));
    EXPECT_EQ(b.Value, 1);
    b.Assign(clsVariantString("False"));
    EXPECT_EQ(b.Value, 0);
}

TEST(Variant, Compare) {
    // Numbers compare as doubles, whatever the other kind; a text compares with the other's text, ignoring
    // ASCII case, so "5.0" is not 5.
    EXPECT_EQ(clsVariantInt(5).Compare(clsVariantString("5.0")), 0);
    EXPECT_LT(clsVariantInt(-1).Compare(clsVariantUInt64(0)), 0);
    EXPECT_EQ(clsVariantString("abc").Compare(clsVariantString("ABC")), 0);
    EXPECT_NE(clsVariantString("5.0").Compare(clsVariantInt(5)), 0);
    EXPECT_LT(clsVariantString("10").Compare(clsVariantInt(9)), 0);
    // An emptied text (buffer kept) equals one that never had a buffer.
    clsVariantString emptied("x");
    emptied.Value.SetLength(0);
    EXPECT_EQ(emptied.Compare(clsVariantString()), 0);
    EXPECT_EQ(clsVariantString().Compare(emptied), 0);
    EXPECT_TRUE(clsVariantString("abc") >= clsVariantString("ABC"));
    EXPECT_FALSE(clsVariantString("ab") >= clsVariantString("abc"));

    // Currencies compare at a common scale, without overflow at the ends of the range.
    clsCurrency tenths(1.5, 1), cents(1.5), huge, tiny;
    EXPECT_EQ(clsVariantCurrency(tenths).Compare(clsVariantCurrency(cents)), 0);
    huge.Value = INT64_MAX;
    tiny.Value = INT64_MIN;
    EXPECT_GT(clsVariantCurrency(huge).Compare(clsVariantCurrency(tiny)), 0);

    // Date-times compare by their packed bytes, and with a text through Parse.
    clsVariantDateTime early(clsDateTime(2001, 2, 3, 23, 59)), late(clsDateTime(2001, 2, 4));
    EXPECT_LT(early.Compare(late), 0);
    EXPECT_EQ(late.Compare(clsVariantString("04/02/2001")), 0);
    EXPECT_TRUE(early <= late);
    EXPECT_FALSE(early >= late);
}

TEST(Variant, DateTimeAsNumberAndText) {
    const clsDateTime when(2001, 2, 3, 12, 0);
    const clsVariantDateTime t(when);
    // The numeric getters give the packed word: year, month, day, hour, minute, milliseconds, high bytes
    // first; an invalid word (30 February) gives the null date-time.
    EXPECT_EQ(t.GetUInt64(), 0x07D1'02'03'0C'00'0000ULL);
    EXPECT_TRUE(clsVariantUInt64(t.GetUInt64()).GetDateTime() == when);
    EXPECT_TRUE(clsVariantUInt64(0x07D1'02'1E'00'00'0000ULL).GetDateTime().IsNull());

    // Into text a date-time becomes its day number with the time of day as a fraction (see the date-time
    // tests for 730883); a text reads through Parse.
    EXPECT_EQ(Bytes(SetTo<clsVariantString>(when).Value), "730883.5");
    EXPECT_TRUE(clsVariantString("03/02/2001 12:00").GetDateTime() == when);
    EXPECT_EQ(Bytes(t.GetString()), "03/02/2001 12:00:00");
    EXPECT_EQ(Bytes(t.ToSqlText()), "'2001-02-03 12:00:00'");
    EXPECT_EQ(Bytes(clsVariantDateTime().ToSqlText()), "NULL");
    EXPECT_TRUE(SetTo<clsVariantDateTime>(clsString("31/02/2001")).Value.IsNull());
}

TEST(Currency, RoundingAndText) {
    EXPECT_EQ(clsCurrency(-2.5).Value, -250);
    EXPECT_EQ(clsCurrency(-0.125).Value, -13);
    EXPECT_EQ(clsCurrency(1e300).Value, INT64_MAX);
    clsCurrency extreme, unscaled;
    extreme.Value = INT64_MIN;
    unscaled.Value = 5;
    unscaled.Decimals = 20; // beyond the table of powers: reads as 0
    EXPECT_EQ(unscaled.ToDouble(), 0);

    // Text(comma, group): the decimal mark is ',' with comma, and group puts the other mark every 3 digits.
    CheckRows<std::string>(
        {TEXT(clsCurrency(0.05).Text(true, false), "0,05"), TEXT(clsCurrency(-0.001).Text(), "0.00"),
         TEXT(clsCurrency(999).Text(false, true), "999.00"),
         TEXT(clsCurrency(-1234567.891).Text(true, true), "-1.234.567,89"),
         TEXT(clsCurrency(1234.5, 0).Text(false, true), "1,235"), TEXT(clsCurrency(0.5, 3).Text(), "0.500"),
         TEXT(extreme.Text(false, true), "-92,233,720,368,547,758.08"), TEXT(unscaled.Text(), "0")});
}
