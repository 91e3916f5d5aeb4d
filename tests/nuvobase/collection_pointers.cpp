// clsPCollection, clsC and the lists clsCStrings / clsCInts.
#include <gtest/gtest.h>

#include <vector>

#include "nuvobase/clsstrings.h"
#include "rows.h"

using namespace nuvobase;

namespace {

// Counts live instances, to see which elements a list deletes.
struct Tracked {
    static inline int Alive = 0;
    int Id;
    explicit Tracked(int id) : Id(id) { Alive++; }
    Tracked(const Tracked& other) : Id(other.Id) { Alive++; }
    ~Tracked() { Alive--; }
};

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
    EXPECT_EQ(list.At(20), nullptr);
    EXPECT_EQ(list.At(-1), nullptr);

    EXPECT_FALSE(list.Resize(19)); // below Count
    EXPECT_TRUE(list.Resize(20));  // not above Capacity: nothing to do
    EXPECT_EQ(list.Capacity, 23);
    EXPECT_TRUE(list.Resize(30));
    EXPECT_EQ(list.At(19), &values[19]);
    EXPECT_EQ(list.Items[29], nullptr);
}

TEST(PCollection, DeleteClearAndCopyFollowOwnership) {
    Tracked::Alive = 0;
    {
        clsPCollection<Tracked> list;
        for (int id : {0, 1, -1, -1, 4}) list.Add(id < 0 ? nullptr : new Tracked(id));
        EXPECT_FALSE(list.Delete(5));
        EXPECT_FALSE(list.Delete(-1));
        EXPECT_TRUE(list.Delete(0));
        EXPECT_EQ(Tracked::Alive, 2);
        EXPECT_EQ(list.Count, 4);
        EXPECT_EQ(list.At(0)->Id, 1);
        // Removing the last real element leaves null slots at the end, which Count drops too.
        EXPECT_TRUE(list.Delete(3));
        EXPECT_EQ(list.Count, 1);
        EXPECT_EQ(Tracked::Alive, 1);

        // An owner's copy copies the elements; a list that does not own them shares the pointers.
        {
            clsPCollection<Tracked> copy(list);
            EXPECT_NE(copy.At(0), list.At(0));
            EXPECT_EQ(copy.At(0)->Id, 1);
            EXPECT_EQ(Tracked::Alive, 2);
        }
        EXPECT_EQ(Tracked::Alive, 1);
        clsPCollection<Tracked> view(false);
        view.Add(list.At(0));
        clsPCollection<Tracked> viewCopy;
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
    EXPECT_EQ(texts.Add("x", 0), -1);
    EXPECT_EQ(texts.Add("a"), 0);
    EXPECT_EQ(texts.Add("b", 3), 1);
    EXPECT_EQ(texts.Count, 4);
    EXPECT_NE(texts.At(1), texts.At(2)); // every copy is a heap object of its own
    EXPECT_TRUE(texts.GetAt(3) == "b");
    EXPECT_TRUE(texts.GetAt(4).IsEmpty());

    clsCInts numbers;
    EXPECT_EQ(numbers.Add(-7), 0); // the value, not a pointer
    numbers.Add(static_cast<int*>(nullptr));
    EXPECT_EQ(numbers.GetAt(0), -7);
    EXPECT_EQ(numbers.GetAt(1), 0);
}

TEST(CList, SetTextCutsAndGetTextJoins) {
    // SetText empties the list first; the last piece ends at the end of the text; trim trims both ends.
    // Numbers are read as atoi and ToUInt64 read them, and written in decimal.
    auto cut = [](auto list, const char* text, bool trim) {
        list.SetText(clsString(text), ',', trim);
        return clsString(list.Count, 1).Append(":").Append(list.GetText("|"));
    };
    clsCStrings old;
    old.Add("old");
    nuvobase_test::CheckRows<std::string>(
        {TEXT(cut(old, " a , b,,c ", false), "4: a | b||c "), TEXT(cut(old, " a , b,,c ", true), "4:a|b||c"),
         TEXT(cut(old, "a,", false), "2:a|"), TEXT(cut(old, "", false), "0:"),
         TEXT(cut(clsCInts(), "1, 22,x,-4", true), "4:1|22|0|-4"),
         TEXT(cut(clsC<uint64_t>(), "0x10,18446744073709551615", false), "2:16|18446744073709551615")});

    // GetText from first to last (-1 or beyond the end: the last), quoted on request; null elements are
    // skipped with their separators.
    clsCStrings texts;
    texts.SetText(clsString("a;b;it's;d"), ';', false);
    texts.Add(static_cast<clsString*>(nullptr));
    texts.Add("e");
    EXPECT_TRUE(texts.GetText(", ", false, 1, 2).Compare("b, it's", clsString::CompareExact));
    EXPECT_TRUE(texts.GetText(",", true, 2, 99).Compare("'it''s','d','e'", clsString::CompareExact));
    EXPECT_TRUE(texts.GetText(",", false, 3).Compare("d,e", clsString::CompareExact));
    EXPECT_TRUE(texts.GetText(",", false, 6, -1).IsEmpty());
}
