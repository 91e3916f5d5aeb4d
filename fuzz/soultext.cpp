// Soul texts come from files and tournament settings: any bytes must load
// into sixteen numbers and read back in the tab form.
#include <cstddef>
#include <cstdint>

#include "nuvobase/clsstring.h"
#include "search/clssoul.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    nuvobase::clsString text;
    text.Assign(reinterpret_cast<const char*>(data), static_cast<int>(size));
    nvoChess::clsSoul soul;
    soul.LoadText(text);
    nvoChess::clsSoul copy;
    copy.LoadNumbers(soul.Text());
    for (int i = 0; i < nvoChess::clsSoul::Count; ++i)
        if (copy[i] != soul[i]) __builtin_trap();
    soul.LoadNumbers(text);
    return 0;
}
