// Arbitrary bytes as a polyglot book. Parsing must survive anything; a book it takes must be in key order,
// and every position's moves must give a weighted pick within them.

#include <cstdint>
#include <cstdlib>

#include "book/clspolyglotbook.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    nvoChess::clsPolyglotBook book;
    nuvobase::clsString error;
    const bool taken = book.Parse(data, size, error);
    if (taken != error.IsEmpty() || (taken && book.Count() != size / nvoChess::PolyglotEntrySize))
        std::abort();
    for (size_t at = 0; taken && at + nvoChess::PolyglotEntrySize <= size;
         at += nvoChess::PolyglotEntrySize) {
        uint64_t key = 0;
        for (int i = 0; i < 8; ++i) key = key << 8 | data[at + i];
        const auto entries = book.Find(key);
        if (entries.empty() || entries.front().Key != key || entries.back().Key != key) std::abort();
        const int pick = nvoChess::PickByWeight(entries, key);
        if (pick >= int(entries.size()) || (pick >= 0 && entries[pick].Weight == 0)) std::abort();
    }
    return 0;
}
