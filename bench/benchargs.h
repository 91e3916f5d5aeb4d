// The arguments the engine benchmarks share: [-e corvane|vesko] NUMBER FEN...|startpos.
#pragma once

#include <cstdlib>
#include <cstring>

#include "chess/clschesscore.h"
#include "nuvobase/clsstring.h"

struct BenchArgs {
    bool Vesko = false;      // -e vesko: the second engine
    int Number = 0;          // the depth or the milliseconds
    nuvobase::clsString Fen; // the FEN from the words left; "startpos" gives the start position
};

// Takes the switch at argv[first] if it is the one named, and moves first past it.
inline bool TakeSwitch(int argc, char** argv, int& first, const char* name) {
    if (argc <= first || std::strcmp(argv[first], name) != 0) return false;
    ++first;
    return true;
}

// Takes a switch with a number behind it, such as "-mb 64"; value keeps what it had without one.
inline void TakeNumber(int argc, char** argv, int& first, const char* name, int& value) {
    if (argc <= first + 1 || std::strcmp(argv[first], name) != 0) return;
    value = std::atoi(argv[first + 1]);
    first += 2;
}

// Reads the arguments from argv[first] on; false when the number or the FEN is missing.
inline bool ReadBenchArgs(int argc, char** argv, int first, BenchArgs& args) {
    if (argc > first + 1 && std::strcmp(argv[first], "-e") == 0) {
        args.Vesko = std::strcmp(argv[first + 1], "vesko") == 0;
        first += 2;
    }
    if (argc < first + 2) return false;
    args.Number = std::atoi(argv[first]);
    for (int i = first + 1; i < argc; ++i) {
        if (i > first + 1) args.Fen += ' ';
        args.Fen += argv[i];
    }
    if (args.Fen == "startpos") args.Fen = nvoChess::StartPositionFen;
    return true;
}
