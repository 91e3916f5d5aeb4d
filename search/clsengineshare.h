// The transposition table that engines share: one array of slots owned by a
// clsEngineShare, used by every engine that holds a pointer to it.
#pragma once

#include <cstdint>

#include "chess/clssimplenode.h"

namespace nvoChess {

// One slot of the table: 32 bytes, two to a cache line. Left uninitialised
// when allocated, so that only the addressed half of a table is touched.
struct clsTT {
    uint64_t TTKey;
    uint64_t TTSpare; // zeroed with a new key, nothing else
    int32_t TTDepth;
    int32_t TTValue;
    uint32_t TTFlags;
};
static_assert(sizeof(clsTT) == 32);

// Values and flags of a slot.
constexpr uint32_t TTUsableOld = 0x01;   // value usable at a probe; nothing sets it
constexpr uint32_t TTUsable = 0x04;      // value usable at a probe; every store sets it
constexpr uint32_t TTOnPath = 0x10;      // the position is on the path being walked
constexpr uint32_t TTGameHistory = 0x28; // the whole flags word of a played position
constexpr int32_t TTTakenDepth = -1;     // depth of a slot just taken over
constexpr int32_t TTGameDepth = 1000;    // depth of a played position

// What a probe found when a node was entered.
enum class eProbe {
    Miss,  // another key: the slot is taken over for this one
    Hit,   // the key, but no value to use
    Usable // the key, with a value that stands for the node
};

// A value stands for the node if the slot was stored to at least the whole
// nominal depth (not the depth left at the node).
inline eProbe ProbeTT(clsTT& slot, uint64_t key, int32_t depth) {
    if (slot.TTKey == key)
        return slot.TTDepth >= depth && (slot.TTFlags & (TTUsableOld | TTUsable)) ? eProbe::Usable
                                                                                  : eProbe::Hit;
    slot.TTKey = key;
    slot.TTSpare = 0;
    slot.TTDepth = TTTakenDepth;
    slot.TTValue = NoValue;
    return eProbe::Miss;
}

// Store when a node's best value improves, with the depth left at the node.
// Only a slot never stored to, or one holding a greater depth, is written.
inline void StoreTT(clsTT& slot, int32_t value, int32_t left) {
    if (slot.TTFlags == 0 || slot.TTDepth > left) {
        slot.TTFlags = TTUsable;
        slot.TTValue = value;
        slot.TTDepth = left;
    }
}

class clsEngineShare {
public:
    clsEngineShare() = default;
    clsEngineShare(const clsEngineShare&) = delete;
    clsEngineShare& operator=(const clsEngineShare&) = delete;
    virtual ~clsEngineShare();

    // Frees the table and, for a positive size, allocates the largest power of
    // two of slots that fits into the megabytes, halving it while allocation
    // fails; half of the slots are addressed. 0 means no table.
    void ResizeTable(int64_t megabytes);
    // Empties every slot in use, as a new table is.
    void ClearTable();

    // The slot of a search key, or null without a table. The key modulo the
    // count: a power of two, so a mask does it.
    clsTT* Slot(uint64_t key) const { return TTCount ? &TTSlots[key & (TTCount - 1)] : nullptr; }

    uint64_t TTCount = 0; // slots in use
    uint64_t TTBytes = 0; // requested size
    clsTT* TTSlots = nullptr;

protected:
    // Allocation of n zeroed slots, mapped from the system and unmapped by the
    // table; null when it fails. Tests replace it.
    virtual clsTT* AllocateSlots(uint64_t n);

private:
    void FreeTable();

    uint64_t TTMapped = 0; // bytes of the mapping behind TTSlots
};

} // namespace nvoChess
