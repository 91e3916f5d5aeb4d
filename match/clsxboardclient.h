#pragma once
// The XBoard client: the clocks go before every move in centiseconds, the program announces its features,
// and a move comes back as "move", in one of two older forms, or in standard notation.

#include "match/clsprotocolclient.h"

namespace nvoChess {

class clsXBoardClient final : public clsProtocolClient {
public:
    explicit clsXBoardClient(clsEngineInterface& engine);

    // "xboard", "protover 2"; Ready at once, pulled back by "feature done=0".
    void Handshake() override;
    // The program said done=0 and not yet done=1, or it has said neither and the grace time since the
    // handshake has not passed. Moves sent before then could miss a feature such as usermove.
    bool FeaturesPending() const override;
    // While features are pending, says "accepted done" every FeatureNudgeMs: some programs pass their
    // output on only when a line comes in (gnuchess in XBoard mode), and every XBoard engine takes the line.
    void NudgeFeatures() override;
    static constexpr uint64_t FeatureGraceMs = 5000;
    static constexpr uint64_t FeatureNudgeMs = 250;
    // "ping" with the next number when the program does pings, else Ready at once.
    void Synchronise() override;
    // "new", "post", the level of the engine's own clock, the options; an opening goes in force mode.
    void NewGame() override;
    // Both clocks, then "go".
    void Go() override;
    // Both clocks and the move; "go" when the program held the opening in force mode.
    void OpponentMoved(const nuvobase::clsString& move) override;
    // "move", "resign", a result word, "pong", "feature", the older move forms and thinking lines.
    nuvobase::clsString ParseLine(const nuvobase::clsString& line, const nuvobase::clsString& word,
                                  const nuvobase::clsString& rest) override;

private:
    // "time" and "otim" in centiseconds.
    void SendClocks();
    // A move as the program takes it: behind "usermove" when it asked for that.
    nuvobase::clsString MoveLine(const nuvobase::clsString& move) const;
    // Reads the pairs of a feature line into the engine's Options, Ready and PingFeature.
    void ReadFeatures(const nuvobase::clsString& pairs);
    // Hands the engine the score of a thinking line: ply, score, time, nodes, then the principal variation.
    void ReadScore(const nuvobase::clsString& line);
    // The move of the older forms "My move is : g1f3" and "1. ... g1f3", or empty text; the second of the
    // two forms that name one move gives empty text too.
    nuvobase::clsString OldFormMove(const nuvobase::clsString& line);
    // A move text as the game reads it: coordinates in lower case, standard notation as it stands.
    static nuvobase::clsString MoveReplyText(const nuvobase::clsString& text);

    uint64_t HandshakeMs = 0;            // when the handshake went out
    uint64_t NudgeMs = 0;                // when the last nudge went out
    bool ForceMode = false;              // the program holds the opening in force mode until its first turn
    nuvobase::clsString OldFormMoveText; // the move named by the last older form line
    int OldFormKind = 0;                 // which form named it
};

} // namespace nvoChess
