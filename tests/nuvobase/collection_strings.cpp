// clsStrings: name/value lookups, Split in its four modes, and Join.
#include <gtest/gtest.h>

#include "nuvobase/clsstrings.h"
#include "rows.h"

using namespace nuvobase;

namespace {

// The entries Split makes of text on an empty list, joined with '|' and with their names.
clsString Split(const char* text, char separator, int mode = clsStrings::SplitPlain, bool trim = false,
                bool quoted = false) {
    clsStrings list;
    const int count = list.Split(text, separator, mode, trim, quoted);
    EXPECT_EQ(count, list.Count);
    return list.Join("|", true);
}

} // namespace

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

TEST(Strings, SplitAndJoin) {
    // The last entry runs to the end of the text, even an empty one. trim skips the leading spaces of an
    // entry (so repeated spaces as separators make one cut) and trims names and values. Only with quoted
    // does a separator inside single quotes stay in its entry. Mode 2 cuts name=value at the first '=';
    // mode 3 keeps the whole entry as the value, named by what stands before the first '=' outside quotes.
    nuvobase_test::CheckRows<std::string>(
        {TEXT(Split("a,b,,c", ','), "a|b||c"), TEXT(Split("d,", ','), "d|"), TEXT(Split("", ','), ""),
         TEXT(Split("  a , b c ,", ',', clsStrings::SplitPlain, true), "a|b c|"),
         TEXT(Split("a  b", ' ', clsStrings::SplitPlain, true), "a|b"), TEXT(Split("a  b", ' '), "a||b"),
         TEXT(Split("x='a,b',y", ',', clsStrings::SplitPlain, false, true), "x='a,b'|y"),
         TEXT(Split("x='a,b',y", ','), "x='a|b'|y"),
         TEXT(Split("Alpha,beta", ',', clsStrings::SplitNameIsValue), "Alpha=Alpha|beta=beta"),
         TEXT(Split("a=1, b = 2 ,c,d=x=y", ',', clsStrings::SplitNameValue, true), "a=1|b=2|c=|d=x=y"),
         TEXT(Split("k='p=q'=v;plain;'a=b'=c; n = 1 ", ';', clsStrings::SplitNamedLine, true),
              "k=k='p=q'=v|plain|'a=b'='a=b'=c|n=n = 1")});

    EXPECT_EQ(clsStrings().Split("", ','), 1);
    // Split adds to what is there; lookups by name ignore case.
    clsStrings list;
    list.Split("Alpha=1", ',', clsStrings::SplitNameValue);
    EXPECT_EQ(list.Split("beta=2", ',', clsStrings::SplitNameValue), 2);
    EXPECT_TRUE(list.GetValue("ALPHA") == "1");

    // Join skips holes and nodes without a value object; an empty value counts.
    list.Clear();
    list.SetValue("a", "1");
    list.Add(clsString("none"), nullptr);
    list.AddLine("");
    list.SetValue("b", "2");
    list.Remove(0, false);
    EXPECT_TRUE(list.Join(",", true) == ",b=2");
    EXPECT_TRUE(list.Join(",") == ",2");
    EXPECT_TRUE(clsStrings().Join(",").IsEmpty());
}
