// corvane-search [-e corvane|vesko] MS FEN...|startpos: starts the search of the engine on its
// thread, lets it run MS milliseconds, stops it and prints one line:
// "bestmove <move> score <s> depth <d> nodes <n> knps <k>", the node rate
// counted as the engine's statistics count it (nodes per millisecond).
// -e vesko searches with the second engine instead.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "nuvobase/clsstring.h"
#include "nuvobase/platform.h"
#include "search/clsenginecorvane.h"
#include "vesko/clsenginevesko.h"

int main(int argc, char** argv) {
  int first = 1;
  bool vesko = false;
  if (argc > first + 1 && std::strcmp(argv[first], "-e") == 0) {
    vesko = std::strcmp(argv[first + 1], "vesko") == 0;
    first += 2;
  }
  if (argc < first + 2) {
    std::fprintf(stderr, "usage: corvane-search [-e corvane|vesko] MS FEN...|startpos\n");
    return 2;
  }
  const int ms = std::atoi(argv[first]);
  nuvobase::clsString fen;
  for (int i = first + 1; i < argc; ++i) {
    if (i > first + 1) fen += ' ';
    fen += argv[i];
  }
  if (fen == "startpos") fen = vesko ? "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1" : "";

  nvoChess::clsEngineShare share;
  share.ResizeTable(64);
  std::unique_ptr<nvoChess::clsEngineInterface> engine;
  nvoChess::clsEngineCorvane* corvane = nullptr;
  if (vesko) {
    engine = std::make_unique<nvoChess::clsEngineVesko>(nuvobase::clsString("Vesko"), nullptr);
  } else {
    auto own = std::make_unique<nvoChess::clsEngineCorvane>(&share, nuvobase::clsString("Corvane"), nullptr);
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
  std::printf("bestmove %s score %d depth %d nodes %llu knps %llu\n", move.IsEmpty() ? "(none)" : move.Text(), score,
              depth, nodes, elapsed ? nodes / elapsed : nodes);
  return 0;
}
