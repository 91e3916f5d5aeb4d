#include "nuvobase/clsstdinthread.h"

#include "nuvobase/platform.h"

#include <algorithm>
#include <cstring>
#include <string>

namespace nuvobase {

clsInitThreads InitThreads;
clsStdInThread StdIn;

clsStdInThread::clsStdInThread(int fd) : clsThread("stdin"), Fd(fd) {}

clsStdInThread::~clsStdInThread() {
    Stop();
    Wait();
}

bool clsStdInThread::Run() {
    // Bytes read but not yet a whole line. The read below never blocks, since
    // it follows a wait that found input, so a Stop always gets through at the
    // next cancellation point.
    std::string pending;
    char chunk[4096];
    while (GetState() == ThreadRunning) {
        InputState state = WaitForInput(Fd, 10);
        if (state == InputState::Idle) SleepMs(1);
        if (state == InputState::Ready) {
            long count = ReadInput(Fd, chunk, sizeof chunk);
            if (count > 0) TakeInput(pending, chunk, static_cast<size_t>(count));
            if (count == 0) state = InputState::Ended;
        }
        if (state == InputState::Ended) {
            QueueLine(pending.data(), pending.size());
            InputEnded = true;
            break;
        }
        pthread_testcancel();
    }
    return true;
}

void clsStdInThread::TakeInput(std::string& pending, const char* bytes, size_t count) {
    const char* const end = bytes + count;
    while (bytes < end) {
        const char* lineFeed = static_cast<const char*>(std::memchr(bytes, '\n', end - bytes));
        const char* lineEnd = lineFeed != nullptr ? lineFeed : end;
        const size_t room = MaxLineBytes - pending.size();
        pending.append(bytes, std::min(static_cast<size_t>(lineEnd - bytes), room));
        if (lineFeed == nullptr) break;
        QueueLine(pending.data(), pending.size());
        pending.clear();
        bytes = lineFeed + 1;
    }
}

void clsStdInThread::QueueLine(const char* text, size_t length) {
    if (length > 0 && text[length - 1] == '\r') --length;
    if (length > 0) Lines.Push(clsString().Assign(text, static_cast<int>(length)));
}

clsString clsStdInThread::ReadLine(bool wait) {
    clsString line = Lines.Pop();
    while (wait && line.IsEmpty() && !IsEndOfInput()) {
        SleepMs(1);
        line = Lines.Pop();
    }
    return line;
}

bool clsStdInThread::IsEndOfInput() {
    return InputEnded && Lines.Count() == 0;
}

} // namespace nuvobase
