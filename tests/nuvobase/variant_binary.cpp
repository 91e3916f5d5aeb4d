// The binary records of the variants: Write/Read, the length form, and the file forms.
#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <vector>

#include "nuvobase/clsvariant.h"

using namespace nuvobase;

namespace {

std::vector<int> BytesOf(const clsString& buffer) {
    std::vector<int> bytes;
    for (int i = 0; i < buffer.Size(); i++) bytes.push_back(static_cast<uint8_t>(*buffer.At(i)));
    return bytes;
}

clsString Record(const clsVariant& value) {
    clsString buffer;
    int position = 0;
    value.Write(buffer, position);
    EXPECT_EQ(position, buffer.Size());
    return buffer;
}

clsString BufferOf(const std::vector<int>& bytes) {
    clsString buffer;
    for (int byte : bytes) buffer.Append(static_cast<char>(byte));
    return buffer;
}

} // namespace

TEST(VariantBinary, RoundTripsOfEveryClassLeaveBothPositionsEqual) {
    clsString longText('x', 300);
    clsCurrency amount(-1234.56);
    const std::unique_ptr<clsVariant> values[] = {
        std::make_unique<clsVariantBool>(true),
        std::make_unique<clsVariantInt>(-123456789),
        std::make_unique<clsVariantInt64>(INT64_MIN),
        std::make_unique<clsVariantUInt64>(UINT64_MAX),
        std::make_unique<clsVariantDouble>(-0.1),
        std::make_unique<clsVariantString>("abc"),
        std::make_unique<clsVariantString>(""),
        std::make_unique<clsVariantString>(longText),
        std::make_unique<clsVariantCurrency>(amount),
        std::make_unique<clsVariantDateTime>(clsDateTime(2001, 2, 3, 4, 5, 6007)),
        std::make_unique<clsVariantDateTime>(),
    };
    // All records back to back in one buffer, then read back in order.
    clsString buffer;
    int written = 0;
    for (const auto& value : values) value->Write(buffer, written);
    EXPECT_EQ(written, buffer.Size());
    int read = 0;
    for (const auto& value : values) {
        std::unique_ptr<clsVariant> copy(value->Clone());
        copy->Clear();
        EXPECT_TRUE(copy->Read(buffer, read)) << value->TypeCode();
        EXPECT_EQ(copy->Compare(*value), 0) << value->TypeCode();
        EXPECT_TRUE(copy->GetString().Compare(value->GetString(), clsString::CompareExact))
            << value->TypeCode();
    }
    EXPECT_EQ(read, written);
}

TEST(VariantBinary, RecordLayouts) {
    EXPECT_EQ(BytesOf(Record(clsVariantInt(0x01020304))), (std::vector<int>{'C', 4, 3, 2, 1}));
    EXPECT_EQ(BytesOf(Record(clsVariantBool(true))), (std::vector<int>{'B', 1, 0, 0, 0}));
    EXPECT_EQ(BytesOf(Record(clsVariantInt64(-2))),
              (std::vector<int>{'D', 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(BytesOf(Record(clsVariantUInt64(0x0102030405060708))),
              (std::vector<int>{'E', 8, 7, 6, 5, 4, 3, 2, 1}));
    // 1.0 is 0x3FF0000000000000.
    EXPECT_EQ(BytesOf(Record(clsVariantDouble(1.0))), (std::vector<int>{'L', 0, 0, 0, 0, 0, 0, 0xF0, 0x3F}));
    EXPECT_EQ(BytesOf(Record(clsVariantCurrency(clsCurrency(2.56)))),
              (std::vector<int>{'N', 0, 1, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(BytesOf(Record(clsVariantDateTime(clsDateTime(2001, 2, 3, 4, 5, 6007)))),
              (std::vector<int>{'O', 0x07, 0xD1, 2, 3, 4, 5, 0x17, 0x77}));
    // Texts: a length byte n, n bytes of the length (low first, no leading zero bytes), then the text.
    EXPECT_EQ(BytesOf(Record(clsVariantString(""))), (std::vector<int>{'M', 0}));
    EXPECT_EQ(BytesOf(Record(clsVariantString("ab"))), (std::vector<int>{'M', 1, 2, 'a', 'b'}));
    const std::vector<int> header300 = {'M', 2, 0x2C, 0x01};
    const std::vector<int> record300 = BytesOf(Record(clsVariantString(clsString('y', 300))));
    EXPECT_EQ(std::vector<int>(record300.begin(), record300.begin() + 4), header300);
    EXPECT_EQ(record300.size(), 304u);
}

TEST(VariantBinary, LengthForm) {
    for (int64_t value : {int64_t{0}, int64_t{1}, int64_t{255}, int64_t{256}, int64_t{-1}, int64_t{-65536},
                          INT64_MAX, INT64_MIN + 1}) {
        clsString buffer;
        int position = 0;
        clsVariant::WriteLength(buffer, position, value);
        int read = 0;
        int64_t back = 12345;
        EXPECT_TRUE(clsVariant::ReadLength(buffer, read, back));
        EXPECT_EQ(back, value);
        EXPECT_EQ(read, position);
    }
    clsString buffer;
    int position = 0;
    clsVariant::WriteLength(buffer, position, -65536);
    EXPECT_EQ(BytesOf(buffer), (std::vector<int>{0xFD, 0, 0, 1})); // -3 and three bytes
    int64_t value;
    position = 0;
    EXPECT_FALSE(clsVariant::ReadLength(BufferOf({9, 1, 2, 3, 4, 5, 6, 7, 8, 9}), position, value));
    position = 0;
    EXPECT_FALSE(clsVariant::ReadLength(BufferOf({3, 1}), position, value));
    position = 5;
    EXPECT_FALSE(clsVariant::ReadLength(BufferOf({0}), position, value));
}

TEST(VariantBinary, BadRecords) {
    // A wrong TypeCode clears the value and fails.
    clsVariantInt number(7);
    int position = 0;
    EXPECT_FALSE(number.Read(Record(clsVariantInt64(7)), position));
    EXPECT_EQ(number.Value, 0);
    // A record cut short fails too.
    number.Value = 7;
    position = 0;
    EXPECT_FALSE(number.Read(BufferOf({'C', 1, 2}), position));
    EXPECT_EQ(number.Value, 0);
    position = 0;
    EXPECT_FALSE(clsVariantDouble().Read(clsString(), position));

    // A text header with n above 8, past the end, or negative leaves the text empty but succeeds.
    for (const std::vector<int>& bytes :
         {std::vector<int>{'M', 9, 1}, std::vector<int>{'M', 2, 1}, std::vector<int>{'M', 1, 5, 'a'},
          std::vector<int>{'M', 0xFF, 1, 'a'}, std::vector<int>{'M'}}) {
        clsVariantString text("old");
        position = 0;
        EXPECT_TRUE(text.Read(BufferOf(bytes), position));
        EXPECT_TRUE(text.Value.IsEmpty());
    }
    clsVariantString text("old");
    position = 0;
    EXPECT_FALSE(text.Read(BufferOf({'C', 0}), position));
    EXPECT_TRUE(text.Value.IsEmpty());

    // A date-time that reads as invalid becomes null.
    clsVariantDateTime when(clsDateTime(2001, 1, 1));
    position = 0;
    EXPECT_TRUE(when.Read(BufferOf({'O', 0x07, 0xD1, 2, 30, 0, 0, 0, 0}), position));
    EXPECT_TRUE(when.Value.IsNull());
    EXPECT_EQ(position, 9);
}

TEST(VariantBinary, FileForms) {
    FILE* file = std::tmpfile();
    ASSERT_NE(file, nullptr);
    clsString buffer;
    EXPECT_EQ(clsVariantString("hello").WriteFile(file, buffer), 8);
    EXPECT_EQ(clsVariantInt(-5).WriteFile(file, buffer), 5);
    EXPECT_EQ(clsVariantString(clsString('z', 5000)).WriteFile(file, buffer), 5004);
    EXPECT_EQ(clsVariantDateTime(clsDateTime(1999, 12, 24)).WriteFile(file, buffer), 9);
    EXPECT_EQ(clsVariantInt(1).WriteFile(nullptr, buffer), 0);
    std::rewind(file);
    clsVariantString text;
    EXPECT_EQ(text.ReadFile(file, buffer), 8);
    EXPECT_TRUE(text.Value == "hello");
    clsVariantInt number;
    EXPECT_EQ(number.ReadFile(file, buffer), 5);
    EXPECT_EQ(number.Value, -5);
    EXPECT_EQ(text.ReadFile(file, buffer), 5004);
    EXPECT_EQ(text.Value.Size(), 5000);
    clsVariantDateTime when;
    EXPECT_EQ(when.ReadFile(file, buffer), 9);
    EXPECT_EQ(when.Value.Year(), 1999);
    EXPECT_EQ(number.ReadFile(file, buffer), 0); // end of file
    EXPECT_EQ(number.ReadFile(nullptr, buffer), 0);
    std::fclose(file);

    // A text record that announces more bytes than the file holds fails without reading them all in.
    file = std::tmpfile();
    ASSERT_NE(file, nullptr);
    const char truncated[] = {'M', 4, 0, 0, 0, 0x40, 'a', 'b'};
    std::fwrite(truncated, 1, sizeof(truncated), file);
    std::rewind(file);
    EXPECT_EQ(text.ReadFile(file, buffer), 0);
    std::fclose(file);
}
