// Any text as the output of another chess program: every line goes through the reader of its replies, as
// UCI or XBoard by the first byte (odd: UCI). The program is never started, so what the reader answers goes
// nowhere; the scores it finds are taken as the adjudicator takes them.
#include "match/clsexternalengine.h"

#include <cstdio>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static nuvobase::clsTSafeOutput sink(true, std::fopen("/dev/null", "w"));
    nvoChess::clsExternalEngine engine(nuvobase::clsString("fuzzed"), &sink);
    engine.PaceMs = 0;
    engine.Protocol = size > 0 && (data[0] & 1) ? nvoChess::clsEngineInterface::Uci
                                                : nvoChess::clsEngineInterface::XBoard;
    const std::string text(reinterpret_cast<const char*>(data), size);
    size_t begin = 0;
    while (begin < text.size()) {
        size_t end = text.find('\n', begin);
        if (end == std::string::npos) end = text.size();
        engine.ParseLine(nuvobase::clsString(text.substr(begin, end - begin).c_str()));
        int32_t score = 0;
        engine.TakeScore(score);
        begin = end + 1;
    }
    return 0;
}
