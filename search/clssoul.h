// A soul: the sixteen weights of the evaluation, the engine's character as
// data. The learner breeds them, the named ones are built in.
#pragma once

#include <cstdint>

#include "nuvobase/clsstring.h"

namespace nvoChess {

class clsSoul {
public:
    enum eParameter : int {
        CenterMen,      // men other than queens on c4 to f5
        QueenOutEarly,  // minors at home while the queen is out
        CastlingBonus,  // added to Material by a castling move
        RimMen,         // knights and bishops at the edge
        PassedPawn,     // passed pawns, counted by files
        DoubledPawn,    // pawns behind a pawn of their file
        RookOnSecond,   // enemy rooks on the mover's second rank
        RooksOneSide,   // back-rank king with its rooks on one side
        RookFiles,      // kept for the learner; weighs nothing
        SoulReserve,    // kept for the learner; read by nothing
        KingRoom,       // size of the kings' zones
        TradeWhenAhead, // pawns against pieces of the mover, by who is ahead
        CastlingKept,   // a king still holding its castling bit
        BishopCount,    // bishops, counted up to two
        LoneKing,       // driving a bare king
        KingShelter,    // king placement and pawns before the king
        Count
    };

    // "name=p0 p1 ... p15" of the five built-in souls.
    static constexpr int NamedCount = 5;
    static const char* const Named[NamedCount];

    int32_t P[Count] = {};

    int32_t operator[](int index) const { return P[index]; }

    // Reads "name=p0 p1 ... p15" and returns the name. Each number is the word
    // up to the next space, read as atoi reads it; a missing one is 0. Without
    // "=" the whole text is the name and every parameter is 0.
    nuvobase::clsString LoadText(const nuvobase::clsString& text);
    // The sixteen numbers, each followed by a tab.
    nuvobase::clsString Text() const;
    // Reads the numbers of Text.
    void LoadNumbers(const nuvobase::clsString& text);
    // Each parameter a fresh draw from 0 to 104.
    void Randomize();
    // Mixes another soul in, parameter by parameter: 2% a fresh draw, 8% the
    // mean of both, 60% the other's value, 30% unchanged.
    void Cross(const clsSoul& other);

private:
    void ReadNumbers(const char* text, char separator);
};

} // namespace nvoChess
