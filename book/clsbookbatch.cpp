#include "book/clsbookbatch.h"

#include <algorithm>

namespace nvoChess {

namespace {

// Below this a batch is joined only at the end; above it, a batch as large as the book keeps the joins'
// total cost linear.
constexpr size_t MinimumBatch = size_t(1) << 16;

} // namespace

void clsBookBatch::AddGame(const std::vector<uint64_t>& keys, int result, int drawCode) {
    for (size_t ply = 0; ply < keys.size(); ++ply) {
        if (Tallies.size() == Tallies.capacity()) MakeRoom();
        const BookOutcome outcome = OutcomeOfPly(int(ply), result, drawCode);
        Tallies.emplace_back(keys[ply], outcome == BookOutcome::Win, outcome == BookOutcome::Loss,
                             outcome == BookOutcome::Draw);
    }
}

// The room is reserved at once to its full size, so the batch never holds more than it needs.
void clsBookBatch::MakeRoom() {
    const size_t batch = std::max(MinimumBatch, size_t(Book.Count));
    if (Tallies.size() >= batch)
        Flush();
    else
        Tallies.reserve(batch);
}

void clsBookBatch::Flush() {
    if (Tallies.empty()) return;
    std::sort(Tallies.begin(), Tallies.end(),
              [](const clsBookEntry& left, const clsBookEntry& right) { return left.Key < right.Key; });
    // Folded in place: one entry per key, holding the sums.
    size_t folded = 0;
    for (size_t next = 1; next < Tallies.size(); ++next) {
        if (Tallies[next].Key == Tallies[folded].Key)
            Tallies[folded].AddCounters(Tallies[next]);
        else
            Tallies[++folded] = Tallies[next];
    }
    Book.AddSorted(Tallies.data(), int(folded + 1));
    // The room stays for the next batch, which is at least as large.
    Tallies.clear();
}

} // namespace nvoChess
