// The book in memory: sorted insert and lookup (keys in unsigned order, a model map as the answer), merge
// and the score of an entry.

#include <limits>

#include "bookfixture.h"

using namespace booktest;
using nvoChess::clsBook;
using nvoChess::clsBookEntry;

namespace {

const uint32_t Largest = std::numeric_limits<uint32_t>::max();

void AddToModel(Model& model, uint64_t key, Counters counters) {
    auto& [wins, losses, draws] = model[key];
    wins += std::get<0>(counters);
    losses += std::get<1>(counters);
    draws += std::get<2>(counters);
}

} // namespace

// Random inserts against a map, in books small enough for the linear walk and
// large enough for the bisection, with many repeated keys.
TEST(BookAdd, KeepsKeyOrderAndSumsEqualKeys) {
    EXPECT_EQ(clsBook().Find(0), nullptr);
    std::mt19937_64 random(1);
    for (int size : {1, 8, 9, 10, 40, 3000}) {
        SCOPED_TRACE(size);
        std::vector<uint64_t> keys(size);
        for (auto& key : keys) key = random();
        clsBook book;
        Model model;
        for (int i = 0; i < 4 * size; ++i) {
            const uint64_t key = keys[random() % keys.size()];
            const Counters counters = {uint32_t(random() % 3), uint32_t(random() % 3),
                                       uint32_t(random() % 3)};
            const int index = book.Add(
                new clsBookEntry(key, std::get<0>(counters), std::get<1>(counters), std::get<2>(counters)));
            AddToModel(model, key, counters);
            ASSERT_GE(index, 0);
            EXPECT_EQ(book.At(index)->Key, key);
        }
        EXPECT_EQ(Contents(book), Contents(model));
        for (const auto& [key, counters] : model) {
            ASSERT_NE(book.Find(key), nullptr);
            EXPECT_EQ(book.Find(key)->Wins, std::get<0>(counters));
            if (model.count(key - 1) == 0) {
                EXPECT_EQ(book.Find(key - 1), nullptr);
            }
        }
    }

    // A sum beyond 32 bits stays at the largest counter.
    clsBook book;
    book.Add(new clsBookEntry(5, Largest - 1, 7, Largest));
    book.Add(new clsBookEntry(5, 3, 1, 1));
    EXPECT_EQ(Contents(book), Contents(Model{{5, {Largest, 8, Largest}}}));

    EXPECT_EQ(book.Add(nullptr), -1);
    EXPECT_EQ(book.Count, 1);
}

TEST(BookMerge, JoinsSortedBooksSummingSharedKeys) {
    std::mt19937_64 random(2);
    Model left = RandomModel(random, 500), right = RandomModel(random, 700);
    for (int i = 0; i < 100; ++i)
        right[std::next(left.begin(), int(random() % left.size()))->first] = {1, 2, 3};
    Model both = left;
    for (const auto& [key, counters] : right) AddToModel(both, key, counters);

    // The book grows only by the keys it lacked; the book given up is left empty.
    clsBook into, from, empty;
    Fill(into, left);
    Fill(from, right);
    into.AddSorted(from);
    EXPECT_EQ(Contents(into), Contents(both));
    EXPECT_EQ(from.Count, 0);
    empty.AddSorted(into);
    empty.AddSorted(into);
    EXPECT_EQ(Contents(empty), Contents(both));
}

// Score (2 wins + draws) * 500 / games, truncated, the counters summed without overflow; the listing sorts
// the moves by it.
TEST(BookEntry, ScoreIsTheShareOfPoints) {
    const struct {
        uint32_t Wins, Losses, Draws;
        int Score;
    } cases[] = {{1, 0, 1, 750}, {0, 0, 2, 500},  {2, 1, 0, 666},
                 {0, 3, 0, 0},   {5, 0, 0, 1000}, {Largest, 0, Largest, 750},
                 {0, 0, 0, 0}};
    for (const auto& c : cases)
        EXPECT_EQ(clsBookEntry(0, c.Wins, c.Losses, c.Draws).Score(), c.Score) << c.Wins;
}
