#include "chess/random.h"

#include <atomic>
#include <cstdlib>
#include <ctime>

namespace nvoChess {

namespace {

// Engines on different threads draw without a lock: a lost update only changes which number comes next. The
// words are atomic so that such a race is harmless rather than undefined.
const uint64_t StartSeconds = static_cast<uint64_t>(std::time(nullptr));
std::atomic<uint64_t> S0{StartSeconds};
std::atomic<uint64_t> S1{StartSeconds + static_cast<uint64_t>(std::rand())};

} // namespace

uint64_t RandomNext() {
    uint64_t x = S0.load(std::memory_order_relaxed);
    const uint64_t y = S1.load(std::memory_order_relaxed);
    S0.store(y, std::memory_order_relaxed);
    x ^= x << 23;
    const uint64_t s1 = x ^ y ^ (x >> 17) ^ (y >> 26);
    S1.store(s1, std::memory_order_relaxed);
    return s1 + y;
}

int32_t RandomBelow(int32_t n) {
    if (n < 1) return 0;
    const int64_t low = static_cast<int32_t>(static_cast<uint32_t>(RandomNext()));
    return static_cast<int32_t>((low < 0 ? -low : low) % n);
}

void RandomSeed(uint64_t s0, uint64_t s1) {
    S0.store(s0, std::memory_order_relaxed);
    S1.store(s1, std::memory_order_relaxed);
}

} // namespace nvoChess
