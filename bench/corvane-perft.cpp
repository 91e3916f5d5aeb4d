// corvane-perft [-nopopcnt] [-e corvane|vesko] DEPTH FEN...|startpos: counts the legal move paths of a
// position to a depth and prints "<nodes> nodes <ms> ms <nps> nps". The FEN may come as several arguments. -e
// vesko counts with the second engine instead.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "bench/benchargs.h"
#include "chess/bits.h"
#include "chess/clschesscore.h"
#include "vesko/veskoblock.h"

namespace {

// Vesko's count: the paths of the last ply.
uint64_t VeskoPerft(const nuvobase::clsString& fen, int depth) {
    void* raw = nullptr;
    std::size_t size = 0;
    nvoChess::VeskoBlock* block = nvoChess::VeskoAllocate(raw, size);
    if (!block) return 0;
    std::snprintf(block->Text, sizeof block->Text, "%s", fen.Text());
    block->Command = nvoChess::VeskoCommandSetPosition | nvoChess::VeskoCommandCount;
    block->Depth = depth;
    nvoChess::VeskoExecute(block);
    const uint64_t nodes = block->Depth > 0 ? block->PlyCounts[block->Depth - 1] : 0;
    nvoChess::VeskoFree(raw);
    return nodes;
}

} // namespace

int main(int argc, char** argv) {
    int first = 1;
    if (TakeSwitch(argc, argv, first, "-nopopcnt")) nvoChess::UsePopCount = false;
    const bool walk = TakeSwitch(argc, argv, first, "-walk");
    BenchArgs args;
    if (!ReadBenchArgs(argc, argv, first, args)) {
        std::fprintf(stderr,
                     "usage: corvane-perft [-nopopcnt] [-walk] [-e corvane|vesko] DEPTH FEN...|startpos\n");
        return 2;
    }
    const bool vesko = args.Vesko;
    const int depth = args.Number;
    const nuvobase::clsString& fen = args.Fen;

    auto core = std::make_unique<nvoChess::clsChessCore>();
    core->PerftShortcuts = !walk;
    core->SetPosition(fen);
    const auto start = std::chrono::steady_clock::now();
    const uint64_t nodes = vesko ? VeskoPerft(fen, depth) : core->Perft(depth, false);
    const auto ms =
        std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start)
            .count();
    const uint64_t nps = ms > 0 ? nodes * 1000 / static_cast<uint64_t>(ms) : nodes * 1000;
    std::printf("%llu nodes %lld ms %llu nps\n", static_cast<unsigned long long>(nodes),
                static_cast<long long>(ms), static_cast<unsigned long long>(nps));
    return 0;
}
