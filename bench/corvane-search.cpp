// corvane-search [-mb MB] [-e corvane|vesko] MS FEN...|startpos: starts the search of the engine on its
// thread, lets it run MS milliseconds, stops it and prints one line:
// "bestmove <move> score <s> depth <d> nodes <n> knps <k>", the node rate
// counted as the engine's statistics count it (nodes per millisecond).
// -mb sets the size of Corvane's table in megabytes (64, the program's default, without it; 0 for none).
// -e vesko searches with the second engine instead.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "bench/benchargs.h"
#include "nuvobase/clsstring.h"
#include "nuvobase/platform.h"
#include "search/clsenginecorvane.h"
#include "vesko/clsenginevesko.h"

int main(int argc, char** argv) {
    int first = 1;
    int megabytes = 64;
    TakeNumber(argc, argv, first, "-mb", megabytes);
    BenchArgs args;
    if (!ReadBenchArgs(argc, argv, first, args)) {
        std::fprintf(stderr, "usage: corvane-search [-mb MB] [-e corvane|vesko] MS FEN...|startpos\n");
        return 2;
    }
    const bool vesko = args.Vesko;
    const int ms = args.Number;
    const nuvobase::clsString& fen = args.Fen;

    nvoChess::clsEngineShare share;
    share.ResizeTable(megabytes);
    std::unique_ptr<nvoChess::clsEngineInterface> engine;
    nvoChess::clsEngineCorvane* corvane = nullptr;
    if (vesko) {
        engine = std::make_unique<nvoChess::clsEngineVesko>(nuvobase::clsString("Vesko"), nullptr);
    } else {
        auto own =
            std::make_unique<nvoChess::clsEngineCorvane>(&share, nuvobase::clsString("Corvane"), nullptr);
        corvane = own.get();
        engine = std::move(own);
    }
    engine->SetPosition(fen);
    const uint64_t start = nuvobase::ClockMs();
    engine->Start();
    nuvobase::SleepMs(ms > 0 ? static_cast<unsigned>(ms) : 0);
    engine->StopEngine();
    engine->Wait();
    const uint64_t elapsed = nuvobase::ClockMs() - start;

    int score = 0;
    const nuvobase::clsString move = engine->GetBestMoveText(false, score);
    int depth = 0;
    unsigned long long nodes = 0;
    if (corvane) {
        depth = corvane->SearchDepth.load();
        nodes = corvane->Nodes;
    } else {
        // Vesko tells both in its info line: "depth score 0 nodes move".
        std::sscanf(engine->GetInfoLine().Text(), "%d %*d %*d %llu", &depth, &nodes);
    }
    std::printf("bestmove %s score %d depth %d nodes %llu knps %llu\n",
                move.IsEmpty() ? "(none)" : move.Text(), score, depth, nodes,
                elapsed ? nodes / elapsed : nodes);
    return 0;
}
