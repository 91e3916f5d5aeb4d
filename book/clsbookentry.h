#pragma once

#include <cstdint>

#include "nuvobase/clsstring.h"

namespace nvoChess {

// How the games went in which a move led to one position, counted for the side
// that played that move. The book knows positions, not moves: transpositions
// share one entry. Plain data, so that a book holds its entries in one array.
class clsBookEntry {
public:
    uint32_t Wins = 0;
    uint32_t Losses = 0;
    uint32_t Draws = 0; // draws and games without a result
    uint64_t Key = 0;   // BoardKey of the position

    clsBookEntry() = default;
    clsBookEntry(uint64_t key, uint32_t wins, uint32_t losses, uint32_t draws);

    // The book order: keys compared as unsigned numbers.
    bool Equal(const clsBookEntry& other) const;
    bool Greater(const clsBookEntry& other) const;

    uint64_t Games() const;
    // Half the games, truncated: what the limit of saving and loading is compared with.
    uint64_t Weight() const;
    // A limit of 0 or below keeps every entry.
    bool Reaches(int limit) const;
    // (2 wins + draws) * 500 / games, from 0 to 1000; 0 for an entry without games.
    int Score() const;
    // Counters that would pass 32 bits stay at the largest value instead of wrapping round.
    void AddCounters(const clsBookEntry& other);
};

// A book entry seen as a move of one position, as the engine lists them; never
// stored in a book. Lists of these sort by score, so the best move comes last.
class clsBookEntryExt : public clsBookEntry {
public:
    nuvobase::clsString Move; // long text of the move

    clsBookEntryExt(const clsBookEntry& entry, const nuvobase::clsString& move);

    bool Equal(const clsBookEntryExt& other) const;
    bool Greater(const clsBookEntryExt& other) const;
};

// Order of two entry pointers for searching and sorting: a null pointer comes
// before everything, then the entries' own Equal and Greater decide (keys for
// book entries, scores for moves).
template <class Entry> int CompareBookEntries(const Entry* left, const Entry* right) {
    if (left == nullptr || right == nullptr) return (left != nullptr) - (right != nullptr);
    if (left->Equal(*right)) return 0;
    return left->Greater(*right) ? 1 : -1;
}

} // namespace nvoChess
