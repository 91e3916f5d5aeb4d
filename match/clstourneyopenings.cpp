// The openings of a tournament: read from the file the tournament names, handed to the games round by
// round, and checked against what the XBoard engines can take.
#include "chess/random.h"
#include "match/clsexternalengine.h"
#include "match/clstourney.h"
#include "nuvobase/platform.h"

#include <cstdlib>

using nuvobase::clsString;
using nuvobase::clsXML;

namespace nvoChess {

namespace {
constexpr unsigned FeaturePollMs = 5;
} // namespace

bool clsTourney::ReadOpenings(clsXML& options) {
    clsXML* element = options.FindPath("openings", clsString(), clsString());
    if (!element) return true;
    OpeningsFile = element->GetAttribute("file");
    const int32_t plies = int32_t(element->GetAttribute("plies").ToDecimal());
    // Without a seed every run has openings of its own.
    const clsString seed = element->GetAttribute("seed");
    Openings.Seed(seed.IsEmpty() ? RandomNext() : std::strtoull(seed.Text(), nullptr, 10));
    nuvobase::clsCStrings skipped;
    const bool read = Openings.Load(OpeningsFile, plies > 0 ? plies : 0, Rounds, skipped);
    for (int i = 0; i < skipped.Count; ++i) Output->Write("# " + skipped.GetAt(i), true);
    if (!read || Openings.Items.empty()) {
        Output->Write(
            "# tourney: no opening to play in " + OpeningsFile.Quote('"') + ", the tournament stops", true);
        return false;
    }
    const clsString order = element->GetAttribute("order");
    if (order == "random") {
        Openings.Shuffle();
    } else if (!order.IsEmpty() && order != "sequential") {
        Output->Write("# tourney: openings order " + order.Quote('"') +
                          " is neither sequential nor random; "
                          "they are played in file order",
                      true);
    }
    return true;
}

bool clsTourney::EnginesTakeOpenings() {
    if (!Openings.HasSetUpPositions()) return true;
    for (auto& player : Players) {
        if (player->IsEmbedded() || player->IsUci() || TakesSetBoard(*player)) continue;
        const clsString message =
            "the XBoard engine " + player->Name.Quote('"') +
            " did not announce feature setboard=1 (or did not start), so it cannot start from the "
            "positions of " +
            OpeningsFile.Quote('"') + "; the tournament stops";
        Log(0, message);
        Output->Write("# tourney: " + message, true);
        return false;
    }
    return true;
}

bool clsTourney::TakesSetBoard(const clsPlayer& player) {
    clsExternalEngine engine(player.Name, Output);
    engine.FileName = player.FileName;
    engine.Parameters = player.Parameters;
    engine.PaceMs = PaceMs;
    engine.Protocol = clsEngineInterface::XBoard;
    engine.StartEngine();
    engine.Handshake();
    const uint64_t start = nuvobase::ClockMs();
    while (!engine.HasFeature("done") && !engine.IsStopped() && nuvobase::ClockMs() - start < FeatureWaitMs) {
        engine.NudgeFeatures();
        if (engine.ReadReply().IsEmpty()) nuvobase::SleepMs(FeaturePollMs);
    }
    const bool takes = engine.HasFeature("setboard");
    engine.StopEngine();
    return takes;
}

void clsTourney::SetOpening(clsTourneyGame& game) {
    const clsOpening& opening = Openings.ForRound(game.Round);
    game.StartFen = opening.Fen;
    game.OpeningMoves = opening.Moves;
    game.Adjudicator.Rules = Adjudication;
}

} // namespace nvoChess
