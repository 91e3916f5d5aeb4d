#pragma once
// The limits that a UCI go asks of one search, read once from its words; every front end takes this value.

#include "nuvobase/clsstring.h"

#include <cstdint>

namespace nvoChess {

struct clsGoLimits {
    // The words of go that carry a number, in the order of Numbers.
    enum eNumber {
        WhiteTime,
        BlackTime,
        WhiteIncrement,
        BlackIncrement,
        MovesToGo,
        MoveTime,
        Depth,
        Nodes,
        Mate,
        NumberCount
    };

    // Reads the words of go, ignoring case: a number word takes the word behind it as its decimal value, and
    // a word not known is skipped. A repeated word counts with its last value.
    static clsGoLimits Read(const nuvobase::clsString& words);

    // Whether the word came, with or without a value.
    bool Given(eNumber word) const { return GivenWords & (1u << word); }
    // The value behind the word's last coming; the word that ends the line with no value behind it reads as
    // 0, as text that is no number does.
    int64_t Value(eNumber word) const { return word == Unvalued ? 0 : Numbers[word]; }
    // The value behind the word, or fallback when the word had none or did not come.
    int64_t ValueOr(eNumber word, int64_t fallback) const {
        return ValuedWords & (1u << word) ? Numbers[word] : fallback;
    }

    int64_t Numbers[NumberCount] = {}; // the last value behind each word
    uint32_t GivenWords = 0;
    uint32_t ValuedWords = 0;
    int Unvalued = NumberCount; // the number word that ended the line without its value
    bool Infinite = false;
    bool Ponder = false;
    bool InfiniteLast = false; // infinite came behind the last depth
};

} // namespace nvoChess
