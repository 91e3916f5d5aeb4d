// clsDateTime: validity, day numbers, the text forms and Parse.
#include <gtest/gtest.h>

#include "nuvobase/clsdatetime.h"

using namespace nuvobase;

namespace {

// Parses text and gives its Text(), or "invalid".
clsString Parsed(const char* text) {
    clsDateTime when;
    const bool valid = when.Parse(clsString(text));
    EXPECT_EQ(valid, when.IsValid()) << text;
    EXPECT_EQ(valid, !when.IsNull()) << text;
    return valid ? when.Text() : clsString("invalid");
}

} // namespace

TEST(DateTime, Validity) {
    EXPECT_TRUE(clsDateTime().IsNull());
    EXPECT_FALSE(clsDateTime().IsValid());
    EXPECT_TRUE(clsDateTime(2000, 2, 29).IsValid()); // divisible by 400
    EXPECT_TRUE(clsDateTime(2004, 2, 29).IsValid());
    EXPECT_TRUE(clsDateTime(1900, 2, 29).IsNull()); // a century not divisible by 400
    EXPECT_TRUE(clsDateTime(2001, 2, 29).IsNull());
    EXPECT_TRUE(clsDateTime(2001, 4, 31).IsNull());
    EXPECT_TRUE(clsDateTime(9999, 12, 31, 23, 59, 59999).IsValid());
    EXPECT_TRUE(clsDateTime(10000, 1, 1).IsNull());
    EXPECT_TRUE(clsDateTime(0, 1, 1).IsNull());
    EXPECT_TRUE(clsDateTime(2001, 13, 1).IsNull());
    EXPECT_TRUE(clsDateTime(2001, 1, 0).IsNull());
    EXPECT_TRUE(clsDateTime(2001, 1, 1, 24).IsNull());
    EXPECT_TRUE(clsDateTime(2001, 1, 1, 0, 60).IsNull());
    EXPECT_TRUE(clsDateTime(2001, 1, 1, 0, 0, 60000).IsNull());
    EXPECT_TRUE(clsDateTime(2001, 1, 1, 0, 0, -1).IsNull());
    EXPECT_FALSE(clsDateTime::IsLeapYear(0));
    EXPECT_EQ(clsDateTime(2000, 2, 1).DaysInMonth(), 29);
    EXPECT_EQ(clsDateTime(1900, 2, 1).DaysInMonth(), 28);
    EXPECT_EQ(clsDateTime().DaysInMonth(), 0);
    // A packed word with a month of 13 is not taken.
    clsDateTime when(2001, 1, 1);
    EXPECT_FALSE(when.SetWord(0x07D1'0D'01'00'00'0000ULL));
    EXPECT_TRUE(when.IsNull());
}

TEST(DateTime, PackedBytesOrderChronologically) {
    const clsDateTime a(1999, 12, 31, 23, 59, 59999), b(2000, 1, 1), c(2000, 1, 1, 0, 0, 1);
    EXPECT_LT(a.Compare(b), 0);
    EXPECT_LT(b.Compare(c), 0);
    EXPECT_GT(c.Compare(a), 0);
    EXPECT_EQ(b.Compare(clsDateTime(2000, 1, 1)), 0);
    EXPECT_LT(a.Word(), b.Word());
    EXPECT_EQ(b.Word(), 0x07D0'01'01'00'00'0000ULL);
}

TEST(DateTime, DayNumbers) {
    // Reference figures from Python: date.toordinal() counts 1 January of year 1 as 1; here day 0 is
    // 1 January of year 0, a year of 365 days, so ToDays = toordinal() + 364.
    EXPECT_EQ(clsDateTime(1, 1, 1).ToDays(), 365);
    EXPECT_EQ(clsDateTime(1, 1, 2).ToDays(), 366);
    EXPECT_EQ(clsDateTime(2001, 2, 3).ToDays(), 730883);
    EXPECT_EQ(clsDateTime(9999, 12, 31).ToDays(), 3652423);
    EXPECT_EQ(clsDateTime(2000, 1, 1).ToDays() - clsDateTime(1970, 1, 1).ToDays(), 10957);
    // FromDays is the inverse over the whole range, midnight included.
    for (int64_t days = 365; days <= 3652423; days += 997) {
        clsDateTime when;
        ASSERT_TRUE(when.FromDays(days)) << days;
        EXPECT_EQ(when.ToDays(), days);
        EXPECT_EQ(when.Hour() + when.Minute() + when.Milliseconds(), 0);
    }
    clsDateTime when(2001, 1, 1, 5);
    EXPECT_FALSE(when.FromDays(364)); // year 0 is no valid year
    EXPECT_TRUE(when.IsNull());
    EXPECT_FALSE(when.FromDays(3652424));
    EXPECT_FALSE(when.FromDays(-1));
    EXPECT_TRUE(when.FromDays(3652423));
    EXPECT_TRUE(when == clsDateTime(9999, 12, 31));
    EXPECT_EQ(clsDateTime(2001, 2, 3, 18).DayNumber(), 730883.75);
}

TEST(DateTime, Texts) {
    const clsDateTime date(2001, 2, 3);
    EXPECT_TRUE(date.DateText() == "03/02/2001");
    EXPECT_TRUE(date.SortableDate() == "2001-02-03");
    EXPECT_TRUE(date.TimeText() == "00:00:00");
    EXPECT_TRUE(date.Text() == "03/02/2001"); // no time part at midnight
    EXPECT_TRUE(clsDateTime(2001, 2, 3, 4, 5, 6000).Text() == "03/02/2001 04:05:06");
    EXPECT_TRUE(clsDateTime(2001, 2, 3, 0, 0, 7).Text() == "03/02/2001 00:00:00.007");
    EXPECT_TRUE(clsDateTime(987, 12, 24, 13, 59, 59999).Text() == "24/12/0987 13:59:59.999");
    EXPECT_TRUE(clsDateTime().DateText().IsEmpty());
    EXPECT_TRUE(clsDateTime().SortableDate().IsEmpty());
    EXPECT_TRUE(clsDateTime().Text().IsEmpty());
}

TEST(DateTime, Parse) {
    // Two-digit years pivot at 40.
    EXPECT_TRUE(Parsed("24/12/99") == "24/12/1999");
    EXPECT_TRUE(Parsed("24/12/39") == "24/12/2039");
    EXPECT_TRUE(Parsed("24/12/40") == "24/12/1940");
    EXPECT_TRUE(Parsed("24/12/0") == "24/12/2000");
    EXPECT_TRUE(Parsed("24/12/100") == "24/12/0100"); // three digits: no pivot
    EXPECT_TRUE(Parsed("24/12/1999") == "24/12/1999");
    EXPECT_TRUE(Parsed("31/02/2001") == "invalid");
    EXPECT_TRUE(Parsed("29/02/2000") == "29/02/2000");
    // '-' works as '/', and ddmmyy / ddmmyyyy without marks.
    EXPECT_TRUE(Parsed("24-12-99") == "24/12/1999");
    EXPECT_TRUE(Parsed("241299") == "24/12/1999");
    EXPECT_TRUE(Parsed("24122039") == "24/12/2039");
    // Times: hour and minute up to ':', seconds and thousandths up to a space; '.' works as ':'.
    EXPECT_TRUE(Parsed("24/12/99 10:20") == "24/12/1999 10:20:00");
    EXPECT_TRUE(Parsed("24/12/1999 10:20:30 500") == "24/12/1999 10:20:30.500");
    EXPECT_TRUE(Parsed("24/12/1999 10.20.30") == "24/12/1999 10:20:30");
    EXPECT_TRUE(Parsed("24/12/1999 24:00") == "invalid");
    EXPECT_TRUE(Parsed("24/12/1999 10:20:60") == "invalid");
    // ISO-like.
    EXPECT_TRUE(Parsed("2001-02-03T04:05:06") == "03/02/2001 04:05:06");
    EXPECT_TRUE(Parsed("2001-02-03") == "03/02/2001");
    EXPECT_TRUE(Parsed("2001-02-03T04") == "03/02/2001 04:00:00");
    EXPECT_TRUE(Parsed("2001-13-03") == "invalid");
    // A text without '/' (after the rules above) is a day number.
    EXPECT_TRUE(Parsed("730883") == "invalid"); // six characters: read as ddmmyy, 73/08/83
    EXPECT_TRUE(Parsed("0730883") == "03/02/2001");
    EXPECT_TRUE(Parsed("365") == "01/01/0001");
    EXPECT_TRUE(Parsed("364") == "invalid");
    // Nothing, or nonsense.
    EXPECT_TRUE(Parsed("") == "invalid");
    EXPECT_TRUE(Parsed("abc") == "invalid");
    EXPECT_TRUE(Parsed("99999999999/99999999999/9999999999999 9999999999:9999999999:99999999999") ==
                "invalid");

    // An invalid text clears what was there.
    clsDateTime when(2001, 1, 1);
    EXPECT_FALSE(when.Parse(clsString("31/02/2001")));
    EXPECT_TRUE(when.IsNull());
}

TEST(DateTime, NowIsValid) {
    const clsDateTime now = clsDateTime::Now();
    EXPECT_TRUE(now.IsValid());
    EXPECT_GE(now.Year(), 2020);
    EXPECT_EQ(now.Milliseconds() % 1000, 0);
}
