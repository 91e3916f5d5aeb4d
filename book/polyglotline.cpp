#include "book/polyglotline.h"

#include "book/polyglotkey.h"
#include "chess/clschesscore.h"

namespace nvoChess {

using nuvobase::clsString;

const clsMove* FindPolyglotMove(clsChessCore& core, uint16_t code) {
    core.SetRootNode();
    core.Generate(-1);
    for (const clsMove* move = core.Current->Moves; move != core.Current->End(); ++move)
        if (PolyglotMove(*move) == code && core.IsLegalAtCurrent(*move)) return move;
    return nullptr;
}

clsString PolyglotMoveText(uint16_t code) {
    static const char Promotions[] = " nbrq";
    clsString text;
    for (const int square : {(code >> 6) & 63, code & 63})
        text.Append(char('a' + (square & 7))).Append(char('1' + (square >> 3)));
    const int promotion = (code >> 12) & 7;
    if (promotion >= 1 && promotion <= 4) text.Append(Promotions[promotion]);
    return text;
}

clsString DrawBookLine(const clsPolyglotBook& book, clsChessCore& core, int plies,
                       std::mt19937_64& generator) {
    core.SetPosition(clsString());
    clsString line;
    for (int ply = 0; ply < plies; ++ply) {
        const auto entries = book.Find(PolyglotKey(core.Board));
        const int pick = PickByWeight(entries, generator());
        if (pick < 0) break;
        const clsMove* move = FindPolyglotMove(core, entries[pick].Move);
        if (move == nullptr) break;
        clsString text = core.MoveText(move, false);
        line.Append(text.RemoveChar('=')).Append(' ');
        core.PlayMove(*move);
    }
    return line;
}

} // namespace nvoChess
