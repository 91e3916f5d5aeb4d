#pragma once

#include <cstdint>

#include "book/clsbookentry.h"
#include "nuvobase/clsstring.h"

namespace nvoChess {

// The opening book: positions with game statistics, held whole in memory as
// entries sorted by key (unsigned), one entry per key, and stored in .cbk files.
// The entries lie in one array, which grows in place where the system can.
//
// A .cbk file, all integers little-endian:
//   "NVOBK" NUL | version u32 (1) | count u32 | 32 reserved base-128 numbers (written as 0)
//   count x (wins, losses, draws as base-128 numbers | key u64) | "*END*" NUL
// The limit of Save and Load keeps the entries whose weight (half their games)
// is at least the limit.
class clsBook {
public:
    clsBookEntry* Items = nullptr; // null until the first entry
    int32_t Count = 0;
    int32_t Capacity = 0;

    clsBook() = default;
    clsBook(const clsBook&) = delete;
    clsBook& operator=(const clsBook&) = delete;
    ~clsBook();

    // The entry at index, null when out of range.
    clsBookEntry* At(int index) const { return index >= 0 && index < Count ? Items + index : nullptr; }
    void Clear();

    // Writes beside the file and renames over it, so that a good book is never
    // replaced by a half-written one.
    bool Save(const nuvobase::clsString& file, int limit) const;
    // Empties the book, then reads the file's entries as they stand, without sorting. A file that is no
    // book of this version leaves the book as it was; a damaged or cut one gives false and keeps the
    // entries read up to the damage.
    bool Load(const nuvobase::clsString& file, int limit);

    // Takes over the entries of another book in key order, one entry per key, as adding them one by one
    // would, in one pass over both. The other book is left empty.
    void AddSorted(clsBook& other);
    // The same for count entries sorted by key, one per key, which stay where they are.
    void AddSorted(const clsBookEntry* entries, int count);
    // Binary search; null when the key is not in the book.
    const clsBookEntry* Find(uint64_t key) const;

private:
    // Room for capacity entries; false when the memory is not there.
    bool Reserve(int64_t capacity);
    bool RoomForOne();
    int CountReaching(int limit) const;
};

} // namespace nvoChess
