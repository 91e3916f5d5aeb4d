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

} // namespace nvoChess
