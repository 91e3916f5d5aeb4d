// clsDateTime: validity, day numbers, the text forms and Parse.
#include <gtest/gtest.h>

#include "nuvobase/clsdatetime.h"
#include "rows.h"

using namespace nuvobase;
using nuvobase_test::CheckRows;

namespace {

// Text() of what Parse makes of text, or "invalid"; an invalid text clears what was there.
std::string Parsed(const char* text) {
    clsDateTime when(2001, 1, 1);
    const bool valid = when.Parse(clsString(text));
    EXPECT_EQ(valid, when.IsValid()) << text;
    EXPECT_EQ(valid, !when.IsNull()) << text;
    return valid ? nuvobase_test::Bytes(when.Text()) : "invalid";
}

} // namespace

TEST(DateTime, ValidityOrderDayNumbersTextsAndParse) {
    struct Parts {
        int year, month, day, hour, minute, milliseconds;
        bool valid;
    };
    const Parts parts[] = {{2000, 2, 29, 0, 0, 0, true},  {1900, 2, 29, 0, 0, 0, false},
                           {2001, 4, 31, 0, 0, 0, false}, {9999, 12, 31, 23, 59, 59999, true},
                           {10000, 1, 1, 0, 0, 0, false}, {0, 1, 1, 0, 0, 0, false},
                           {2001, 1, 1, 24, 0, 0, false}, {2001, 1, 1, 0, 0, 60000, false}};
    for (const Parts& p : parts) {
        SCOPED_TRACE(testing::Message() << p.year << "-" << p.month << "-" << p.day << " " << p.hour << ":"
                                        << p.minute << " " << p.milliseconds);
        const clsDateTime when(p.year, p.month, p.day, p.hour, p.minute, p.milliseconds);
        EXPECT_EQ(when.IsValid(), p.valid);
        EXPECT_EQ(when.IsNull(), !p.valid);
    }
    // A packed word with a month of 13 is not taken; the packed bytes order chronologically.
    clsDateTime when(2001, 1, 1);
    const clsDateTime a(1999, 12, 31, 23, 59, 59999), b(2000, 1, 1), c(2000, 1, 1, 0, 0, 1);
    CheckRows<int>({ROW(when.SetWord(0x07D1'0D'01'00'00'0000ULL), false), ROW(when.IsNull(), true),
                    ROW(a.Compare(b) < 0, true), ROW(c.Compare(b) > 0, true)});
    EXPECT_EQ(b.Word(), 0x07D0'01'01'00'00'0000ULL);

    // Reference figures from Python: date.toordinal() counts 1 January of year 1 as 1; here day 0 is
    // 1 January of year 0, a year of 365 days, so ToDays = toordinal() + 364.
    EXPECT_EQ(clsDateTime(1, 1, 1).ToDays(), 365);
    EXPECT_EQ(clsDateTime(2001, 2, 3).ToDays(), 730883);
    // FromDays is the inverse over the whole range, midnight included.
    for (int64_t days = 365; days <= 3652423; days += 997) {
        clsDateTime when;
        ASSERT_TRUE(when.FromDays(days)) << days;
        EXPECT_EQ(when.ToDays(), days);
        EXPECT_EQ(when.Hour() + when.Minute() + when.Milliseconds(), 0);
    }
    clsDateTime cleared(2001, 1, 1, 5);
    CheckRows<int>({ROW(cleared.FromDays(364), false), // year 0 is no valid year
                    ROW(cleared.IsNull(), true), ROW(cleared.FromDays(3652424), false)});
    EXPECT_EQ(clsDateTime(2001, 2, 3, 18).DayNumber(), 730883.75);

    // Texts and Parse.
    const clsDateTime date(2001, 2, 3, 4, 5, 6007);
    CheckRows<std::string>({TEXT(date.SortableDate(), "2001-02-03"), TEXT(date.TimeText(), "04:05:06.007"),
                            TEXT(clsDateTime().Text(), "")});

    // Two-digit years pivot at 40; a text without '/' is a day number, but six characters read as ddmmyy.
    CheckRows<std::string>({ROW(Parsed("24/12/39"), "24/12/2039"), ROW(Parsed("24/12/40"), "24/12/1940"),
                            ROW(Parsed("24-12-99"), "24/12/1999"), ROW(Parsed("241299"), "24/12/1999"),
                            ROW(Parsed("24/12/99 1:2:3 4"), "24/12/1999 01:02:03.004"),
                            ROW(Parsed("24/12/99 10.20.30"), "24/12/1999 10:20:30"),
                            ROW(Parsed("2001-02-03T04:05:06"), "03/02/2001 04:05:06"),
                            ROW(Parsed("2001-13-03"), "invalid"), ROW(Parsed("730883"), "invalid"),
                            ROW(Parsed("0730883"), "03/02/2001"), ROW(Parsed(""), "invalid"),
                            ROW(Parsed("9999999999/99/9999999999 9999999999:99"), "invalid")});
}
