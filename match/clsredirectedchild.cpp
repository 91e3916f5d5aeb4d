#include "match/clsredirectedchild.h"

#include "nuvobase/clstsafeoutput.h"
#include "nuvobase/platform.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

extern char** environ;

using nuvobase::clsString;

namespace nvoChess {

namespace {

constexpr int ReadChunkBytes = 64 * 1024;
// How long the reader waits for output before it looks whether the child has ended.
constexpr int ExitCheckMs = 10;
// How often a child that is ending (its output closed, or told to quit) is looked at: it is gone within
// moments, and the next game waits for it.
constexpr int EndCheckMs = 1;
// How long a child may take to end by itself once it has been told to quit.
constexpr int QuitGraceMs = 1000;
// How long a write waits for a child that does not read its input.
constexpr int WriteWaitMs = 1000;
// The longest command line taken from the parameters.
constexpr int MaxCommandLine = 8191;

// The two ends of a pipe, closed on exec so that no other child inherits them.
struct Pipe {
    int Read = -1, Write = -1;
    bool Open() {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0) return false;
        Read = ends[0];
        Write = ends[1];
        return true;
    }
    void Close() {
        for (int* end : {&Read, &Write}) {
            if (*end >= 0) close(*end);
            *end = -1;
        }
    }
};

// The folder part of a path, "" when there is none.
std::string FolderOf(const std::string& path) {
    const size_t slash = path.rfind('/');
    if (slash == std::string::npos) return std::string();
    return slash == 0 ? std::string("/") : path.substr(0, slash);
}

// A path with a folder made absolute, so that it still names the program once the child has moved to
// its own working folder. A bare name is looked up on PATH.
std::string ProgramPath(const clsString& fileName) {
    std::string path = fileName.ToForwardSlashes().Text();
    if (path.find('/') == std::string::npos || path[0] == '/') return path;
    char folder[4096];
    if (getcwd(folder, sizeof folder) == nullptr) return path;
    return std::string(folder) + "/" + path;
}

// Writes all of text to a non-blocking descriptor, waiting a bounded time while the pipe is full.
// A broken pipe raises no signal: SIGPIPE is held back on this thread and a pending one taken away.
bool WriteAll(int fd, const char* text, size_t size) {
    sigset_t pipeSignal, saved;
    sigemptyset(&pipeSignal);
    sigaddset(&pipeSignal, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &pipeSignal, &saved);
    bool ok = true;
    while (size > 0 && ok) {
        const ssize_t written = write(fd, text, size);
        if (written > 0) {
            text += written;
            size -= size_t(written);
        } else if (written < 0 && errno == EAGAIN) {
            pollfd wait{fd, POLLOUT, 0};
            ok = poll(&wait, 1, WriteWaitMs) > 0;
        } else if (!(written < 0 && errno == EINTR)) {
            ok = false;
        }
    }
    if (!ok && errno == EPIPE) {
        const timespec none{0, 0};
        sigtimedwait(&pipeSignal, nullptr, &none);
    }
    pthread_sigmask(SIG_SETMASK, &saved, nullptr);
    return ok;
}

} // namespace

clsRedirectedChild::~clsRedirectedChild() {
    CloseChild();
    if (ChildOutRead >= 0) close(ChildOutRead);
}

nuvobase::clsCStrings clsRedirectedChild::SplitArguments(const clsString& parameters) {
    nuvobase::clsCStrings words;
    clsString word;
    bool inWord = false;
    char quote = 0;
    for (const char* c = parameters.Text(); *c; ++c) {
        if (quote == '\'' && *c != '\'') {
            word += *c;
        } else if (*c == '\\' && quote != '\'' && c[1] != 0) {
            word += *++c;
            inWord = true;
        } else if (quote != 0 && *c == quote) {
            quote = 0;
        } else if (quote == 0 && (*c == '\'' || *c == '"')) {
            quote = *c;
            inWord = true;
        } else if (quote == 0 && (*c == ' ' || *c == '\t')) {
            if (inWord) words.Add(word);
            word.Clear();
            inWord = false;
        } else {
            word += *c;
            inWord = true;
        }
    }
    if (inWord) words.Add(word);
    return words;
}

bool clsRedirectedChild::Spawn() {
    Pipe input, output;
    if (!input.Open()) {
        nuvobase::StdOut.Write("# error std::in pipe", true);
        return false;
    }
    if (!output.Open()) {
        nuvobase::StdOut.Write("# error std::out pipe", true);
        input.Close();
        return false;
    }
    const std::string path = ProgramPath(FileName);
    std::vector<std::string> arguments{path};
    const nuvobase::clsCStrings words = SplitArguments(Parameters.Left(MaxCommandLine));
    for (int i = 0; i < words.Count; ++i) arguments.emplace_back(words.GetAt(i).Text());
    std::vector<char*> argv;
    for (std::string& argument : arguments) argv.push_back(argument.data());
    argv.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
    posix_spawn_file_actions_init(&actions);
    posix_spawnattr_init(&attributes);
    posix_spawn_file_actions_adddup2(&actions, input.Read, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output.Write, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output.Write, STDERR_FILENO);
    const std::string folder = FolderOf(path);
    if (!folder.empty()) posix_spawn_file_actions_addchdir_np(&actions, folder.c_str());
    // A group of its own keeps a Ctrl-C of the console away from the child and lets it be ended with
    // whatever it started; it starts with no signal blocked or ignored.
    sigset_t none, defaults;
    sigemptyset(&none);
    sigemptyset(&defaults);
    sigaddset(&defaults, SIGPIPE);
    posix_spawnattr_setpgroup(&attributes, 0);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &defaults);
    posix_spawnattr_setflags(&attributes,
                             POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    pid_t pid = 0;
    const bool bare = path.find('/') == std::string::npos;
    const int failed = bare ? posix_spawnp(&pid, path.c_str(), &actions, &attributes, argv.data(), environ)
                            : posix_spawn(&pid, path.c_str(), &actions, &attributes, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
    close(input.Read);
    close(output.Write);
    if (failed != 0) {
        close(input.Write);
        close(output.Read);
        return false;
    }
    fcntl(input.Write, F_SETFL, fcntl(input.Write, F_GETFL) | O_NONBLOCK);
    if (SendLock.Lock() == 0) {
        ChildPid = pid;
        ChildInWrite = input.Write;
        SendLock.Unlock();
    }
    ChildOutRead = output.Read;
    return true;
}

void clsRedirectedChild::ReaderLoop() {
    const bool started = !FileName.IsEmpty() && Spawn();
    Running = started;
    StartTried = true;
    Wake();
    if (!started) return;
    char chunk[ReadChunkBytes];
    bool open = true;
    for (;;) {
        if (open) {
            pollfd wait{ChildOutRead, POLLIN, 0};
            if (poll(&wait, 1, ExitCheckMs) > 0) {
                const long count = nuvobase::ReadInput(ChildOutRead, chunk, sizeof chunk);
                if (count > 0)
                    Receive(chunk, count);
                else if (count == 0)
                    open = false; // every writer has gone; the child may still run
                continue;
            }
        }
        bool ended = false;
        if (SendLock.Lock() == 0) {
            ended = HasEnded();
            SendLock.Unlock();
        }
        if (ended) break;
        if (!open) nuvobase::SleepMs(EndCheckMs);
    }
    // What the child wrote just before it ended is still served; a flood left behind by what it started
    // is cut at the buffer's limit.
    for (int chunks = MaxBufferedBytes / ReadChunkBytes; open && chunks > 0; --chunks) {
        pollfd wait{ChildOutRead, POLLIN, 0};
        const long count = poll(&wait, 1, 0) > 0 ? nuvobase::ReadInput(ChildOutRead, chunk, sizeof chunk) : 0;
        if (count <= 0) break;
        Receive(chunk, count);
    }
    if (SendLock.Lock() == 0) {
        if (ChildPid > 0) KillAndReap();
        SendLock.Unlock();
    }
    close(ChildOutRead);
    ChildOutRead = -1;
    Running = false;
    nuvobase::StdOut.Write("# process terminated!", true);
}

bool clsRedirectedChild::HasEnded() {
    if (ChildPid <= 0) return true;
    siginfo_t info{};
    // WNOWAIT leaves the child to be reaped, so its id cannot pass to another process before that.
    if (waitid(P_PID, id_t(ChildPid), &info, WEXITED | WNOHANG | WNOWAIT) != 0) return errno == ECHILD;
    return info.si_pid == ChildPid;
}

void clsRedirectedChild::KillAndReap() {
    if (ChildPid <= 0) return;
    kill(-ChildPid, SIGKILL);
    kill(ChildPid, SIGKILL);
    while (waitpid(ChildPid, nullptr, 0) < 0 && errno == EINTR) {
    }
    ChildPid = 0;
}

clsString clsRedirectedChild::ReadLine(uint64_t* arrivalUs) {
    clsString line;
    if (Lock.Lock() != 0) return line;
    if (Data) {
        const int end = Data->Find('\n', ReadOffset);
        if (end >= 0) {
            line = Data->Mid(ReadOffset, end - ReadOffset);
            ReadOffset = end + 1;
            // Read bytes leave the buffer once they are half of it: a flood of lines costs a copy per line
            // only in proportion.
            if (ReadOffset * 2 >= Data->Size()) {
                Data->DeleteLeft(ReadOffset);
                ReadOffset = 0;
            }
        }
    }
    if (arrivalUs) *arrivalUs = LineArrivalUs;
    Lock.Unlock();
    return line.TrimRight('\n').TrimRight('\r');
}

bool clsRedirectedChild::HasLine() const {
    return Data && Data->Find('\n', ReadOffset) >= 0;
}

void clsRedirectedChild::Receive(const char* bytes, long count) {
    if (Lock.Lock() != 0) return;
    clsString& buffer = *Value();
    const long excess = buffer.Size() - ReadOffset + count - MaxBufferedBytes;
    if (excess > 0) {
        // Whole lines leave from the front, the oldest first; a line cut there would be garbage.
        const int end = buffer.Find('\n', ReadOffset + int(excess - 1));
        buffer.DeleteLeft(end >= 0 ? end + 1 : buffer.Size());
        ReadOffset = 0;
    }
    buffer.Append(bytes, int(count));
    if (std::memchr(bytes, '\n', size_t(count))) {
        LineArrivalUs = nuvobase::ClockUs();
        Arrived.WakeAll();
    }
    Lock.Unlock();
}

bool clsRedirectedChild::WaitForLine(int timeoutMs) {
    if (Lock.Lock() != 0) return false;
    if (!HasLine() && !(StartTried && !Running)) Arrived.Wait(timeoutMs);
    const bool waiting = HasLine();
    Lock.Unlock();
    return waiting;
}

void clsRedirectedChild::WaitForStart(int timeoutMs) {
    if (Lock.Lock() != 0) return;
    const uint64_t until = nuvobase::ClockMs() + uint64_t(timeoutMs);
    for (uint64_t now = nuvobase::ClockMs(); !StartTried && now < until; now = nuvobase::ClockMs())
        Arrived.Wait(int(until - now));
    Lock.Unlock();
}

void clsRedirectedChild::Wake() {
    if (Lock.Lock() != 0) return;
    Arrived.WakeAll();
    Lock.Unlock();
}

bool clsRedirectedChild::WriteLine(const clsString& text) {
    bool written = false;
    if (SendLock.Lock() != 0) return false;
    if (ChildInWrite >= 0 && ChildPid > 0) {
        const clsString line = text + "\n";
        written = WriteAll(ChildInWrite, line.Text(), size_t(line.Size()));
    }
    SendLock.Unlock();
    return written;
}

void clsRedirectedChild::TerminateChild() {
    if (SendLock.Lock() != 0) return;
    for (int waited = 0; waited < QuitGraceMs && !HasEnded(); waited += EndCheckMs)
        nuvobase::SleepMs(EndCheckMs);
    SendLock.Unlock();
    CloseChild();
}

void clsRedirectedChild::CloseChild() {
    if (SendLock.Lock() != 0) return;
    Running = false;
    KillAndReap();
    if (ChildInWrite >= 0) close(ChildInWrite);
    ChildInWrite = -1;
    SendLock.Unlock();
}

} // namespace nvoChess
