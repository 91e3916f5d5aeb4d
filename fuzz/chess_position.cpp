// Arbitrary text as a position: the first line goes to SetPosition, then the position is written back,
// generated and counted; every further word is resolved as a SAN move of it.
#include <cstddef>
#include <cstdint>
#include <memory>

#include "chess/clschesscore.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const auto core = std::make_unique<nvoChess::clsChessCore>();
    const nuvobase::clsString input(
        nuvobase::clsString().Assign(reinterpret_cast<const char*>(data), static_cast<int>(size)));
    int position = 0;
    core->SetPosition(input.NextWord('\n', position));
    core->GetPosition();
    core->Generate(-1);
    core->Perft(2, false);
    core->GameStatus();
    bool first = true;
    while (position >= 0) {
        const nuvobase::clsString token = input.NextWord('\n', position);
        core->SanToCoordinates(token, first);
        core->MakeMoveText(token);
        first = false;
    }
    return 0;
}
