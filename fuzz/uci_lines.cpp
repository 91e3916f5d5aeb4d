// Any text as lines of a UCI session: every line goes through the UCI front end of one application,
// and a search that a line starts is stopped at once. Console commands are left out: some of them are
// tools that write files or take over the input. The first byte chooses the application: odd, the one
// of -strictuci.
#include "app/clschessapplication.h"

#include <cstdio>
#include <string>

namespace {

nuvobase::clsStrings SmallTable(bool strict) {
    nuvobase::clsStrings arguments;
    arguments.SetValue(nuvobase::clsString("memory"), nuvobase::clsString("1"), false);
    if (strict) arguments.SetValue(nuvobase::clsString("-strictuci"), nuvobase::clsString(), false);
    return arguments;
}

nvoChess::clsChessApplication& Application(bool strict) {
    static nuvobase::clsTSafeOutput sink(true, std::fopen("/dev/null", "w"));
    static nvoChess::clsChessApplication plain(SmallTable(false)), strictUci(SmallTable(true));
    nvoChess::clsChessApplication& application = strict ? strictUci : plain;
    application.Output = &sink;
    application.Engine->Output = &sink;
    return application;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    nvoChess::clsChessApplication& application = Application(size > 0 && (data[0] & 1));
    const std::string text(reinterpret_cast<const char*>(data), size);
    size_t begin = 0;
    while (begin <= text.size()) {
        size_t end = text.find('\n', begin);
        if (end == std::string::npos) end = text.size();
        const std::string line = text.substr(begin, end - begin);
        begin = end + 1;
        if (line.empty() || line[0] == '\\') continue;
        application.Engine->Protocol = nvoChess::clsEngineInterface::Uci;
        application.ExecuteCommand(nuvobase::clsString(line.c_str()));
        application.HaltEngine();
    }
    return 0;
}
