#include "nuvobase/clsdatetime.h"

#include <algorithm>
#include <cstring>
#include <ctime>
#include <initializer_list>
#include <mutex>
#include <utility>

namespace nuvobase {

namespace {

constexpr int LastYear = 9999;
constexpr int64_t MillisecondsPerDay = 24 * 60 * 60 * 1000;

const int MonthLengths[2][12] = {
    {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31},
    {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31},
};

// Days before 1 January of each year 0..LastYear+1, built once on first use.
const int64_t* YearStarts() {
    static const auto table = [] {
        static int64_t starts[LastYear + 2];
        starts[0] = 0;
        for (int year = 0; year <= LastYear; year++)
            starts[year + 1] = starts[year] + (clsDateTime::IsLeapYear(year) ? 366 : 365);
        return starts;
    }();
    return table;
}

// A decimal number read as atoi reads it, clamped to the 32-bit range.
int64_t ReadNumber(const clsString& text) {
    return std::clamp<int64_t>(text.ToDecimal(), INT32_MIN, INT32_MAX);
}

bool PartsAreValid(int64_t year, int64_t month, int64_t day, int64_t hour, int64_t minute, int64_t ms) {
    return year >= 1 && year <= LastYear && month >= 1 && month <= 12 && day >= 1 &&
           day <= clsDateTime::DaysInMonth(static_cast<int>(year), static_cast<int>(month)) && hour >= 0 &&
           hour <= 23 && minute >= 0 && minute <= 59 && ms >= 0 && ms < 60000;
}

// Cuts text at the first c: returns the number before it and keeps what follows.
int64_t TakeNumber(clsString& text, char c) {
    int64_t number = ReadNumber(text.BeforeChar(c));
    text = text.AfterChar(c);
    return number;
}

// The numbers, each with at least its count of digits, with mark between them.
clsString JoinNumbers(char mark, std::initializer_list<std::pair<int, int>> numbers) {
    clsString text;
    for (const auto& [value, digits] : numbers) {
        if (!text.IsEmpty()) text.Append(mark);
        text.Append(clsString(value, digits));
    }
    return text;
}

} // namespace

clsDateTime::clsDateTime(int year, int month, int day, int hour, int minute, int milliseconds) {
    Set(year, month, day, hour, minute, milliseconds);
}

bool clsDateTime::Set(int year, int month, int day, int hour, int minute, int milliseconds) {
    return Store(year, month, day, hour, minute, milliseconds);
}

bool clsDateTime::Store(int64_t year, int64_t month, int64_t day, int64_t hour, int64_t minute, int64_t ms) {
    Clear();
    if (!PartsAreValid(year, month, day, hour, minute, ms)) return false;
    const int64_t values[8] = {year >> 8, year & 0xFF, month, day, hour, minute, ms >> 8, ms & 0xFF};
    for (int i = 0; i < 8; i++) Bytes[i] = static_cast<uint8_t>(values[i]);
    return true;
}

void clsDateTime::Clear() {
    std::memset(Bytes, 0, sizeof(Bytes));
}

bool clsDateTime::IsNull() const {
    return Word() == 0;
}

bool clsDateTime::IsValid() const {
    return PartsAreValid(Year(), Month(), Day(), Hour(), Minute(), Milliseconds());
}

uint64_t clsDateTime::Word() const {
    uint64_t word = 0;
    for (uint8_t byte : Bytes) word = word << 8 | byte;
    return word;
}

bool clsDateTime::SetWord(uint64_t word) {
    for (int i = 7; i >= 0; i--, word >>= 8) Bytes[i] = static_cast<uint8_t>(word);
    if (IsValid()) return true;
    Clear();
    return false;
}

int64_t clsDateTime::ToDays() const {
    if (!IsValid()) return 0;
    const int* lengths = MonthLengths[IsLeapYear(Year())];
    int64_t days = YearStarts()[Year()] + Day() - 1;
    for (int month = 1; month < Month(); month++) days += lengths[month - 1];
    return days;
}

bool clsDateTime::FromDays(int64_t days) {
    Clear();
    const int64_t* starts = YearStarts();
    if (days < 0 || days >= starts[LastYear + 1]) return false;
    const int year = static_cast<int>(std::upper_bound(starts, starts + LastYear + 2, days) - starts) - 1;
    int dayOfYear = static_cast<int>(days - starts[year]);
    const int* lengths = MonthLengths[IsLeapYear(year)];
    int month = 1;
    while (dayOfYear >= lengths[month - 1]) dayOfYear -= lengths[month++ - 1];
    return Set(year, month, dayOfYear + 1);
}

double clsDateTime::DayNumber() const {
    const int64_t timeOfDay = (Hour() * 60 + Minute()) * 60000 + Milliseconds();
    return static_cast<double>(ToDays()) + static_cast<double>(timeOfDay) / MillisecondsPerDay;
}

clsDateTime clsDateTime::Now() {
    static std::mutex lock;
    struct tm local;
    {
        std::lock_guard<std::mutex> guard(lock);
        time_t now = time(nullptr);
        const struct tm* converted = localtime(&now);
        if (!converted) return clsDateTime();
        local = *converted;
    }
    return clsDateTime(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min,
                       local.tm_sec * 1000);
}

clsString clsDateTime::DateText() const {
    if (Day() == 0) return clsString();
    return JoinNumbers('/', {{Day(), 2}, {Month(), 2}, {Year(), 4}});
}

clsString clsDateTime::SortableDate() const {
    if (Day() == 0) return clsString();
    return JoinNumbers('-', {{Year(), 4}, {Month(), 2}, {Day(), 2}});
}

clsString clsDateTime::TimeText() const {
    clsString text = JoinNumbers(':', {{Hour(), 2}, {Minute(), 2}, {Milliseconds() / 1000, 2}});
    if (Milliseconds() % 1000 != 0) text.Append('.').Append(clsString(Milliseconds() % 1000, 3));
    return text;
}

clsString clsDateTime::Text() const {
    clsString text = DateText();
    if (text.IsEmpty() || (Hour() == 0 && Minute() == 0 && Milliseconds() == 0)) return text;
    text.Append(' ');
    text.Append(TimeText());
    return text;
}

bool clsDateTime::Parse(const clsString& source) {
    Clear();
    if (source.IsEmpty()) return false;
    clsString text(source);
    if (*text.At(4) == '-' && *text.At(7) == '-') {
        const int64_t year = TakeNumber(text, '-');
        const int64_t month = TakeNumber(text, '-');
        const int64_t day = TakeNumber(text, 'T');
        const int64_t hour = TakeNumber(text, ':');
        const int64_t minute = TakeNumber(text, ':');
        const int64_t seconds = ReadNumber(text);
        return Store(year, month, day, hour, minute, seconds * 1000);
    }
    text.ReplaceAll("-", "/").ReplaceAll(".", ":");
    if ((text.Size() == 6 || text.Size() == 8) && text.Find('/') < 0) text.Insert(4, '/').Insert(2, '/');
    if (text.Find('/') < 0) return FromDays(ReadNumber(text));
    const int64_t day = TakeNumber(text, '/');
    const int64_t month = TakeNumber(text, '/');
    int64_t year = TakeNumber(text, ' ');
    if (year < 40)
        year += 2000;
    else if (year < 100)
        year += 1900;
    const int64_t hour = TakeNumber(text, ':');
    const int64_t minute = TakeNumber(text, ':');
    const int64_t seconds = TakeNumber(text, ' ');
    const int64_t thousandths = TakeNumber(text, ' ');
    return Store(year, month, day, hour, minute, seconds * 1000 + thousandths);
}

int clsDateTime::DaysInMonth() const {
    return DaysInMonth(Year(), Month());
}

int clsDateTime::DaysInMonth(int year, int month) {
    return month >= 1 && month <= 12 ? MonthLengths[IsLeapYear(year)][month - 1] : 0;
}

bool clsDateTime::IsLeapYear(int year) {
    return year % 4 == 0 && year != 0 && (year % 100 != 0 || year % 400 == 0);
}

int clsDateTime::Compare(const clsDateTime& other) const {
    const int order = std::memcmp(Bytes, other.Bytes, sizeof(Bytes));
    return order < 0 ? -1 : (order > 0 ? 1 : 0);
}

} // namespace nuvobase
