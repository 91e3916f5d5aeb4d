// The book in memory: lookup, the merge into a book (checked at scale by PgnReference, whose books are built
// by merging batches of games), and the score of an entry. Saving and loading .cbk files: the bytes written,
// and what a reader makes of good, damaged, cut and foreign files.

#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <limits>

#include "bookfixture.h"

using namespace booktest;
using nvoChess::clsBook;
using nvoChess::clsBookEntry;

namespace {

const Model SmallModel = {{5, {1, 2, 3}}, {0x123456789ULL, {200, 0, 7}}, {0xF000000000000000ULL, {0, 0, 1}}};
const uint32_t Largest = std::numeric_limits<uint32_t>::max();

} // namespace

TEST(BookInMemory, FindMergeAndScore) {
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

    clsBook merged, more;
    Fill(merged, Model{{5, {Largest - 1, 7, Largest}}, {9, {1, 1, 1}}});
    Fill(more, Model{{2, {1, 0, 0}}, {5, {3, 1, 1}}});
    merged.AddSorted(more);
    EXPECT_EQ(Contents(merged), Contents(Model{{2, {1, 0, 0}}, {5, {Largest, 8, Largest}}, {9, {1, 1, 1}}}));
    EXPECT_EQ(more.Count, 0); // the book given up is left empty

    // Score (2 wins + draws) * 500 / games, truncated, the counters summed without overflow; the listing
    // sorts the moves by it.
    const struct {
        uint32_t Wins, Losses, Draws;
        int Score;
    } cases[] = {{1, 0, 1, 750}, {0, 0, 2, 500},  {2, 1, 0, 666},
                 {0, 3, 0, 0},   {5, 0, 0, 1000}, {Largest, 0, Largest, 750},
                 {0, 0, 0, 0}};
    for (const auto& c : cases)
        EXPECT_EQ(clsBookEntry(0, c.Wins, c.Losses, c.Draws).Score(), c.Score) << c.Wins;
}

using BookFile = BookFiles;

TEST_F(BookFile, SavedBookLoadsEqual) {
    // Keys little-endian and in unsigned order, counters of every length: the bytes as the file layout has
    // them.
    std::mt19937_64 random(6);
    const Model model = RandomModel(random, 3000);
    clsBook book;
    Fill(book, model);
    ASSERT_TRUE(book.Save(PathTo("a.cbk"), 0));
    FileBuilder file;
    file.Header(1, uint32_t(model.size()));
    for (const auto& [key, counters] : model)
        file.Entry(key, std::get<0>(counters), std::get<1>(counters), std::get<2>(counters));
    EXPECT_EQ(ReadBytes("a.cbk"), file.Trailer().Data);

    clsBook loaded;
    Fill(loaded, SmallModel); // Load replaces what was there
    EXPECT_TRUE(loaded.Load(PathTo("a.cbk"), 0));
    EXPECT_EQ(Contents(loaded), Contents(model));
}

TEST_F(BookFile, ReservedNumbersAndNonMinimalCountersReadForeignFilesRefused) {
    FileBuilder file;
    file.Raw({'N', 'V', 'O', 'B', 'K', 0}).Word(1, 4).Word(1, 4);
    for (int i = 0; i < 31; ++i) file.Number(i * 1000);
    file.Raw({0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F}); // beyond 64 bits
    file.Raw({0x85, 0x80, 0x80, 0x00, 0x02, 0x03}).Word(42, 8).Trailer();
    WriteBytes("odd.cbk", file.Data);

    clsBook book;
    EXPECT_TRUE(book.Load(PathTo("odd.cbk"), 0));
    EXPECT_EQ(Contents(book), Contents(Model{{42, {5, 2, 3}}}));

    const Bytes good = FileBuilder().Header(1, 1).Entry(9, 1, 1, 1).Trailer().Data;
    Bytes version2 = good;
    version2[6] = 2;
    Bytes badMagic = good;
    badMagic[4] = 'X';
    WriteBytes("version2.cbk", version2);
    WriteBytes("magic.cbk", badMagic);

    // Files cut short, the empty one too, are the next test's.
    for (const char* name : {"version2.cbk", "magic.cbk", "absent.cbk", "."}) { // "." is a folder
        SCOPED_TRACE(name);
        clsBook book;
        Fill(book, SmallModel);
        EXPECT_FALSE(book.Load(PathTo(name), 0));
        EXPECT_EQ(Contents(book), Contents(SmallModel));
    }
}

// Every possible cut of a file: a cut in the header leaves the book as it was,
// a later one keeps the complete entries and the cut one, with key 0 and the
// counters read whole before the cut.
TEST_F(BookFile, CutFileKeepsTheCompleteEntries) {
    const Model model = {{1, {0, 0, 0}},
                         {2, {127, 128, 300}},
                         {3, {4294967295u, 1, 16384}},
                         {4, {70000, 2, 2097152}},
                         {0x8000000000000000ULL, {9, 9, 9}}};
    FileBuilder file;
    file.Header(1, uint32_t(model.size()));
    std::vector<size_t> entryEnds;
    for (const auto& [key, counters] : model) {
        const auto& [wins, losses, draws] = counters;
        file.Entry(key, wins, losses, draws);
        entryEnds.push_back(file.Data.size());
    }
    file.Trailer();

    const auto all = Contents(model);
    for (size_t length = 0; length < file.Data.size(); ++length) {
        SCOPED_TRACE(length);
        WriteBytes("cut.cbk", Bytes(file.Data.begin(), file.Data.begin() + length));
        clsBook book;
        Fill(book, SmallModel);
        EXPECT_FALSE(book.Load(PathTo("cut.cbk"), 0));
        if (length < 46) {
            EXPECT_EQ(Contents(book), Contents(SmallModel));
            continue;
        }
        const auto complete =
            std::count_if(entryEnds.begin(), entryEnds.end(), [&](size_t end) { return end <= length; });
        auto kept = Contents(book);
        if (size_t(complete) < model.size()) {
            ASSERT_EQ(kept.size(), size_t(complete) + 1);
            const auto [key, counters] = kept.back();
            EXPECT_EQ(key, 0u);
            const size_t begin = complete == 0 ? 46 : entryEnds[complete - 1];
            if (length == begin) {
                EXPECT_EQ(counters, Counters{});
            }
            if (length >= entryEnds[complete] - sizeof(uint64_t)) { // cut in the key
                EXPECT_EQ(counters, all[complete].second);
            }
            kept.pop_back();
        }
        EXPECT_EQ(kept, decltype(all)(all.begin(), all.begin() + complete));
    }
    WriteBytes("whole.cbk", file.Data);
    clsBook book;
    EXPECT_TRUE(book.Load(PathTo("whole.cbk"), 0));
    EXPECT_EQ(Contents(book), all);
}

TEST_F(BookFile, HeaderCountThatDoesNotFitTheFile) {
    // A hostile count allocates nothing up front; the trailer is then read as
    // a cut entry.
    WriteBytes("huge.cbk",
               FileBuilder().Header(1, 0xFFFFFFFFu).Entry(7, 1, 0, 0).Entry(8, 0, 1, 0).Trailer().Data);
    clsBook book;
    EXPECT_FALSE(book.Load(PathTo("huge.cbk"), 0));
    // The trailer's bytes "*", "E", "N" read as the counters, and its last three as a key cut short.
    auto expected = Contents(Model{{7, {1, 0, 0}}, {8, {0, 1, 0}}});
    expected.push_back({0, {'*', 'E', 'N'}});
    EXPECT_EQ(Contents(book), expected);
    EXPECT_LT(book.Capacity, 100);

    // Fewer announced than present: the next entry stands where the trailer should.
    WriteBytes("short.cbk", FileBuilder().Header(1, 1).Entry(7, 1, 0, 0).Entry(8, 0, 1, 0).Trailer().Data);
    EXPECT_FALSE(book.Load(PathTo("short.cbk"), 0));
    EXPECT_EQ(Contents(book), Contents(Model{{7, {1, 0, 0}}}));

    // Bytes behind the trailer are not looked at.
    WriteBytes("tail.cbk", FileBuilder().Header(1, 1).Entry(7, 1, 0, 0).Trailer().Raw({1, 2, 3}).Data);
    EXPECT_TRUE(book.Load(PathTo("tail.cbk"), 0));
    EXPECT_EQ(book.Count, 1);
}

// The weight is half the games, truncated; limit 10 keeps the positions of 20 games or more, and a limit of 0
// or below keeps them all. Saving and loading filter alike.
TEST_F(BookFile, LimitFiltersOnWeight) {
    const Model model = {{1, {1, 0, 0}}, {2, {0, 1, 1}}, {3, {19, 0, 0}}, {4, {10, 5, 5}}, {5, {0, 21, 0}}};
    clsBook book;
    Fill(book, model);
    ASSERT_TRUE(book.Save(PathTo("all.cbk"), 0));
    for (const auto& [limit, count] : {std::pair{-5, 5}, {0, 5}, {1, 4}, {10, 2}, {11, 0}}) {
        ASSERT_TRUE(book.Save(PathTo("limited.cbk"), limit));
        clsBook saved, loaded;
        EXPECT_TRUE(saved.Load(PathTo("limited.cbk"), 0)) << limit;
        EXPECT_TRUE(loaded.Load(PathTo("all.cbk"), limit)) << limit;
        EXPECT_EQ(saved.Count, count) << limit;
        EXPECT_EQ(Contents(loaded), Contents(saved)) << limit;
    }
}

// Runs a save of a book of 30000 entries in a child process whose files may not
// grow beyond 4096 bytes, and returns the child's wait status.
static int SaveInLimitedChild(const clsBook& book, const nuvobase::clsString& file, bool survive) {
    const pid_t child = fork();
    if (child == 0) {
        const rlimit noCore = {0, 0};
        const rlimit small = {4096, 4096};
        setrlimit(RLIMIT_CORE, &noCore);
        setrlimit(RLIMIT_FSIZE, &small);
        if (survive) signal(SIGXFSZ, SIG_IGN);
        _exit(book.Save(file, 0) ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return status;
}

TEST_F(BookFile, SaveNeverLeavesAHalfWrittenBook) {
    clsBook good;
    Fill(good, SmallModel);
    ASSERT_TRUE(good.Save(PathTo("book.cbk"), 0));
    const Bytes goodBytes = ReadBytes("book.cbk");

    std::mt19937_64 random(7);
    clsBook big;
    Fill(big, RandomModel(random, 30000));

    // Replacing the file leaves nothing else beside it.
    ASSERT_TRUE(big.Save(PathTo("book.cbk"), 0));
    EXPECT_TRUE(HoldsOnly("book.cbk"));
    ASSERT_TRUE(good.Save(PathTo("book.cbk"), 0));

    // A write that fails: false, the old book in place, the scratch file gone.
    const int failed = SaveInLimitedChild(big, PathTo("book.cbk"), true);
    ASSERT_TRUE(WIFEXITED(failed));
    EXPECT_EQ(WEXITSTATUS(failed), 1);
    EXPECT_EQ(ReadBytes("book.cbk"), goodBytes);
    EXPECT_TRUE(HoldsOnly("book.cbk"));

    // A process killed in the middle of the write: the old book stays whole.
    const int killed = SaveInLimitedChild(big, PathTo("book.cbk"), false);
    ASSERT_TRUE(WIFSIGNALED(killed));
    EXPECT_EQ(WTERMSIG(killed), SIGXFSZ);
    EXPECT_EQ(ReadBytes("book.cbk"), goodBytes);

    // A folder in the way, or no folder to write into.
    std::filesystem::create_directories(Path("folder.cbk/inside"));
    EXPECT_FALSE(good.Save(PathTo("folder.cbk"), 0));
    EXPECT_TRUE(std::filesystem::is_directory(Path("folder.cbk/inside")));
    EXPECT_FALSE(good.Save(PathTo("missing/book.cbk"), 0));
}
