// Helpers of the chess core tests: a core that records its output lines, readable move lists, and the
// reference perft counts.
#pragma once

#include <fstream>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

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

// The position after the coordinate moves, from the start.
inline std::unique_ptr<clsRecordingCore> CoreAfter(std::initializer_list<const char*> moves) {
    auto core = CoreAt("");
    for (const char* move : moves) EXPECT_TRUE(core->MakeMoveText(nuvobase::clsString(move))) << move;
    return core;
}

// The texts of the current node's list, in list order.
inline std::vector<std::string> ListTexts(const nvoChess::clsChessCore& core, bool longForm) {
    std::vector<std::string> texts;
    for (const nvoChess::clsMove* move = core.Current->Moves; move != core.Current->End(); ++move)
        texts.emplace_back(core.MoveText(move, longForm).Text());
    return texts;
}

struct PerftCase {
    std::string Fen;
    int Depth;
    uint64_t Count;
};

// A reference table in tests/data: FEN;depth;count lines from stockfish, "#" lines are comments.
inline std::vector<PerftCase> ReferenceCounts(const char* name) {
    std::vector<PerftCase> cases;
    std::ifstream file(std::string(CORVANE_TEST_DATA "/") + name);
    EXPECT_TRUE(file.good()) << name;
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line[0] == '#') continue;
        const size_t depth = line.find(';'), count = line.rfind(';');
        cases.push_back(
            {line.substr(0, depth), std::stoi(line.substr(depth + 1)), std::stoull(line.substr(count + 1))});
    }
    return cases;
}

} // namespace nvoChessTest
