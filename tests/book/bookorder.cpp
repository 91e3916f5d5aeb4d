// The book in memory: lookup, the merge into a book (checked at scale by PgnReference, whose books are built
// by merging batches of games), and the score of an entry.

#include <limits>

#include "bookfixture.h"

using namespace booktest;
using nvoChess::clsBook;
using nvoChess::clsBookEntry;

namespace {

const uint32_t Largest = std::numeric_limits<uint32_t>::max();

} // namespace

TEST(BookFind, FindsPresentKeysOnly) {
    clsBook book;
    EXPECT_EQ(book.Find(0), nullptr);
    std::mt19937_64 random(3);
    const Model model = RandomModel(random, 1000);
    Fill(book, model);
    for (const auto& [key, counters] : model) {
        ASSERT_NE(book.Find(key), nullptr);
        EXPECT_EQ(book.Find(key)->Wins, std::get<0>(counters));
        if (model.count(key - 1) == 0) {
            EXPECT_EQ(book.Find(key - 1), nullptr);
        }
    }
}

TEST(BookMerge, SharedKeysSumWithoutOverflow) {
    clsBook book, more;
    Fill(book, Model{{5, {Largest - 1, 7, Largest}}, {9, {1, 1, 1}}});
    Fill(more, Model{{2, {1, 0, 0}}, {5, {3, 1, 1}}});
    book.AddSorted(more);
    EXPECT_EQ(Contents(book), Contents(Model{{2, {1, 0, 0}}, {5, {Largest, 8, Largest}}, {9, {1, 1, 1}}}));
    EXPECT_EQ(more.Count, 0); // the book given up is left empty
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
