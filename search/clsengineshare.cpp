#include "search/clsengineshare.h"

#include <bit>
#include <new>

namespace nvoChess {

clsEngineShare::~clsEngineShare() { FreeTable(); }

void clsEngineShare::FreeTable() {
  delete[] TTSlots;
  TTSlots = nullptr;
  TTCount = 0;
  TTBytes = 0;
}

clsTT* clsEngineShare::AllocateSlots(uint64_t n) { return new (std::nothrow) clsTT[n]; }

void clsEngineShare::ResizeTable(int64_t megabytes) {
  FreeTable();
  if (megabytes <= 0) return;
  constexpr int64_t largest = int64_t{1} << 40;  // keeps the byte count in 64 bits
  TTBytes = static_cast<uint64_t>(megabytes < largest ? megabytes : largest) << 20;
  for (uint64_t n = std::bit_floor(TTBytes / sizeof(clsTT)); n > 1; n /= 2) {
    TTSlots = AllocateSlots(n);
    if (!TTSlots) continue;
    TTCount = n / 2;
    for (uint64_t i = 0; i < TTCount; ++i) TTSlots[i] = clsTT{};
    return;
  }
}

}  // namespace nvoChess
