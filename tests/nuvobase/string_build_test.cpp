// clsString: storage rules, construction and the building operations.
#include <gtest/gtest.h>

#include <climits>
#include <cstring>

#include "nuvobase/clsstring.h"

using nuvobase::clsString;

// The bytes of s, embedded NULs included, as a std::string for readable comparisons.
static std::string Bytes(const clsString& s) {
    return std::string(s.Text(), size_t(s.Size()));
}

TEST(StringStorage, EmptyStringsAreSafe) {
    clsString never;
    EXPECT_EQ(never.Size(), 0);
    EXPECT_EQ(never.Data(), nullptr);
    EXPECT_EQ(never.GetCapacity(), 0);
    EXPECT_STREQ(never.Text(), "");
    EXPECT_EQ(never.At(0), nuvobase::SharedNul);
    EXPECT_EQ(never.At(-1), nuvobase::SharedNul);

    clsString text("abc");
    EXPECT_EQ(*text.At(2), 'c');
    EXPECT_EQ(*text.At(3), 0); // the terminator itself is in range
    EXPECT_EQ(text.At(4), nuvobase::SharedNul);
    EXPECT_EQ(text.At(-1), nuvobase::SharedNul);

    // A C string that is null or empty gives a string without a buffer.
    EXPECT_EQ(clsString(nullptr).Data(), nullptr);
    EXPECT_EQ(clsString("").Data(), nullptr);
    EXPECT_EQ(nuvobase::EmptyString.Size(), 0);
    EXPECT_STREQ(nuvobase::EmptyString.Text(), "");
}

TEST(StringStorage, CapacityGrowsExactly) {
    clsString s("abc");
    EXPECT_EQ(s.GetCapacity(), 4); // three characters and the terminator
    s.Append("de");
    EXPECT_EQ(s.GetCapacity(), 6);
    s.Assign("xy");
    EXPECT_EQ(s.GetCapacity(), 6); // never shrinks

    EXPECT_TRUE(s.Reserve(100));
    EXPECT_EQ(s.GetCapacity(), 100);
    EXPECT_EQ(Bytes(s), "xy");
    EXPECT_TRUE(s.Reserve(50, false));
    EXPECT_EQ(s.Size(), 0);
    EXPECT_EQ(s.GetCapacity(), 100);

    clsString zeroed("abcdef");
    zeroed.SetLength(2);
    zeroed.Reserve(20, true, true);
    for (int i = 2; i < 20; i++) EXPECT_EQ(zeroed.Data()[i], 0) << i;

    clsString none;
    EXPECT_FALSE(none.Reserve(0));
}

TEST(StringStorage, OversizedRequestsReleaseTheBufferWithoutThrowing) {
    clsString s("abc");
    EXPECT_FALSE(s.Reserve(INT32_MAX));
    EXPECT_EQ(s.Data(), nullptr);
    EXPECT_EQ(s.GetCapacity(), 0);
    EXPECT_EQ(s.Size(), 0);

    s = "abc";
    int position = INT32_MAX - 3;
    EXPECT_FALSE(s.WriteAt("xy", 2, position));
    EXPECT_EQ(s.Data(), nullptr);

    s = "abc";
    s.SetAt(INT32_MAX - 1, 'x', true);
    EXPECT_EQ(s.Data(), nullptr);
    EXPECT_EQ(s.Size(), 0);

    s = "abc";
    s.PadRight('x', INT32_MAX);
    EXPECT_EQ(s.Data(), nullptr);
}

TEST(StringStorage, ClearReleasesOrWipes) {
    clsString s("secret");
    s.Clear(false, true);
    EXPECT_EQ(s.Size(), 0);
    EXPECT_EQ(s.GetCapacity(), 7);
    for (int i = 0; i < 7; i++) EXPECT_EQ(s.Data()[i], 0);
    s = "abc";
    s.Clear();
    EXPECT_NE(s.Data(), nullptr);
    EXPECT_STREQ(s.Text(), "");
    s.Clear(true);
    EXPECT_EQ(s.Data(), nullptr);
    EXPECT_EQ(s.GetCapacity(), 0);
}

TEST(StringBuild, Constructors) {
    EXPECT_EQ(Bytes(clsString('x')), "x");
    EXPECT_EQ(Bytes(clsString(-42)), "-42");
    EXPECT_EQ(Bytes(clsString(7, 3)), "007");
    EXPECT_EQ(Bytes(clsString(-7, 3)), "-007");
    EXPECT_EQ(Bytes(clsString(int64_t(1) << 40)), "1099511627776");
    EXPECT_EQ(Bytes(clsString('-', 4)), "----");
    EXPECT_EQ(clsString('-', 0).Size(), 0);
    EXPECT_EQ(Bytes(clsString("ab", clsString("cd"))), "abcd");
    EXPECT_EQ(Bytes(clsString(nullptr, clsString("cd"))), "cd");

    clsString source("move me");
    clsString moved(std::move(source));
    EXPECT_EQ(Bytes(moved), "move me");
    EXPECT_EQ(source.Size(), 0);
    clsString copy(moved);
    copy.Data()[0] = 'M';
    EXPECT_EQ(Bytes(moved), "move me"); // copies do not share the buffer
}

TEST(StringBuild, AssignCopiesAndClears) {
    clsString s;
    s.Assign("abcdef", 3);
    EXPECT_EQ(Bytes(s), "abc");
    s.Assign("a\0b", 3);
    EXPECT_EQ(Bytes(s), std::string("a\0b", 3));
    s.Assign("xyz", 0);
    EXPECT_EQ(s.Size(), 0);
    s.Assign("xyz");
    s.Assign(nullptr);
    EXPECT_EQ(s.Size(), 0);

    // Assigning a string to itself, or a part of itself, is safe.
    s = "hello world";
    s = *&s;
    EXPECT_EQ(Bytes(s), "hello world");
    s.Assign(s.Text());
    EXPECT_EQ(Bytes(s), "hello world");
    s.Assign(s.Text() + 6);
    EXPECT_EQ(Bytes(s), "world");
}

TEST(StringBuild, AssignFlags) {
    clsString s;
    // 1: line ends outside single quotes become spaces, one each.
    EXPECT_EQ(Bytes(s.Assign("a\r\nb 'c\nd'", -1, 1)), "a  b 'c\nd'");
    // 2: outer spaces go.
    EXPECT_EQ(Bytes(s.Assign("  ab c  ", -1, 2)), "ab c");
    // 4: a space stays only between two alphanumerics, outside quotes.
    EXPECT_EQ(Bytes(s.Assign("x = y +  z", -1, 4)), "x=y+z");
    EXPECT_EQ(Bytes(s.Assign("ab cd", -1, 4)), "ab cd");
    EXPECT_EQ(Bytes(s.Assign("a 'b  c' d", -1, 4)), "a'b  c'd");
    // 4: a line end after a space goes; other line ends stay.
    EXPECT_EQ(Bytes(s.Assign("a \nb", -1, 4)), "ab");
    EXPECT_EQ(Bytes(s.Assign("a\nb", -1, 4)), "a\nb");
    // Combined: the line end becomes a space between alphanumerics and survives.
    EXPECT_EQ(Bytes(s.Assign("a\nb", -1, 1 | 4)), "a b");
    EXPECT_EQ(Bytes(s.Assign("\n a \n", -1, 1 | 2)), "a");
    // A doubled quote toggles twice, so what follows is outside quotes again.
    EXPECT_EQ(Bytes(s.Assign("it''s  x", -1, 4)), "it''sx");
    // Flags apply to the part given by length only.
    EXPECT_EQ(Bytes(s.Assign(" a b c ", 4, 2)), "a b");
}

TEST(StringBuild, AppendAndConcatenate) {
    clsString s("ab");
    s.Append("cdef", 2).Append(nullptr, 3).Append("zz", -1).Append('!');
    EXPECT_EQ(Bytes(s), "abcd!");
    s.Append(s);
    EXPECT_EQ(Bytes(s), "abcd!abcd!");
    s += "x";
    s += clsString("y");
    s += 'z';
    EXPECT_EQ(Bytes(s), "abcd!abcd!xyz");

    clsString a("ab");
    EXPECT_EQ(Bytes(a + "cd"), "abcd");
    EXPECT_EQ(Bytes(a + clsString("cd")), "abcd");
    EXPECT_EQ(Bytes(a + 'c'), "abc");
    EXPECT_EQ(Bytes(a + nullptr), "ab");
    EXPECT_EQ(Bytes(a + ""), "ab");
    EXPECT_EQ(Bytes("x" + a), "xab");
    EXPECT_EQ(Bytes(clsString() + clsString()), "");
}

TEST(StringBuild, ByteAppenders) {
    clsString s;
    for (int i = 0; i < 13; i++) s.AppendByte(uint8_t('a' + i));
    EXPECT_EQ(s.GetCapacity(), 16); // grows by 16 once Length passes Capacity-4
    s.AppendByte('n');
    EXPECT_EQ(s.GetCapacity(), 32);
    EXPECT_EQ(Bytes(s), "abcdefghijklmn");

    clsString v;
    v.AppendVarInt(300); // 300 = 2*128 + 44
    EXPECT_EQ(v.GetCapacity(), 32);
    v.AppendVarInt(0);
    v.AppendVarInt(127);
    v.AppendVarInt(128);
    EXPECT_EQ(v.GetCapacity(), 128); // every call asks for 32 more
    EXPECT_EQ(Bytes(v), std::string("\xAC\x02\x00\x7F\x80\x01", 6));
    clsString big;
    big.AppendVarInt(UINT64_MAX); // 64 bits take ten bytes
    EXPECT_EQ(Bytes(big), std::string(9, '\xFF') + "\x01");
}

TEST(StringBuild, WriteAtOverwritesAndExtends) {
    clsString s("abcdef");
    int position = 2;
    EXPECT_TRUE(s.WriteAt("XY", 2, position));
    EXPECT_EQ(Bytes(s), "abXYef");
    EXPECT_EQ(position, 4);
    position = 5;
    EXPECT_TRUE(s.WriteAt("123", 3, position));
    EXPECT_EQ(Bytes(s), "abXYe123");
    EXPECT_EQ(position, 8);
    EXPECT_GE(s.GetCapacity(), 10);
    EXPECT_FALSE(s.WriteAt("x", 0, position));
    position = -1;
    EXPECT_FALSE(s.WriteAt("x", 1, position));
    EXPECT_EQ(position, -1);

    clsString gap;
    position = 3;
    EXPECT_TRUE(gap.WriteAt("z", 1, position));
    EXPECT_EQ(Bytes(gap), std::string("\0\0\0z", 4));

    s = "abc";
    position = 1;
    s.WriteAt(s.Text(), 3, position); // a source inside the string itself
    EXPECT_EQ(Bytes(s), "aabc");
}

TEST(StringBuild, InsertSetAtAndLength) {
    clsString s("abc");
    s.Insert(1, "XY");
    EXPECT_EQ(Bytes(s), "aXYbc");
    s.Insert(5, "!").Insert(0, 'Q').Insert(7, "?").Insert(-1, "?").Insert(2, "");
    EXPECT_EQ(Bytes(s), "QaXYbc!?");
    s.Insert(9, "never");
    EXPECT_EQ(Bytes(s), "QaXYbc!?");
    s.Insert(1, s.Text() + 6);
    EXPECT_EQ(Bytes(s), "Q!?aXYbc!?");

    clsString t("abc");
    t.SetAt(1, 'X').SetAt(10, 'Y').SetAt(-1, 'Z');
    EXPECT_EQ(Bytes(t), "aXc");
    t.SetAt(5, 'Z', true);
    EXPECT_EQ(Bytes(t), std::string("aXc\0\0Z", 6));
    clsString u;
    u.SetAt(0, 'q');
    EXPECT_EQ(u.Size(), 0);
    u.SetAt(0, 'q', true);
    EXPECT_EQ(Bytes(u), "q");

    clsString v("abcdef");
    v.SetLength(2);
    EXPECT_EQ(Bytes(v), "ab");
    v.SetLength(5).SetLength(-1);
    EXPECT_EQ(Bytes(v), "ab");
}

TEST(StringBuild, Padding) {
    EXPECT_EQ(Bytes(clsString("ab").PadRight('.', 5)), "ab...");
    EXPECT_EQ(Bytes(clsString("abcdef").PadRight('.', 5)), "abcde");
    EXPECT_EQ(Bytes(clsString("42").PadLeft('0', 5)), "00042");
    EXPECT_EQ(Bytes(clsString("123456").PadLeft('0', 5)), "23456");
    EXPECT_EQ(Bytes(clsString().PadLeft('*', 3)), "***");
    EXPECT_EQ(Bytes(clsString("ab").PadLeft('*', 0)), "");
}
