// Arbitrary bytes as a PGN file of games played elsewhere: reading must end, every game counted must be whole
// and decided, and the standings of the counted games must come out as JSON.

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "match/clspgnrecords.h"

namespace {

const std::string InputName =
    (std::filesystem::temp_directory_path() / ("fuzz-report-" + std::to_string(getpid()) + ".pgn")).string();

void RemoveScratchFile() {
    std::remove(InputName.c_str());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const bool registered = std::atexit(RemoveScratchFile) == 0;
    (void)registered;
    {
        std::ofstream out(InputName, std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(data), std::streamsize(size));
    }
    std::vector<nvoChess::clsPgnRecord> records;
    if (!nvoChess::ReadPgnRecords(InputName.c_str(), records)) std::abort();
    nvoChess::clsStandings standings;
    for (const nvoChess::clsPgnRecord& record : records) {
        if (!record.IsWhole() || !record.IsDecided()) continue;
        const nvoChess::clsGameOutcome outcome = record.Outcome();
        if (outcome.WhitePoints < 0 || outcome.WhitePoints > 2) std::abort();
        standings.Add(outcome);
    }
    if (standings.JsonText().IsEmpty()) std::abort();
    return 0;
}
