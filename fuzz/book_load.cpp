// Arbitrary bytes as a book file. Load and Append must survive anything, and
// whatever they read must save and load back unchanged.

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "book/clsbook.h"

namespace {

std::string ScratchName(const char* suffix) {
    return (std::filesystem::temp_directory_path() / ("fuzz-book-" + std::to_string(getpid()) + suffix))
        .string();
}

const std::string InputName = ScratchName("-in.cbk");
const std::string SavedName = ScratchName("-saved.cbk");

void RemoveScratchFiles() {
    std::remove(InputName.c_str());
    std::remove(SavedName.c_str());
}

bool SameEntries(const nvoChess::clsBook& left, const nvoChess::clsBook& right) {
    if (left.Count != right.Count) return false;
    for (int i = 0; i < left.Count; ++i) {
        const nvoChess::clsBookEntry* a = left.At(i);
        const nvoChess::clsBookEntry* b = right.At(i);
        if (a->Key != b->Key || a->Wins != b->Wins || a->Losses != b->Losses || a->Draws != b->Draws)
            return false;
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const bool cleanupRegistered = std::atexit(RemoveScratchFiles) == 0;
    (void)cleanupRegistered;

    FILE* input = std::fopen(InputName.c_str(), "wb");
    if (input == nullptr) return 0;
    const bool written = std::fwrite(data, 1, size, input) == size;
    if (std::fclose(input) != 0 || !written) return 0;

    const nuvobase::clsString inputPath(InputName.c_str());
    const nuvobase::clsString savedPath(SavedName.c_str());
    nvoChess::clsBook book;
    book.Load(inputPath, 0);
    book.Append(inputPath, int(size % 4)); // once more, filtered by a limit

    nvoChess::clsBook again;
    if (!book.Save(savedPath, 0) || !again.Load(savedPath, 0) || !SameEntries(book, again)) std::abort();
    return 0;
}
