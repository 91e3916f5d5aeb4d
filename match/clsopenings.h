#pragma once
// The openings of a tournament: positions of an EPD file or the first moves of the games of a PGN file,
// in file order or shuffled by a seed, so that the same seed gives the same sequence on any machine.

#include "nuvobase/clsstring.h"
#include "nuvobase/clsstrings.h"

#include <cstdint>
#include <vector>

namespace nvoChess {

class clsChessCore;

struct clsOpening {
    nuvobase::clsString Fen;   // all six fields; empty for the usual start position
    nuvobase::clsString Moves; // coordinate moves from there, each followed by a blank
};

class clsOpenings {
public:
    // Reads an EPD file, or a PGN file (by the extension, any case) up to plies plies a game, 0 for whole
    // games. Openings that are no legal position or whose moves are not legal are left out; skipped takes one
    // line about each. False when the file cannot be read.
    bool Load(const nuvobase::clsString& file, int32_t plies, nuvobase::clsCStrings& skipped);
    // Shuffles the openings by the seed; the same seed gives the same order everywhere.
    void Shuffle(uint64_t seed);
    // The opening of a round, counted from 1, wrapping around the sequence.
    const clsOpening& ForRound(int32_t round) const;
    // Some opening is a set-up position, which an engine must be able to take as FEN.
    bool HasSetUpPositions() const;
    // Empty text when fen is a position a game can start from, else why not. The board of core takes it.
    static nuvobase::clsString PositionFault(clsChessCore& core, const nuvobase::clsString& fen);

    std::vector<clsOpening> Items;

private:
    void LoadEpd(const nuvobase::clsString& file, nuvobase::clsCStrings& skipped, bool& read);
    void LoadPgn(const nuvobase::clsString& file, int32_t plies, nuvobase::clsCStrings& skipped, bool& read);
};

} // namespace nvoChess
