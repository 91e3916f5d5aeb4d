// Any text as a FEN for Vesko: set it (a text beyond the block's field is cut), read it
// back, count two plies, search two and play the move found; the text's start is tried
// as a move as well.
#include "vesko/clsenginevesko.h"

#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static nvoChess::clsEngineVesko engine("Vesko", nullptr);
    const std::string text(reinterpret_cast<const char*>(data), size);
    engine.SetPosition(text.c_str());
    const nuvobase::clsString fen = engine.GetPosition();
    if (fen.Size() > 511) std::abort();
    engine.Perft(2, false);
    engine.SetMaxDepth(2);
    engine.Run();
    engine.GetInfoLine();
    int score = 0;
    engine.MakeMoveText(engine.GetBestMoveText(true, score));
    engine.MakeMoveText(text.substr(0, 6).c_str());
    return 0;
}
