// clsString: the program's one text type. A growable, NUL-terminated byte string that also serves as a
// byte buffer. Text is single-byte; comparisons ignore ASCII case.
//
// Rules every operation keeps:
// - A null Buffer and a Length of 0 both mean "empty"; every operation accepts a null Buffer.
// - Whenever a buffer exists, Buffer[Length] is 0 (the byte appenders AppendByte/AppendVarInt excepted).
// - Out-of-range positions give empty results and -1 indices; nothing here crashes on bad input.
// - A size that would not fit in 32 signed bits allocates nothing: the buffer is released (the string becomes
//   empty) and the operation returns without further effect. No exception is thrown for it.
// - The only exception is "clsString: length overflow!" from ReadCounted.
#pragma once

#include <cstdint>
#include <cstdio>

namespace nuvobase {

class clsCStrings;

// The one NUL byte that At() and Text() point to when there is nothing else to show.
inline const char SharedNul[1] = {0};

class clsString {
public:
    // Flags of Assign, combined by OR; 0 is a plain copy.
    enum AssignFlags : int {
        AssignLineEndsToSpaces = 1, // CR and LF outside single quotes become one space each
        AssignTrim = 2,             // leading and trailing spaces are dropped
        AssignCompact = 4,          // outside single quotes keep a space only between two alphanumerics,
                                    // and drop a line end that follows a space
    };

    // Flags of Compare. All but CompareExact ignore ASCII case.
    enum CompareFlags : int {
        CompareOrder = 1,            // negative, 0 or positive
        CompareEqual = 2,            // 1 if equal
        CompareContains = 16,        // the string contains text
        CompareStartsWith = 32,      // the string begins with text
        CompareEndsWith = 64,        // the string ends with text
        ComparePattern = 128,        // text is first%middle%last, each part optional
        CompareIgnoreTrailing = 256, // trailing spaces of both sides are dropped first
        CompareExact = 512,          // same length and bytes, case included; overrides all other flags
        CompareContainedIn = 1024,   // text contains the string
    };

    // Longest text ReadCounted accepts.
    static constexpr int32_t MaxCountedLength = 0xA00000;

    // --- construction
    // -----------------------------------------------------------------------------------------
    constexpr clsString() noexcept {}
    clsString(const char* text);                         // copy of a C string (null gives an empty string)
    explicit clsString(char c);                          // one character
    explicit clsString(int value, int minDigits = 1);    // decimal, left-padded with '0' to minDigits
    explicit clsString(int64_t value);                   // decimal
    clsString(char c, int count);                        // count copies of c
    clsString(const char* left, const clsString& right); // concatenation
    clsString(const clsString& other);
    clsString(clsString&& other) noexcept;
    clsString& operator=(const clsString& other);
    clsString& operator=(clsString&& other) noexcept;
    clsString& operator=(const char* text);
    virtual ~clsString();

    // --- access
    // ----------------------------------------------------------------------------------------------- Bytes
    // in use; 0 for a null buffer or a negative Length.
    int Size() const { return Buffer && Length > 0 ? Length : 0; }
    bool IsEmpty() const { return Size() == 0; }
    // The text as a C string; never null (an empty string gives "").
    const char* Text() const { return Buffer ? Buffer : SharedNul; }
    // The raw buffer for code that writes in place; null when there is no buffer.
    char* Data() { return Buffer; }
    // Size the string asked for, in bytes (0 without a buffer).
    int GetCapacity() const { return Capacity; }
    // Pointer to the character at index; the shared NUL for a null buffer or an index outside 0..Length.
    const char* At(int index) const {
        return Buffer && index >= 0 && index <= Length ? Buffer + index : SharedNul;
    }

    // --- building
    // --------------------------------------------------------------------------------------------- Replaces
    // the content. length -1 means up to the NUL; below 1 clears. flags: AssignFlags.
    clsString& Assign(const char* text, int length = -1, int flags = 0);
    // Appends raw bytes and terminates. A negative length or a null source does nothing.
    clsString& Append(const char* bytes, int length);
    clsString& Append(const char* text); // up to the NUL
    clsString& Append(const clsString& text);
    clsString& Append(char c);
    clsString& operator+=(const char* text) { return Append(text); }
    clsString& operator+=(const clsString& text) { return Append(text); }
    clsString& operator+=(char c) { return Append(c); }
    // Appends one byte, growing by 16 once Length exceeds Capacity-4. Writes no terminator.
    clsString& AppendByte(uint8_t byte);
    // Appends value as little-endian base-128 (high bit on every byte but the last). Raises Capacity by 32.
    // Writes no terminator.
    clsString& AppendVarInt(uint64_t value);
    // Overwrites or extends at position, which advances by length. Capacity becomes at least
    // position+length+2; Length grows only if the write passes the end. False for length < 1 or position < 0.
    bool WriteAt(const void* bytes, int length, int& position);
    // Inserts before position; a position beyond Length does nothing.
    clsString& Insert(int position, const char* text);
    clsString& Insert(int position, char c);
    // New string; a null or empty right side yields a copy.
    clsString operator+(const char* text) const;
    clsString operator+(const clsString& text) const;
    clsString operator+(char c) const;
    // Stores c at index. With extend the buffer grows as needed (new bytes zeroed) and Length becomes at
    // least index+1; without it an index outside Capacity does nothing.
    clsString& SetAt(int index, char c, bool extend = false);
    // Shortens to length without reallocation; a length outside 0..Length does nothing.
    clsString& SetLength(int length);
    // Ensures room for capacity bytes. keep false empties the string; zero zeroes the new bytes.
    // Returns whether a buffer exists.
    bool Reserve(int capacity, bool keep = true, bool zero = false);
    // Pads with c to width at the right; cuts at width when longer.
    clsString& PadRight(char c, int width);
    // Pads with c to width at the left; removes characters at the front when longer.
    clsString& PadLeft(char c, int width);
    // Length becomes 0. release frees the buffer; otherwise wipe zeroes all Capacity bytes.
    virtual void Clear(bool release = false, bool wipe = false);

    // --- numbers to text (replace the content)
    // ----------------------------------------------------------------
    clsString& FromInt(int64_t value);
    // Digits in base (2..36, upper-case letters), at least one, '0'-padded to minDigits, '-' when negative.
    clsString& FromUInt(uint64_t value, bool negative = false, int base = 10, int minDigits = 1);
    // Fixed notation with a '.' in any locale. decimals -1: up to 10 decimals, trailing zeros and a bare
    // point cut (12.50 -> "12.5", 12.00 -> "12").
    clsString& FromDouble(double value, int decimals = -1);
    // Fills the existing characters from the right with upper-case hexadecimal digits of value.
    clsString& ToHexFixed(uint64_t value);

    // --- text to numbers
    // -------------------------------------------------------------------------------------- Skips one '-'
    // (no effect on the value) and spaces; "0x" / "0b" at offset 0 or 1 select base 16 / 2. Stops at the
    // first character that is no digit of the base. 64-bit overflow wraps.
    uint64_t ToUInt64() const;
    // Leading spaces skipped; fallback when nothing is left. Otherwise as ParseDouble.
    double ToDouble(double fallback = 0) const;
    // Sign, integer part with ',' ignored ("1,234", "0x1F"), fraction after '.' or ',', exponent after E/e.
    static double ParseDouble(const char* text);
    // A decimal number at the start, after blanks and a sign, as a user types it: text that is no number
    // reads as 0, and a number beyond 64 bits as the nearest bound.
    int64_t ToDecimal() const;
    // Every '-' negates and is skipped; every other character adds the digit c-48 (c-55 above '9').
    int64_t ToSigned() const;
    // "mm:ss" gives ss + 60*mm; text without a colon gives its number times 60.
    int64_t ToSeconds() const;
    // Reads a cell reference such as "$B$12": column 1-based from the letters as spreadsheets count them
    // (A 1, Z 26, AA 27; 0 without letters), row from the digits, negated by '-'. '$' is skipped; any other
    // character ends the reference.
    void ParseCell(int& column, int& row) const;

    // --- comparison and search (ASCII case ignored)
    // ----------------------------------------------------------- Common prefix first, then the lengths. Two
    // empty strings are equal.
    bool operator==(const clsString& other) const;
    bool operator==(const char* text) const;
    bool operator!=(const clsString& other) const { return !(*this == other); }
    bool operator!=(const char* text) const { return !(*this == text); }
    bool operator<(const clsString& other) const;
    bool operator>(const clsString& other) const;
    // Compare family, see CompareFlags. length -1 means up to the NUL; lengths are clipped at the first NUL.
    // Boolean tests give 1 or 0.
    int Compare(const char* text, int flags = CompareEqual, int length = -1) const;
    int Compare(const clsString& text, int flags = CompareEqual) const;
    // Index of c at or after from, else -1 (also for a from out of range).
    int Find(char c, int from = 0) const;
    // Index of the last c, else -1.
    int FindLast(char c) const;
    // Index of text at or after from, ignoring ASCII case and skipping spans enclosed in quote1 or quote2
    // (0 for none). -1 when absent.
    int FindOutsideQuotes(const char* text, int from = 0, char quote1 = 0, char quote2 = 0) const;

    // --- cutting
    // ----------------------------------------------------------------------------------------------
    // Substrings; n beyond what exists takes what exists; bad positions give an empty string.
    clsString Left(int n) const;
    clsString Right(int n) const;              // empty when n > Length
    clsString Mid(int from, int n = -1) const; // n -1: to the end
    clsString From(int position) const;
    clsString BeforeChar(char c) const;    // whole text when c is absent
    clsString AfterChar(char c) const;     // empty when c is absent
    clsString AfterLastChar(char c) const; // whole text when c is absent
    // Text between the next open at or after position and the following close. position comes back behind
    // the close, or -1 at the end of the text.
    clsString Between(char open, char close, int& position) const;
    // Cuts at the last c; without c, empties the string when clearIfAbsent. Returns the new length.
    int CutLast(char c, bool clearIfAbsent = false);
    clsString& Delete(int position, int count);
    clsString& DeleteLeft(int n);
    clsString& RemoveChar(char c);
    // Trims c at the left unless rightOnly, at the right if right or rightOnly.
    clsString& Trim(char c = ' ', bool right = true, bool rightOnly = false);
    clsString& TrimRight(char c = ' ');
    // Each run of CR, LF and space outside '...' or "..." becomes one space; trailing spaces go.
    clsString& Squeeze();
    // Replaces every non-overlapping occurrence of from (ASCII case ignored) by to. Two passes.
    clsString& ReplaceAll(const char* from, const char* to);
    clsString& StripUtf8Bom();

    // --- tokenising
    // ------------------------------------------------------------------------------------------- Text from
    // position to the next separator; position comes back behind it, or -1 at the end. With quoted,
    // separators inside '...' (or "..." when the word starts with ") do not count. skipEmpty skips empty
    // words.
    clsString NextWord(char separator, int& position, bool quoted = false, bool skipEmpty = false) const;
    // Empties list and fills it with the tokens of the text: trimmed text between delimiters, each delimiter
    // as a one-character token, quoted spans (quote or ") kept whole, escape skipping the next character, and
    // blockOpen..blockClose spans as one token with their content. Returns the number of tokens.
    int Tokenise(const char* delimiters, clsCStrings& list, bool quotedTokens = false, char quote = '"',
                 char escape = 0, const char* blockOpen = nullptr, const char* blockClose = nullptr) const;

    // --- presentation
    // ----------------------------------------------------------------------------------------- The text
    // between q characters, inner q doubled; q 0 gives a copy.
    clsString Quote(char q) const;
    // In place: removes the delimiting quotes and collapses doubled ones. q 0 means both ' and ".
    clsString& Unquote(char q = 0);
    // Entity-encoded: & ' " < > to &amp; &apos; &quot; &lt; &gt;.
    clsString ToXml() const;
    // Backslash escapes resolved: \n \r \t \v \b \f \\ \0 \' \" and \ddd (octal); others stand for
    // themselves.
    clsString UnescapeC() const;
    clsString& Upper();      // ASCII letters only
    clsString& Lower();      // ASCII letters only
    clsString& Capitalise(); // lower, then upper each letter that follows a non-letter
    clsString& UpperFirst();
    // Latin-1 to UTF-8.
    clsString ToUtf8() const;
    // Reverses in place in groups of unit bytes (unit < 1 leaves the text).
    clsString& Reverse(int unit = 1);

    // --- file names ('/' is the separator; a '\' typed by the user is accepted as one)
    // ------------------------- Appends name with exactly one separator, then normalises every separator to
    // '/'.
    clsString& PathJoin(const char* name);
    // The text with '\' replaced by '/'.
    clsString ToForwardSlashes() const;
    // Last component without its extension; with keepFolder, the folder stays in front.
    clsString FileName(bool keepFolder = false) const;
    // Removes the last '.' and what follows, then appends extension (with a '.' in front if it lacks one).
    clsString& ChangeExtension(const char* extension);

    // --- files
    // ------------------------------------------------------------------------------------------------ Reads
    // the whole file; returns the byte count. A missing, unreadable or empty file leaves the string empty and
    // gives 0.
    virtual int LoadFromFile(const char* path);
    // Writes the text ("wb" with overwrite, else "ab+"). True when everything was written.
    virtual bool SaveToFile(const char* file, bool overwrite = true) const;
    // Reads a counted text: a base-128 length, then that many bytes. A length above MaxCountedLength throws
    // std::runtime_error("clsString: length overflow!"); a failing read leaves the string empty and returns
    // false.
    bool ReadCounted(FILE* stream);

protected:
    char* Buffer = nullptr; // heap buffer; null when never filled or released
    int32_t Length = 0;     // bytes in use, terminator not counted
    int32_t Capacity = 0;   // size the string asked for; 0 without a buffer

private:
    int32_t Allocated = 0; // bytes really allocated (at least Capacity + 2), grown in steps for appends

    // True when pointer lies inside this string's buffer (a source that a reallocation would free).
    bool Owns(const void* pointer) const;
    // Makes room for capacity bytes (a string of n characters asks for n+1). keep preserves the content,
    // zero clears the bytes gained. False, with the buffer released, when the size does not fit.
    bool Grow(int64_t capacity, bool keep = true, bool zero = false);
};

// A + B with a C string on the left.
clsString operator+(const char* left, const clsString& right);

// The shared empty string, for "nothing" results.
extern const clsString EmptyString;

} // namespace nuvobase
