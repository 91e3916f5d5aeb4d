#include "book/clsbookentry.h"

#include <limits>

namespace nvoChess {

namespace {

uint32_t SaturatingSum(uint32_t left, uint32_t right) {
    const uint64_t sum = uint64_t(left) + right;
    const uint64_t largest = std::numeric_limits<uint32_t>::max();
    return uint32_t(sum < largest ? sum : largest);
}

} // namespace

clsBookEntry::clsBookEntry(uint64_t key, uint32_t wins, uint32_t losses, uint32_t draws)
    : Wins(wins), Losses(losses), Draws(draws), Key(key) {}

bool clsBookEntry::Equal(const clsBookEntry& other) const {
    return Key == other.Key;
}

bool clsBookEntry::Greater(const clsBookEntry& other) const {
    return Key > other.Key;
}

uint64_t clsBookEntry::Games() const {
    return uint64_t(Wins) + Losses + Draws;
}

uint64_t clsBookEntry::Weight() const {
    return Games() / 2;
}

bool clsBookEntry::Reaches(int limit) const {
    return limit <= 0 || Weight() >= uint64_t(limit);
}

int clsBookEntry::Score() const {
    const uint64_t games = Games();
    if (games == 0) return 0;
    return int((2 * uint64_t(Wins) + Draws) * 500 / games);
}

void clsBookEntry::AddCounters(const clsBookEntry& other) {
    Wins = SaturatingSum(Wins, other.Wins);
    Losses = SaturatingSum(Losses, other.Losses);
    Draws = SaturatingSum(Draws, other.Draws);
}

clsBookEntryExt::clsBookEntryExt(const clsBookEntry& entry, const nuvobase::clsString& move)
    : clsBookEntry(entry), Move(move) {}

bool clsBookEntryExt::Equal(const clsBookEntryExt& other) const {
    return Score() == other.Score();
}

bool clsBookEntryExt::Greater(const clsBookEntryExt& other) const {
    return Score() > other.Score();
}

} // namespace nvoChess
