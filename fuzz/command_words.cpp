// Any text as the arguments of a console command, read word by word to the end: no word is longer than the
// text, and the words run out before there are more of them than bytes.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "app/clscommandwords.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const nuvobase::clsString arguments(text.c_str());
    nvoChess::clsCommandWords words(arguments);
    // A word, even the empty one of "", takes at least one byte with the blank or the end behind it.
    for (int read = 0; read <= arguments.Size(); ++read)
        if (words.Next().Size() > arguments.Size()) std::abort();
    if (!words.Next().IsEmpty()) std::abort();
    return 0;
}
