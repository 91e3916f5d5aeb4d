// clsString: storage rules, construction and the building operations.
#include <gtest/gtest.h>

#include <climits>
#include <functional>

#include "nuvobase/clsstring.h"
#include "rows.h"

using nuvobase::clsString;
using nuvobase_test::Bytes;
using nuvobase_test::CheckRows;

TEST(StringStorage, EmptyStringsAreSafe) {
    clsString never;
    EXPECT_EQ(never.Data(), nullptr);
    EXPECT_STREQ(never.Text(), "");
    EXPECT_EQ(never.At(0), nuvobase::SharedNul);
    clsString text("abc");
    EXPECT_EQ(*text.At(3), 0); // the terminator itself is in range
    EXPECT_EQ(text.At(4), nuvobase::SharedNul);
    EXPECT_EQ(text.At(-1), nuvobase::SharedNul);
    // A C string that is null or empty gives a string without a buffer.
    EXPECT_EQ(clsString(nullptr).Data(), nullptr);
    EXPECT_EQ(clsString("").Data(), nullptr);
}

TEST(StringStorage, CapacityGrowsExactlyAndClearKeepsOrWipes) {
    clsString s("abc");
    EXPECT_EQ(s.GetCapacity(), 4); // three characters and the terminator
    s.Append("de");
    EXPECT_EQ(s.GetCapacity(), 6);
    s.Assign("xy");
    EXPECT_EQ(s.GetCapacity(), 6); // never shrinks
    EXPECT_TRUE(s.Reserve(100));
    EXPECT_EQ(Bytes(s), "xy");
    EXPECT_TRUE(s.Reserve(50, false));
    EXPECT_EQ(s.Size(), 0);
    EXPECT_EQ(s.GetCapacity(), 100);
    EXPECT_FALSE(clsString().Reserve(0));

    clsString secret("abcdef");
    secret.SetLength(2);
    secret.Reserve(20, true, true);
    for (int i = 2; i < 20; i++) EXPECT_EQ(secret.Data()[i], 0) << i;
    secret = "secret";
    secret.Clear();
    EXPECT_NE(secret.Data(), nullptr); // the buffer stays
    EXPECT_STREQ(secret.Text(), "");
    secret = "secret";
    secret.Clear(false, true);
    for (int i = 0; i < 20; i++) EXPECT_EQ(secret.Data()[i], 0) << i;
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
         TEXT(clsString("ab").Append("cdef", 2).Append(nullptr, 3).Append("zz", -1).Append('!'), "abcd!")});

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

TEST(StringBuild, AssignFlags) {
    clsString s;
    CheckRows<std::string>(
        {// 1: line ends outside single quotes become spaces, one each.
         TEXT(s.Assign("a\r\nb 'c\nd'", -1, 1), "a  b 'c\nd'"),
         // 2: outer spaces go.
         TEXT(s.Assign("  ab c  ", -1, 2), "ab c"),
         // 4: a space stays only between two alphanumerics, outside quotes; a line end after a space goes.
         TEXT(s.Assign("x = y +  z", -1, 4), "x=y+z"), TEXT(s.Assign("a 'b  c' d", -1, 4), "a'b  c'd"),
         TEXT(s.Assign("a \nb", -1, 4), "ab"), TEXT(s.Assign("a\nb", -1, 4), "a\nb"),
         // Combined: the line end becomes a space between alphanumerics and survives.
         TEXT(s.Assign("a\nb", -1, 1 | 4), "a b"),
         // A doubled quote toggles twice, so what follows is outside quotes again.
         TEXT(s.Assign("it''s  x", -1, 4), "it''sx"),
         // Flags apply to the part given by length only.
         TEXT(s.Assign(" a b c ", 4, 2), "a b")});
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
    clsString s("abcdef");
    int position = 2;
    EXPECT_TRUE(s.WriteAt("XYe123", 6, position));
    EXPECT_EQ(Bytes(s), "abXYe123");
    EXPECT_EQ(position, 8);
    EXPECT_FALSE(s.WriteAt("x", 0, position));
    EXPECT_FALSE(s.WriteAt("x", 1, position = -1));
    clsString gap;
    EXPECT_TRUE(gap.WriteAt("z", 1, position = 3));
    EXPECT_EQ(Bytes(gap), std::string("\0\0\0z", 4));
    s = "abc";
    s.WriteAt(s.Text(), 3, position = 1);
    EXPECT_EQ(Bytes(s), "aabc");

    // Insert goes before a position 0..Length; others do nothing.
    s = "abc";
    s.Insert(1, "XY").Insert(5, "!").Insert(0, 'Q').Insert(-1, "?").Insert(9, "?").Insert(2, "");
    EXPECT_EQ(Bytes(s), "QaXYbc!");
    s.Insert(1, s.Text() + 5);
    EXPECT_EQ(Bytes(s), "Qc!aXYbc!");

    // SetAt stays inside Capacity unless it may extend the string with zeros.
    clsString t("abc");
    t.SetAt(1, 'X').SetAt(10, 'Y').SetAt(-1, 'Z');
    EXPECT_EQ(Bytes(t), "aXc");
    t.SetAt(5, 'Z', true);
    EXPECT_EQ(Bytes(t), std::string("aXc\0\0Z", 6));
    clsString u;
    EXPECT_EQ(u.SetAt(0, 'q').Size(), 0);
    EXPECT_EQ(Bytes(u.SetAt(0, 'q', true)), "q");

    CheckRows<std::string>(
        {TEXT(clsString("ab").SetLength(5), "ab"), TEXT(clsString("ab").SetLength(-1), "ab"),
         TEXT(clsString("ab").PadRight('.', 5), "ab..."), TEXT(clsString("abcdef").PadRight('.', 5), "abcde"),
         TEXT(clsString("42").PadLeft('0', 5), "00042"), TEXT(clsString("123456").PadLeft('0', 5), "23456"),
         TEXT(clsString().PadLeft('*', 3), "***"), TEXT(clsString("ab").PadLeft('*', 0), "")});
}
