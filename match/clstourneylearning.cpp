// The learning tournament: five candidate souls, each played in turn by the first player, the pupil, against
// the others of the file; after each generation every candidate moves towards the best one.
#include "match/clstourney.h"

#include "chess/random.h"

#include <algorithm>

using nuvobase::clsString;

namespace nvoChess {

namespace {

constexpr int CandidateCount = 5;
constexpr int32_t CandidateValueLimit = 100;
// One parameter in this many is bred in a generation.
constexpr int32_t BreedingChance = 8;
// A bred parameter goes this share of the way to the best candidate's.
constexpr int32_t StepNumerator = 100, StepDenominator = 105;

// The soul file's text: the candidate's number, "=", its parameters joined by tabs.
clsString SoulFileText(int32_t id, const nuvobase::clsCInts& soul) {
    return clsString(int64_t(id)) + "=" + soul.GetText("\t");
}

} // namespace

int32_t clsTourney::LearningGenerations = 100;

void clsTourney::LearningRun() {
    // The default soul gives the number of parameters and the unit of the values.
    const std::unique_ptr<clsEngineInterface> engine =
        clsTourneyGame::MakeEmbedded ? clsTourneyGame::MakeEmbedded(Name, Output, nullptr) : nullptr;
    if (!engine) return;
    engine->LoadDefaultSoul();
    const clsString soul = engine->GetSoulText();
    int parameters = 0;
    for (const char* c = soul.Text(); *c; ++c) parameters += *c == '\t';
    std::vector<std::unique_ptr<clsPlayer>> candidates;
    for (int i = 0; i < CandidateCount; ++i) {
        auto candidate = std::make_unique<clsPlayer>();
        candidate->Name = "Player " + clsString(int64_t(i));
        for (int p = 0; p < parameters; ++p) candidate->Soul.Add(RandomBelow(CandidateValueLimit));
        candidate->Engine = engine.get();
        candidates.push_back(std::move(candidate));
    }
    // Candidates keep their numbers; the ranking is an order over them.
    std::vector<int> ranking(CandidateCount);
    for (int32_t generation = 0; generation < LearningGenerations && !StopRequested; ++generation) {
        Log(generation, "# learning generation " + clsString(int64_t(generation)));
        for (int i = 0; i < CandidateCount && !StopRequested; ++i) {
            clsPlayer& candidate = *candidates[size_t(i)];
            if (!SoulFileText(i, candidate.Soul).SaveToFile(SoulFile))
                Output->Write(clsString("# tourney: cannot write ") + SoulFile, true);
            PlayRounds();
            candidate.SetScore(Players.empty() ? 0 : Players.front()->GetScore());
            Log(generation,
                "player " + clsString(int64_t(i)) + " score\t" + clsString(int64_t(candidate.GetScore())));
        }
        for (int i = 0; i < CandidateCount; ++i) ranking[size_t(i)] = i;
        std::stable_sort(ranking.begin(), ranking.end(), [&candidates](int a, int b) {
            return candidates[size_t(a)]->GetScore() > candidates[size_t(b)]->GetScore();
        });
        const clsPlayer& best = *candidates[size_t(ranking.front())];
        for (int id : ranking) {
            clsPlayer& candidate = *candidates[size_t(id)];
            Log(generation,
                "#" + clsString(int64_t(candidate.GetScore())) + "\t" + SoulFileText(id, candidate.Soul));
            BreedTowards(candidate, best);
            FlushLog();
        }
    }
}

void clsTourney::BreedTowards(clsPlayer& player, const clsPlayer& best) {
    // The player's own value is the base: the step leads from it towards the best candidate's.
    const int32_t limit = player.Engine ? player.Engine->PawnValue() : CandidateValueLimit;
    for (int i = 0; i < player.Soul.Count; ++i) {
        if (RandomBelow(BreedingChance) != 1) continue;
        const int32_t a = player.Soul.GetAt(i), b = best.Soul.GetAt(i);
        const int32_t bred = a + (b - a) * StepNumerator / StepDenominator;
        if (bred == a) continue;
        *player.Soul.At(i) = std::clamp(bred, 0, limit);
    }
}

} // namespace nvoChess
