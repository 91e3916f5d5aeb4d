// The variant classes: type codes, conversions between kinds, comparison, SQL text, and clsCurrency.
#include <gtest/gtest.h>

#include <memory>

#include "nuvobase/clsvariant.h"

using namespace nuvobase;

TEST(Variant, TypeCodesAndClones) {
    clsVariantBool b(true);
    clsVariantInt i(-3);
    clsVariantInt64 l(-4);
    clsVariantUInt64 u(5);
    clsVariantDouble d(0.5);
    clsVariantString s("x");
    clsVariantCurrency c(clsCurrency(1.25));
    clsVariantDateTime t(clsDateTime(2001, 2, 3));
    const clsVariant* all[] = {&b, &i, &l, &u, &d, &s, &c, &t};
    const char codes[] = "BCDELMNO";
    for (int k = 0; k < 8; k++) {
        EXPECT_EQ(all[k]->TypeCode(), codes[k]);
        std::unique_ptr<clsVariant> clone(all[k]->Clone());
        EXPECT_EQ(clone->TypeCode(), codes[k]);
        EXPECT_EQ(clone->Compare(*all[k]), 0);
        EXPECT_TRUE(clone->GetString() == all[k]->GetString());
        clone->Clear();
        EXPECT_EQ(clone->GetDouble(), 0);
    }
}

TEST(Variant, TextConversions) {
    clsVariantString s;
    // GetBool: false for empty text and a first character among 0 F N f n and space.
    for (const char* no : {"", "0", "False", "no", "N", " yes", "0.5"}) {
        s.Set(clsString(no));
        EXPECT_FALSE(s.GetBool()) << no;
    }
    for (const char* yes : {"true", "2", "-1", "x", "Yes"}) {
        s.Set(clsString(yes));
        EXPECT_TRUE(s.GetBool()) << yes;
    }
    s.SetText("-12");
    EXPECT_EQ(s.GetInt(), -12);
    EXPECT_EQ(s.GetInt64(), -12);
    EXPECT_EQ(s.GetUInt64(), 12u); // ToUInt64 skips the sign
    s.SetText("0x1F");
    EXPECT_EQ(s.GetInt(), 0); // atoi stops at the x
    EXPECT_EQ(s.GetInt64(), 31);
    EXPECT_EQ(s.GetDouble(), 31);
    s.SetText("1,234.5");
    EXPECT_EQ(s.GetDouble(), 1234.5);
    EXPECT_EQ(s.GetCurrency().Value, 123450);
    EXPECT_EQ(s.GetCurrency().Decimals, 2);
    s.SetText("24/12/99");
    EXPECT_EQ(s.GetDateTime().Year(), 1999);
    s.SetText(nullptr);
    EXPECT_TRUE(s.Value.IsEmpty());
    EXPECT_EQ(s.GetInt(), 0);

    // Numbers into text: decimal, doubles through FromDouble(value, -1), bools as 1 and 0.
    s.Set(int64_t{-9000000000});
    EXPECT_TRUE(s.Value == "-9000000000");
    s.Set(uint64_t{18446744073709551615u});
    EXPECT_TRUE(s.Value == "18446744073709551615");
    s.Set(2.50);
    EXPECT_TRUE(s.Value == "2.5");
    s.Set(true);
    EXPECT_TRUE(s.Value == "1");
    s.Set(static_cast<uint8_t>(200));
    EXPECT_TRUE(s.Value == "200");
    s.Set(clsCurrency(-2.5));
    EXPECT_TRUE(s.Value == "-2.50");
    s.Set("text"); // a C string is text, not a bool
    EXPECT_TRUE(s.Value == "text");
    EXPECT_TRUE(s.ToSqlText() == "'text'");
    s.SetText("it's");
    EXPECT_TRUE(s.ToSqlText() == "'it''s'");
}

TEST(Variant, NumberConversions) {
    clsVariantBool b;
    b.Set(clsString("no"));
    EXPECT_EQ(b.Value, 0);
    EXPECT_TRUE(b.ToSqlText() == "false");
    b.Set(clsString("yes"));
    EXPECT_EQ(b.Value, 1);
    b.Set(int64_t{7});
    EXPECT_TRUE(b.GetBool());
    EXPECT_TRUE(b.GetString() == "7"); // prints as the number it stores
    EXPECT_TRUE(b.ToSqlText() == "true");

    clsVariantInt i;
    i.Set(clsString("42abc"));
    EXPECT_EQ(i.Value, 42);
    i.Set(3.99);
    EXPECT_EQ(i.Value, 3);
    i.Set(1e20); // clamps instead of overflowing
    EXPECT_EQ(i.Value, INT32_MAX);
    i.Set(int64_t{-5});
    EXPECT_EQ(i.GetUInt64(), static_cast<uint64_t>(-5));
    EXPECT_EQ(i.GetShort(), -5);
    EXPECT_EQ(i.GetByte(), 251);
    EXPECT_FALSE(clsVariantInt(0).GetBool());

    clsVariantInt64 l;
    l.Set(clsString("-0x10"));
    EXPECT_EQ(l.Value, -16);
    clsVariantUInt64 u;
    u.Set(clsString("-7"));
    EXPECT_EQ(u.Value, 7u);
    u.Assign(clsVariantString("123"));
    EXPECT_EQ(u.Value, 123u);

    clsVariantDouble d;
    d.Set(clsString("  2.5e2"));
    EXPECT_EQ(d.Value, 250);
    EXPECT_TRUE(d.GetString() == "250");
    d.Set(0.125);
    EXPECT_TRUE(d.GetString() == "0.125");
    EXPECT_EQ(d.GetInt(), 0);
    EXPECT_EQ(d.GetCurrency().Value, 13); // 12.5 cents round away from zero

    // Assign reads the other through the getter of its own kind.
    i.Assign(clsVariantDouble(-7.8));
    EXPECT_EQ(i.Value, -7);
    b.Assign(clsVariantString("False"));
    EXPECT_EQ(b.Value, 0);
    b.Assign(clsVariantInt(9));
    EXPECT_EQ(b.Value, 1);
    clsVariantString s;
    s.Assign(clsVariantDouble(0.1));
    EXPECT_TRUE(s.Value == "0.1");
}

TEST(Variant, Compare) {
    // Numbers compare as doubles, whatever the other kind.
    EXPECT_EQ(clsVariantInt(5).Compare(clsVariantString("5.0")), 0);
    EXPECT_EQ(clsVariantInt(5).Compare(clsVariantDouble(5)), 0);
    EXPECT_LT(clsVariantInt(-1).Compare(clsVariantUInt64(0)), 0);
    EXPECT_GT(clsVariantDouble(0.5).Compare(clsVariantBool(false)), 0);
    // A text compares with the other's text, ignoring ASCII case: "5.0" is not "5".
    EXPECT_EQ(clsVariantString("abc").Compare(clsVariantString("ABC")), 0);
    EXPECT_NE(clsVariantString("5.0").Compare(clsVariantInt(5)), 0);
    EXPECT_LT(clsVariantString("10").Compare(clsVariantInt(9)), 0);
    EXPECT_GT(clsVariantString("b").Compare(clsVariantString("A")), 0);
    EXPECT_LT(clsVariantString("ab").Compare(clsVariantString("ABC")), 0);
    // An emptied text (buffer kept) equals one that never had a buffer.
    clsVariantString emptied("x");
    emptied.Value.SetLength(0);
    EXPECT_EQ(emptied.Compare(clsVariantString()), 0);
    EXPECT_EQ(clsVariantString().Compare(emptied), 0);
    EXPECT_LT(emptied.Compare(clsVariantString("a")), 0);

    EXPECT_TRUE(clsVariantInt(5) == clsVariantDouble(5.0));
    EXPECT_TRUE(clsVariantInt(4) < clsVariantDouble(4.5));
    EXPECT_TRUE(clsVariantInt(5) > clsVariantString("4.9"));
    EXPECT_TRUE(clsVariantInt(5) >= clsVariantInt(5));
    EXPECT_TRUE(clsVariantString("abc") >= clsVariantString("ABC"));
    EXPECT_TRUE(clsVariantString("abd") >= clsVariantString("ABC"));
    EXPECT_FALSE(clsVariantString("ab") >= clsVariantString("abc"));
    EXPECT_TRUE(clsVariantString("ab") <= clsVariantString("abc"));

    // Currencies compare at a common scale.
    clsCurrency tenths(1.5, 1), cents(1.5);
    EXPECT_EQ(clsVariantCurrency(tenths).Compare(clsVariantCurrency(cents)), 0);
    clsCurrency huge, tiny;
    huge.Value = INT64_MAX;
    tiny.Value = INT64_MIN;
    EXPECT_GT(clsVariantCurrency(huge).Compare(clsVariantCurrency(tiny)), 0); // no overflow of the difference
    EXPECT_LT(clsVariantCurrency(tiny).Compare(clsVariantCurrency(huge)), 0);
    EXPECT_GT(clsVariantCurrency(cents).Compare(clsVariantInt(1)), 0);

    // Date-times compare by their packed bytes.
    clsVariantDateTime early(clsDateTime(2001, 2, 3, 23, 59)), late(clsDateTime(2001, 2, 4));
    EXPECT_LT(early.Compare(late), 0);
    EXPECT_GT(late.Compare(early), 0);
    EXPECT_EQ(late.Compare(clsVariantString("04/02/2001")), 0);
    EXPECT_TRUE(early <= late);
    EXPECT_TRUE(late >= early);
    EXPECT_FALSE(early >= late);
}

TEST(Variant, DateTimeAsNumberAndText) {
    const clsDateTime when(2001, 2, 3, 12, 0);
    clsVariantDateTime t(when);
    // The numeric getters give the packed word: year, month, day, hour, minute, milliseconds, high bytes
    // first.
    EXPECT_EQ(t.GetUInt64(), 0x07D1'02'03'0C'00'0000ULL);
    EXPECT_EQ(t.GetDouble(), static_cast<double>(0x07D1'02'03'0C'00'0000ULL));
    clsVariantUInt64 packed(t.GetUInt64());
    EXPECT_TRUE(packed.GetDateTime() == when);
    packed.Value = 0x07D1'02'1E'00'00'0000ULL; // 30 February: invalid, so null
    EXPECT_TRUE(packed.GetDateTime().IsNull());
    clsVariantInt64 back;
    back.Set(when);
    EXPECT_EQ(back.GetDateTime().Text(), when.Text());

    // Into text a date-time becomes its day number with the time of day as a fraction. (730883 is Python's
    // date(2001, 2, 3).toordinal() + 364: day 0 is 1 January of year 0, which has 365 days.)
    clsVariantString s;
    s.Set(when);
    EXPECT_TRUE(s.Value == "730883.5");
    s.SetText("0730883"); // 7 characters, so not read as ddmmyy: a day number
    EXPECT_TRUE(s.GetDateTime() == clsDateTime(2001, 2, 3));
    EXPECT_TRUE(t.GetString() == "03/02/2001 12:00:00");
    EXPECT_TRUE(t.ToSqlText() == "'2001-02-03 12:00:00'");
    EXPECT_TRUE(clsVariantDateTime().ToSqlText() == "NULL");
    EXPECT_FALSE(clsVariantDateTime().GetBool());
    t.Set(clsString("31/02/2001"));
    EXPECT_TRUE(t.Value.IsNull());
}

TEST(Currency, RoundingAndText) {
    EXPECT_EQ(clsCurrency(-2.5).Value, -250);
    EXPECT_TRUE(clsCurrency(-2.5).Text(false, true) == "-2.50");
    EXPECT_TRUE(clsCurrency(0.05).Text(true, false) == "0,05");
    EXPECT_TRUE(clsCurrency(0).Text() == "0.00");
    EXPECT_TRUE(clsCurrency(-0.001).Text() == "0.00");
    EXPECT_EQ(clsCurrency(0.125).Value, 13);
    EXPECT_EQ(clsCurrency(-0.125).Value, -13);
    EXPECT_TRUE(clsCurrency(999).Text(false, true) == "999.00");
    EXPECT_TRUE(clsCurrency(1000).Text(false, true) == "1,000.00");
    EXPECT_TRUE(clsCurrency(1234567.891).Text(false, true) == "1,234,567.89");
    EXPECT_TRUE(clsCurrency(-1234567.891).Text(true, true) == "-1.234.567,89");
    EXPECT_TRUE(clsCurrency(1234567.891).Text(true, false) == "1234567,89");
    EXPECT_TRUE(clsCurrency(1234.5, 0).Text(false, true) == "1,235");
    EXPECT_TRUE(clsCurrency(0.5, 3).Text() == "0.500");
    clsCurrency extreme;
    extreme.Value = INT64_MIN;
    EXPECT_TRUE(extreme.Text(false, true) == "-92,233,720,368,547,758.08");
    EXPECT_EQ(clsCurrency(1e300).Value, INT64_MAX);

    EXPECT_EQ(clsCurrency(-2.5).ToDouble(), -2.5);
    clsCurrency unscaled;
    unscaled.Value = 5;
    unscaled.Decimals = 20; // beyond the table of powers: reads as 0
    EXPECT_EQ(unscaled.ToDouble(), 0);
    EXPECT_TRUE(unscaled.Text() == "0");
}
