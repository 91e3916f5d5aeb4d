// A tournament at scale: a test that ends a match once its verdict is in, a run taken up where an earlier
// one was stopped or killed, and shards that each play every N-th round.
#include "match/clspgnrecords.h"
#include "match/clstourney.h"

#include <cstdio>

using nuvobase::clsString;

namespace nvoChess {

namespace {
constexpr const char* ResumeScratch = ".resume"; // behind the pgnout's name while it is rewritten
} // namespace

bool clsTourney::SetShard(const clsString& text) {
    const int slash = text.Find('/');
    if (slash <= 0) return false;
    const int64_t index = text.Left(slash).ToDecimal(), count = text.Mid(slash + 1).ToDecimal();
    if (count < 1 || index < 1 || index > count) return false;
    ShardIndex = int32_t(index);
    ShardCount = int32_t(count);
    return true;
}

clsString clsTourney::FileStem() const {
    return ShardCount > 0 ? Name + ".S" + clsString(ShardIndex) : Name;
}

bool clsTourney::PlaysRound(int32_t round) const {
    return ShardCount == 0 || (round - 1) % ShardCount == ShardIndex - 1;
}

bool clsTourney::MayStartGames() const {
    return !StopRequested &&
           !(Standings && Standings->Sprt && Standings->Sprt->Verdict != clsSprt::Undecided);
}

bool clsTourney::ReadSprt(nuvobase::clsXML& options) {
    nuvobase::clsXML* element = options.FindPath("sprt", clsString(), clsString());
    if (!element) return true;
    clsSprt sprt;
    if (!sprt.Read(*element)) {
        Output->Write(
            "# tourney: sprt needs elo1 above elo0 and alpha and beta between 0 and 1; the tournament "
            "stops",
            true);
        return false;
    }
    Sprt = sprt;
    return true;
}

bool clsTourney::TakeUpPlayedGames() {
    if (PgnOut.IsEmpty()) {
        Output->Write(
            "# tourney: -resume needs a pgnout element, whose file tells the games played; nothing is "
            "played",
            true);
        return false;
    }
    std::vector<clsPgnRecord> records;
    if (!ReadPgnRecords(PgnOut, records)) {
        Log(0, "resume: " + PgnOut + " holds no game yet");
        return true;
    }
    const clsString event = Name.IsEmpty() ? clsString("?") : Name;
    clsString kept;
    int32_t taken = 0, dropped = 0;
    for (const clsPgnRecord& record : records) {
        const int32_t round = record.NumberTag("Round"), id = record.NumberTag("GameId");
        const clsTourneyGame* game =
            round >= 1 && round <= Rounds && PlaysRound(round) && id >= 1 && id <= int32_t(PairingCount)
                ? Games[size_t(id - 1)].get()
                : nullptr;
        const nuvobase::clsStrings& tags = record.Game.Tags;
        const bool ours = game && tags.GetValue("Event") == event &&
                          tags.GetValue("White") == game->WhitePlayer->Name &&
                          tags.GetValue("Black") == game->BlackPlayer->Name;
        // A game cut short by a kill, one that ended undecided, and a second copy are played again.
        if (!record.IsWhole() || (ours && (!record.IsDecided() || PlayedGames.count({round, id}) > 0))) {
            ++dropped;
            continue;
        }
        kept += record.PgnText();
        if (!ours) continue; // a game of some other tournament stays as it is
        PlayedGames.insert({round, id});
        ++taken;
        const clsGameOutcome outcome = record.Outcome();
        game->WhitePlayer->AddScore(outcome.WhitePoints);
        game->BlackPlayer->AddScore(clsPlayer::WinPoints - outcome.WhitePoints);
        Standings->Add(outcome);
    }
    if (dropped > 0) {
        // Written beside and renamed over it, so that a kill now leaves either file whole.
        const clsString scratch = PgnOut + ResumeScratch;
        if (!kept.SaveToFile(scratch.Text()) || std::rename(scratch.Text(), PgnOut.Text()) != 0) {
            Output->Write("# tourney: cannot rewrite " + PgnOut + "; nothing is played", true);
            return false;
        }
    }
    Log(0, "resume: " + clsString(taken) + " games taken up from " + PgnOut + ", " + clsString(dropped) +
               " cut short, undecided or repeated ones left out");
    return true;
}

} // namespace nvoChess
