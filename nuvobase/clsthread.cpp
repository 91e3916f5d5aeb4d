#include "nuvobase/clsthread.h"

namespace nuvobase {

namespace {
// The object whose body runs on the calling thread, so that the calls a
// thread makes on itself can be told from those of its owner.
thread_local const clsThread* ownObject = nullptr;
} // namespace

clsThread::clsThread(const clsString& name) : Name(name) {}

clsThread::~clsThread() {
    Tag = 0;
    if (GetState() != ThreadStopped) RequestCancel();
    State = ThreadStopped;
    // Nobody joins the thread any more: it releases its resources when it ends.
    if (Joinable) pthread_detach(Handle);
}

void* clsThread::Entry(void* object) {
    auto* thread = static_cast<clsThread*>(object);
    if (thread == nullptr || thread->Tag != ValidTag) return nullptr;
    ownObject = thread;
    // State is already ThreadRunning: Start set it before creating the thread, and a Stop
    // that came in between must not be undone here.
    thread->Run();
    // A body may have destroyed its own object; then nothing of it is touched.
    if (thread->Tag != ValidTag) return nullptr;
    thread->State = ThreadStopped;
    thread->OnExit();
    thread->Exit();
    return nullptr;
}

bool clsThread::IsOwnThread() const {
    return ownObject == this;
}

void clsThread::RequestCancel() {
    if (IsOwnThread())
        pthread_cancel(pthread_self());
    else if (Joinable)
        pthread_cancel(Handle);
}

void clsThread::ReapEnded() {
    if (!Joinable) return;
    // Only OnExit or a pending cancellation can still be running here. A
    // thread restarting itself cannot join itself and lets go instead.
    if (pthread_join(Handle, nullptr) != 0) pthread_detach(Handle);
    Joinable = false;
}

void clsThread::Exit() {
    pthread_exit(nullptr);
}

bool clsThread::Start() {
    if (Lock.Lock() == 0) {
        if (GetState() == ThreadStopped) {
            ReapEnded();
            State = ThreadRunning;
            ExitCode = 0;
            Joinable = pthread_create(&Handle, nullptr, Entry, this) == 0;
            if (!Joinable) State = ThreadStopped;
        }
        Lock.Unlock();
    }
    return IsRunning();
}

bool clsThread::IsSuspended() {
    return false;
}

bool clsThread::Stop() {
    // The thread itself may stop while its owner waits for it, holding Lock.
    bool own = IsOwnThread();
    bool locked = !own && Lock.Lock() == 0;
    if (GetState() != ThreadStopped) {
        if (own || locked) RequestCancel();
        State = ThreadStopped;
    }
    if (locked) Lock.Unlock();
    return true;
}

bool clsThread::Wait() {
    // A thread cannot join itself: that join would report a deadlock.
    if (IsOwnThread()) {
        if (GetState() != ThreadRunning) return false;
        State = ThreadStopped;
        return true;
    }
    bool failed = false;
    if (Lock.Lock() == 0) {
        // A stopped thread may still be on its way to a cancellation point,
        // and one that ended by itself is still to be joined.
        if (GetState() == ThreadRunning || Joinable) {
            if (Joinable) failed = pthread_join(Handle, nullptr) != 0;
            Joinable = false;
            State = ThreadStopped;
        }
        Lock.Unlock();
    }
    return failed;
}

bool clsThread::IsRunning() {
    return GetState() != ThreadStopped;
}

int clsThread::GetState() {
    return State;
}

bool clsThread::PostInput(const clsString& text) {
    Input.Push(text);
    return true;
}

clsString clsThread::GetOutput() {
    return Output.Pop();
}

void clsThread::OnExit() {}

} // namespace nuvobase
