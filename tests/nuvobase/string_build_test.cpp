// clsString: empty and oversized buffers, the building operations and whole files.
#include <gtest/gtest.h>

#include <climits>
#include <cstdio>
#include <functional>
#include <string>

#include "nuvobase/clsstring.h"
#include "rows.h"
#include "temp_folder.h"

using nuvobase::clsString;
using nuvobase::SharedNul;
using nuvobase_test::Bytes;
using nuvobase_test::CheckRows;

TEST(StringBuild, StorageConstructAssignAppendInsertAndPad) {
    clsString never, text("abc");
    EXPECT_STREQ(never.Text(), "");
    CheckRows<const char*>({ROW(never.Data(), nullptr), ROW(never.At(0), SharedNul),
                            ROW(text.At(4), SharedNul), ROW(text.At(-1), SharedNul),
                            ROW(clsString(nullptr).Data(), nullptr), ROW(clsString("").Data(), nullptr)});
    EXPECT_EQ(*text.At(3), 0); // the terminator itself is in range

    // Oversized requests release the buffer without throwing.
    const std::function<void(clsString&)> requests[] = {
        [](clsString& s) { EXPECT_FALSE(s.Reserve(INT32_MAX)); },
        [](clsString& s) { s.SetAt(INT32_MAX - 1, 'x', true); },
        [](clsString& s) { s.PadRight('x', INT32_MAX); }};
    for (const auto& request : requests) {
        clsString s("abc");
        request(s);
        EXPECT_EQ(s.Data(), nullptr);
        EXPECT_EQ(s.GetCapacity(), 0);
        EXPECT_EQ(s.Size(), 0);
    }

    // Constructing, assigning, appending, inserting and padding.
    const clsString ab("ab");
    clsString s, t("abc");
    CheckRows<std::string>(
        {TEXT(clsString(-7, 3), "-007"), TEXT(clsString(int64_t(1) << 40), "1099511627776"),
         TEXT(clsString('-', 4), "----"), TEXT("x" + ab + 'c', "xabc"),
         TEXT(s.Assign("a\0b", 3), std::string("a\0b", 3)),
         // A null source or a negative length appends nothing.
         TEXT(clsString("ab").Append("cdef", 2).Append(nullptr, 3).Append("zz", -1).Append('!'), "abcd!"),
         // Insert goes before a position 0..Length; others do nothing. SetAt stays inside the string unless
         // it may extend it with zeros.
         TEXT(clsString("abc").Insert(1, "XY").Insert(5, "!").Insert(-1, "?").Insert(9, "?"), "aXYbc!"),
         TEXT(t.SetAt(1, 'X').SetAt(10, 'Y'), "aXc"), TEXT(t.SetAt(5, 'Z', true), std::string("aXc\0\0Z", 6)),
         TEXT(clsString("ab").PadRight('.', 5), "ab..."),
         TEXT(clsString("123456").PadLeft('0', 5), "23456")});

    clsString copy(ab);
    copy.Data()[0] = 'A';
    EXPECT_EQ(Bytes(ab), "ab"); // copies do not share the buffer
    // Assigning, appending or inserting a string to itself, or a part of itself, is safe.
    s = "hello world";
    s = *&s;
    s.Assign(s.Text() + 6);
    s.Append(s);
    s.Insert(5, s.Text() + 8);
    EXPECT_EQ(Bytes(s), "worldldworld");
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
    EXPECT_TRUE(clsString().SaveToFile(path.c_str(), true)); // replaces
    EXPECT_EQ(loaded.LoadFromFile(path.c_str()), 0);
    EXPECT_EQ(loaded.Size(), 0);
    std::remove(path.c_str());
    CheckRows<int>({ROW(loaded.LoadFromFile(path.c_str()), 0), ROW(loaded.LoadFromFile(nullptr), 0),
                    ROW(loaded.LoadFromFile(folder.c_str()), 0),
                    ROW(clsString("x").SaveToFile(Path("no_folder/file").c_str()), false)});
}
