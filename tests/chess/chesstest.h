// Helpers of the chess core tests: a core that records its output lines, and readable move lists.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "chess/clschesscore.h"

namespace nvoChessTest {

// The sanitizers slow the walk down tenfold and more: deep counts are left to the plain builds.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool Sanitized = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
constexpr bool Sanitized = true;
#else
constexpr bool Sanitized = false;
#endif
#else
constexpr bool Sanitized = false;
#endif

class clsRecordingCore : public nvoChess::clsChessCore {
public:
    std::vector<std::string> Lines;

protected:
    void WriteLine(const nuvobase::clsString& line) override { Lines.emplace_back(line.Text()); }
};

// The core is large (its move pool alone is 400 kB): tests keep it on the heap.
inline std::unique_ptr<clsRecordingCore> CoreAt(const char* fen) {
    auto core = std::make_unique<clsRecordingCore>();
    core->SetPosition(nuvobase::clsString(fen));
    return core;
}

// The texts of the current node's list, in list order.
inline std::vector<std::string> ListTexts(const nvoChess::clsChessCore& core, bool longForm) {
    std::vector<std::string> texts;
    for (const nvoChess::clsMove* move = core.Current->Moves; move != core.Current->End(); ++move)
        texts.emplace_back(core.MoveText(move, longForm).Text());
    return texts;
}

} // namespace nvoChessTest
