// Lines from a GUI or a user, one after the other, through the XBoard front end and the console. Commands
// that start searches, count deep trees, allocate tables or touch files are left out; every other one, the
// user moves included, reads the text it is given. The engine never gets a side, so no search starts.
#include "app/clschessapplication.h"

#include <cstdio>
#include <string>

namespace {

bool LeftOut(const nuvobase::clsString& command) {
    for (const char* word : {"go", "perft", "divide", "memory", "quit", "\\dbg", "\\loadbook", "\\savebook",
                             "\\loadsoul", "\\corvane", "\\vesko"})
        if (command == word) return true;
    return false;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static nuvobase::clsTSafeOutput discard(true, std::fopen("/dev/null", "w"));
    static nvoChess::clsChessApplication* application = [] {
        auto* made = new nvoChess::clsChessApplication(nuvobase::clsStrings());
        made->Output = &discard;
        made->SetEngine(nuvobase::clsString("vesko"));
        made->SetMemory(0);
        return made;
    }();
    const std::string text(reinterpret_cast<const char*>(data), size);
    for (size_t start = 0; start < text.size();) {
        size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        const nuvobase::clsString line(text.substr(start, end - start).c_str());
        start = end + 1;
        const nuvobase::clsString command = line.BeforeChar(' ');
        if (LeftOut(command)) continue;
        application->HandleXBoard(command, line.AfterChar(' '), false);
        application->State = nvoChess::clsChessApplication::StateIdle;
    }
    return 0;
}
