#include "chess/bits.h"

namespace nvoChess {

bool ProcessorHasPopCount() {
#if defined(__x86_64__)
    return __builtin_cpu_supports("popcnt");
#else
    return false;
#endif
}

bool UsePopCount = ProcessorHasPopCount();

} // namespace nvoChess
