// clsStrings: name/value lookups, Split in its four modes, and Join.
#include <gtest/gtest.h>

#include "nuvobase/clsstrings.h"

using namespace nuvobase;

TEST(Strings, SetValueAndCaseInsensitiveLookups) {
    clsStrings table;
    EXPECT_EQ(table.SetValue("Hash", "32"), 0);
    EXPECT_EQ(table.SetValue("Threads", "1"), 1);
    EXPECT_EQ(table.SetValue("HASH", "64"), 0); // replaces the value, keeps the first spelling of the name
    EXPECT_EQ(table.Count, 2);
    EXPECT_TRUE(table.GetValue("hash") == "64");
    EXPECT_TRUE(table.GetName(0).Compare("Hash", clsString::CompareExact));
    EXPECT_TRUE(table.GetValue("missing").IsEmpty());
    // Without replace a second entry of the same name is added; lookups give the first.
    EXPECT_EQ(table.SetValue("threads", "8", false), 2);
    EXPECT_TRUE(table.GetValue("THREADS") == "1");
    EXPECT_TRUE(table.GetAt(3).IsEmpty());
    EXPECT_TRUE(table.GetName(5).IsEmpty());
    EXPECT_EQ(table.AddLine("free text"), 3);
    EXPECT_TRUE(table.GetName(3).IsEmpty());
    clsStrings copy(table);
    copy.SetValue("hash", "128");
    EXPECT_TRUE(table.GetValue("hash") == "64");
}

TEST(Strings, SplitPlainEntries) {
    clsStrings list;
    EXPECT_EQ(list.Split("a,b,,c", ','), 4);
    EXPECT_EQ(list.KeyAt(0), nullptr);
    EXPECT_TRUE(list.Join(";") == "a;b;;c");
    // Split adds to what is there; the last entry runs to the end of the text, even an empty one.
    EXPECT_EQ(list.Split("d,", ','), 6);
    EXPECT_TRUE(list.Join("") == "abcd");
    list.Clear();
    EXPECT_EQ(list.Split("", ','), 1);

    // trim skips the leading spaces of an entry and trims its end.
    list.Clear();
    list.Split("  a , b c ,", ',', clsStrings::SplitPlain, true);
    EXPECT_TRUE(list.Join("|") == "a|b c|");
    // With a space as the separator, skipping leading spaces also swallows repeated separators.
    list.Clear();
    EXPECT_EQ(list.Split("a  b", ' ', clsStrings::SplitPlain, true), 2);
    list.Clear();
    EXPECT_EQ(list.Split("a  b", ' '), 3);

    // Only with quoted does a separator inside single quotes stay in its entry.
    list.Clear();
    EXPECT_EQ(list.Split("x='a,b',y", ',', clsStrings::SplitPlain, false, true), 2);
    EXPECT_TRUE(list.GetAt(0) == "x='a,b'");
    list.Clear();
    EXPECT_EQ(list.Split("x='a,b',y", ','), 3);
}

TEST(Strings, SplitNamedModesAndJoin) {
    clsStrings list;
    list.Split("Alpha,beta", ',', clsStrings::SplitNameIsValue);
    EXPECT_TRUE(list.GetName(0) == "Alpha");
    EXPECT_TRUE(list.GetValue("ALPHA") == "Alpha");

    list.Clear();
    list.Split("a=1, b = 2 ,c,d=x=y", ',', clsStrings::SplitNameValue, true);
    EXPECT_EQ(list.Count, 4);
    EXPECT_TRUE(list.GetValue("b") == "2");
    EXPECT_TRUE(list.GetName(2) == "c");
    EXPECT_TRUE(list.GetAt(2).IsEmpty());
    EXPECT_TRUE(list.Join(",", true) == "a=1,b=2,c=,d=x=y");
    EXPECT_TRUE(list.Join(",") == "1,2,,x=y");

    // Mode 3 keeps the whole entry as the value; the name ends at the first '=' outside quotes.
    list.Clear();
    list.Split("k='p=q'=v;plain;'a=b'=c; n = 1 ", ';', clsStrings::SplitNamedLine, true);
    EXPECT_EQ(list.Count, 4);
    EXPECT_TRUE(list.GetValue("k") == "k='p=q'=v");
    EXPECT_EQ(list.KeyAt(1), nullptr);
    EXPECT_TRUE(list.GetValue("'a=b'") == "'a=b'=c");
    EXPECT_TRUE(list.GetValue("n") == "n = 1");

    // Join skips holes and nodes without a value object; an empty value counts, and a line without a name
    // is written without one.
    list.Clear();
    list.SetValue("a", "1");
    list.Add(clsString("none"), nullptr);
    list.AddLine("");
    list.SetValue("b", "2");
    list.Remove(0, false);
    EXPECT_TRUE(list.Join(",", true) == ",b=2");
    EXPECT_TRUE(clsStrings().Join(",").IsEmpty());
}
