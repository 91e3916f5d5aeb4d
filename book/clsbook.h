#pragma once

#include <cstdint>
#include <memory>

#include "book/clsbookentry.h"
#include "nuvobase/clsstring.h"

namespace nvoChess {

class clsChessCore;

// The opening book: positions with game statistics, held whole in memory as
// entries sorted by key (unsigned), one entry per key, and stored in .cbk files.
// The entries lie in one array, which grows in place where the system can.
//
// A .cbk file, all integers little-endian:
//   "NVOBK" NUL | version u32 (1) | count u32 | 32 reserved base-128 numbers (written as 0)
//   count x (wins, losses, draws as base-128 numbers | key u64) | "*END*" NUL
// The limit of Save, Load and Append keeps the entries whose weight (half their
// games) is at least the limit.
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
    // Empties the book, then reads the file as Append does. A file that is no
    // book of this version leaves the book as it was.
    bool Load(const nuvobase::clsString& file, int limit);
    // Reads the file's entries behind the present ones, without sorting. A damaged
    // or cut file gives false and keeps the entries read up to the damage.
    bool Append(const nuvobase::clsString& file, int limit);

    // Sorted insert that takes over the entry: on a key already present the
    // counters are added to that entry. The entry is destroyed either way.
    // Returns the index of the entry holding the counts, -1 if it could not be stored.
    int Add(clsBookEntry* entry);
    // Joins two sorted books into a new one, summing the counters of shared keys.
    std::unique_ptr<clsBook> Merge(const clsBook& other) const;
    // Plays a game of coordinate moves, each followed by a blank, from the start
    // position on the core and counts every position reached for the side that
    // moved into it: result 2 is a win of white, and result equal to drawCode a
    // draw for both. The game ends at a move that cannot be played. Returns the
    // entry count.
    int AddGame(clsChessCore& core, const nuvobase::clsString& moves, int result, int drawCode);
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
    bool Read(const nuvobase::clsString& file, int limit, bool replace);
    int InsertPlace(const clsBookEntry& entry) const;
    int CountReaching(int limit) const;
};

} // namespace nvoChess
