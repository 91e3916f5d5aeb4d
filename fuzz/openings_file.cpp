// Arbitrary bytes as an openings file, read once as EPD and once as PGN: reading must end, and every opening
// kept must be a position that a game can start from, with moves that are legal there.

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "chess/clschesscore.h"
#include "match/clsopenings.h"

namespace {

std::string ScratchName(const char* suffix) {
    return (std::filesystem::temp_directory_path() / ("fuzz-openings-" + std::to_string(getpid()) + suffix))
        .string();
}

const std::string Names[] = {ScratchName(".epd"), ScratchName(".PGN")};

void RemoveScratchFiles() {
    for (const std::string& name : Names) std::remove(name.c_str());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const bool registered = std::atexit(RemoveScratchFiles) == 0;
    (void)registered;
    static nvoChess::clsChessCore core;
    for (const std::string& name : Names) {
        {
            std::ofstream out(name, std::ios::binary | std::ios::trunc);
            out.write(reinterpret_cast<const char*>(data), std::streamsize(size));
        }
        nvoChess::clsOpenings openings;
        nuvobase::clsCStrings skipped;
        openings.Load(name.c_str(), int32_t(size % 12), skipped);
        openings.Shuffle(size);
        for (const nvoChess::clsOpening& opening : openings.Items) {
            if (!opening.Fen.IsEmpty() && !nvoChess::clsOpenings::PositionFault(core, opening.Fen).IsEmpty())
                std::abort();
            core.SetPosition(opening.Fen);
            for (int position = 0; position >= 0;) {
                const nuvobase::clsString move = opening.Moves.NextWord(' ', position, false, true);
                if (!move.IsEmpty() && !core.MakeMoveText(move)) std::abort();
            }
        }
    }
    return 0;
}
