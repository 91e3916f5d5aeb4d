#pragma once
// A child process whose standard input and output are pipes of this process: lines are written to it,
// and what it writes, its standard error included, is collected in a receive buffer that is read a
// line at a time.

#include "nuvobase/clscondition.h"
#include "nuvobase/clsmutex.h"
#include "nuvobase/clsprotected.h"
#include "nuvobase/clsstring.h"
#include "nuvobase/clsstrings.h"

#include <atomic>
#include <cstdint>
#include <sys/types.h>

namespace nvoChess {

// The protected string is the receive buffer. One thread runs ReaderLoop, which starts the child and
// collects its output until it ends; the owner writes lines and ends the child. Every child is reaped
// exactly once, and no pipe end outlives the child or reaches another child.
class clsRedirectedChild : public nuvobase::clsProtectedString {
public:
    // The receive buffer holds at most this much; a child that floods it loses its oldest lines, so
    // that what it wrote last, its answer, is still read.
    static constexpr int MaxBufferedBytes = 4 << 20;

    clsRedirectedChild() = default;
    // Ends the child if it still runs. The reader thread must have ended before.
    ~clsRedirectedChild() override;

    // The thread body: starts FileName with Parameters, then collects the child's output until the
    // child has ended. Writes "# process terminated!" behind a child that ran.
    void ReaderLoop();
    // The first complete line of the receive buffer without its line end, removed from the buffer;
    // empty text when no complete line waits. arrivalUs, when given, receives the time (ClockUs) at which
    // the newest complete line arrived.
    nuvobase::clsString ReadLine(uint64_t* arrivalUs = nullptr);
    // Waits up to timeoutMs until a complete line waits or the reader has ended; true when a line waits.
    bool WaitForLine(int timeoutMs);
    // Waits up to timeoutMs until the reader has tried to start the child.
    void WaitForStart(int timeoutMs);
    // Wakes whoever waits for a line or for the start, to look again.
    void Wake();
    // Writes text and a line feed to the child while it runs; false when nothing was written.
    bool WriteLine(const nuvobase::clsString& text);
    // Gives the child up to a second to end by itself, then kills it, and closes the parent's ends.
    void TerminateChild();
    // Kills the child at once if it still runs, reaps it and closes the parent's write end.
    void CloseChild();

    // The arguments of a command line, split as a shell splits plain words and quotes: blanks
    // separate, '...' and "..." group, a backslash outside single quotes takes the next character.
    static nuvobase::clsCStrings SplitArguments(const nuvobase::clsString& parameters);

    nuvobase::clsMutex SendLock; // serialises writing to the child and ending it
    std::atomic<bool> Running{false};
    std::atomic<bool> StartTried{false}; // the reader has tried to start the child
    nuvobase::clsString FileName;
    nuvobase::clsString Parameters;

private:
    // Starts the child on the two pipes; false, with every end closed, when it cannot start.
    bool Spawn();
    // True once the child has ended or was reaped. Call under SendLock.
    bool HasEnded();
    // Kills the child's process group and reaps the child. Call under SendLock.
    void KillAndReap();
    // Appends bytes to the receive buffer, within its limit, and wakes a waiter when a line is complete.
    void Receive(const char* bytes, long count);
    // A complete line waits in the buffer. Call under Lock.
    bool HasLine() const;

    pid_t ChildPid = 0;    // 0 when there is no child to reap; guarded by SendLock
    int ChildInWrite = -1; // the parent's end of the child's standard input; guarded by SendLock
    int ChildOutRead = -1; // the parent's end of the child's output; owned by the reader thread
    nuvobase::clsCondition Arrived{Lock}; // a line has arrived, the reader has started or ended
    int ReadOffset = 0;                   // bytes at the front of the buffer already read; guarded by Lock
    uint64_t LineArrivalUs = 0;           // when the newest complete line arrived; guarded by Lock
};

} // namespace nvoChess
