// clsString: numbers, presentation, file names and files.
#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "nuvobase/asciichars.h"
#include "nuvobase/clsstring.h"

namespace nuvobase {

// --- numbers to text
// ----------------------------------------------------------------------------------------

clsString& clsString::FromInt(int64_t value) {
    return FromUInt(value < 0 ? 0 - uint64_t(value) : uint64_t(value), value < 0);
}

clsString& clsString::FromUInt(uint64_t value, bool negative, int base, int minDigits) {
    if (base < 2 || base > 36) base = 10;
    char digits[64];
    int count = 0;
    do {
        digits[count++] = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ"[value % uint64_t(base)];
        value /= uint64_t(base);
    } while (value);
    int width = std::max(count, minDigits);
    if (!Grow(int64_t(width) + negative + 1, false)) return *this;
    if (negative) Buffer[Length++] = '-';
    std::memset(Buffer + Length, '0', size_t(width - count));
    Length += width - count;
    while (count) Buffer[Length++] = digits[--count];
    Buffer[Length] = 0;
    return *this;
}

clsString& clsString::FromDouble(double value, int decimals) {
    bool trim = decimals < 0;
    char area[256];
    int written = std::snprintf(area, sizeof area, "%-.*lf", trim ? 10 : decimals, value);
    if (written <= 0 || written >= int(sizeof area)) return Assign("0");
    std::replace(area, area + written, ',', '.');
    if (trim && std::memchr(area, '.', size_t(written))) {
        while (area[written - 1] == '0') written--;
        if (area[written - 1] == '.') written--;
    }
    return Assign(area, written);
}

clsString& clsString::ToHexFixed(uint64_t value) {
    for (int i = Size() - 1; i >= 0; i--, value >>= 4) Buffer[i] = "0123456789ABCDEF"[value & 15];
    return *this;
}

// --- text to numbers
// ----------------------------------------------------------------------------------------

// Value of c as a digit: 0-9, then letters from 10 up; 255 for anything else.
static unsigned DigitValue(char c) {
    if (IsAsciiDigit(c)) return unsigned(c - '0');
    if (IsAsciiLetter(c)) return unsigned(AsciiLower(c) - 'a' + 10);
    return 255;
}

// Reads a "0x" or "0b" prefix at offset 0 or 1 of text, moving text behind it. Returns the base.
static unsigned ReadRadix(const char*& text) {
    for (int offset = 0; offset < 2 && text[offset]; offset++) {
        if (text[offset] != '0') continue;
        char mark = AsciiLower(text[offset + 1]);
        if (mark == 'x' || mark == 'b') {
            text += offset + 2;
            return mark == 'x' ? 16 : 2;
        }
    }
    return 10;
}

// Accumulates the digits of base at text, moving text behind them, optionally skipping ','. 64-bit overflow
// wraps. digitCount receives the number of digits read.
static uint64_t ReadDigits(const char*& text, unsigned base, bool skipCommas, int& digitCount) {
    uint64_t value = 0;
    digitCount = 0;
    for (;; text++) {
        if (skipCommas && *text == ',') continue;
        unsigned digit = DigitValue(*text);
        if (digit >= base) return value;
        value = value * base + digit;
        digitCount++;
    }
}

static uint64_t ParseUInt64(const char* text) {
    if (!text) return 0;
    while (*text == ' ') text++;
    if (*text == '-') text++;
    while (*text == ' ') text++;
    unsigned base = ReadRadix(text);
    int digits;
    return ReadDigits(text, base, false, digits);
}

uint64_t clsString::ToUInt64() const {
    return ParseUInt64(Buffer);
}

// 10^n for n digits of a fraction: exact from the table below 12, by pow from there on.
static double PowerOfTen(int n) {
    static const double exact[12] = {1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11};
    return n < 12 ? exact[n] : std::pow(10.0, n);
}

// An exponent is itself read as a number, which may carry an exponent of its own. Nesting deeper than this
// is read without further exponents, so that no text can exhaust the stack.
static constexpr int MaxExponentNesting = 32;

static double ParseDoubleNested(const char* text, int nesting) {
    if (!text) return 0;
    bool negative = *text == '-';
    if (negative) text++;
    unsigned base = ReadRadix(text);
    int digits;
    double value = double(ReadDigits(text, base, true, digits));
    if (*text == '.' || *text == ',') {
        text++;
        double fraction = double(ReadDigits(text, base, false, digits));
        value += fraction / PowerOfTen(digits);
    }
    double exponent = 0;
    if ((*text == 'E' || *text == 'e') && nesting < MaxExponentNesting)
        exponent = ParseDoubleNested(text + 1, nesting + 1);
    if (negative) value = -value;
    return exponent != 0 ? value * std::pow(10.0, exponent) : value;
}

double clsString::ParseDouble(const char* text) {
    return ParseDoubleNested(text, 0);
}

double clsString::ToDouble(double fallback) const {
    const char* text = Text();
    while (*text == ' ') text++;
    return *text ? ParseDouble(text) : fallback;
}

int64_t clsString::ToDecimal() const {
    return std::strtoll(Text(), nullptr, 10);
}

int64_t clsString::ToSigned() const {
    uint64_t value = 0; // unsigned, so that any text wraps instead of overflowing
    bool negative = false;
    for (const char* c = Text(); *c; c++) {
        unsigned char byte = uint8_t(*c);
        if (byte == '-')
            negative = true;
        else
            value = value * 10 + (byte > '9' ? byte - 55u : byte - 48u);
    }
    return int64_t(negative ? 0 - value : value);
}

int64_t clsString::ToSeconds() const {
    int colon = Find(':');
    if (colon < 0) return int64_t(ParseUInt64(Buffer) * 60);
    return int64_t(ParseUInt64(Buffer + colon + 1) + ParseUInt64(Buffer) * 60);
}

void clsString::ParseCell(int& column, int& row) const {
    uint32_t letters = 0, digits = 0; // unsigned: long references wrap instead of overflowing
    bool negative = false;
    for (const char* c = Text(); *c; c++) {
        if (*c == '$') {
            continue;
        } else if (*c == '-') {
            negative = true;
        } else if (IsAsciiLetter(*c)) {
            letters = letters * 26 + uint32_t(AsciiUpper(*c) - 'A' + 1);
        } else if (IsAsciiDigit(*c)) {
            digits = digits * 10 + uint32_t(*c - '0');
        } else {
            break;
        }
    }
    column = int(letters);
    row = int(negative ? 0 - digits : digits);
}

// --- presentation
// -------------------------------------------------------------------------------------------

clsString clsString::Quote(char q) const {
    if (!q) return *this;
    clsString result;
    if (!result.Grow(int64_t(Size()) * 2 + 3, false)) return result;
    result.Append(q);
    for (int i = 0; i < Size(); i++) {
        if (Buffer[i] == q) result.Append(q);
        result.Append(Buffer[i]);
    }
    return result.Append(q);
}

clsString& clsString::Unquote(char q) {
    int length = Size();
    char quote = length >= 2 ? Buffer[0] : 0;
    bool quoted = quote && Buffer[length - 1] == quote && (q ? quote == q : quote == '\'' || quote == '"');
    if (!quoted) return *this;
    int kept = 0;
    for (int i = 1; i < length - 1; i++) {
        Buffer[kept++] = Buffer[i];
        if (Buffer[i] == quote && Buffer[i + 1] == quote && i + 1 < length - 1) i++;
    }
    return SetLength(kept);
}

clsString clsString::ToXml() const {
    clsString result;
    result.Reserve(Size() + 1);
    for (int i = 0; i < Size(); i++) {
        switch (Buffer[i]) {
        case '&':
            result.Append("&amp;");
            break;
        case '\'':
            result.Append("&apos;");
            break;
        case '"':
            result.Append("&quot;");
            break;
        case '<':
            result.Append("&lt;");
            break;
        case '>':
            result.Append("&gt;");
            break;
        default:
            result.Append(Buffer[i]);
        }
    }
    return result;
}

clsString clsString::UnescapeC() const {
    auto isOctal = [](char c) { return c >= '0' && c <= '7'; };
    clsString result;
    result.Reserve(Size() + 1);
    int length = Size();
    for (int i = 0; i < length; i++) {
        char c = Buffer[i];
        if (c != '\\' || i + 1 >= length) {
            result.Append(c);
            continue;
        }
        c = Buffer[++i];
        if (i + 2 < length && isOctal(c) && isOctal(Buffer[i + 1]) && isOctal(Buffer[i + 2])) {
            c = char((c - '0') * 64 + (Buffer[i + 1] - '0') * 8 + (Buffer[i + 2] - '0'));
            i += 2;
        } else {
            static const char letters[] = "nrtvbf0";
            static const char values[] = "\n\r\t\v\b\f\0";
            const char* letter = c ? std::strchr(letters, c) : nullptr;
            if (letter) c = values[letter - letters];
        }
        result.Append(c);
    }
    return result;
}

clsString& clsString::Upper() {
    for (int i = 0; i < Size(); i++) Buffer[i] = AsciiUpper(Buffer[i]);
    return *this;
}

clsString& clsString::Lower() {
    for (int i = 0; i < Size(); i++) Buffer[i] = AsciiLower(Buffer[i]);
    return *this;
}

clsString& clsString::Capitalise() {
    Lower();
    for (int i = 0; i < Size(); i++)
        if (i == 0 || !IsAsciiLetter(Buffer[i - 1])) Buffer[i] = AsciiUpper(Buffer[i]);
    return *this;
}

clsString& clsString::UpperFirst() {
    if (Size()) Buffer[0] = AsciiUpper(Buffer[0]);
    return *this;
}

clsString clsString::ToUtf8() const {
    clsString result;
    result.Reserve(Size() * 2 + 1);
    for (int i = 0; i < Size(); i++) {
        uint8_t c = uint8_t(Buffer[i]);
        if (c < 0x80) {
            result.Append(char(c));
        } else {
            const char pair[2] = {char((c >> 6) | 0xC0), char((c & 0x3F) | 0x80)};
            result.Append(pair, 2);
        }
    }
    return result;
}

clsString& clsString::Reverse(int unit) {
    int length = Size();
    if (unit < 1 || length <= unit) return *this;
    // Groups are counted from the front and keep their inner order; a shorter last group moves to the front.
    clsString source(*this);
    int written = 0;
    for (int start = (length - 1) / unit * unit; start >= 0; start -= unit) {
        int group = std::min(unit, length - start);
        std::memcpy(Buffer + written, source.Buffer + start, size_t(group));
        written += group;
    }
    return *this;
}

// --- file names
// ---------------------------------------------------------------------------------------------

static bool IsSeparator(char c) {
    return c == '/' || c == '\\';
}

// Index of the last '/' or '\', else -1.
static int LastSeparator(const clsString& path) {
    for (int i = path.Size() - 1; i >= 0; i--)
        if (IsSeparator(*path.At(i))) return i;
    return -1;
}

clsString& clsString::PathJoin(const char* name) {
    if (name && *name) {
        bool endsWithSeparator = Size() && IsSeparator(Buffer[Length - 1]);
        if (endsWithSeparator)
            while (IsSeparator(*name)) name++;
        else if (Size() && !IsSeparator(*name))
            Append('/');
        Append(name);
    }
    for (int i = 0; i < Size(); i++)
        if (Buffer[i] == '\\') Buffer[i] = '/';
    return *this;
}

clsString clsString::ToForwardSlashes() const {
    clsString result(*this);
    for (int i = 0; i < result.Size(); i++)
        if (result.Buffer[i] == '\\') result.Buffer[i] = '/';
    return result;
}

// Index of the '.' that starts the extension of the last component, else -1.
static int ExtensionDot(const clsString& path) {
    int dot = path.FindLast('.');
    return dot > LastSeparator(path) ? dot : -1;
}

clsString clsString::FileName(bool keepFolder) const {
    int dot = ExtensionDot(*this);
    int end = dot < 0 ? Size() : dot;
    int start = keepFolder ? 0 : LastSeparator(*this) + 1;
    return Mid(start, end - start);
}

clsString& clsString::ChangeExtension(const char* extension) {
    int dot = ExtensionDot(*this);
    if (dot >= 0) SetLength(dot);
    if (extension && *extension && *extension != '.') Append('.');
    return Append(extension);
}

// --- files
// --------------------------------------------------------------------------------------------------

int clsString::LoadFromFile(const char* path) {
    Clear();
    FILE* file = path ? std::fopen(path, "rb") : nullptr;
    if (!file) return 0;
    // Size the buffer once when the file tells its length; streams that cannot seek grow as they are read.
    if (std::fseek(file, 0, SEEK_END) == 0) {
        long size = std::ftell(file);
        if (size > INT32_MAX - 3) {
            std::fclose(file);
            return 0;
        }
        if (size > 0) Reserve(int(size) + 1);
        std::rewind(file);
    }
    char chunk[65536];
    size_t got;
    while ((got = std::fread(chunk, 1, sizeof chunk, file)) > 0) {
        int before = Size();
        Append(chunk, int(got));
        if (Size() != before + int(got)) break; // too large to hold: Append released the buffer
    }
    bool failed = std::ferror(file) || !Buffer;
    std::fclose(file);
    if (failed) Clear();
    return Size();
}

bool clsString::SaveToFile(const char* file, bool overwrite) const {
    FILE* stream = file ? std::fopen(file, overwrite ? "wb" : "ab+") : nullptr;
    if (!stream) return false;
    bool complete = std::fwrite(Text(), 1, size_t(Size()), stream) == size_t(Size());
    return std::fclose(stream) == 0 && complete;
}

bool clsString::ReadCounted(FILE* stream) {
    Clear();
    if (!stream) return false;
    uint64_t length = 0;
    for (int shift = 0;; shift += 7) {
        int byte = std::fgetc(stream);
        if (byte == EOF) return false;
        if (shift < 64) length |= uint64_t(byte & 0x7F) << shift;
        if (!(byte & 0x80)) break;
    }
    int32_t count = int32_t(uint32_t(length));
    if (count < 0) return false;
    if (count > MaxCountedLength) throw std::runtime_error("clsString: length overflow!");
    if (count == 0) return true;
    if (!Grow(int64_t(count) + 1, false)) return false;
    if (std::fread(Buffer, 1, size_t(count), stream) != size_t(count)) {
        Clear();
        return false;
    }
    Length = count;
    Buffer[Length] = 0;
    return true;
}

} // namespace nuvobase
