#include "nuvobase/clsvariant.h"

#include <cstdlib>

namespace nuvobase {

namespace {

const uint8_t* BytesOf(const clsString& buffer) {
    return reinterpret_cast<const uint8_t*>(buffer.Text());
}

} // namespace

// --- text readings
// ----------------------------------------------------------------------------------------------

namespace VariantText {

int32_t ToInt(const clsString& text) {
    return std::atoi(text.Text());
}

bool ToBool(const clsString& text) {
    if (text.IsEmpty()) return false;
    switch (*text.Text()) {
    case '0':
    case 'F':
    case 'N':
    case 'f':
    case 'n':
    case ' ':
        return false;
    default:
        return true;
    }
}

int64_t ToInt64(const clsString& text) {
    const uint64_t magnitude = text.ToUInt64();
    return static_cast<int64_t>(*text.Text() == '-' ? 0 - magnitude : magnitude);
}

uint64_t ToUInt64(const clsString& text) {
    return text.ToUInt64();
}

double ToDouble(const clsString& text) {
    return text.ToDouble(0);
}

clsString FromNumber(int32_t value) {
    return clsString().FromInt(value);
}

clsString FromNumber(int64_t value) {
    return clsString().FromInt(value);
}

clsString FromNumber(uint64_t value) {
    return clsString().FromUInt(value);
}

clsString FromNumber(double value) {
    return clsString().FromDouble(value, -1);
}

} // namespace VariantText

// --- shared slots
// -----------------------------------------------------------------------------------------------

void clsVariant::WriteType(clsString& buffer, int& position) const {
    const uint8_t code = static_cast<uint8_t>(TypeCode());
    buffer.WriteAt(&code, 1, position);
}

bool clsVariant::ReadType(const clsString& buffer, int& position) const {
    if (position < 0 || position >= buffer.Size()) return false;
    return BytesOf(buffer)[position++] == TypeCode();
}

void clsVariant::SetText(const char* text) {
    if (text)
        Set(clsString(text));
    else
        Clear();
}

bool clsVariant::ReadLittleEndian(const clsString& buffer, int& position, int count, uint64_t& value) {
    value = 0;
    if (position < 0 || count > buffer.Size() - position) return false;
    for (int i = count - 1; i >= 0; i--) value = value << 8 | BytesOf(buffer)[position + i];
    position += count;
    return true;
}

void clsVariant::WriteLittleEndian(clsString& buffer, int& position, int count, uint64_t value) {
    uint8_t bytes[8];
    for (int i = 0; i < count; i++, value >>= 8) bytes[i] = static_cast<uint8_t>(value);
    buffer.WriteAt(bytes, count, position);
}

void clsVariant::WriteLength(clsString& buffer, int& position, int64_t value) {
    uint64_t magnitude = value < 0 ? 0 - static_cast<uint64_t>(value) : static_cast<uint64_t>(value);
    int count = 0;
    for (uint64_t rest = magnitude; rest != 0; rest >>= 8) count++;
    const int8_t header = static_cast<int8_t>(value < 0 ? -count : count);
    buffer.WriteAt(&header, 1, position);
    if (count > 0) WriteLittleEndian(buffer, position, count, magnitude);
}

bool clsVariant::ReadLength(const clsString& buffer, int& position, int64_t& value) {
    value = 0;
    if (position < 0 || position >= buffer.Size()) return false;
    const int8_t header = static_cast<int8_t>(BytesOf(buffer)[position++]);
    const int count = header < 0 ? -header : header;
    uint64_t magnitude;
    if (count > 8 || !ReadLittleEndian(buffer, position, count, magnitude)) return false;
    value = static_cast<int64_t>(header < 0 ? 0 - magnitude : magnitude);
    return true;
}

int clsVariant::WriteFile(FILE* file, clsString& buffer) const {
    buffer.Clear();
    int position = 0;
    Write(buffer, position);
    if (!file || buffer.Size() == 0) return 0;
    return std::fwrite(buffer.Text(), 1, buffer.Size(), file) == static_cast<size_t>(buffer.Size())
               ? buffer.Size()
               : 0;
}

int clsVariant::ReadFile(FILE* file, clsString& buffer) {
    buffer.Clear();
    if (!file) return 0;
    // A record announces its own size step by step (type, length header, text), so read what is missing
    // until it is complete; a short file fails without trusting a large length.
    char chunk[4096];
    for (int64_t missing = 1; missing > 0; missing = MissingBytes(buffer)) {
        const size_t wanted =
            missing < static_cast<int64_t>(sizeof(chunk)) ? static_cast<size_t>(missing) : sizeof(chunk);
        const size_t got = std::fread(chunk, 1, wanted, file);
        if (got == 0) return 0;
        const int before = buffer.Size();
        buffer.Append(chunk, static_cast<int>(got));
        if (buffer.Size() != before + static_cast<int>(got)) return 0;
    }
    int position = 0;
    return Read(buffer, position) ? position : 0;
}

// --- clsVariantString
// -------------------------------------------------------------------------------------------

namespace {

// Text order ignoring ASCII case. An empty text is the same with or without a buffer (clsString's Compare
// would set a missing buffer apart), so the emptiness is settled first.
int OrderOfTexts(const clsString& left, const clsString& right) {
    if (left.IsEmpty() || right.IsEmpty()) return (left.IsEmpty() ? 0 : 1) - (right.IsEmpty() ? 0 : 1);
    return left.Compare(right, clsString::CompareOrder);
}

} // namespace

int clsVariantString::Compare(const clsVariant& other) const {
    // Another text is compared in place; any other kind is turned into text first.
    if (const auto* text = dynamic_cast<const clsVariantString*>(&other))
        return OrderOfTexts(Value, text->Value);
    return OrderOfTexts(Value, other.GetString());
}

clsDateTime clsVariantString::GetDateTime() const {
    clsDateTime result;
    result.Parse(Value);
    return result;
}

void clsVariantString::Write(clsString& buffer, int& position) const {
    WriteType(buffer, position);
    WriteLength(buffer, position, Value.Size());
    buffer.WriteAt(Value.Text(), Value.Size(), position);
}

bool clsVariantString::Read(const clsString& buffer, int& position) {
    Value.Clear();
    if (!ReadType(buffer, position)) return false;
    int64_t length;
    if (!ReadLength(buffer, position, length) || length < 0 || length > buffer.Size() - position) return true;
    Value.Assign(buffer.Text() + position, static_cast<int>(length));
    position += static_cast<int>(length);
    return true;
}

int64_t clsVariantString::MissingBytes(const clsString& record) const {
    const int size = record.Size();
    if (size < 2) return 2 - size;
    const int8_t header = static_cast<int8_t>(BytesOf(record)[1]);
    const int count = header < 0 ? -header : header;
    if (count > 8 || header < 0) return 0; // a bad or negative length ends the record here
    if (size < 2 + count) return 2 + count - size;
    int position = 1;
    int64_t length;
    ReadLength(record, position, length);
    // The text may be longer than any buffer can be; such a record cannot be completed.
    if (length > INT32_MAX - 2 - count) return 0;
    return 2 + count + length - size;
}

// --- clsVariantCurrency
// -----------------------------------------------------------------------------------------

void clsVariantCurrency::Write(clsString& buffer, int& position) const {
    WriteType(buffer, position);
    WriteLittleEndian(buffer, position, 8, static_cast<uint64_t>(Value.Value));
}

bool clsVariantCurrency::Read(const clsString& buffer, int& position) {
    uint64_t bits = 0;
    if (!ReadType(buffer, position) || !ReadLittleEndian(buffer, position, 8, bits)) {
        Clear();
        return false;
    }
    Value.Value = static_cast<int64_t>(bits);
    return true;
}

// --- clsVariantDateTime
// -----------------------------------------------------------------------------------------

void clsVariantDateTime::Write(clsString& buffer, int& position) const {
    WriteType(buffer, position);
    buffer.WriteAt(Value.Bytes, sizeof(Value.Bytes), position);
}

bool clsVariantDateTime::Read(const clsString& buffer, int& position) {
    Clear();
    if (!ReadType(buffer, position) || position > buffer.Size() - static_cast<int>(sizeof(Value.Bytes)))
        return false;
    std::memcpy(Value.Bytes, buffer.Text() + position, sizeof(Value.Bytes));
    position += sizeof(Value.Bytes);
    if (!Value.IsValid()) Value.Clear();
    return true;
}

clsString clsVariantDateTime::ToSqlText() const {
    if (Value.IsNull()) return clsString("NULL");
    return (Value.SortableDate() + " " + Value.TimeText()).Quote('\'');
}

bool clsVariantDateTime::operator>=(const clsVariant& other) const {
    return Value.DayNumber() >= other.GetDateTime().DayNumber();
}

bool clsVariantDateTime::operator<=(const clsVariant& other) const {
    return Value.DayNumber() <= other.GetDateTime().DayNumber();
}

} // namespace nuvobase
