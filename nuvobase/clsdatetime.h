// clsDateTime: a calendar time packed into eight bytes, most significant first, so that comparing the bytes
// (memcmp) orders two date-times: year (two bytes), month, day, hour, minute, milliseconds within the
// minute (two bytes). All zero is the null date-time. The calendar is the proleptic Gregorian one.
#pragma once

#include <cstdint>

#include "nuvobase/clsstring.h"

namespace nuvobase {

class clsDateTime {
public:
    // The packed bytes in order of significance; this is also the byte order of the binary variant format.
    uint8_t Bytes[8] = {};

    clsDateTime() = default;
    // The given date and time, or the null date-time if they do not form a valid one.
    clsDateTime(int year, int month, int day, int hour = 0, int minute = 0, int milliseconds = 0);

    int Year() const { return Bytes[0] << 8 | Bytes[1]; }
    int Month() const { return Bytes[2]; }
    int Day() const { return Bytes[3]; }
    int Hour() const { return Bytes[4]; }
    int Minute() const { return Bytes[5]; }
    // Milliseconds within the minute: seconds * 1000 plus the thousandths.
    int Milliseconds() const { return Bytes[6] << 8 | Bytes[7]; }

    // Stores the parts if they form a valid date-time, else makes it null. Returns the validity.
    bool Set(int year, int month, int day, int hour = 0, int minute = 0, int milliseconds = 0);
    void Clear();
    bool IsNull() const;
    // Year 1..9999, month 1..12, day within the month, hour <= 23, minute <= 59, milliseconds < 60000.
    bool IsValid() const;

    // The packed bytes read as one number, the year's high byte most significant.
    uint64_t Word() const;
    // Stores a packed number; an invalid one leaves the null date-time. Returns the validity.
    bool SetWord(uint64_t word);
    static clsDateTime FromWord(uint64_t word) {
        clsDateTime result;
        result.SetWord(word);
        return result;
    }

    // Days since 1 January of year 0 (that day is 0). Year 0 counts 365 days.
    int64_t ToDays() const;
    // The date of day number days, at midnight. An invalid date leaves the null date-time; returns validity.
    bool FromDays(int64_t days);
    // The day number plus the time as a fraction of the day: the number that stands for a date-time in text.
    double DayNumber() const;

    // Local time, to the second, taken under a lock. An invalid result gives the null date-time.
    static clsDateTime Now();

    clsString DateText() const;     // dd/mm/yyyy, empty for a null day
    clsString SortableDate() const; // yyyy-mm-dd, empty for a null day
    clsString TimeText() const;     // hh:mm:ss, then .mmm when the thousandths are not 0
    clsString Text() const;         // DateText, then a space and TimeText unless the time is 0:00:00.000

    // Reads "yyyy-mm-ddThh:mm:ss", "dd/mm/yy[yy] hh:mm:ss thousandths" (with '-' or '.' accepted for the
    // marks), "ddmmyy", "ddmmyyyy", or a day number. Two-digit years: below 40 are 20xx, 40 to 99 are 19xx.
    // Returns whether the result is valid; an invalid one is null.
    bool Parse(const clsString& text);

    // Length of the stored month (0 for an invalid month).
    int DaysInMonth() const;
    static int DaysInMonth(int year, int month);
    static bool IsLeapYear(int year);

    // The memcmp order of the packed bytes.
    int Compare(const clsDateTime& other) const;
    bool operator==(const clsDateTime& other) const { return Compare(other) == 0; }

private:
    // Set for parts that may lie far outside their ranges, as read from text.
    bool Store(int64_t year, int64_t month, int64_t day, int64_t hour, int64_t minute, int64_t milliseconds);
};

} // namespace nuvobase
