// corvane-perft [-nopopcnt] DEPTH FEN...|startpos: counts the legal move paths of a position to a depth and
// prints "<nodes> nodes <ms> ms <nps> nps". The FEN may come as several arguments.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "chess/bits.h"
#include "chess/clschesscore.h"

int main(int argc, char** argv) {
    int first = 1;
    if (argc > first && std::strcmp(argv[first], "-nopopcnt") == 0) {
        nvoChess::UsePopCount = false;
        ++first;
    }
    if (argc < first + 2) {
        std::fprintf(stderr, "usage: corvane-perft [-nopopcnt] DEPTH FEN...|startpos\n");
        return 2;
    }
    const int depth = std::atoi(argv[first]);
    nuvobase::clsString fen;
    for (int i = first + 1; i < argc; ++i) {
        if (i > first + 1) fen += ' ';
        fen += argv[i];
    }
    if (fen == "startpos") fen.Clear();

    auto core = std::make_unique<nvoChess::clsChessCore>();
    core->SetPosition(fen);
    const auto start = std::chrono::steady_clock::now();
    const uint64_t nodes = core->Perft(depth, false);
    const auto ms =
        std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start)
            .count();
    const uint64_t nps = ms > 0 ? nodes * 1000 / static_cast<uint64_t>(ms) : nodes * 1000;
    std::printf("%llu nodes %lld ms %llu nps\n", static_cast<unsigned long long>(nodes),
                static_cast<long long>(ms), static_cast<unsigned long long>(nps));
    return 0;
}
