// clsCollection: growth, Find by scan and by bisection, removal, compaction and sorting.
#include <gtest/gtest.h>

#include <vector>

#include "nuvobase/clsstrings.h"
#include "rows.h"

using namespace nuvobase;
using nuvobase_test::CheckRows;
using Ints = std::vector<int>;

namespace {

// The values of a collection in slot order, -1 for a null slot or a node without value.
Ints Values(const clsCollection<int>& list) {
    Ints values;
    for (int i = 0; i < list.Count; i++) values.push_back(list.ValueAt(i) ? *list.ValueAt(i) : -1);
    return values;
}

clsString Key(int i) {
    return clsString("k") + clsString(i);
}

// A list of n entries keyed "k0".."k(n-1)" whose values are their numbers.
void Fill(clsCollection<int>& list, int n) {
    for (int i = 0; i < n; i++) list.Add(Key(i), new int(i));
}

} // namespace

TEST(Collection, GrowsByDoublingAndKeepsPrivateKeys) {
    clsCollection<int> list;
    EXPECT_EQ(list.Find(clsString("x")), -1);
    // Built at 2 slots, doubled whenever the next Add would leave no free slot.
    Ints capacities;
    for (int i = 0; i < 9; i++) capacities.push_back((list.AddValue(new int(i)), list.Capacity));
    EXPECT_EQ(capacities, (Ints{2, 4, 4, 8, 8, 8, 8, 16, 16}));
    EXPECT_EQ(*list.ValueAt(8), 8);
    list.Clear(true);
    EXPECT_EQ(list.Nodes, nullptr);

    // The stored key is a clone; a value added as not owned stays the caller's.
    int shared = 5;
    clsVariantInt key(7);
    list.Add(key, &shared, true);
    key.Value = 8;
    list.Add(static_cast<const clsVariant*>(nullptr), new int(1));
    clsCollection<int> view(false);
    CheckRows<int>({ROW(list.KeyAt(0)->GetInt(), 7), ROW(list.Nodes[0]->OwnsValue, false),
                    ROW(list.Nodes[1]->OwnsValue, true), ROW(view.AddNode(list.Nodes[1]), 0),
                    ROW(view.AddNode(nullptr), -1), ROW(view.Nodes[0]->OwnsValue, false)});
    EXPECT_EQ(view.ValueAt(0), list.ValueAt(1));
}

TEST(Collection, FindScansUnlessSortedWithMoreThanFiveEntries) {
    // A key changed in place after Sort breaks the order; only a scan still finds it.
    for (int entries : {5, 6}) {
        SCOPED_TRACE(entries);
        clsCollection<int> list;
        Fill(list, entries);
        list.Sort();
        for (int i = 0; i < entries; i++) EXPECT_EQ(list.Find(clsString("K") + clsString(i)), i);
        list.KeyAt(0)->Set(clsString("z"));
        EXPECT_EQ(list.Find(clsString("z")), entries == 5 ? 0 : -1);
        // Any Add drops the Sorted flag, and the scan finds every key again.
        list.Add(clsVariantInt(5), new int(99));
        EXPECT_FALSE(list.Sorted);
        EXPECT_EQ(list.Find(clsString("z")), 0);
        EXPECT_EQ(list.Find(clsVariantString("5.0")), entries); // keys compare through the variant
    }

    // The bisection steps over holes at the start, inside and at the end (Remove leaves Sorted as it is).
    clsCollection<int> list;
    Fill(list, 9);
    list.Sort();
    for (int index : {0, 3, 4, 5, 8}) list.Remove(index, false);
    for (int i : {1, 2, 6, 7}) EXPECT_EQ(list.Find(Key(i)), i);
    for (int i : {0, 3, 4, 5, 8}) EXPECT_EQ(list.Find(Key(i)), -1);
    EXPECT_EQ(list.Find(clsString("k")), -1);
    EXPECT_EQ(list.Find(clsString("zz")), -1);
    // A node without key in the way ends it.
    delete list.Nodes[6]->Key;
    list.Nodes[6]->Key = nullptr;
    EXPECT_EQ(list.Find(Key(7)), -1);
}

TEST(Collection, RemoveAndCompact) {
    // Rows run in order on one list. Neither closeGap nor swapLast leaves a hole that Find skips and Compact
    // closes later; swapLast moves the last node into the slot; closeGap shifts the later nodes down.
    clsCollection<int> list;
    Fill(list, 5);
    CheckRows<int>({ROW(list.Remove(1, false, false, false), 5), ROW(list.Find(clsString("k2")), 2)});
    EXPECT_EQ(Values(list), (Ints{0, -1, 2, 3, 4}));
    CheckRows<int>({ROW(list.Compact(), 4), ROW(list.Nodes[4] == nullptr, true),
                    ROW(list.Remove(0, false, false, true), 3)});
    EXPECT_EQ(Values(list), (Ints{4, 2, 3}));
    EXPECT_EQ(list.Remove(0), 2);
    EXPECT_EQ(Values(list), (Ints{2, 3}));
    EXPECT_EQ(list.Remove(2), 2); // out of range: nothing
    // keepValue hands the value over and ignores swapLast.
    int* kept = list.ValueAt(0);
    list.Add(clsString("k9"), new int(9));
    EXPECT_EQ(list.Remove(0, true, true, true), 2);
    EXPECT_EQ(Values(list), (Ints{3, 9}));
    EXPECT_EQ(*kept, 2);
    delete kept;
    // By key and by value pointer.
    CheckRows<int>({ROW(list.Remove(clsVariantString("K9")), 1), ROW(list.RemoveValue(list.ValueAt(0)), 0),
                    ROW(list.RemoveValue(kept), -1)});

    // RemoveFrom cuts the end; at 0 the array goes too.
    Fill(list, 6);
    CheckRows<int>({ROW(list.RemoveFrom(4), 4), ROW(list.RemoveFrom(9), 4)});
    kept = list.ValueAt(3);
    EXPECT_EQ(list.RemoveFrom(3, true, true), 3);
    EXPECT_EQ(*kept, 3);
    delete kept;
    EXPECT_EQ(Values(list), (Ints{0, 1, 2}));
    EXPECT_EQ(list.RemoveFrom(0), 0);
    EXPECT_EQ(list.Nodes, nullptr);
}

TEST(Collection, EnsureSetAndMove) {
    // Ensure takes no value for a key that exists; Set replaces the value (the old owned one is deleted)
    // and keeps the key, and setting the value a node already holds keeps it alive.
    clsCollection<int> list;
    int other = 2;
    CheckRows<int>(
        {ROW(list.Ensure(clsString("a"), new int(1)), 0), ROW(list.Ensure(clsString("A"), &other, true), 0),
         ROW(*list.ValueAt(0), 1), ROW(list.Set(clsString("A"), new int(10)), 0),
         ROW(list.KeyAt(0)->GetString().Compare("a", clsString::CompareExact) != 0, true),
         ROW(list.Set(clsString("b"), new int(20)), 1), ROW(list.Set(clsVariantInt(3), new int(30)), 2),
         ROW(list.Set(clsString("b"), list.ValueAt(1)), 1), ROW(*list.ValueAt(1), 20)});

    EXPECT_TRUE(list.Move(0, 2));
    EXPECT_EQ(Values(list), (Ints{20, 30, 10}));
    EXPECT_TRUE(list.Move(2, 0));
    EXPECT_EQ(Values(list), (Ints{10, 20, 30}));
    CheckRows<bool>({ROW(list.Move(1, 1), false), ROW(list.Move(0, 3), false), ROW(list.Move(-1, 0), false)});
}

TEST(Collection, SortOrders) {
    clsCollectionExt<int> list;
    // Number keys sort as numbers, not as text; no key goes after every key, and no value is dropped.
    for (int key : {10, 9, 100, -1}) list.Add(clsVariantInt(key), new int(key));
    list.AddValue(new int(1000));
    list.Add(clsVariantInt(50), nullptr);
    list.Sort();
    EXPECT_EQ(Values(list), (Ints{-1, 9, 10, 100, 1000}));
    EXPECT_TRUE(list.Sorted);
    list.SortDescending();
    EXPECT_EQ(Values(list), (Ints{1000, 100, 10, 9, -1}));
    EXPECT_FALSE(list.Descending); // restored behind the sort
    // A comparer of its own, here ascending by value; Descending does not turn it round.
    list.SortDescending([](const clsNodo<int>* a, const clsNodo<int>* b) { return *a->Value - *b->Value; });
    EXPECT_EQ(Values(list), (Ints{-1, 9, 10, 100, 1000}));
    // The default key order also places null nodes, first.
    EXPECT_LT(clsCollection<int>::CompareKeys(nullptr, list.Nodes[0]), 0);
    // SortValues orders by the values' own operator< and clears Sorted.
    list.Sort();
    list.Remove(0, false);
    list.SortValues(true);
    EXPECT_EQ(Values(list), (Ints{1000, 100, 10, 9}));
    EXPECT_TRUE(list.Descending);
    EXPECT_FALSE(list.Sorted);

    // Texts sort ignoring ASCII case (the == of clsString ignores it too); equal keys are fine.
    clsStrings texts;
    for (const char* word : {"pear", "Apple", "fig", "apple", "Fig", "banana", "fig"})
        texts.SetValue(word, word, false);
    texts.Sort();
    EXPECT_TRUE(texts.Join(",") == "apple,apple,banana,fig,fig,fig,pear");
    EXPECT_EQ(texts.Find(clsString("BANANA")), 2);
}

TEST(Collection, CopyIsDeep) {
    clsCollection<int> list;
    Fill(list, 3);
    int shared = 42;
    list.Add(clsString("shared"), &shared, true);
    list.Remove(0, false);
    list.Tag = 9;
    clsCollection<int> copy(list);
    EXPECT_EQ(copy.Nodes[0], nullptr);
    EXPECT_EQ(copy.Tag, 9);
    EXPECT_NE(copy.KeyAt(1), list.KeyAt(1));
    EXPECT_EQ(copy.ValueAt(3), &shared);
    *copy.ValueAt(1) = 100;
    EXPECT_EQ(*list.ValueAt(1), 1);
    copy = list;
    EXPECT_EQ(*copy.ValueAt(1), 1);
}
