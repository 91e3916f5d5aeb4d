#include "vesko/veskoblock.h"

#include <cstdlib>
#include <memory>
#include <new>

namespace nvoChess {

VeskoBlock* VeskoAllocate(void*& raw, std::size_t& size) {
    size = sizeof(VeskoBlock) + 512;
    // Zeroed pages from the system: the move stack is large, and only what a search
    // reaches is ever touched.
    raw = std::calloc(1, size);
    if (!raw) return nullptr;
    std::size_t space = size;
    void* aligned = raw;
    return ::new (std::align(alignof(VeskoBlock), sizeof(VeskoBlock), aligned, space)) VeskoBlock;
}

void VeskoFree(void* raw) {
    std::free(raw);
}

} // namespace nvoChess
