// clsCollection: Find by bisection, removal, replacing, sorting and deep copies.
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

TEST(Collection, FindRemoveSetMoveSortAndCopy) {
    // The bisection steps over holes at the start, inside and at the end (Remove leaves Sorted as it is).
    clsCollection<int> holes;
    Fill(holes, 9);
    holes.Sort();
    for (int index : {0, 3, 4, 5, 8}) holes.Remove(index, false);
    for (int i : {1, 2, 6, 7}) EXPECT_EQ(holes.Find(Key(i)), i);
    for (int i : {0, 3, 4, 5, 8}) EXPECT_EQ(holes.Find(Key(i)), -1);
    EXPECT_EQ(holes.Find(clsString("zz")), -1);

    // Remove closes the gap and takes no index outside the list; Set replaces the value of a key it finds and
    // keeps the key, and setting the value a node holds keeps it; Move shifts the nodes between.
    clsCollection<int> list;
    Fill(list, 3);
    EXPECT_EQ(list.Remove(0), 2);
    EXPECT_EQ(list.Remove(-1), 2); // what Find gives for a missing key
    CheckRows<int>({ROW(list.Set(clsString("K2"), new int(10)), 1),
                    ROW(list.Set(clsString("b"), new int(20)), 2),
                    ROW(list.Set(clsString("b"), list.ValueAt(2)), 2), ROW(*list.ValueAt(2), 20),
                    ROW(list.Move(2, 0), true), ROW(list.Move(0, 3), false)});
    EXPECT_EQ(Values(list), (Ints{20, 1, 10}));

    // Texts sort ignoring ASCII case (the == of clsString ignores it too); equal keys are fine, a value
    // without key goes after every key, and a node without value is dropped.
    clsStrings texts;
    for (const char* word : {"pear", "Apple", "fig", "apple", "Fig", "banana", "fig"})
        texts.SetValue(word, word, false);
    texts.AddLine("last");
    texts.Add(clsString("none"), nullptr);
    texts.Sort();
    EXPECT_TRUE(texts.Join(",") == "apple,apple,banana,fig,fig,fig,pear,last");
    EXPECT_EQ(texts.Count, 8);
    EXPECT_EQ(texts.Find(clsString("BANANA")), 2);

    // A copy is deep.
    clsCollection<int> original;
    Fill(original, 3);
    int shared = 42;
    original.Add(clsString("shared"), &shared, true);
    original.Remove(0, false);
    clsCollection<int> copy(original);
    EXPECT_EQ(copy.Nodes[0], nullptr);
    EXPECT_EQ(copy.ValueAt(3), &shared); // a value the original does not own stays shared
    *copy.ValueAt(1) = 100;
    EXPECT_EQ(*original.ValueAt(1), 1);
    copy = original;
    EXPECT_EQ(*copy.ValueAt(1), 1);
}
