#include "search/clsengineshare.h"

#include <sys/mman.h>

#include <bit>

#include "nuvobase/platform.h"

namespace nvoChess {

clsEngineShare::~clsEngineShare() {
    FreeTable();
}

void clsEngineShare::FreeTable() {
    if (TTSlots != nullptr) munmap(TTSlots, TTMapped);
    TTSlots = nullptr;
    TTMapped = 0;
    TTCount = 0;
    TTBytes = 0;
}

clsTT* clsEngineShare::AllocateSlots(uint64_t n) {
    // Every node entered looks into a random slot: on large pages a table of
    // many megabytes costs far fewer misses of the address translation.
    constexpr uint64_t LargePage = 2 << 20;
    const uint64_t bytes = n * sizeof(clsTT);
    // The system grants far more than it has and kills the process when the addressed half is cleared: a
    // table beyond the machine's memory fails here like any other allocation, and a smaller one is tried.
    const uint64_t physical = nuvobase::PhysicalMemoryBytes();
    if (physical != 0 && bytes > physical) return nullptr;
    // Fresh anonymous pages read as zero, an empty table, and the system supplies them only as searches
    // write to them: a process that never searches, such as one building books, holds no table memory.
    void* memory = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) return nullptr;
    if (bytes >= LargePage) madvise(memory, bytes, MADV_HUGEPAGE); // only advice: failure changes nothing
    return static_cast<clsTT*>(memory);
}

void clsEngineShare::ResizeTable(int64_t megabytes) {
    FreeTable();
    if (megabytes <= 0) return;
    constexpr int64_t largest = int64_t{1} << 40; // keeps the byte count in 64 bits
    TTBytes = static_cast<uint64_t>(megabytes < largest ? megabytes : largest) << 20;
    for (uint64_t n = std::bit_floor(TTBytes / sizeof(clsTT)); n > 1; n /= 2) {
        TTSlots = AllocateSlots(n);
        if (!TTSlots) continue;
        TTMapped = n * sizeof(clsTT);
        TTCount = n / 2;
        return;
    }
}

void clsEngineShare::ClearTable() {
    // Giving the pages back makes them read as zero again, and costs no writing of the whole table.
    if (TTSlots != nullptr && madvise(TTSlots, TTMapped, MADV_DONTNEED) != 0)
        for (uint64_t i = 0; i < TTCount; ++i) TTSlots[i] = clsTT{};
}

} // namespace nvoChess
