// clsVariant: a tagged scalar with one virtual interface to read and write it as any kind. Keys of
// clsCollection are variants, so a list can be ordered by text or by number through the same code.
//
// Binary record (Write/Read): the TypeCode byte, then
//   Bool, Int                 4 bytes, little-endian
//   Int64, UInt64, Double     8 bytes, little-endian
//   Currency                  Value, 8 bytes, little-endian (Decimals is not stored)
//   DateTime                  the eight packed bytes, most significant first
//   String                    a length in the length form (see WriteLength), then the bytes
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <type_traits>

#include "nuvobase/clscurrency.h"
#include "nuvobase/clsdatetime.h"
#include "nuvobase/clsstring.h"

namespace nuvobase {

class clsVariant {
public:
    enum TypeCodes : int {
        TypeBool = 'B',
        TypeInt = 'C',
        TypeInt64 = 'D',
        TypeUInt64 = 'E',
        TypeDouble = 'L',
        TypeString = 'M',
        TypeCurrency = 'N',
        TypeDateTime = 'O',
    };

    virtual ~clsVariant() = default;
    virtual int TypeCode() const = 0;
    // Zero, or the empty text.
    virtual void Clear() = 0;
    virtual clsVariant* Clone() const = 0;
    // Takes the other's value through the getter of this class's own kind.
    virtual void Assign(const clsVariant& other) = 0;
    // Negative, 0 or positive.
    virtual int Compare(const clsVariant& other) const = 0;

    virtual clsString GetString() const = 0;
    virtual int32_t GetInt() const = 0;
    virtual bool GetBool() const = 0;
    virtual int64_t GetInt64() const = 0;
    virtual uint64_t GetUInt64() const = 0;
    // The narrow getters cut GetInt64 down unless a class knows better.
    virtual uint32_t GetUInt() const { return static_cast<uint32_t>(GetInt64()); }
    virtual int32_t GetLong() const { return static_cast<int32_t>(GetInt64()); }
    virtual int16_t GetShort() const { return static_cast<int16_t>(GetInt64()); }
    virtual uint16_t GetUShort() const { return static_cast<uint16_t>(GetInt64()); }
    virtual char GetChar() const { return static_cast<char>(GetInt64()); }
    virtual uint8_t GetByte() const { return static_cast<uint8_t>(GetInt64()); }
    virtual double GetDouble() const = 0;
    virtual clsDateTime GetDateTime() const = 0;
    virtual clsCurrency GetCurrency() const = 0;

    // The setters of narrow kinds widen to Set(int64_t) unless a class knows better. On this platform the
    // 64-bit setters are also those of long and unsigned long.
    virtual void Set(const clsString& value) = 0;
    virtual void Set(int32_t value) { Set(static_cast<int64_t>(value)); }
    virtual void Set(bool value) { Set(static_cast<int32_t>(value ? 1 : 0)); }
    virtual void Set(uint32_t value) { Set(static_cast<int64_t>(value)); }
    virtual void Set(int64_t value) = 0;
    virtual void Set(uint64_t value) = 0;
    virtual void Set(int16_t value) { Set(static_cast<int64_t>(value)); }
    virtual void Set(uint16_t value) { Set(static_cast<int64_t>(value)); }
    virtual void Set(char value) { Set(static_cast<int64_t>(value)); }
    virtual void Set(uint8_t value) { Set(static_cast<int64_t>(value)); }
    virtual void Set(double value) = 0;
    virtual void Set(const clsDateTime& value) = 0;
    virtual void Set(const clsCurrency& value) = 0;
    // A C string is text, never a bool.
    void Set(const char* text) { SetText(text); }

    // Writes the TypeCode byte at position, which advances by 1.
    void WriteType(clsString& buffer, int& position) const;
    // Reads a byte at position, advances by 1, and tells whether it is the TypeCode.
    bool ReadType(const clsString& buffer, int& position) const;
    virtual void Write(clsString& buffer, int& position) const = 0;
    // Reads a record written by Write. A wrong TypeCode or a record cut short clears the value and gives
    // false.
    virtual bool Read(const clsString& buffer, int& position) = 0;
    // The value as it stands in an SQL statement.
    virtual clsString ToSqlText() const = 0;
    // Null clears; otherwise Set(clsString).
    void SetText(const char* text);

    bool operator==(const clsVariant& other) const { return Compare(other) == 0; }
    bool operator<(const clsVariant& other) const { return Compare(other) < 0; }
    bool operator>(const clsVariant& other) const { return Compare(other) > 0; }
    virtual bool operator>=(const clsVariant& other) const { return Compare(other) >= 0; }
    virtual bool operator<=(const clsVariant& other) const { return Compare(other) <= 0; }

    // Empties buffer, writes the record into it and then to file. Returns the byte count, 0 on failure.
    int WriteFile(FILE* file, clsString& buffer) const;
    // Reads one record from file into buffer and then into the value. Returns the byte count, 0 on failure.
    int ReadFile(FILE* file, clsString& buffer);

    // The length form: one byte n (0..8), then n bytes of the magnitude, low first, without leading zero
    // bytes; a negative number has -n as the byte. Zero is the single byte 0.
    static void WriteLength(clsString& buffer, int& position, int64_t value);
    // False, with position behind what was read, when n is above 8 or the bytes run past the buffer.
    static bool ReadLength(const clsString& buffer, int& position, int64_t& value);

protected:
    // How many bytes are still needed, after those in record, to complete this class's record.
    virtual int64_t MissingBytes(const clsString& record) const = 0;
    // Reads count bytes at position as a little-endian number; false when they run past the buffer.
    static bool ReadLittleEndian(const clsString& buffer, int& position, int count, uint64_t& value);
    static void WriteLittleEndian(clsString& buffer, int& position, int count, uint64_t value);
};

// Converts between arithmetic kinds; a double out of range clamps to the target's limits and NaN gives 0.
template <class To, class From> To NumberCast(From value) {
    if constexpr (std::is_floating_point_v<From> && !std::is_floating_point_v<To>) {
        if (!(value == value)) return 0;
        if (value <= static_cast<From>(std::numeric_limits<To>::min())) return std::numeric_limits<To>::min();
        if (value >= static_cast<From>(std::numeric_limits<To>::max())) return std::numeric_limits<To>::max();
    }
    return static_cast<To>(value);
}

// The readings of text shared by the variant classes.
namespace VariantText {
int32_t ToInt(const clsString& text);     // atoi; 0 for a null buffer
bool ToBool(const clsString& text);       // false for empty text or a first character in "0FNfn "
int64_t ToInt64(const clsString& text);   // ToUInt64, negated when the text starts with '-'
uint64_t ToUInt64(const clsString& text); // ToUInt64
double ToDouble(const clsString& text);   // ToDouble(0)
template <class V> V To(const clsString& text) {
    if constexpr (std::is_same_v<V, double>)
        return ToDouble(text);
    else if constexpr (std::is_same_v<V, uint64_t>)
        return ToUInt64(text);
    else if constexpr (std::is_same_v<V, int64_t>)
        return ToInt64(text);
    else
        return ToInt(text);
}
clsString FromNumber(int32_t value);
clsString FromNumber(int64_t value);
clsString FromNumber(uint64_t value);
clsString FromNumber(double value); // FromDouble(value, -1)
} // namespace VariantText

// The slots one template can serve for every number kind. Leaf is the concrete class, which gives Clone
// and the TypeCode.
template <class V, int Code, class Leaf> class clsVariantNumeric : public clsVariant {
public:
    V Value = 0;

    clsVariantNumeric() = default;
    explicit clsVariantNumeric(V value) : Value(value) {}

    using clsVariant::Set;
    int TypeCode() const override { return Code; }
    void Clear() override { Value = 0; }
    clsVariant* Clone() const override { return new Leaf(static_cast<const Leaf&>(*this)); }
    void Assign(const clsVariant& other) override {
        if constexpr (std::is_same_v<V, double>)
            Value = other.GetDouble();
        else if constexpr (std::is_same_v<V, uint64_t>)
            Value = other.GetUInt64();
        else if constexpr (std::is_same_v<V, int64_t>)
            Value = other.GetInt64();
        else
            Value = other.GetInt();
    }
    // Numbers compare as doubles, so that 5 equals "5.0".
    int Compare(const clsVariant& other) const override {
        const double mine = GetDouble(), theirs = other.GetDouble();
        return mine == theirs ? 0 : (mine < theirs ? -1 : 1);
    }

    clsString GetString() const override { return VariantText::FromNumber(Value); }
    int32_t GetInt() const override { return NumberCast<int32_t>(Value); }
    bool GetBool() const override { return Value != 0; }
    int64_t GetInt64() const override { return NumberCast<int64_t>(Value); }
    uint64_t GetUInt64() const override { return NumberCast<uint64_t>(Value); }
    double GetDouble() const override { return static_cast<double>(Value); }
    clsDateTime GetDateTime() const override { return clsDateTime::FromWord(GetUInt64()); }
    clsCurrency GetCurrency() const override { return clsCurrency(GetDouble()); }

    void Set(const clsString& value) override { Value = VariantText::To<V>(value); }
    void Set(int64_t value) override { Value = static_cast<V>(value); }
    void Set(uint64_t value) override { Value = static_cast<V>(value); }
    void Set(double value) override { Value = NumberCast<V>(value); }
    void Set(const clsDateTime& value) override { Value = static_cast<V>(value.Word()); }
    void Set(const clsCurrency& value) override { Value = NumberCast<V>(value.ToDouble()); }

    void Write(clsString& buffer, int& position) const override {
        WriteType(buffer, position);
        uint64_t bits;
        if constexpr (std::is_same_v<V, double>)
            std::memcpy(&bits, &Value, sizeof(bits));
        else
            bits = static_cast<uint64_t>(Value);
        WriteLittleEndian(buffer, position, sizeof(V), bits);
    }
    bool Read(const clsString& buffer, int& position) override {
        uint64_t bits = 0;
        if (!ReadType(buffer, position) || !ReadLittleEndian(buffer, position, sizeof(V), bits)) {
            Clear();
            return false;
        }
        if constexpr (std::is_same_v<V, double>)
            std::memcpy(&Value, &bits, sizeof(bits));
        else
            Value = static_cast<V>(bits);
        return true;
    }
    clsString ToSqlText() const override { return GetString(); }

protected:
    int64_t MissingBytes(const clsString& record) const override {
        return 1 + static_cast<int64_t>(sizeof(V)) - record.Size();
    }
};

class clsVariantInt : public clsVariantNumeric<int32_t, clsVariant::TypeInt, clsVariantInt> {
public:
    using clsVariantNumeric::clsVariantNumeric;
};

class clsVariantInt64 : public clsVariantNumeric<int64_t, clsVariant::TypeInt64, clsVariantInt64> {
public:
    using clsVariantNumeric::clsVariantNumeric;
};

class clsVariantUInt64 : public clsVariantNumeric<uint64_t, clsVariant::TypeUInt64, clsVariantUInt64> {
public:
    using clsVariantNumeric::clsVariantNumeric;
};

class clsVariantDouble : public clsVariantNumeric<double, clsVariant::TypeDouble, clsVariantDouble> {
public:
    using clsVariantNumeric::clsVariantNumeric;
};

// A 32-bit number read as a truth value: 0 is false. It prints as a number, and as "true" or "false" in SQL.
class clsVariantBool : public clsVariantNumeric<int32_t, clsVariant::TypeBool, clsVariantBool> {
public:
    using clsVariantNumeric::clsVariantNumeric;
    explicit clsVariantBool(bool value) : clsVariantNumeric(value ? 1 : 0) {}
    using clsVariant::Set;
    void Assign(const clsVariant& other) override { Value = other.GetBool() ? 1 : 0; }
    void Set(const clsString& value) override { Value = VariantText::ToBool(value) ? 1 : 0; }
    clsString ToSqlText() const override { return clsString(Value != 0 ? "true" : "false"); }
};

class clsVariantString : public clsVariant {
public:
    clsString Value;

    clsVariantString() = default;
    explicit clsVariantString(const clsString& value) : Value(value) {}
    explicit clsVariantString(const char* value) : Value(value) {}

    using clsVariant::Set;
    int TypeCode() const override { return TypeString; }
    void Clear() override { Value.Clear(); }
    clsVariant* Clone() const override { return new clsVariantString(Value); }
    void Assign(const clsVariant& other) override { Value = other.GetString(); }
    // Text order of the other's GetString, ignoring ASCII case.
    int Compare(const clsVariant& other) const override;

    clsString GetString() const override { return Value; }
    int32_t GetInt() const override { return VariantText::ToInt(Value); }
    bool GetBool() const override { return VariantText::ToBool(Value); }
    int64_t GetInt64() const override { return VariantText::ToInt64(Value); }
    uint64_t GetUInt64() const override { return VariantText::ToUInt64(Value); }
    double GetDouble() const override { return VariantText::ToDouble(Value); }
    clsDateTime GetDateTime() const override;
    clsCurrency GetCurrency() const override { return clsCurrency(GetDouble()); }

    void Set(const clsString& value) override { Value = value; }
    void Set(int64_t value) override { Value = VariantText::FromNumber(value); }
    void Set(uint64_t value) override { Value = VariantText::FromNumber(value); }
    void Set(double value) override { Value = VariantText::FromNumber(value); }
    // The day number with the time as a fraction of the day.
    void Set(const clsDateTime& value) override { Value = VariantText::FromNumber(value.DayNumber()); }
    void Set(const clsCurrency& value) override { Value = value.Text(); }

    void Write(clsString& buffer, int& position) const override;
    // A bad length leaves the text empty but still gives true.
    bool Read(const clsString& buffer, int& position) override;
    // The text in single quotes, inner quotes doubled.
    clsString ToSqlText() const override { return Value.Quote('\''); }
    // Common prefix ignoring ASCII case, then the lengths.
    bool operator>=(const clsVariant& other) const override { return !(Value < other.GetString()); }
    bool operator<=(const clsVariant& other) const override { return !(Value > other.GetString()); }

protected:
    int64_t MissingBytes(const clsString& record) const override;
};

class clsVariantCurrency : public clsVariant {
public:
    clsCurrency Value;

    clsVariantCurrency() = default;
    explicit clsVariantCurrency(const clsCurrency& value) : Value(value) {}

    using clsVariant::Set;
    int TypeCode() const override { return TypeCurrency; }
    void Clear() override { Value = clsCurrency(); }
    clsVariant* Clone() const override { return new clsVariantCurrency(Value); }
    void Assign(const clsVariant& other) override { Value = other.GetCurrency(); }
    int Compare(const clsVariant& other) const override { return Value.Compare(other.GetCurrency()); }

    clsString GetString() const override { return Value.Text(); }
    int32_t GetInt() const override { return NumberCast<int32_t>(GetDouble()); }
    bool GetBool() const override { return Value.Value != 0; }
    int64_t GetInt64() const override { return NumberCast<int64_t>(GetDouble()); }
    uint64_t GetUInt64() const override { return NumberCast<uint64_t>(GetDouble()); }
    double GetDouble() const override { return Value.ToDouble(); }
    clsDateTime GetDateTime() const override { return clsDateTime::FromWord(GetUInt64()); }
    clsCurrency GetCurrency() const override { return Value; }

    void Set(const clsString& value) override { Value = clsCurrency(VariantText::ToDouble(value)); }
    void Set(int64_t value) override { Value = clsCurrency(static_cast<double>(value)); }
    void Set(uint64_t value) override { Value = clsCurrency(static_cast<double>(value)); }
    void Set(double value) override { Value = clsCurrency(value); }
    void Set(const clsDateTime& value) override { Value = clsCurrency(static_cast<double>(value.Word())); }
    void Set(const clsCurrency& value) override { Value = value; }

    void Write(clsString& buffer, int& position) const override;
    bool Read(const clsString& buffer, int& position) override;
    clsString ToSqlText() const override { return Value.Text(); }

protected:
    int64_t MissingBytes(const clsString& record) const override { return 9 - record.Size(); }
};

class clsVariantDateTime : public clsVariant {
public:
    clsDateTime Value;

    clsVariantDateTime() = default;
    explicit clsVariantDateTime(const clsDateTime& value) : Value(value) {}

    using clsVariant::Set;
    int TypeCode() const override { return TypeDateTime; }
    void Clear() override { Value.Clear(); }
    clsVariant* Clone() const override { return new clsVariantDateTime(Value); }
    void Assign(const clsVariant& other) override { Value = other.GetDateTime(); }
    // The order of the packed bytes.
    int Compare(const clsVariant& other) const override { return Value.Compare(other.GetDateTime()); }

    clsString GetString() const override { return Value.Text(); }
    // The integer getters and GetDouble read the packed word.
    int32_t GetInt() const override { return static_cast<int32_t>(Value.Word()); }
    bool GetBool() const override { return !Value.IsNull(); }
    int64_t GetInt64() const override { return static_cast<int64_t>(Value.Word()); }
    uint64_t GetUInt64() const override { return Value.Word(); }
    double GetDouble() const override { return static_cast<double>(Value.Word()); }
    clsDateTime GetDateTime() const override { return Value; }
    clsCurrency GetCurrency() const override { return clsCurrency(GetDouble()); }

    void Set(const clsString& value) override { Value.Parse(value); }
    void Set(int64_t value) override { Value.SetWord(static_cast<uint64_t>(value)); }
    void Set(uint64_t value) override { Value.SetWord(value); }
    void Set(double value) override { Value.SetWord(NumberCast<uint64_t>(value)); }
    void Set(const clsDateTime& value) override { Value = value; }
    void Set(const clsCurrency& value) override { Value.SetWord(NumberCast<uint64_t>(value.ToDouble())); }

    void Write(clsString& buffer, int& position) const override;
    // A date-time that reads as invalid becomes null.
    bool Read(const clsString& buffer, int& position) override;
    // 'yyyy-mm-dd hh:mm:ss' in quotes, or NULL for the null date-time.
    clsString ToSqlText() const override;
    // By the day number with the time of day as a fraction.
    bool operator>=(const clsVariant& other) const override;
    bool operator<=(const clsVariant& other) const override;

protected:
    int64_t MissingBytes(const clsString& record) const override { return 9 - record.Size(); }
};

} // namespace nuvobase
