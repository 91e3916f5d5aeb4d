#include "nuvobase/clsmutex.h"

#include <cerrno>

namespace nuvobase {

clsMutex::clsMutex() {
    AttrReady = pthread_mutexattr_init(&Attr) == 0;
    if (AttrReady && pthread_mutexattr_settype(&Attr, PTHREAD_MUTEX_ERRORCHECK) == 0)
        Ready = pthread_mutex_init(&Handle, &Attr) == 0;
}

clsMutex::~clsMutex() {
    if (Ready) {
        // Releases the lock if the destroying thread still holds it, which the
        // error-checking mutex tells by refusing to lock it again; a holder on
        // another thread is waited for.
        if (pthread_mutex_lock(&Handle) == EDEADLK)
            Unlock();
        else
            pthread_mutex_unlock(&Handle);
        pthread_mutex_destroy(&Handle);
    }
    if (AttrReady) pthread_mutexattr_destroy(&Attr);
}

int clsMutex::Acquire(int (*lockCall)(pthread_mutex_t*)) {
    if (!Ready) return EINVAL;
    int before = PTHREAD_CANCEL_ENABLE;
    pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &before);
    int result = lockCall(&Handle);
    if (result == 0)
        SavedCancelState = before;
    else
        pthread_setcancelstate(before, nullptr);
    return result;
}

int clsMutex::Lock() {
    return Acquire(pthread_mutex_lock);
}

int clsMutex::TryLock() {
    return Acquire(pthread_mutex_trylock);
}

void clsMutex::Unlock() {
    if (!Ready) return;
    int restore = SavedCancelState;
    if (pthread_mutex_unlock(&Handle) == 0) pthread_setcancelstate(restore, nullptr);
}

} // namespace nuvobase
