// clsString: storage, construction, building and cutting.
#include "nuvobase/clsstring.h"

#include "nuvobase/asciichars.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <functional>

namespace nuvobase {

constinit const clsString EmptyString;

// --- storage
// ------------------------------------------------------------------------------------------------

bool clsString::Grow(int64_t capacity, bool keep, bool zero) {
    // The allocation holds capacity + 2 bytes and must fit in 32 signed bits.
    if (capacity > INT32_MAX - 2) {
        Clear(true);
        return false;
    }
    int32_t kept = keep ? Size() : 0;
    if (capacity > Capacity) {
        if (capacity + 2 > Allocated) {
            // The first buffer is exact; a growing one grows by half at least, so that appends stay linear.
            int64_t bytes = capacity + 2;
            if (Buffer) bytes = std::max(bytes, std::min<int64_t>(int64_t(Allocated) * 3 / 2, INT32_MAX));
            char* fresh = static_cast<char*>(std::malloc(size_t(bytes)));
            if (!fresh) {
                Clear(true);
                return false;
            }
            if (kept > 0) std::memcpy(fresh, Buffer, size_t(kept));
            // The last two bytes stay 0 for good: any C-string read of the buffer ends inside it.
            fresh[bytes - 1] = fresh[bytes - 2] = 0;
            std::free(Buffer);
            Buffer = fresh;
            Allocated = int32_t(bytes);
            Buffer[kept] = 0;
        }
        Capacity = int32_t(capacity);
    }
    if (!Buffer) return false;
    if (!keep) {
        Length = 0;
        Buffer[0] = 0;
    }
    int64_t zeroEnd = std::min<int64_t>(capacity + 2, Allocated);
    if (zero && zeroEnd > kept) std::memset(Buffer + kept, 0, size_t(zeroEnd - kept));
    return true;
}

void clsString::Clear(bool release, bool wipe) {
    if (release) {
        std::free(Buffer);
        Buffer = nullptr;
        Capacity = Allocated = 0;
    } else if (Buffer) {
        if (wipe)
            std::memset(Buffer, 0, size_t(Allocated));
        else
            Buffer[0] = 0;
    }
    Length = 0;
}

bool clsString::Reserve(int capacity, bool keep, bool zero) {
    return Grow(capacity, keep, zero);
}

bool clsString::Owns(const void* pointer) const {
    // std::less gives a total order even for pointers into different objects.
    std::less<const void*> before;
    return Buffer && !before(pointer, Buffer) && before(pointer, Buffer + Allocated);
}

// --- construction
// -------------------------------------------------------------------------------------------

clsString::clsString(const char* text) {
    Assign(text);
}

clsString::clsString(char c) {
    Assign(&c, 1);
}

clsString::clsString(int value, int minDigits) {
    FromUInt(value < 0 ? 0 - uint64_t(value) : uint64_t(value), value < 0, 10, minDigits);
}

clsString::clsString(int64_t value) {
    FromInt(value);
}

clsString::clsString(char c, int count) {
    if (count > 0 && Grow(int64_t(count) + 1, false)) {
        std::memset(Buffer, c, size_t(count));
        Length = count;
        Buffer[Length] = 0;
    }
}

clsString::clsString(const char* left, const clsString& right) {
    int leftLength = left ? int(std::strlen(left)) : 0;
    if (Grow(int64_t(leftLength) + right.Size() + 1, false)) Append(left, leftLength).Append(right);
}

clsString::clsString(const clsString& other) {
    Assign(other.Buffer, other.Size());
}

clsString::clsString(clsString&& other) noexcept
    : Buffer(other.Buffer), Length(other.Length), Capacity(other.Capacity), Allocated(other.Allocated) {
    other.Buffer = nullptr;
    other.Length = other.Capacity = other.Allocated = 0;
}

clsString& clsString::operator=(const clsString& other) {
    if (this != &other) Assign(other.Buffer, other.Size());
    return *this;
}

clsString& clsString::operator=(clsString&& other) noexcept {
    if (this != &other) {
        std::swap(Buffer, other.Buffer);
        std::swap(Length, other.Length);
        std::swap(Capacity, other.Capacity);
        std::swap(Allocated, other.Allocated);
        other.Clear(true);
    }
    return *this;
}

clsString& clsString::operator=(const char* text) {
    return Assign(text);
}

clsString::~clsString() {
    std::free(Buffer);
}

// --- building
// -----------------------------------------------------------------------------------------------

// Copies text under the Assign flags into out, which has room for length bytes and a terminator.
// Returns the bytes written.
static int FilterForAssign(const char* text, int length, int flags, char* out) {
    auto isLineEnd = [](char c) { return c == '\r' || c == '\n'; };
    int written = 0;
    bool quoted = false;
    for (int i = 0; i < length; i++) {
        char c = text[i];
        if (c == '\'') quoted = !quoted;
        if (!quoted) {
            bool lineEnd = isLineEnd(c);
            if ((flags & clsString::AssignCompact) && lineEnd && i > 0 && text[i - 1] == ' ') continue;
            if ((flags & clsString::AssignLineEndsToSpaces) && lineEnd) c = ' ';
            if ((flags & clsString::AssignCompact) && c == ' ' &&
                !(i > 0 && IsAsciiAlnum(text[i - 1]) && i + 1 < length && IsAsciiAlnum(text[i + 1])))
                continue;
        }
        out[written++] = c;
    }
    if (flags & clsString::AssignTrim) {
        while (written > 0 && out[written - 1] == ' ') written--;
        int lead = 0;
        while (lead < written && out[lead] == ' ') lead++;
        std::memmove(out, out + lead, size_t(written - lead));
        written -= lead;
    }
    return written;
}

clsString& clsString::Assign(const char* text, int length, int flags) {
    if (text && length == -1) length = int(std::strlen(text));
    if (!text || length < 1) {
        Clear();
        return *this;
    }
    if (Owns(text)) {
        clsString copy;
        copy.Assign(text, length, flags);
        return *this = std::move(copy);
    }
    if (!Grow(int64_t(length) + 1, false)) return *this;
    if (flags)
        Length = FilterForAssign(text, length, flags, Buffer);
    else {
        std::memcpy(Buffer, text, size_t(length));
        Length = length;
    }
    Buffer[Length] = 0;
    return *this;
}

clsString& clsString::Append(const char* bytes, int length) {
    if (!bytes || length <= 0) return *this;
    if (Owns(bytes)) return Append(clsString().Assign(bytes, length));
    if (Grow(int64_t(Size()) + length + 1)) {
        std::memcpy(Buffer + Length, bytes, size_t(length));
        Length += length;
        Buffer[Length] = 0;
    }
    return *this;
}

clsString& clsString::Append(const char* text) {
    return Append(text, text ? int(std::strlen(text)) : 0);
}

clsString& clsString::Append(const clsString& text) {
    return Append(text.Buffer, text.Size());
}

clsString& clsString::Append(char c) {
    return Append(&c, 1);
}

clsString& clsString::AppendByte(uint8_t byte) {
    if (Length > Capacity - 4 && !Grow(int64_t(Capacity) + 16, true, true)) return *this;
    Buffer[Length++] = char(byte);
    return *this;
}

clsString& clsString::AppendVarInt(uint64_t value) {
    if (!Grow(int64_t(Capacity) + 32, true, true)) return *this;
    while (value >= 0x80) {
        Buffer[Length++] = char(0x80 | (value & 0x7F));
        value >>= 7;
    }
    Buffer[Length++] = char(value);
    return *this;
}

bool clsString::WriteAt(const void* bytes, int length, int& position) {
    if (!bytes || length < 1 || position < 0) return false;
    if (Owns(bytes))
        return WriteAt(clsString().Assign(static_cast<const char*>(bytes), length).Buffer, length, position);
    if (!Grow(int64_t(position) + length + 2, true, true)) return false;
    std::memcpy(Buffer + position, bytes, size_t(length));
    position += length;
    if (position > Length) {
        Length = position;
        Buffer[Length] = 0;
    }
    return true;
}

clsString& clsString::Insert(int position, const char* text) {
    int length = text ? int(std::strlen(text)) : 0;
    if (position < 0 || position > Size() || length == 0) return *this;
    if (Owns(text)) return Insert(position, clsString(text).Buffer);
    if (Grow(int64_t(Length) + length + 1)) {
        std::memmove(Buffer + position + length, Buffer + position, size_t(Length - position + 1));
        std::memcpy(Buffer + position, text, size_t(length));
        Length += length;
    }
    return *this;
}

clsString& clsString::Insert(int position, char c) {
    const char text[2] = {c, 0};
    return c ? Insert(position, text) : *this;
}

clsString clsString::operator+(const clsString& text) const {
    clsString result;
    if (result.Grow(int64_t(Size()) + text.Size() + 1, false)) result.Append(*this).Append(text);
    return result;
}

clsString clsString::operator+(const char* text) const {
    return *this + clsString(text);
}

clsString clsString::operator+(char c) const {
    const char text[2] = {c, 0};
    return *this + text;
}

clsString operator+(const char* left, const clsString& right) {
    return clsString(left, right);
}

clsString& clsString::SetAt(int index, char c, bool extend) {
    if (index < 0) return *this;
    if (extend) {
        if (!Grow(int64_t(index) + 2, true, true)) return *this;
        if (Length < index + 1) {
            Length = index + 1;
            Buffer[Length] = 0;
        }
    } else if (!Buffer || index >= Capacity) {
        return *this;
    }
    Buffer[index] = c;
    return *this;
}

clsString& clsString::SetLength(int length) {
    if (length >= 0 && length < Size()) {
        Length = length;
        Buffer[Length] = 0;
    }
    return *this;
}

clsString& clsString::PadRight(char c, int width) {
    if (width < 0) return *this;
    int length = Size();
    if (length >= width) return SetLength(width);
    if (Grow(int64_t(width) + 1)) {
        std::memset(Buffer + length, c, size_t(width - length));
        Length = width;
        Buffer[Length] = 0;
    }
    return *this;
}

clsString& clsString::PadLeft(char c, int width) {
    int length = Size();
    if (width >= 0 && length >= width) return Delete(0, length - width);
    // Pad at the right, then move the text behind the padding.
    if (PadRight(c, width).Size() == width) {
        std::memmove(Buffer + width - length, Buffer, size_t(length));
        std::memset(Buffer, c, size_t(width - length));
    }
    return *this;
}

// --- cutting
// ------------------------------------------------------------------------------------------------

clsString clsString::Left(int n) const {
    return n > 0 ? Mid(0, std::min(n, Size())) : clsString();
}

clsString clsString::Right(int n) const {
    return n > Size() ? clsString() : Mid(Size() - n, n);
}

clsString clsString::Mid(int from, int n) const {
    clsString result;
    int length = Size();
    if (from < 0 || from >= length) return result;
    if (n < 0 || n > length - from) n = length - from;
    return result.Assign(Buffer + from, n);
}

clsString clsString::From(int position) const {
    return Mid(position, -1);
}

clsString clsString::BeforeChar(char c) const {
    int at = Find(c);
    return at < 0 ? *this : Left(at);
}

clsString clsString::AfterChar(char c) const {
    int at = Find(c);
    return at < 0 ? clsString() : From(at + 1);
}

clsString clsString::AfterLastChar(char c) const {
    int at = FindLast(c);
    return at < 0 ? *this : From(at + 1);
}

clsString clsString::Between(char open, char close, int& position) const {
    int start = Find(open, position);
    int end = start < 0 ? -1 : Find(close, start + 1);
    if (end < 0) {
        position = -1;
        return clsString();
    }
    position = end + 1 < Size() ? end + 1 : -1;
    return Mid(start + 1, end - start - 1);
}

int clsString::CutLast(char c, bool clearIfAbsent) {
    int at = FindLast(c);
    if (at >= 0)
        SetLength(at);
    else if (clearIfAbsent)
        Clear();
    return Size();
}

clsString& clsString::Delete(int position, int count) {
    int length = Size();
    if (position < 0 || position >= length || count <= 0) return *this;
    count = std::min(count, length - position);
    std::memmove(Buffer + position, Buffer + position + count, size_t(length - position - count + 1));
    Length -= count;
    return *this;
}

clsString& clsString::DeleteLeft(int n) {
    return Delete(0, n);
}

clsString& clsString::RemoveChar(char c) {
    int kept = 0;
    for (int i = 0; i < Size(); i++)
        if (Buffer[i] != c) Buffer[kept++] = Buffer[i];
    return SetLength(kept);
}

clsString& clsString::Trim(char c, bool right, bool rightOnly) {
    if (right || rightOnly) {
        int length = Size();
        while (length > 0 && Buffer[length - 1] == c) length--;
        SetLength(length);
    }
    if (!rightOnly) {
        int lead = 0;
        while (lead < Size() && Buffer[lead] == c) lead++;
        Delete(0, lead);
    }
    return *this;
}

clsString& clsString::TrimRight(char c) {
    return Trim(c, true, true);
}

clsString& clsString::Squeeze() {
    auto isBlank = [](char c) { return c == ' ' || c == '\r' || c == '\n'; };
    int length = Size(), kept = 0;
    char quote = 0;
    for (int i = 0; i < length; i++) {
        char c = Buffer[i];
        if (quote) {
            if (c == quote) quote = 0;
        } else if (c == '\'' || c == '"') {
            quote = c;
        } else if (isBlank(c)) {
            while (i + 1 < length && isBlank(Buffer[i + 1])) i++;
            c = ' ';
        }
        Buffer[kept++] = c;
    }
    SetLength(kept);
    return TrimRight(' ');
}

clsString& clsString::StripUtf8Bom() {
    if (Size() >= 3 && std::memcmp(Buffer, "\xEF\xBB\xBF", 3) == 0) Delete(0, 3);
    return *this;
}

} // namespace nuvobase
