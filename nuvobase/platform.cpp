#include "nuvobase/platform.h"

#include <cerrno>
#include <chrono>
#include <ctime>
#include <poll.h>
#include <unistd.h>

#if defined(__has_feature)
#if __has_feature(address_sanitizer) && !defined(__SANITIZE_ADDRESS__)
#define __SANITIZE_ADDRESS__ 1
#endif
#endif
#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/asan_interface.h>
#endif

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

// Calls a system function that is a cancellation point. A cancelled thread
// unwinds from inside it. AddressSanitizer is not told of that unwinding, and
// the cleanups of the frames above would find the stale marks of abandoned
// frames and report an error that is none; so this frame, the deepest one of
// the program, clears them before it passes the unwinding on.
template <class Function, class... Arguments>
auto AtCancellationPoint(Function call, Arguments... arguments) {
    try {
        return call(arguments...);
    } catch (...) { // only the unwinding of a cancellation comes through here
#ifdef __SANITIZE_ADDRESS__
        __asan_handle_no_return();
#endif
        throw;
    }
}
} // namespace

std::uint64_t ClockMs() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - ProcessStart()).count();
}

std::uint64_t ClockUs() {
    return std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - ProcessStart()).count();
}

std::uint64_t PhysicalMemoryBytes() {
    const long pages = sysconf(_SC_PHYS_PAGES), pageSize = sysconf(_SC_PAGESIZE);
    return pages > 0 && pageSize > 0
               ? static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(pageSize)
               : 0;
}

void SleepMs(unsigned ms) {
    timespec rest{static_cast<time_t>(ms / 1000), static_cast<long>(ms % 1000) * 1000000L};
    while (AtCancellationPoint(nanosleep, &rest, &rest) == -1 && errno == EINTR) {
    }
}

InputState WaitForInput(int fd, int timeoutMs) {
    pollfd watch{fd, POLLIN, 0};
    int found = AtCancellationPoint(poll, &watch, nfds_t{1}, timeoutMs);
    if (found < 0) return errno == EINTR || errno == EAGAIN ? InputState::Idle : InputState::Ended;
    if (found == 0) return InputState::Idle;
    if (watch.revents & POLLIN) return InputState::Ready;
    // A hang-up without data: the writer is gone and nothing is left.
    return InputState::Ended;
}

long ReadInput(int fd, char* buffer, long size) {
    ssize_t count = AtCancellationPoint(read, fd, static_cast<void*>(buffer), static_cast<size_t>(size));
    if (count >= 0) return count;
    return errno == EINTR || errno == EAGAIN ? -1 : 0;
}

} // namespace nuvobase
