// clsPCollection, clsC and the lists clsCStrings / clsCInts / clsStrings.
#include <gtest/gtest.h>

#include <vector>

#include "nuvobase/clsstrings.h"
#include "rows.h"

using namespace nuvobase;
using nuvobase_test::Bytes;
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
clsString Split(const char* text, char separator, int mode = clsStrings::SplitPlain) {
    clsStrings list;
    const int count = list.Split(text, separator, mode);
    EXPECT_EQ(count, list.Count);
    return list.Join("|", true);
}

} // namespace

TEST(PCollection, OwnershipTextsLookupsSplitAndJoin) {
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

        list.Add(new Tracked(7));
    }
    EXPECT_EQ(Tracked::Alive, 0);

    // SetText empties the list first; GetText skips null elements with their separators.
    clsCStrings texts;
    texts.Add("old");
    texts.SetText(clsString(" a , b,,c "), ',', false);
    EXPECT_EQ(texts.Count, 4);
    texts.Add(static_cast<clsString*>(nullptr));
    texts.Add("e");
    EXPECT_EQ(Bytes(texts.GetText("|")), " a | b||c |e");
    texts.SetText(clsString("a,"), ',', false);
    EXPECT_EQ(Bytes(texts.GetText("|")), "a|");
    texts.SetText(clsString(), ',', false);
    EXPECT_EQ(texts.Count, 0);

    // A replaced value keeps the first spelling of the name; without replace, lookups give the first entry.
    clsStrings table;
    CheckRows<int>({ROW(table.SetValue("Hash", "32"), 0), ROW(table.SetValue("HASH", "64"), 0),
                    ROW(table.SetValue("threads", "1", false), 1),
                    ROW(table.SetValue("Threads", "8", false), 2)});
    CheckRows<std::string>({TEXT(table.GetValue("hash"), "64"), TEXT(table.GetName(0), "Hash"),
                            TEXT(table.GetValue("missing"), ""), TEXT(table.GetValue("THREADS"), "1")});

    // The program splits plain or by name; a name is what precedes the first '='.
    CheckRows<std::string>(
        {TEXT(Split("a,b,,c", ','), "a|b||c"), TEXT(Split("d,", ','), "d|"), TEXT(Split("", ','), ""),
         TEXT(Split("x='a,b',y", ','), "x='a|b'|y"),
         TEXT(Split("a=1,b = 2,c,d=x=y", ',', clsStrings::SplitNameValue), "a=1|b = 2|c=|d=x=y")});

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
