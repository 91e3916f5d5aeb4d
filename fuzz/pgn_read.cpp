// Arbitrary bytes as a PGN file: reading must end, build a book in key order, and write a table whose lines
// all end in CR LF.

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "book/clspgnfile.h"
#include "chess/clschesscore.h"

namespace {

std::string ScratchName(const char* suffix) {
    return (std::filesystem::temp_directory_path() / ("fuzz-pgn-" + std::to_string(getpid()) + suffix))
        .string();
}

const std::string InputName = ScratchName(".pgn");
const std::string TableName = ScratchName(".txt");

void RemoveScratchFiles() {
    std::remove(InputName.c_str());
    std::remove(TableName.c_str());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const bool registered = std::atexit(RemoveScratchFiles) == 0;
    (void)registered;
    {
        std::ofstream out(InputName, std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(data), std::streamsize(size));
    }
    static nvoChess::clsChessCore core;
    nvoChess::clsPGNFile pgn;
    pgn.Load(InputName.c_str(), core, int(size % 3 == 0 ? 0 : size % 40), true);
    for (int i = 1; i < pgn.Book.Count; ++i)
        if (!pgn.Book.At(i)->Greater(*pgn.Book.At(i - 1))) std::abort();
    std::ifstream table(TableName, std::ios::binary);
    for (std::string line; std::getline(table, line);)
        if (line.empty() || line.back() != '\r') std::abort();
    return 0;
}
