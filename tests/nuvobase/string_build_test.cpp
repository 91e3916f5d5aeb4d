// clsString: storage rules, the building operations, whole files and counted texts.
#include <gtest/gtest.h>

#include <climits>
#include <cstdio>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>

#include "nuvobase/clsstring.h"
#include "rows.h"
#include "temp_folder.h"

using nuvobase::clsString;
using nuvobase::SharedNul;
using nuvobase_test::Bytes;
using nuvobase_test::CheckRows;

TEST(StringStorage, EmptyStringsAreSafe) {
    clsString never, text("abc");
    EXPECT_STREQ(never.Text(), "");
    CheckRows<const char*>({ROW(never.Data(), nullptr), ROW(never.At(0), SharedNul),
                            ROW(text.At(4), SharedNul), ROW(text.At(-1), SharedNul),
                            ROW(clsString(nullptr).Data(), nullptr), ROW(clsString("").Data(), nullptr)});
    EXPECT_EQ(*text.At(3), 0); // the terminator itself is in range
}

TEST(StringStorage, CapacityGrowsExactlyAndClearKeepsOrWipes) {
    // Rows run in order on one string: three characters and the terminator, never shrinking.
    clsString s("abc");
    CheckRows<int>({ROW(s.GetCapacity(), 4), ROW(s.Append("de").GetCapacity(), 6),
                    ROW(s.Assign("xy").GetCapacity(), 6), ROW(s.Reserve(100), true)});
    EXPECT_EQ(Bytes(s), "xy");
    CheckRows<int>({ROW(s.Reserve(50, false), true), ROW(s.Size(), 0), ROW(s.GetCapacity(), 100),
                    ROW(clsString().Reserve(0), false)});

    clsString secret("abcdef");
    secret.SetLength(2);
    secret.Reserve(20, true, true);
    EXPECT_EQ(std::string(secret.Data() + 2, 18), std::string(18, '\0'));
    secret = "secret";
    secret.Clear();
    EXPECT_NE(secret.Data(), nullptr); // the buffer stays
    EXPECT_STREQ(secret.Text(), "");
    secret = "secret";
    secret.Clear(false, true);
    EXPECT_EQ(std::string(secret.Data(), 20), std::string(20, '\0'));
    secret.Clear(true);
    EXPECT_EQ(secret.Data(), nullptr);
    EXPECT_EQ(secret.GetCapacity(), 0);
}

TEST(StringStorage, OversizedRequestsReleaseTheBufferWithoutThrowing) {
    int position = INT32_MAX - 3;
    const std::function<void(clsString&)> requests[] = {
        [](clsString& s) { EXPECT_FALSE(s.Reserve(INT32_MAX)); },
        [&](clsString& s) { EXPECT_FALSE(s.WriteAt("xy", 2, position)); },
        [](clsString& s) { s.SetAt(INT32_MAX - 1, 'x', true); },
        [](clsString& s) { s.PadRight('x', INT32_MAX); }};
    for (const auto& request : requests) {
        clsString s("abc");
        request(s);
        EXPECT_EQ(s.Data(), nullptr);
        EXPECT_EQ(s.GetCapacity(), 0);
        EXPECT_EQ(s.Size(), 0);
    }
}

TEST(StringBuild, ConstructAssignAppend) {
    const clsString ab("ab");
    clsString s;
    CheckRows<std::string>(
        {TEXT(clsString(-42), "-42"), TEXT(clsString(-7, 3), "-007"),
         TEXT(clsString(int64_t(1) << 40), "1099511627776"), TEXT(clsString('-', 4), "----"),
         TEXT(clsString('-', 0), ""), TEXT(clsString(nullptr, ab), "ab"), TEXT(ab + 'c', "abc"),
         TEXT(ab + nullptr, "ab"), TEXT("x" + ab, "xab"), TEXT(s.Assign("a\0b", 3), std::string("a\0b", 3)),
         TEXT(s.Assign("xyz", 0), ""), TEXT(s.Assign(nullptr), ""),
         // A null source or a negative length appends nothing.
         TEXT(clsString("ab").Append("cdef", 2).Append(nullptr, 3).Append("zz", -1).Append('!'), "abcd!"),
         // Flag 1: line ends outside single quotes become spaces, one each. 2: outer spaces go.
         TEXT(s.Assign("a\r\nb 'c\nd'", -1, 1), "a  b 'c\nd'"), TEXT(s.Assign("  ab c  ", -1, 2), "ab c"),
         // 4: a space stays only between two alphanumerics, outside quotes; a line end after a space goes.
         TEXT(s.Assign("x = y +  z", -1, 4), "x=y+z"), TEXT(s.Assign("a 'b  c' d", -1, 4), "a'b  c'd"),
         TEXT(s.Assign("a \nb", -1, 4), "ab"), TEXT(s.Assign("a\nb", -1, 4), "a\nb"),
         TEXT(s.Assign("a\nb", -1, 1 | 4), "a b"),
         TEXT(s.Assign("it''s  x", -1, 4), "it''sx"), // a doubled quote toggles twice
         TEXT(s.Assign(" a b c ", 4, 2), "a b")});    // flags apply to the part given by length only

    clsString source("move me");
    clsString moved(std::move(source));
    EXPECT_EQ(source.Size(), 0);
    clsString copy(moved);
    copy.Data()[0] = 'M';
    EXPECT_EQ(Bytes(moved), "move me"); // copies do not share the buffer

    // Assigning or appending a string to itself, or a part of itself, is safe.
    s = "hello world";
    s = *&s;
    s.Assign(s.Text() + 6);
    s.Append(s);
    EXPECT_EQ(Bytes(s), "worldworld");
}

TEST(StringBuild, ByteAppenders) {
    clsString s;
    for (int i = 0; i < 13; i++) s.AppendByte(uint8_t('a' + i));
    EXPECT_EQ(s.GetCapacity(), 16); // grows by 16 once Length passes Capacity-4
    s.AppendByte('n');
    EXPECT_EQ(s.GetCapacity(), 32);
    EXPECT_EQ(Bytes(s), "abcdefghijklmn");

    clsString v;
    v.AppendVarInt(300).AppendVarInt(0).AppendVarInt(127).AppendVarInt(128); // 300 = 2*128 + 44
    EXPECT_EQ(v.GetCapacity(), 128);                                         // every call asks for 32 more
    EXPECT_EQ(Bytes(v), std::string("\xAC\x02\x00\x7F\x80\x01", 6));
    EXPECT_EQ(Bytes(clsString().AppendVarInt(UINT64_MAX)), std::string(9, '\xFF') + "\x01"); // ten bytes
}

TEST(StringBuild, WriteAtInsertSetAtAndPadding) {
    // WriteAt overwrites and extends, zeroing a gap; a source inside the string itself is safe.
    clsString s("abcdef"), gap;
    int position = 2;
    EXPECT_TRUE(s.WriteAt("XYe123", 6, position));
    EXPECT_EQ(Bytes(s), "abXYe123");
    EXPECT_EQ(position, 8);
    EXPECT_FALSE(s.WriteAt("x", 0, position));
    EXPECT_FALSE(s.WriteAt("x", 1, position = -1));
    EXPECT_TRUE(gap.WriteAt("z", 1, position = 3));
    EXPECT_EQ(Bytes(gap), std::string("\0\0\0z", 4));
    s = "abc";
    s.WriteAt(s.Text(), 3, position = 1);
    EXPECT_EQ(Bytes(s), "aabc");

    // Insert goes before a position 0..Length; others do nothing. SetAt stays inside Capacity unless it
    // may extend the string with zeros.
    clsString t("abc"), u;
    s = "abc";
    CheckRows<std::string>(
        {TEXT(s.Insert(1, "XY").Insert(5, "!").Insert(0, 'Q').Insert(-1, "?").Insert(9, "?").Insert(2, ""),
              "QaXYbc!"),
         TEXT(s.Insert(1, s.Text() + 5), "Qc!aXYbc!"),
         TEXT(t.SetAt(1, 'X').SetAt(10, 'Y').SetAt(-1, 'Z'), "aXc"),
         TEXT(t.SetAt(5, 'Z', true), std::string("aXc\0\0Z", 6)), TEXT(u.SetAt(0, 'q'), ""),
         TEXT(u.SetAt(0, 'q', true), "q"), TEXT(clsString("ab").SetLength(5), "ab"),
         TEXT(clsString("ab").SetLength(-1), "ab"), TEXT(clsString("ab").PadRight('.', 5), "ab..."),
         TEXT(clsString("abcdef").PadRight('.', 5), "abcde"), TEXT(clsString("42").PadLeft('0', 5), "00042"),
         TEXT(clsString("123456").PadLeft('0', 5), "23456"), TEXT(clsString().PadLeft('*', 3), "***"),
         TEXT(clsString("ab").PadLeft('*', 0), "")});
}

using StringFile = nuvobase_test::TempFolder;

TEST_F(StringFile, SaveAndLoad) {
    const std::string path = Path("text");
    clsString text, loaded("old content");
    text.Assign("line\r\n\0binary\xFF", 14);
    EXPECT_TRUE(text.SaveToFile(path.c_str()));
    EXPECT_EQ(loaded.LoadFromFile(path.c_str()), 14);
    EXPECT_EQ(Bytes(loaded), Bytes(text));
    EXPECT_TRUE(clsString("more").SaveToFile(path.c_str(), false)); // appends
    EXPECT_EQ(loaded.LoadFromFile(path.c_str()), 18);
    EXPECT_EQ(Bytes(loaded), Bytes(text) + "more");
    EXPECT_TRUE(clsString("new").SaveToFile(path.c_str(), true)); // replaces
    EXPECT_EQ(loaded.LoadFromFile(path.c_str()), 3);
    EXPECT_EQ(Bytes(loaded), "new");

    EXPECT_TRUE(clsString().SaveToFile(path.c_str()));
    EXPECT_EQ(loaded.LoadFromFile(path.c_str()), 0);
    EXPECT_EQ(loaded.Size(), 0);
    std::remove(path.c_str());
    CheckRows<int>({ROW(loaded.LoadFromFile(path.c_str()), 0), ROW(loaded.LoadFromFile(nullptr), 0),
                    ROW(loaded.LoadFromFile(folder.c_str()), 0),
                    ROW(clsString("x").SaveToFile(Path("no_folder/file").c_str()), false)});
}

namespace {

// Runs ReadCounted on a stream holding bytes. The string is left in text.
bool ReadCounted(const std::string& bytes, clsString& text) {
    const std::unique_ptr<FILE, int (*)(FILE*)> file(std::tmpfile(), std::fclose);
    if (!file) throw std::runtime_error("no temporary file");
    std::fwrite(bytes.data(), 1, bytes.size(), file.get());
    std::rewind(file.get());
    return text.ReadCounted(file.get());
}

} // namespace

TEST(StringCounted, ReadCountedText) {
    clsString text("old"), record;
    EXPECT_TRUE(ReadCounted(std::string("\x05hello", 6), text));
    EXPECT_EQ(Bytes(text), "hello");
    EXPECT_FALSE(ReadCounted(std::string("\x05hel", 4), text)); // the file ends early
    EXPECT_EQ(text.Size(), 0);
    // An empty text; no length; the length itself cut off; 0xFFFFFFFF, which reads as negative.
    CheckRows<bool>({ROW(ReadCounted(std::string("\x00", 1), text), true), ROW(ReadCounted("", text), false),
                     ROW(ReadCounted("\x85", text), false),
                     ROW(ReadCounted("\xFF\xFF\xFF\xFF\x0F", text), false),
                     ROW(text.ReadCounted(nullptr), false)});

    // What AppendVarInt writes, ReadCounted reads.
    record.AppendVarInt(200).Append(std::string(200, 'q').c_str());
    EXPECT_TRUE(ReadCounted(Bytes(record), text));
    EXPECT_EQ(Bytes(text), std::string(200, 'q'));

    // 10485760 = 5 * 2^21 (base-128 digits 0, 0, 0, 5) is the longest text; one more throws.
    EXPECT_TRUE(ReadCounted(std::string("\x80\x80\x80\x05", 4) + std::string(10485760, 'z'), text));
    EXPECT_EQ(text.Size(), 10485760);
    try {
        ReadCounted(std::string("\x81\x80\x80\x05", 4) + "abc", text);
        FAIL() << "a length of 10485761 must throw";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "clsString: length overflow!");
    }
    EXPECT_EQ(text.Size(), 0);
}
