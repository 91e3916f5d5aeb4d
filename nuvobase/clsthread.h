#pragma once
// The base of every thread of the program: a POSIX thread that runs the
// virtual body Run of its object.

#include "nuvobase/clsmutex.h"
#include "nuvobase/clsprotected.h"
#include "nuvobase/clsstring.h"

#include <atomic>
#include <cstdint>
#include <pthread.h>

namespace nuvobase {

// One owner starts, stops and waits for a thread; the thread itself may call
// Stop. State is read by anyone without a lock.
//
// Stop cancels in deferred mode: the thread ends at its next cancellation
// point (a sleep, a wait for input, a blocking read), not at the call, and
// never while it holds a clsMutex. A Run without such points must also be
// told to end by its own means. Wait is what guarantees that the thread has
// ended, also behind a Stop.
class clsThread {
public:
    static constexpr std::uint64_t ValidTag = 0x1906200427102009ULL;
    // The values of GetState.
    static constexpr int ThreadStopped = 0;
    static constexpr int ThreadRunning = 1;

    explicit clsThread(const clsString& name = EmptyString);

    // Ends the calling thread.
    virtual void Exit();
    // The body of the thread; the thread ends when it returns.
    virtual bool Run() = 0;
    // Cancels a running thread but does not wait for it. The thread calls the
    // object's virtual operations, so the destructor of the most-derived class
    // stops and waits for it before any part of the object goes; a class that
    // may be derived from leaves that to each class below it as well.
    virtual ~clsThread();
    // Creates the thread unless it runs; returns IsRunning().
    virtual bool Start();
    virtual bool IsSuspended();
    // Requests cancellation and marks the thread stopped at once; returns true.
    virtual bool Stop();
    // Joins the thread; true when the join reported an error.
    virtual bool Wait();
    virtual bool IsRunning();
    // ThreadStopped or ThreadRunning.
    virtual int GetState();
    // Queues text towards the thread; returns true.
    virtual bool PostInput(const clsString& text);
    // Takes the first text the thread queued, or empty text.
    virtual clsString GetOutput();
    // Runs on the thread behind Run, after the state went to 0.
    virtual void OnExit();

    clsThread(const clsThread&) = delete;
    clsThread& operator=(const clsThread&) = delete;

protected:
    std::uint64_t Tag = ValidTag;
    clsProtectedStrings Input;
    clsProtectedStrings Output;
    clsString Name;
    clsMutex Lock; // guards starting, stopping and joining
    std::atomic<std::int32_t> State{ThreadStopped};
    std::int32_t ExitCode = 0;
    pthread_t Handle{};

private:
    static void* Entry(void* object);
    // Called by the thread on its own object.
    bool IsOwnThread() const;
    // Cancels the thread: the calling one itself, or the one of Handle while
    // it is joinable (the caller holds Lock).
    void RequestCancel();
    // Joins a thread left behind by an earlier run; the caller holds Lock.
    void ReapEnded();

    // A thread was created and is neither joined nor detached. Guarded by Lock.
    bool Joinable = false;
};

} // namespace nuvobase
