// Character tests and case folding for single-byte text. ASCII letters only, independent of the locale.
#pragma once

namespace nuvobase {

inline bool IsAsciiDigit(char c) {
    return c >= '0' && c <= '9';
}
// True for one ASCII digit or more and nothing else.
inline bool IsAsciiDigits(const char* text) {
    if (*text == 0) return false;
    for (; *text; ++text)
        if (!IsAsciiDigit(*text)) return false;
    return true;
}
inline bool IsAsciiUpper(char c) {
    return c >= 'A' && c <= 'Z';
}
inline bool IsAsciiLower(char c) {
    return c >= 'a' && c <= 'z';
}
inline bool IsAsciiLetter(char c) {
    return IsAsciiUpper(c) || IsAsciiLower(c);
}
inline bool IsAsciiAlnum(char c) {
    return IsAsciiLetter(c) || IsAsciiDigit(c);
}
inline char AsciiLower(char c) {
    return IsAsciiUpper(c) ? char(c + ('a' - 'A')) : c;
}
inline char AsciiUpper(char c) {
    return IsAsciiLower(c) ? char(c - ('a' - 'A')) : c;
}

// True when the n bytes at a and b are equal, ignoring ASCII case.
inline bool SameIgnoringCase(const char* a, const char* b, int n) {
    for (int i = 0; i < n; i++)
        if (AsciiLower(a[i]) != AsciiLower(b[i])) return false;
    return true;
}

} // namespace nuvobase
