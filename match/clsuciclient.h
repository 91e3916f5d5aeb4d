#pragma once
// The UCI client: the game's position is replayed from its start with every move, and the clocks go with
// each go in milliseconds.

#include "match/clsprotocolclient.h"

namespace nvoChess {

class clsUciClient final : public clsProtocolClient {
public:
    explicit clsUciClient(clsEngineInterface& engine);

    // "uci"; Ready waits for "uciok".
    void Handshake() override;
    // "isready"; Ready waits for "readyok".
    void Synchronise() override;
    // "stop", then "isready".
    void Settle() override;
    // The options, "ucinewgame", the position, then a sign of life.
    void NewGame() override;
    // The position line with the game's moves, then a go through the engine.
    void OpponentMoved(const nuvobase::clsString& move) override;
    // "go" with both clocks and increments by colour.
    void Go() override;
    // "bestmove" gives the move, ponder part included, in lower case; "uciok" and "readyok" set Ready; an
    // info line gives its time and score to the engine.
    nuvobase::clsString ParseLine(const nuvobase::clsString& line, const nuvobase::clsString& word,
                                  const nuvobase::clsString& rest) override;

private:
    // The position line of the game so far.
    nuvobase::clsString PositionLine() const;
    // Hands the engine the score of "info ... score cp 31 ..." or "info ... score mate -3 ...".
    void ReadScore(const nuvobase::clsString& line);
};

} // namespace nvoChess
