#pragma once
// The one lock type of the program: an error-checking POSIX mutex.

#include <pthread.h>

namespace nuvobase {

// Callers write the guarded section inside a test of the result:
//     if (Lock.Lock() == 0) { ...; Lock.Unlock(); }
// Because the mutex checks errors, a thread that locks it a second time gets
// an error instead of a deadlock, and that second section is skipped.
//
// While a thread holds the lock it cannot be cancelled: the cancellation
// waits for the Unlock. So a thread stopped inside a guarded section never
// leaves the lock taken behind it.
class clsMutex {
public:
    clsMutex();
    virtual ~clsMutex();
    clsMutex(const clsMutex&) = delete;
    clsMutex& operator=(const clsMutex&) = delete;

    // 0 on success, else an error number (EDEADLK for the holder itself).
    int Lock();
    // 0 on success, EBUSY when another thread holds the lock.
    int TryLock();
    void Unlock();

    bool Ready = false;
    bool AttrReady = false;
    pthread_mutexattr_t Attr;
    pthread_mutex_t Handle;

private:
    // A wait on a condition lets other threads take the lock meanwhile; it keeps the holder's state.
    friend class clsCondition;
    // Runs a locking call with cancellation held off; keeps it off on success.
    int Acquire(int (*lockCall)(pthread_mutex_t*));
    // The cancellation state of the holder before it took the lock.
    int SavedCancelState = PTHREAD_CANCEL_ENABLE;
};

} // namespace nuvobase
