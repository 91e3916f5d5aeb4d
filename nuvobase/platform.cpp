#include "nuvobase/platform.h"

#include <cerrno>
#include <chrono>
#include <poll.h>
#include <thread>
#include <unistd.h>

namespace nuvobase {

namespace {
using Clock = std::chrono::steady_clock;

// The first reading of the clock; a function so that a global object built
// before this file's globals still finds it set.
Clock::time_point ProcessStart() {
    static const Clock::time_point start = Clock::now();
    return start;
}

// Takes that first reading while the program starts, not at the first use.
const Clock::time_point startAnchor = ProcessStart();
} // namespace

std::uint64_t ClockMs() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - ProcessStart()).count();
}

void SleepMs(unsigned ms) {
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

InputState WaitForInput(int fd, int timeoutMs) {
    pollfd watch{fd, POLLIN, 0};
    int found = poll(&watch, 1, timeoutMs);
    if (found < 0) return errno == EINTR || errno == EAGAIN ? InputState::Idle : InputState::Ended;
    if (found == 0) return InputState::Idle;
    if (watch.revents & POLLIN) return InputState::Ready;
    // A hang-up without data: the writer is gone and nothing is left.
    return InputState::Ended;
}

long ReadInput(int fd, char* buffer, long size) {
    ssize_t count = read(fd, buffer, size);
    if (count >= 0) return count;
    return errno == EINTR || errno == EAGAIN ? -1 : 0;
}

} // namespace nuvobase
