// What the game loop adds to every move: the wall time of a turn, as the game's clock measures it, minus
// the thinking of the engine. Embedded players are measured against their own search time; an external
// UCI engine that answers at once (the fake engine of the tests) is measured with no pause behind the
// lines sent and with the default pause of 100 ms.
//
// game-overhead [games] [fake engine]

#include "match/clstourneygame.h"
#include "search/clsembeddedplayer.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

using namespace nvoChess;
using nuvobase::clsString;

namespace {

std::atomic<int64_t> SearchMs{0};

// An embedded player that adds up its search time when the game ends with it.
class TimedPlayer : public clsEmbeddedPlayer {
public:
    using clsEmbeddedPlayer::clsEmbeddedPlayer;
    ~TimedPlayer() override {
        StopEngine(); // the search writes TotalTime, and calls this object, until it has ended
        SearchMs += TotalTime;
    }
};

std::string FakeEngineBesideSources() {
    const std::string source = __FILE__;
    return source.substr(0, source.rfind('/') + 1) + "../tests/e2e/fake_engine.py";
}

// Plays games between two players; stops each game after plyLimit plies. Returns all turn times.
std::vector<int32_t> Play(int games, clsPlayer& white, clsPlayer& black, int paceMs, int gameMs,
                          int incrementMs, int plyLimit) {
    nuvobase::clsTSafeOutput quiet(false);
    std::vector<int32_t> turns;
    for (int i = 0; i < games; ++i) {
        clsTourneyGame game(i + 1, 0, gameMs, incrementMs, &white, &black, clsString(), &quiet);
        game.PaceMs = paceMs;
        game.Start();
        while (!game.Finished) {
            if (game.MoveNumber * 2 >= plyLimit) game.RequestAbort();
            usleep(1000);
        }
        game.Wait();
        turns.insert(turns.end(), game.TurnMs.begin(), game.TurnMs.end());
    }
    return turns;
}

double Median(std::vector<int32_t> values) {
    if (values.empty()) return 0;
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

double Sum(const std::vector<int32_t>& values) {
    double sum = 0;
    for (int32_t value : values) sum += value;
    return sum;
}

} // namespace

int main(int argc, char** argv) {
    const int games = argc > 1 ? std::max(1, std::atoi(argv[1])) : 3;
    const std::string fake = argc > 2 ? argv[2] : FakeEngineBesideSources();
    clsTourneyGame::MakeEmbedded = [](const clsString& name, nuvobase::clsTSafeOutput* output,
                                      clsTourneyGame* game) -> std::unique_ptr<clsEngineInterface> {
        return std::make_unique<TimedPlayer>(name, output, game, clsString());
    };
    constexpr int EmbeddedPlies = 60;
    clsPlayer first("A", "embedded", "", ""), second("B", "embedded", "", "");
    const std::vector<int32_t> embedded = Play(games, first, second, 0, 4000, 100, EmbeddedPlies);
    std::printf(
        "embedded        %4zu turns  mean turn %7.2f ms  search %7.2f ms  overhead %5.2f ms per move\n",
        embedded.size(), Sum(embedded) / embedded.size(), double(SearchMs) / embedded.size(),
        (Sum(embedded) - double(SearchMs)) / embedded.size());
    clsPlayer white("W", "uci", fake.c_str(), ""), black("B", "uci", fake.c_str(), "");
    for (int pace : {0, 100}) {
        const std::vector<int32_t> external = Play(games, white, black, pace, 60000, 0, 1000);
        std::printf(
            "uci pace_ms %3d %4zu turns  median turn %5.1f ms  mean %7.2f ms (the engine answers at once)\n",
            pace, external.size(), Median(external), Sum(external) / external.size());
    }
    return 0;
}
