// A polyglot opening book (.bin) held whole in memory: 16-byte big-endian entries of key, move, weight and
// learn value, sorted by key. Each entry is a move of the position with that key; the weight says how
// often to play it, and a move of weight 0 is never played.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "nuvobase/clsstring.h"

namespace nvoChess {

struct clsPolyglotEntry {
    uint64_t Key = 0;
    uint16_t Move = 0;
    uint16_t Weight = 0;
    uint32_t Learn = 0;
};

constexpr size_t PolyglotEntrySize = 16;

// Writes one entry in the file's byte order.
void WritePolyglotEntry(const clsPolyglotEntry& entry, uint8_t* bytes);

class clsPolyglotBook {
public:
    // Reads a whole book. A damaged one (a size that is no multiple of the entry size, keys out of order,
    // codes that are no moves) leaves the book empty and gives false with the reason in error.
    bool Load(const nuvobase::clsString& file, nuvobase::clsString& error);
    // The same on bytes in memory.
    bool Parse(const uint8_t* bytes, size_t size, nuvobase::clsString& error);
    void Clear() { Entries.clear(); }
    bool IsEmpty() const { return Entries.empty(); }
    size_t Count() const { return Entries.size(); }

    // The entries of a key, in the book's order.
    std::span<const clsPolyglotEntry> Find(uint64_t key) const;

private:
    std::vector<clsPolyglotEntry> Entries;
};

// The index of the entry that a draw picks, each entry as often as its weight; -1 when all weights are 0.
int PickByWeight(std::span<const clsPolyglotEntry> entries, uint64_t draw);

} // namespace nvoChess
