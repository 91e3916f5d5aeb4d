#include "nuvobase/clsstdinthread.h"

#include "nuvobase/platform.h"

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
    while (GetState() == 1) {
        InputState state = WaitForInput(Fd, 10);
        if (state == InputState::Idle) SleepMs(1);
        if (state == InputState::Ready) {
            long count = ReadInput(Fd, chunk, sizeof chunk);
            if (count > 0) pending.append(chunk, count);
            if (count == 0) state = InputState::Ended;
        }
        bool atEnd = state == InputState::Ended;
        QueueLines(pending, atEnd);
        if (atEnd) {
            InputEnded = true;
            break;
        }
        pthread_testcancel();
    }
    return true;
}

void clsStdInThread::QueueLines(std::string& pending, bool atEnd) {
    size_t begin = 0;
    for (size_t end; (end = pending.find('\n', begin)) != std::string::npos; begin = end + 1)
        QueueLine(pending.data() + begin, end - begin);
    pending.erase(0, begin);
    if (atEnd) {
        QueueLine(pending.data(), pending.size());
        pending.clear();
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
