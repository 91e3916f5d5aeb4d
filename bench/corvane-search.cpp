// corvane-search MS FEN...|startpos: starts the search of the engine on its
// thread, lets it run MS milliseconds, stops it and prints one line:
// "bestmove <move> score <s> depth <d> nodes <n> knps <k>", the node rate
// counted as the engine's statistics count it (nodes per millisecond).
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "nuvobase/clsstring.h"
#include "nuvobase/platform.h"
#include "search/clsenginecorvane.h"

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fprintf(stderr, "usage: corvane-search MS FEN...|startpos\n");
    return 2;
  }
  const int ms = std::atoi(argv[1]);
  nuvobase::clsString fen;
  for (int i = 2; i < argc; ++i) {
    if (i > 2) fen += ' ';
    fen += argv[i];
  }
  if (fen == "startpos") fen.Clear();

  nvoChess::clsEngineShare share;
  share.ResizeTable(64);
  auto engine = std::make_unique<nvoChess::clsEngineCorvane>(&share, nuvobase::clsString("Corvane"), nullptr);
  engine->SetPosition(fen);
  const uint64_t start = nuvobase::ClockMs();
  engine->Start();
  nuvobase::SleepMs(ms > 0 ? static_cast<unsigned>(ms) : 0);
  engine->StopEngine();
  const uint64_t elapsed = nuvobase::ClockMs() - start;

  int score = 0;
  const nuvobase::clsString move = engine->GetBestMoveText(false, score);
  const uint64_t nodes = engine->Nodes;
  std::printf("bestmove %s score %d depth %d nodes %llu knps %llu\n", move.IsEmpty() ? "(none)" : move.Text(), score,
              engine->SearchDepth.load(), static_cast<unsigned long long>(nodes),
              static_cast<unsigned long long>(elapsed ? nodes / elapsed : nodes));
  return 0;
}
