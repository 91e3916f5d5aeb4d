// Result files of the learner are resumed from whatever a file holds: any bytes must give members whose
// soul text loads, and a file name for any generation.
#include <cstddef>
#include <cstdint>

#include "app/learnfile.h"
#include "search/clssoul.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    nuvobase::clsString text;
    text.Assign(reinterpret_cast<const char*>(data), static_cast<int>(size));
    const nuvobase::clsCStrings lines = nvoChess::TextLines(text);
    int first = 0;
    const int64_t generation = nvoChess::HighestGeneration(lines, first);
    if (first < 0 || (lines.Count > 0 && first >= lines.Count)) __builtin_trap();
    for (int i = first; i < lines.Count; ++i) {
        const nvoChess::clsLearnLine read = nvoChess::ReadLearnLine(lines.GetAt(i));
        nvoChess::clsSoul soul;
        soul.LoadText(read.Soul);
        nvoChess::TabField(lines.GetAt(i), 3);
    }
    nvoChess::GenerationFile(lines.GetAt(0), generation);
    return 0;
}
