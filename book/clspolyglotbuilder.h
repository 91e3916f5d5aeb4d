// Building a polyglot book (.bin) from games, the way `polyglot make-book` does, so that the two give the
// same file byte for byte:
// - every move of a game counts for the side that played it: 2 points for a win, 1 for a draw (and a game
//   without a result), 0 for a loss;
// - once a move has been counted in 16384 games, the games and points of every move of its position are
//   halved, rounding down, so that weights stay within 16 bits;
// - the file keeps the moves played in at least minGames games with a weight above 0, the weight being the
//   points; they are ordered by key, then by weight downwards, the C library's sort deciding between equals
//   from the order in which the moves were first met.
#pragma once

#include <cstdint>
#include <vector>

#include "book/clsgame.h"
#include "nuvobase/clsstring.h"

namespace nvoChess {

class clsPolyglotBuilder : public clsPlyListener {
public:
    static constexpr int DefaultMinGames = 3;

    void Played(const clsBoard& before, const clsMove& move, const clsBoard& after) override;
    void GameEnded(uint32_t code) override;
    bool SkipsIllegalFits() const override { return true; }

    // Writes the book; false when the file cannot be written. Returns the entries written in written.
    bool Write(const nuvobase::clsString& file, int minGames, int64_t& written) const;

private:
    struct clsTally {
        uint64_t Key;
        uint16_t Move;
        uint16_t Games;
        uint16_t Points;
    };
    struct clsPly {
        uint64_t Key;
        uint16_t Move;
    };

    void Count(uint64_t key, uint16_t move, int points);
    void HalveMovesOf(uint64_t key);
    size_t SlotOf(uint64_t key) const { return size_t(key) & (Slots.size() - 1); }
    void Grow();

    std::vector<clsPly> Game;      // the moves of the game being read
    std::vector<clsTally> Tallies; // in the order first met
    std::vector<uint32_t> Slots;   // index + 1 into Tallies, 0 free; found by key, then by linear probing
};

} // namespace nvoChess
