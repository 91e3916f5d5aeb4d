#include "match/clsplayer.h"

namespace nvoChess {

clsPlayer::clsPlayer(const nuvobase::clsString& name, const nuvobase::clsString& protocol,
                     const nuvobase::clsString& fileName, const nuvobase::clsString& parameters)
    : Name(name), Protocol(protocol), FileName(fileName), Parameters(parameters) {}

int32_t clsPlayer::AddScore(int32_t points) {
    int32_t total = 0;
    if (Lock.Lock() == 0) {
        total = Score += points;
        Lock.Unlock();
    }
    return total;
}

int32_t clsPlayer::GetScore() {
    return AddScore(0);
}

void clsPlayer::SetScore(int32_t score) {
    if (Lock.Lock() == 0) {
        Score = score;
        Lock.Unlock();
    }
}

void clsPlayer::KeepIdle(std::unique_ptr<clsEngineInterface> engine) {
    if (Lock.Lock() != 0) return; // the engine ends here
    IdleEngines.push_back(std::move(engine));
    Lock.Unlock();
}

std::unique_ptr<clsEngineInterface> clsPlayer::TakeIdle() {
    std::unique_ptr<clsEngineInterface> engine;
    if (Lock.Lock() != 0) return engine;
    if (!IdleEngines.empty()) {
        engine = std::move(IdleEngines.back());
        IdleEngines.pop_back();
    }
    Lock.Unlock();
    return engine;
}

void clsPlayer::EndIdle() {
    std::vector<std::unique_ptr<clsEngineInterface>> ending;
    if (Lock.Lock() != 0) return;
    ending.swap(IdleEngines);
    Lock.Unlock();
    // Each program is told to quit and waited for outside the lock.
}

} // namespace nvoChess
