// The client operations of an engine, as a tournament game drives another chess program: the interface
// keeps the game's side of them and hands the words to the client of its Protocol. Every line ends in
// SendLine, which does nothing on the engines of this program.
#include "match/clsengineinterface.h"

using nuvobase::clsString;

namespace nvoChess {

clsProtocolClient& clsEngineInterface::Client() {
    const uint32_t reader = Protocol == Uci ? Uci : XBoard;
    if (!ProtocolClient || ProtocolClient->Protocol != reader)
        ProtocolClient = clsProtocolClient::For(reader, *this);
    return *ProtocolClient;
}

clsProtocolClient* clsEngineInterface::Speaker() {
    return Protocol == XBoard || Protocol == Uci ? &Client() : nullptr;
}

void clsEngineInterface::Handshake() {
    if (clsProtocolClient* client = Speaker()) client->Handshake();
}

void clsEngineInterface::NewGame() {
    MoveHistory = OpeningMoves;
    if (clsProtocolClient* client = Speaker()) client->NewGame();
}

void clsEngineInterface::Go() {
    ReportedSearchMs = -1;
    if (clsProtocolClient* client = Speaker()) client->Go();
    Think();
}

void clsEngineInterface::NotifyMove(const clsString& move, int mover) {
    MoveHistory += move;
    MoveHistory += ' ';
    if (mover == Side) return;
    ReportedSearchMs = -1;
    if (clsProtocolClient* client = Speaker()) client->OpponentMoved(move);
}

void clsEngineInterface::QuitEngine() {
    if (clsProtocolClient* client = Speaker()) client->Quit();
    Ready = false;
}

void clsEngineInterface::Synchronise() {
    Ready = false;
    if (clsProtocolClient* client = Speaker()) client->Synchronise();
}

void clsEngineInterface::Settle() {
    Ready = false;
    if (clsProtocolClient* client = Speaker()) client->Settle();
}

clsString clsEngineInterface::ParseLine(const clsString& line) {
    if (line.IsEmpty()) return clsString();
    return Client().ParseLine(line, line.BeforeChar(' '), line.AfterChar(' '));
}

bool clsEngineInterface::FeaturesPending() {
    clsProtocolClient* client = Speaker();
    return client && client->FeaturesPending();
}

void clsEngineInterface::NudgeFeatures() {
    if (clsProtocolClient* client = Speaker()) client->NudgeFeatures();
}

bool clsEngineInterface::HasFeature(const char* name) const {
    for (int i = 0; i < Options.Count; ++i)
        if (Options.GetName(i) == name && Options.GetAt(i) == "1") return true;
    return false;
}

void clsEngineInterface::ReportScore(int32_t centipawns) {
    ScoreCp = centipawns;
    ScoreKnown = true;
}

bool clsEngineInterface::TakeScore(int32_t& centipawns) {
    const bool known = ScoreKnown;
    centipawns = ScoreCp;
    ScoreKnown = false;
    return known;
}

void clsEngineInterface::Think() {}

} // namespace nvoChess
