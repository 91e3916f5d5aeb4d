// clsPCollection, clsC and the lists clsCStrings / clsCInts / clsStrings.
#include <gtest/gtest.h>

#include <vector>

#include "nuvobase/clsstrings.h"
#include "rows.h"

using namespace nuvobase;
using nuvobase_test::CheckRows;

namespace {

// Counts live instances, to see which elements a list deletes.
struct Tracked {
    static inline int Alive = 0;
    int Id;
    explicit Tracked(int id) : Id(id) { Alive++; }
    Tracked(const Tracked& other) : Id(other.Id) { Alive++; }
    ~Tracked() { Alive--; }
};

// The entries Split makes of text on an empty list, joined with '|' and with their names.
clsString Split(const char* text, char separator, int mode = clsStrings::SplitPlain, bool trim = false,
                bool quoted = false) {
    clsStrings list;
    const int count = list.Split(text, separator, mode, trim, quoted);
    EXPECT_EQ(count, list.Count);
    return list.Join("|", true);
}

} // namespace

TEST(PCollection, GrowsByAQuarterPlusOne) {
    clsPCollection<int> list(false); // the values live on the stack
    EXPECT_EQ(list.At(0), nullptr);
    int values[20];
    std::vector<int> capacities;
    for (int i = 0; i < 20; i++) {
        EXPECT_EQ(list.Add(&values[i]), i);
        if (capacities.empty() || capacities.back() != list.Capacity) capacities.push_back(list.Capacity);
    }
    // 1, then c*5/4+1 each time the array is full.
    EXPECT_EQ(capacities, (std::vector<int>{1, 2, 3, 4, 6, 8, 11, 14, 18, 23}));
    CheckRows<int*>({ROW(list.At(20), nullptr), ROW(list.At(-1), nullptr)});
    // Not below Count; not above Capacity is nothing to do.
    CheckRows<int>({ROW(list.Resize(19), false), ROW(list.Resize(20), true), ROW(list.Capacity, 23),
                    ROW(list.Resize(30), true)});
    CheckRows<int*>({ROW(list.At(19), &values[19]), ROW(list.Items[29], nullptr)});
}

TEST(PCollection, DeleteClearAndCopyFollowOwnership) {
    Tracked::Alive = 0;
    {
        clsPCollection<Tracked> list;
        for (int id : {0, 1, -1, -1, 4}) list.Add(id < 0 ? nullptr : new Tracked(id));
        // Removing the last real element leaves null slots at the end, which Count drops too.
        CheckRows<int>({ROW(list.Delete(5), false), ROW(list.Delete(-1), false), ROW(list.Delete(0), true),
                        ROW(Tracked::Alive, 2), ROW(list.Count, 4), ROW(list.At(0)->Id, 1),
                        ROW(list.Delete(3), true), ROW(list.Count, 1), ROW(Tracked::Alive, 1)});

        // An owner's copy copies the elements; a list that does not own them shares the pointers.
        {
            clsPCollection<Tracked> copy(list);
            EXPECT_NE(copy.At(0), list.At(0));
            EXPECT_EQ(copy.At(0)->Id, 1);
            EXPECT_EQ(Tracked::Alive, 2);
        }
        EXPECT_EQ(Tracked::Alive, 1);
        clsPCollection<Tracked> view(false), viewCopy;
        view.Add(list.At(0));
        viewCopy = view;
        EXPECT_EQ(viewCopy.At(0), list.At(0));
        EXPECT_FALSE(viewCopy.Owner);

        list.Clear(true);
        EXPECT_EQ(Tracked::Alive, 0);
        EXPECT_NE(list.Items, nullptr);
        list.Add(new Tracked(7));
        list.Clear();
        EXPECT_EQ(list.Items, nullptr);
    }
    EXPECT_EQ(Tracked::Alive, 0);
}

TEST(CList, AddCopiesAndGetAtReturnsValues) {
    clsCStrings texts;
    clsCInts numbers;
    CheckRows<int>({ROW(texts.Add("x", 0), -1), ROW(texts.Add("a"), 0), ROW(texts.Add("b", 3), 1),
                    ROW(texts.Count, 4), ROW(numbers.Add(-7), 0)}); // the value, not a pointer
    EXPECT_NE(texts.At(1), texts.At(2));                            // every copy is a heap object of its own
    EXPECT_TRUE(texts.GetAt(3) == "b");
    EXPECT_TRUE(texts.GetAt(4).IsEmpty());
    numbers.Add(static_cast<int*>(nullptr));
    EXPECT_EQ(numbers.GetAt(0), -7);
    EXPECT_EQ(numbers.GetAt(1), 0);
}

TEST(CList, SetTextCutsAndGetTextJoins) {
    // SetText empties the list first; numbers are read as atoi and ToUInt64 read them.
    auto cut = [](auto list, const char* text, bool trim) {
        list.SetText(clsString(text), ',', trim);
        return clsString(list.Count, 1).Append(":").Append(list.GetText("|"));
    };
    clsCStrings old, texts;
    old.Add("old");
    // GetText from first to last (-1 or beyond the end: the last); null elements lose their separators.
    texts.SetText(clsString("a;b;it's;d"), ';', false);
    texts.Add(static_cast<clsString*>(nullptr));
    texts.Add("e");
    CheckRows<std::string>(
        {TEXT(cut(old, " a , b,,c ", false), "4: a | b||c "), TEXT(cut(old, " a , b,,c ", true), "4:a|b||c"),
         TEXT(cut(old, "a,", false), "2:a|"), TEXT(cut(old, "", false), "0:"),
         TEXT(cut(clsCInts(), "1, 22,x,-4", true), "4:1|22|0|-4"),
         TEXT(cut(clsC<uint64_t>(), "0x10,18446744073709551615", false), "2:16|18446744073709551615"),
         TEXT(texts.GetText(", ", false, 1, 2), "b, it's"),
         TEXT(texts.GetText(",", true, 2, 99), "'it''s','d','e'"), TEXT(texts.GetText(",", false, 3), "d,e"),
         TEXT(texts.GetText(",", false, 6, -1), "")});
}

TEST(Strings, SetValueAndCaseInsensitiveLookups) {
    // A replaced value keeps the first spelling of the name; without replace, lookups give the first entry.
    clsStrings table;
    CheckRows<int>({ROW(table.SetValue("Hash", "32"), 0), ROW(table.SetValue("Threads", "1"), 1),
                    ROW(table.SetValue("HASH", "64"), 0), ROW(table.Count, 2),
                    ROW(table.SetValue("threads", "8", false), 2), ROW(table.AddLine("free text"), 3)});
    CheckRows<std::string>({TEXT(table.GetValue("hash"), "64"), TEXT(table.GetName(0), "Hash"),
                            TEXT(table.GetValue("missing"), ""), TEXT(table.GetValue("THREADS"), "1"),
                            TEXT(table.GetAt(4), ""), TEXT(table.GetName(5), ""),
                            TEXT(table.GetName(3), "")});
    clsStrings copy(table);
    copy.SetValue("hash", "128");
    EXPECT_TRUE(table.GetValue("hash") == "64");
}

TEST(Strings, SplitAndJoin) {
    // trim makes repeated spaces one cut; mode 3 names the whole entry by what precedes '=' outside quotes.
    CheckRows<std::string>(
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
    CheckRows<std::string>(
        {TEXT(list.Join(",", true), ",b=2"), TEXT(list.Join(","), ",2"), TEXT(clsStrings().Join(","), "")});
}
