#include "nuvobase/clscondition.h"

#include <ctime>

namespace nuvobase {

namespace {
constexpr long NanosPerSecond = 1000000000L;
constexpr long NanosPerMs = 1000000L;
} // namespace

clsCondition::clsCondition(clsMutex& lock) : Lock(lock) {
    pthread_condattr_t attributes;
    pthread_condattr_init(&attributes);
    // Timeouts on the monotonic clock: a change of the wall clock neither shortens nor stretches them.
    pthread_condattr_setclock(&attributes, CLOCK_MONOTONIC);
    pthread_cond_init(&Handle, &attributes);
    pthread_condattr_destroy(&attributes);
}

clsCondition::~clsCondition() {
    pthread_cond_destroy(&Handle);
}

void clsCondition::Wait(int timeoutMs) {
    if (timeoutMs <= 0) return;
    timespec until{};
    clock_gettime(CLOCK_MONOTONIC, &until);
    const long nanos = until.tv_nsec + (timeoutMs % 1000) * NanosPerMs;
    until.tv_sec += timeoutMs / 1000 + nanos / NanosPerSecond;
    until.tv_nsec = nanos % NanosPerSecond;
    // Others lock and unlock meanwhile and leave their own cancellation state in the lock.
    const int saved = Lock.SavedCancelState;
    pthread_cond_timedwait(&Handle, &Lock.Handle, &until);
    Lock.SavedCancelState = saved;
}

void clsCondition::WakeAll() {
    pthread_cond_broadcast(&Handle);
}

} // namespace nuvobase
