#include "book/clsbookbatch.h"

#include <algorithm>

namespace nvoChess {

namespace {

// Below this a batch is joined only at the end; above it, a batch as large as the book keeps the joins'
// total cost linear.
constexpr size_t MinimumBatch = size_t(1) << 16;

} // namespace

void clsBookBatch::AddGame(const std::vector<uint64_t>& keys, int result, int drawCode) {
    for (size_t ply = 0; ply < keys.size(); ++ply)
        Tallies.push_back({keys[ply], OutcomeOfPly(int(ply), result, drawCode)});
    if (Tallies.size() >= std::max(MinimumBatch, size_t(Book.Count))) Flush();
}

void clsBookBatch::Flush() {
    if (Tallies.empty()) return;
    std::sort(Tallies.begin(), Tallies.end(),
              [](const clsTally& left, const clsTally& right) { return left.Key < right.Key; });
    clsBook folded;
    for (size_t first = 0; first < Tallies.size();) {
        clsBookEntry counts(Tallies[first].Key, 0, 0, 0);
        size_t last = first;
        for (; last < Tallies.size() && Tallies[last].Key == counts.Key; ++last) {
            const BookOutcome outcome = Tallies[last].Outcome;
            counts.AddCounters(clsBookEntry(counts.Key, outcome == BookOutcome::Win,
                                            outcome == BookOutcome::Loss, outcome == BookOutcome::Draw));
        }
        auto* entry = new clsBookEntry(counts);
        if (folded.nuvobase::clsPCollection<clsBookEntry>::Add(entry) < 0) delete entry;
        first = last;
    }
    // The room stays for the next batch, which is at least as large.
    Tallies.clear();
    Book.AddSorted(folded);
}

} // namespace nvoChess
