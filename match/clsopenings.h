#pragma once
// The openings of a tournament: positions of an EPD file, the first moves of the games of a PGN file, or
// walks through a polyglot book; in file order or shuffled. One seeded generator draws both the walks and
// the shuffle from its raw output, so that the same seed gives the same sequence on any machine.

#include "nuvobase/clsstring.h"
#include "nuvobase/clsstrings.h"

#include <cstdint>
#include <random>
#include <vector>

namespace nvoChess {

class clsChessCore;

struct clsOpening {
    nuvobase::clsString Fen;   // all six fields; empty for the usual start position
    nuvobase::clsString Moves; // coordinate moves from there, each followed by a blank
};

class clsOpenings {
public:
    // Seeds the walks through a book and the shuffle.
    void Seed(uint64_t seed) { Generator.seed(seed); }
    // Reads an EPD file, a PGN file up to plies plies a game (0 for whole games), or draws lines of up to
    // plies plies (0 for as far as the book goes) from a polyglot book, one for each of count rounds; the
    // kind comes from the extension, any case. Openings that are no legal position or whose moves are not
    // legal are left out; skipped takes one line about each, or about a damaged book. False when the file
    // cannot be read.
    bool Load(const nuvobase::clsString& file, int32_t plies, int32_t count, nuvobase::clsCStrings& skipped);
    // Shuffles the openings by the seeded generator.
    void Shuffle();
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
    void LoadBook(const nuvobase::clsString& file, int32_t plies, int32_t count, nuvobase::clsCStrings& skipped,
                  bool& read);

    std::mt19937_64 Generator;
};

} // namespace nvoChess
