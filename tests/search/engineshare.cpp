#include "search/clsengineshare.h"

#include <gtest/gtest.h>

using namespace nvoChess;

namespace {

// A table whose allocations fail above a given number of slots.
class clsTightShare : public clsEngineShare {
public:
    explicit clsTightShare(uint64_t most) : Most(most) {}
    uint64_t Most;
    int Tries = 0;

protected:
    clsTT* AllocateSlots(uint64_t n) override {
        ++Tries;
        return n > Most ? nullptr : clsEngineShare::AllocateSlots(n);
    }
};

clsTT Slot(uint64_t key, int32_t depth, int32_t value, uint32_t flags) {
    clsTT slot{};
    slot.TTKey = key;
    slot.TTDepth = depth;
    slot.TTValue = value;
    slot.TTFlags = flags;
    return slot;
}

} // namespace

TEST(EngineShare, ResizeSizesAndHalvesOnFailure) {
    clsEngineShare share;
    EXPECT_EQ(share.TTCount, 0u);
    EXPECT_EQ(share.Slot(12345), nullptr);

    share.ResizeTable(3); // 3 MB: 98304 slots of 32 bytes fit, the power of two below is 65536; half are used
    EXPECT_EQ(share.TTCount, 32768u);
    EXPECT_EQ(share.TTBytes, 3u << 20);
    EXPECT_EQ(share.Slot(32768 * 3 + 5), &share.TTSlots[5]);

    share.ResizeTable(-5);
    EXPECT_EQ(share.TTCount, 0u);
    EXPECT_EQ(share.Slot(1), nullptr);

    clsTightShare tight(8192);
    tight.ResizeTable(1); // 32768 and 16384 slots fail, 8192 succeed
    EXPECT_EQ(tight.Tries, 3);
    EXPECT_EQ(tight.TTCount, 4096u);
    EXPECT_EQ(tight.TTBytes, 1u << 20);

    clsTightShare none(0);
    none.ResizeTable(1);
    EXPECT_EQ(none.Slot(99), nullptr);
}

TEST(EngineShare, ProbeAndStoreRules) {
    // A foreign key takes the slot over: a miss, the flags stay as they were.
    clsTT slot = Slot(1, 9, 300, TTUsable | TTOnPath);
    EXPECT_EQ(ProbeTT(slot, 2, 1), eProbe::Miss);
    EXPECT_EQ(slot.TTKey, 2u);
    EXPECT_EQ(slot.TTDepth, -1);
    EXPECT_EQ(slot.TTFlags, TTUsable | TTOnPath);

    // Only stored values deep enough are used; a played position counts as a hit and never gives its value.
    const struct {
        int32_t StoredDepth;
        uint32_t Flags;
        int32_t Depth;
        eProbe Probe;
    } rows[] = {{4, TTUsable, 4, eProbe::Usable}, {4, TTUsable, 3, eProbe::Usable},
                {4, TTUsable, 6, eProbe::Hit},    {4, TTUsableOld, 2, eProbe::Usable},
                {4, TTOnPath, 2, eProbe::Hit},    {TTGameDepth, TTGameHistory, 2, eProbe::Hit}};
    for (const auto& row : rows) {
        clsTT stored = Slot(5, row.StoredDepth, 120, row.Flags);
        EXPECT_EQ(ProbeTT(stored, 5, row.Depth), row.Probe)
            << row.StoredDepth << " " << row.Flags << " " << row.Depth;
        EXPECT_EQ(stored.TTValue, 120);
    }

    // A slot is written when it holds no more depth than is left; the path flag alone blocks a fresh slot; a
    // played position holds depth 1000 and is overwritten by the search.
    const struct {
        clsTT Slot;
        int32_t Value, Depth;
        uint32_t Flags;
        int32_t StoredValue, StoredDepth;
    } stores[] = {{Slot(5, -1, -15000, 0), 33, 2, TTUsable, 33, 2},
                  {Slot(5, 2, 33, TTUsable), 50, 2, TTUsable, 33, 2},
                  {Slot(5, 2, 33, TTUsable), 60, 3, TTUsable, 33, 2},
                  {Slot(5, 2, 33, TTUsable), 70, 1, TTUsable, 70, 1},
                  {Slot(5, -1, -15000, TTOnPath), 44, 0, TTOnPath, -15000, -1},
                  {Slot(5, TTGameDepth, -52, TTGameHistory), 12, 2, TTUsable, 12, 2}};
    for (auto row : stores) {
        StoreTT(row.Slot, row.Value, row.Depth);
        EXPECT_EQ(row.Slot.TTFlags, row.Flags) << row.Value;
        EXPECT_EQ(row.Slot.TTValue, row.StoredValue) << row.Value;
        EXPECT_EQ(row.Slot.TTDepth, row.StoredDepth) << row.Value;
    }
    // A slot taken over after an earlier store keeps its flags and depth -1, which is never above what is
    // left: it can't be stored to.
    clsTT taken = Slot(5, 3, 10, TTUsable);
    ASSERT_EQ(ProbeTT(taken, 6, 3), eProbe::Miss);
    StoreTT(taken, 44, 0);
    EXPECT_EQ(taken.TTValue, -15000);
    EXPECT_EQ(taken.TTDepth, -1);
}
