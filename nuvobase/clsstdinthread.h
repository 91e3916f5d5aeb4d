#pragma once
// The reader of standard input: a thread that turns blocking console input
// into a queue of lines, which the application polls.

#include "nuvobase/clsprotected.h"
#include "nuvobase/clsstring.h"
#include "nuvobase/clsthread.h"

#include <atomic>
#include <cstddef>
#include <string>

namespace nuvobase {

class clsStdInThread final : public clsThread {
public:
    // The longest line kept: hostile input without a line end must not grow
    // the reader without limit.
    static constexpr std::size_t MaxLineBytes = 1 << 20;

    // Reads the descriptor fd, standard input unless told otherwise.
    explicit clsStdInThread(int fd = 0);
    // Stops the reader and waits for it.
    ~clsStdInThread() override;

    // Waits up to 10 ms for input, reads what came and queues every non-empty
    // line; ends when stopped or at the end of input.
    bool Run() override;

    // One queued line, or empty text. With wait it polls every millisecond
    // until a line comes, or gives empty text once the input has ended.
    clsString ReadLine(bool wait);

    // True once the input has ended and every line read before was taken.
    bool IsEndOfInput();

protected:
    clsProtectedStrings Lines;

private:
    // Adds the bytes read to the unfinished line in pending and queues every
    // line they complete. A line keeps its first MaxLineBytes; the rest up to
    // its line end is dropped.
    void TakeInput(std::string& pending, const char* bytes, std::size_t count);
    // Queues one line without its CR; an empty line is dropped.
    void QueueLine(const char* text, std::size_t length);

    int Fd;
    std::atomic<bool> InputEnded{false};
};

// Creating it starts the thread layer of the process and destroying it ends
// that; POSIX threads need neither.
class clsInitThreads {};

extern clsInitThreads InitThreads;

// The reader of the program's standard input.
extern clsStdInThread StdIn;

} // namespace nuvobase
