// The program's entry: the command line becomes a table of name/value pairs, the application thread runs
// the program, and main waits for it.
#include <malloc.h>

#include "app/clschessapplication.h"

namespace {

// Blocks from this size up get pages of their own from the system.
constexpr int LargeBlockBytes = 128 << 10;

} // namespace

int main(int argc, char** argv) {
    // A fixed threshold: by default it climbs to the size of the largest block freed (the engine that gives
    // way at start is one), and the books and batches that grow after it then leave holes in the heap
    // instead of growing in place and going back to the system when freed.
    mallopt(M_MMAP_THRESHOLD, LargeBlockBytes);
    nuvobase::clsStrings arguments;
    for (int i = 1; i < argc; ++i) {
        nuvobase::clsString argument(argv[i]);
        arguments.SetValue(argument.BeforeChar('='), argument.AfterChar('='), false);
    }
    {
        nvoChess::clsChessApplication application(arguments);
        if (application.Start()) {
            application.Wait();
        }
    }
    return 0;
}
