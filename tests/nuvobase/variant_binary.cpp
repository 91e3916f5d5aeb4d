// The binary records of the variants: Write/Read, the length form, and the file forms.
#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <vector>

#include "nuvobase/clsvariant.h"
#include "rows.h"

using namespace nuvobase;
using nuvobase_test::CheckRows;
using Ints = std::vector<int>;

namespace {

Ints BytesOf(const clsString& buffer) {
    Ints bytes;
    for (int i = 0; i < buffer.Size(); i++) bytes.push_back(static_cast<uint8_t>(*buffer.At(i)));
    return bytes;
}

Ints Record(const clsVariant& value) {
    clsString buffer;
    int position = 0;
    value.Write(buffer, position);
    EXPECT_EQ(position, buffer.Size());
    return BytesOf(buffer);
}

clsString BufferOf(const Ints& bytes) {
    clsString buffer;
    for (int byte : bytes) buffer.Append(static_cast<char>(byte));
    return buffer;
}

} // namespace

TEST(VariantBinary, RecordsLengthFormBadRecordsAndFileForms) {
    // The TypeCode byte, then numbers little-endian, a date-time's packed bytes most significant first, and
    // a text's length as a byte n and n bytes of the length, low first.
    CheckRows<Ints>(
        {ROW(Record(clsVariantBool(true)), (Ints{'B', 1, 0, 0, 0})),
         ROW(Record(clsVariantInt(0x01020304)), (Ints{'C', 4, 3, 2, 1})),
         ROW(Record(clsVariantInt64(-2)), (Ints{'D', 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF})),
         ROW(Record(clsVariantDouble(1.0)), (Ints{'L', 0, 0, 0, 0, 0, 0, 0xF0, 0x3F})),
         ROW(Record(clsVariantCurrency(clsCurrency(2.56))), (Ints{'N', 0, 1, 0, 0, 0, 0, 0, 0})),
         ROW(Record(clsVariantDateTime(clsDateTime(2001, 2, 3, 4, 5, 6007))),
             (Ints{'O', 0x07, 0xD1, 2, 3, 4, 5, 0x17, 0x77})),
         ROW(Record(clsVariantString("")), (Ints{'M', 0}))});
    const Ints record300 = Record(clsVariantString(clsString('y', 300)));
    EXPECT_EQ(Ints(record300.begin(), record300.begin() + 5), (Ints{'M', 2, 0x2C, 0x01, 'y'}));
    EXPECT_EQ(record300.size(), 304u);

    // All records back to back in one buffer, then read back in order into emptied clones.
    const std::unique_ptr<clsVariant> values[] = {
        std::make_unique<clsVariantBool>(true),
        std::make_unique<clsVariantInt64>(INT64_MIN),
        std::make_unique<clsVariantUInt64>(UINT64_MAX),
        std::make_unique<clsVariantString>(clsString('x', 300)),
        std::make_unique<clsVariantDateTime>(clsDateTime(2001, 2, 3, 4, 5, 6007)),
        std::make_unique<clsVariantDateTime>(),
    };
    clsString buffer;
    int written = 0, read = 0;
    for (const auto& value : values) value->Write(buffer, written);
    for (const auto& value : values) {
        SCOPED_TRACE(static_cast<char>(value->TypeCode()));
        std::unique_ptr<clsVariant> copy(value->Clone());
        copy->Clear();
        EXPECT_TRUE(copy->Read(buffer, read));
        EXPECT_EQ(copy->Compare(*value), 0);
        EXPECT_TRUE(copy->GetString().Compare(value->GetString(), clsString::CompareExact));
    }
    EXPECT_EQ(read, written);

    // The length form, and bad records.
    for (int64_t value : {int64_t{0}, int64_t{256}, int64_t{-65536}, INT64_MAX, INT64_MIN + 1}) {
        SCOPED_TRACE(value);
        clsString buffer;
        int written = 0, read = 0;
        clsVariant::WriteLength(buffer, written, value);
        int64_t back = 12345;
        EXPECT_TRUE(clsVariant::ReadLength(buffer, read, back));
        EXPECT_EQ(back, value);
        EXPECT_EQ(read, written);
        if (value == -65536) {
            EXPECT_EQ(BytesOf(buffer), (Ints{0xFD, 0, 0, 1})); // -3 and three bytes
        }
    }
    // n above 8, bytes past the end, a position past the end; a wrong TypeCode or a record cut short clears
    // the value and fails.
    int64_t value;
    int position;
    clsVariantInt wrongType(7), cutShort(7);
    CheckRows<int64_t>(
        {ROW(clsVariant::ReadLength(BufferOf({9, 1, 2, 3, 4, 5, 6, 7, 8, 9}), position = 0, value), false),
         ROW(clsVariant::ReadLength(BufferOf({3, 1}), position = 0, value), false),
         ROW(clsVariant::ReadLength(BufferOf({0}), position = 5, value), false),
         ROW(wrongType.Read(BufferOf({'D', 7, 0, 0, 0, 0, 0, 0, 0}), position = 0), false),
         ROW(wrongType.Value, 0), ROW(cutShort.Read(BufferOf({'C', 1, 2}), position = 0), false),
         ROW(cutShort.Value, 0)});
    // A text header with n above 8, past the end, or negative leaves the text empty but succeeds.
    for (const Ints& bytes : {Ints{'M', 9, 1}, Ints{'M', 1, 5, 'a'}, Ints{'M', 0xFF, 1, 'a'}}) {
        clsVariantString text("old");
        EXPECT_TRUE(text.Read(BufferOf(bytes), position = 0));
        EXPECT_TRUE(text.Value.IsEmpty());
    }
    // A date-time that reads as invalid becomes null.
    clsVariantDateTime when(clsDateTime(2001, 1, 1));
    EXPECT_TRUE(when.Read(BufferOf({'O', 0x07, 0xD1, 2, 30, 0, 0, 0, 0}), position = 0));
    EXPECT_TRUE(when.Value.IsNull());

    // The file forms.
    FILE* file = std::tmpfile();
    ASSERT_NE(file, nullptr);
    clsString scratch;
    CheckRows<int>({ROW(clsVariantInt(-5).WriteFile(file, scratch), 5),
                    ROW(clsVariantString(clsString('z', 5000)).WriteFile(file, scratch), 5004),
                    ROW(clsVariantInt(1).WriteFile(nullptr, scratch), 0)});
    // A text record that announces more bytes than the file holds fails without reading them all in.
    const char truncated[] = {'M', 4, 0, 0, 0, 0x40, 'a', 'b'};
    std::fwrite(truncated, 1, sizeof(truncated), file);
    std::rewind(file);
    clsVariantInt number;
    clsVariantString text;
    CheckRows<int>({ROW(number.ReadFile(file, scratch), 5), ROW(number.Value, -5),
                    ROW(text.ReadFile(file, scratch), 5004), ROW(text.Value.Size(), 5000),
                    ROW(text.ReadFile(file, scratch), 0),
                    ROW(number.ReadFile(file, scratch), 0), // end of file
                    ROW(number.ReadFile(nullptr, scratch), 0)});
    std::fclose(file);
}
