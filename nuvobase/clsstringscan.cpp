// clsString: comparison, search, replacing and word reading.
#include <cstring>
#include <vector>

#include "nuvobase/asciichars.h"
#include "nuvobase/clsstring.h"

namespace nuvobase {

// Length of text up to its first NUL, at most limit (a negative limit: no bound).
static int ClippedLength(const char* text, int limit) {
    if (!text) return 0;
    if (limit < 0) return int(std::strlen(text));
    const void* nul = std::memchr(text, 0, size_t(limit));
    return nul ? int(static_cast<const char*>(nul) - text) : limit;
}

// Order ignoring ASCII case: the common prefix decides, then the lengths. -1, 0 or 1.
static int OrderIgnoringCase(const char* a, int aLength, const char* b, int bLength) {
    int common = aLength < bLength ? aLength : bLength;
    for (int i = 0; i < common; i++) {
        uint8_t x = uint8_t(AsciiLower(a[i])), y = uint8_t(AsciiLower(b[i]));
        if (x != y) return x < y ? -1 : 1;
    }
    return aLength < bLength ? -1 : aLength > bLength ? 1 : 0;
}

// Index of the first occurrence of needle in haystack at or after from, ignoring ASCII case; -1 if absent.
static int FindIgnoringCase(const char* haystack, int haystackLength, const char* needle, int needleLength,
                            int from) {
    if (needleLength <= 0 || from < 0) return -1;
    char first = AsciiLower(needle[0]);
    for (int i = from; i + needleLength <= haystackLength; i++)
        if (AsciiLower(haystack[i]) == first &&
            SameIgnoringCase(haystack + i + 1, needle + 1, needleLength - 1))
            return i;
    return -1;
}

// "first%middle%last": text starts with first, ends with last and holds middle between them. Without '%'
// the whole pattern is the start.
static bool MatchesPattern(const char* text, int length, const char* pattern, int patternLength) {
    int firstMark = -1, lastMark = -1;
    for (int i = 0; i < patternLength; i++)
        if (pattern[i] == '%') (firstMark < 0 ? firstMark : lastMark) = i;
    if (firstMark < 0) return patternLength <= length && SameIgnoringCase(text, pattern, patternLength);
    if (lastMark < 0) lastMark = firstMark;
    int firstLength = firstMark, lastLength = patternLength - lastMark - 1;
    int middleLength = lastMark - firstMark - 1 > 0 ? lastMark - firstMark - 1 : 0;
    if (firstLength + lastLength > length) return false;
    if (!SameIgnoringCase(text, pattern, firstLength)) return false;
    if (!SameIgnoringCase(text + length - lastLength, pattern + lastMark + 1, lastLength)) return false;
    return middleLength == 0 || FindIgnoringCase(text, length - lastLength, pattern + firstMark + 1,
                                                 middleLength, firstLength) >= 0;
}

// Result when a side is missing: null, or else empty after clipping. Equality agrees with the order, so a
// null side equals only another null side. The tests run in the usual order.
static int CompareWithMissing(bool leftMissing, bool rightMissing, int flags) {
    if (flags & clsString::CompareOrder) return leftMissing == rightMissing ? 0 : leftMissing ? -1 : 1;
    if (flags & (clsString::CompareEqual | clsString::CompareStartsWith | clsString::CompareEndsWith))
        return leftMissing && rightMissing;
    if (flags & clsString::CompareContains) return rightMissing;
    if (flags & clsString::CompareContainedIn) return leftMissing;
    if (flags & clsString::ComparePattern) return leftMissing && rightMissing;
    return 0;
}

int clsString::Compare(const char* text, int flags, int length) const {
    const char* left = Buffer;
    int leftLength = ClippedLength(left, Size());
    int rightLength = ClippedLength(text, length);
    if (flags & CompareExact)
        return leftLength == rightLength && std::memcmp(Text(), text ? text : "", size_t(leftLength)) == 0;
    if (!left || !text) return CompareWithMissing(!left, !text, flags);
    if (flags & CompareIgnoreTrailing) {
        while (leftLength > 0 && left[leftLength - 1] == ' ') leftLength--;
        while (rightLength > 0 && text[rightLength - 1] == ' ') rightLength--;
    }
    if (leftLength == 0 || rightLength == 0)
        return CompareWithMissing(leftLength == 0, rightLength == 0, flags);
    if (flags & CompareOrder) return OrderIgnoringCase(left, leftLength, text, rightLength);
    if (flags & CompareEqual) return leftLength == rightLength && SameIgnoringCase(left, text, leftLength);
    if (flags & CompareStartsWith)
        return rightLength <= leftLength && SameIgnoringCase(left, text, rightLength);
    if (flags & CompareEndsWith)
        return rightLength <= leftLength &&
               SameIgnoringCase(left + leftLength - rightLength, text, rightLength);
    if (flags & CompareContains) return FindIgnoringCase(left, leftLength, text, rightLength, 0) >= 0;
    if (flags & CompareContainedIn) return FindIgnoringCase(text, rightLength, left, leftLength, 0) >= 0;
    if (flags & ComparePattern) return MatchesPattern(left, leftLength, text, rightLength);
    return 0;
}

int clsString::Compare(const clsString& text, int flags) const {
    return Compare(text.Buffer, flags, text.Size());
}

bool clsString::operator==(const clsString& other) const {
    return Size() == other.Size() && SameIgnoringCase(Text(), other.Text(), Size());
}

bool clsString::operator==(const char* text) const {
    int length = text ? int(std::strlen(text)) : 0;
    return Size() == length && SameIgnoringCase(Text(), text, length);
}

bool clsString::operator<(const clsString& other) const {
    return OrderIgnoringCase(Text(), Size(), other.Text(), other.Size()) < 0;
}

bool clsString::operator>(const clsString& other) const {
    return OrderIgnoringCase(Text(), Size(), other.Text(), other.Size()) > 0;
}

int clsString::Find(char c, int from) const {
    if (from < 0 || from >= Size()) return -1;
    const void* found = std::memchr(Buffer + from, c, size_t(Length - from));
    return found ? int(static_cast<const char*>(found) - Buffer) : -1;
}

int clsString::FindLast(char c) const {
    for (int i = Size() - 1; i >= 0; i--)
        if (Buffer[i] == c) return i;
    return -1;
}

int clsString::FindOutsideQuotes(const char* text, int from, char quote1, char quote2) const {
    int length = Size(), textLength = text ? int(std::strlen(text)) : 0;
    if (textLength == 0 || from < 0 || from > length) return -1;
    for (int i = from; i + textLength <= length; i++) {
        if (SameIgnoringCase(Buffer + i, text, textLength)) return i;
        char c = Buffer[i];
        if (c && (c == quote1 || c == quote2)) {
            i = Find(c, i + 1);
            if (i < 0) return -1;
        }
    }
    return -1;
}

clsString& clsString::ReplaceAll(const char* from, const char* to) {
    int fromLength = from ? int(std::strlen(from)) : 0;
    if (Size() == 0 || fromLength == 0) return *this;
    if (Owns(from) || Owns(to)) return ReplaceAll(clsString(from).Text(), clsString(to).Text());
    if (!to) to = "";
    int toLength = int(std::strlen(to));
    std::vector<int> hits;
    for (int at = FindIgnoringCase(Buffer, Length, from, fromLength, 0); at >= 0;
         at = FindIgnoringCase(Buffer, Length, from, fromLength, at + fromLength))
        hits.push_back(at);
    if (hits.empty()) return *this;

    // Copies the replacement and the text behind occurrence k up to the next one.
    auto copyPiece = [&](char* out, int& written, size_t k) {
        std::memcpy(out + written, to, size_t(toLength));
        written += toLength;
        int start = hits[k] + fromLength, end = k + 1 < hits.size() ? hits[k + 1] : Length;
        std::memmove(out + written, Buffer + start, size_t(end - start));
        written += end - start;
    };
    int written = hits[0];
    if (toLength <= fromLength) {
        // In place: the write position never passes the read position.
        for (size_t k = 0; k < hits.size(); k++) copyPiece(Buffer, written, k);
        Length = written;
        Buffer[written] = Buffer[written + 1] = 0;
        return *this;
    }
    int64_t finalLength = Length + int64_t(hits.size()) * (toLength - fromLength);
    clsString result;
    if (result.Grow(finalLength + 2, false)) {
        std::memcpy(result.Buffer, Buffer, size_t(hits[0]));
        for (size_t k = 0; k < hits.size(); k++) copyPiece(result.Buffer, written, k);
        result.Length = written;
        result.Buffer[written] = 0;
    }
    return *this = std::move(result);
}

clsString clsString::NextWord(char separator, int& position, bool quoted, bool skipEmpty) const {
    int length = Size();
    while (position >= 0 && position < length) {
        int start = position, end = start;
        char quote = Buffer[start] == '"' ? '"' : '\'';
        bool inside = false;
        for (; end < length; end++) {
            if (quoted && Buffer[end] == quote)
                inside = !inside;
            else if (!inside && Buffer[end] == separator)
                break;
        }
        position = end + 1 < length ? end + 1 : -1;
        if (end > start || !skipEmpty) return Mid(start, end - start);
    }
    position = -1;
    return clsString();
}

} // namespace nuvobase
