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

TEST(Variant, ConversionsComparisonsDateTimesAndCurrency) {
    // GetBool: false for empty text and a first character among 0 F N f n and space.
    for (const char* no : {"", "0", "False", "no", "N", " yes"})
        EXPECT_FALSE(clsVariantString(no).GetBool()) << no;
    for (const char* yes : {"true", "-1", "x"}) EXPECT_TRUE(clsVariantString(yes).GetBool()) << yes;
    clsVariantString s("x");
    s.SetText(nullptr);
    EXPECT_TRUE(s.Value.IsEmpty());
    // ToUInt64 skips the sign, atoi stops at the x; Assign reads through the getter of its own kind.
    clsVariantInt i;
    clsVariantBool b;
    CheckRows<int64_t>(
        {ROW(clsVariantString("-12").GetInt64(), -12), ROW(int64_t(clsVariantString("-12").GetUInt64()), 12),
         ROW(clsVariantString("0x1F").GetInt64(), 31),
         ROW(clsVariantString("1,234.5").GetCurrency().Value, 123450),
         ROW(SetTo<clsVariantInt>(3.99).Value, 3), ROW(SetTo<clsVariantInt>(1e20).Value, INT32_MAX),
         ROW(SetTo<clsVariantInt64>(clsString("-0x10")).Value, -16),
         ROW(SetTo<clsVariantDouble>(0.125).GetCurrency().Value, 13),
         ROW((i.Assign(clsVariantDouble(-7.8)), i.Value), -7), ROW((b.Assign(clsVariantInt(9)), b.Value), 1),
         ROW((b.Assign(clsVariantString("False")), b.Value), 0)});

    // A bool prints as the number it stores, and as true or false in SQL.
    CheckRows<std::string>({TEXT(SetTo<clsVariantString>(int64_t{-9000000000}).Value, "-9000000000"),
                            TEXT(SetTo<clsVariantString>(2.50).Value, "2.5"),
                            TEXT(SetTo<clsVariantString>(true).Value, "1"),
                            TEXT(SetTo<clsVariantString>(clsCurrency(-2.5)).Value, "-2.50"),
                            TEXT(clsVariantString("it's").ToSqlText(), "'it''s'"),
                            TEXT(SetTo<clsVariantBool>(int64_t{7}).GetString(), "7"),
                            TEXT(SetTo<clsVariantBool>(clsString("yes")).ToSqlText(), "true"),
                            TEXT(SetTo<clsVariantBool>(clsString("no")).ToSqlText(), "false"),
                            TEXT(SetTo<clsVariantDouble>(clsString("  2.5e2")).GetString(), "250")});

    // Numbers compare as doubles, texts as texts ("5.0" is not 5); currencies at a common scale, without
    // overflow at the ends of the range; date-times by their packed bytes, or with a text through Parse.
    clsVariantString emptied("x");
    emptied.Value.SetLength(0);
    clsCurrency tenths(1.5, 1), cents(1.5), huge, tiny;
    huge.Value = INT64_MAX;
    tiny.Value = INT64_MIN;
    const clsVariantDateTime early(clsDateTime(2001, 2, 3, 23, 59)), late(clsDateTime(2001, 2, 4));
    CheckRows<bool>({ROW(clsVariantInt(5).Compare(clsVariantString("5.0")) == 0, true),
                     ROW(clsVariantInt(-1).Compare(clsVariantUInt64(0)) < 0, true),
                     ROW(clsVariantString("5.0").Compare(clsVariantInt(5)) != 0, true),
                     ROW(clsVariantString("10").Compare(clsVariantInt(9)) < 0, true),
                     ROW(emptied.Compare(clsVariantString()) == 0, true),
                     ROW(clsVariantString("abc") >= clsVariantString("ABC"), true),
                     ROW(clsVariantCurrency(tenths).Compare(clsVariantCurrency(cents)) == 0, true),
                     ROW(clsVariantCurrency(huge).Compare(clsVariantCurrency(tiny)) > 0, true),
                     ROW(early.Compare(late) < 0, true),
                     ROW(late.Compare(clsVariantString("04/02/2001")) == 0, true)});

    // The numeric getters give the packed word; into text a date-time becomes its day number and fraction.
    const clsDateTime when(2001, 2, 3, 12, 0);
    const clsVariantDateTime t(when);
    EXPECT_EQ(t.GetUInt64(), 0x07D1'02'03'0C'00'0000ULL);
    CheckRows<bool>({ROW(clsVariantUInt64(t.GetUInt64()).GetDateTime() == when, true),
                     ROW(clsVariantUInt64(0x07D1'02'1E'00'00'0000ULL).GetDateTime().IsNull(), true),
                     ROW(clsVariantString("03/02/2001 12:00").GetDateTime() == when, true),
                     ROW(SetTo<clsVariantDateTime>(clsString("31/02/2001")).Value.IsNull(), true)});
    CheckRows<std::string>(
        {TEXT(SetTo<clsVariantString>(when).Value, "730883.5"), TEXT(t.GetString(), "03/02/2001 12:00:00"),
         TEXT(t.ToSqlText(), "'2001-02-03 12:00:00'"), TEXT(clsVariantDateTime().ToSqlText(), "NULL")});

    // clsCurrency: rounding and text.
    clsCurrency extreme, unscaled;
    extreme.Value = INT64_MIN;
    unscaled.Value = 5;
    unscaled.Decimals = 20; // beyond the table of powers: reads as 0
    CheckRows<int64_t>({ROW(clsCurrency(-2.5).Value, -250), ROW(clsCurrency(-0.125).Value, -13),
                        ROW(clsCurrency(1e300).Value, INT64_MAX)});
    EXPECT_EQ(unscaled.ToDouble(), 0);

    // Text(comma, group): the decimal mark is ',' with comma, and group puts the other mark every 3 digits.
    CheckRows<std::string>(
        {TEXT(clsCurrency(0.05).Text(true, false), "0,05"), TEXT(clsCurrency(-0.001).Text(), "0.00"),
         TEXT(clsCurrency(-1234567.891).Text(true, true), "-1.234.567,89"),
         TEXT(clsCurrency(1234.5, 0).Text(false, true), "1,235"), TEXT(clsCurrency(0.5, 3).Text(), "0.500"),
         TEXT(extreme.Text(false, true), "-92,233,720,368,547,758.08"), TEXT(unscaled.Text(), "0")});
}
