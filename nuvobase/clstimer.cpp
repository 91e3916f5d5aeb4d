#include "nuvobase/clstimer.h"

#include "nuvobase/platform.h"

#include <cinttypes>
#include <cstdio>
#include <pthread.h>

namespace nuvobase {

clsTimer::clsTimer(const clsString& logFile) : LogFile(logFile), Start(ClockMs()) {}

clsTimer::~clsTimer() {
    if (LogFile.IsEmpty()) return;
    clsString line(Id);
    char figures[80];
    std::snprintf(figures, sizeof figures, "\t%" PRIu64 "\t%" PRIu64 "\t%" PRIu64 "\r\n", Laps, Elapsed,
                  Elapsed);
    line += figures;
    // The file calls are cancellation points; a cancellation acting inside a
    // destructor would end the whole program.
    int cancelState = PTHREAD_CANCEL_ENABLE;
    pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &cancelState);
    line.SaveToFile(LogFile.Text(), false);
    pthread_setcancelstate(cancelState, nullptr);
}

std::uint64_t clsTimer::Lap() {
    Elapsed += ClockMs() - Start;
    return Elapsed;
}

std::uint64_t clsTimer::Restart() {
    std::uint64_t now = ClockMs();
    std::uint64_t total = now - Start + Elapsed;
    Elapsed = 0;
    Start = now;
    Laps = 1;
    return total;
}

} // namespace nuvobase
