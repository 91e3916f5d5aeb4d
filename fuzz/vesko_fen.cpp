// Any text as a FEN for Vesko: set it, read it back, count two plies and search two.
#include "vesko/veskoblock.h"

#include <cstdlib>
#include <cstring>
#include <memory>

using namespace nvoChess;

namespace {

VeskoBlock* SharedBlock() {
    static void* raw = std::calloc(1, sizeof(VeskoBlock) + 512);
    static VeskoBlock* block = [] {
        std::size_t space = sizeof(VeskoBlock) + 512;
        void* aligned = raw;
        return ::new (std::align(alignof(VeskoBlock), sizeof(VeskoBlock), aligned, space)) VeskoBlock;
    }();
    return block;
}

void Run(VeskoBlock* block, uint64_t command) {
    block->Command = command;
    VeskoExecute(block);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    VeskoBlock* block = SharedBlock();
    std::memset(block->Text, 0, sizeof block->Text);
    std::memcpy(block->Text, data, size < sizeof block->Text ? size : sizeof block->Text);
    Run(block, VeskoCommandSetPosition);
    Run(block, VeskoCommandGetPosition);
    if (!std::memchr(block->Text, 0, sizeof block->Text)) std::abort();
    block->Depth = 2;
    Run(block, VeskoCommandCount);
    block->MaxDepth = 2;
    Run(block, VeskoCommandSearch);
    return 0;
}
