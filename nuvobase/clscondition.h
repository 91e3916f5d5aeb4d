#pragma once
// A condition variable over a clsMutex: one thread waits until another tells it that something has
// changed, instead of looking again and again.

#include "nuvobase/clsmutex.h"

#include <pthread.h>

namespace nuvobase {

class clsCondition {
public:
    // Waiters hold lock while they test what they wait for; so does whoever changes it.
    explicit clsCondition(clsMutex& lock);
    ~clsCondition();
    clsCondition(const clsCondition&) = delete;
    clsCondition& operator=(const clsCondition&) = delete;

    // Call with the lock held: releases it while waiting up to timeoutMs, and holds it again on return.
    // The caller tests again what it waits for: a return may be early or spurious.
    void Wait(int timeoutMs);
    // Wakes every waiter; call with the lock held.
    void WakeAll();

private:
    clsMutex& Lock;
    pthread_cond_t Handle;
};

} // namespace nuvobase
