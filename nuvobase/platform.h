#pragma once
// The operating-system layer of the base library: clock, sleep, the size of
// the memory and the bounded wait for input. Nothing else in the program calls these services
// directly.

#include <cstdint>

namespace nuvobase {

// Milliseconds since the process started, from a monotonic clock.
std::uint64_t ClockMs();
// The same clock in microseconds.
std::uint64_t ClockUs();

// Suspends the calling thread for at least `ms` milliseconds. A cancellation
// point of the thread layer.
void SleepMs(unsigned ms);

// Bytes of memory the machine has, 0 if the system does not tell.
std::uint64_t PhysicalMemoryBytes();

// What a bounded wait on an input descriptor found.
enum class InputState {
    Idle,  // nothing to read within the wait
    Ready, // a read returns at once: bytes, or 0 at end of input
    Ended  // the input is closed, broken or no descriptor at all
};

// Waits up to `timeoutMs` until `fd` can be read without blocking. Works for
// terminals, pipes and files alike.
InputState WaitForInput(int fd, int timeoutMs);

// Reads what is at hand on `fd` into `buffer`, after WaitForInput reported it
// ready. Returns the byte count, 0 at end of input (also for a broken
// descriptor), or -1 when the read was interrupted and may be repeated.
long ReadInput(int fd, char* buffer, long size);

} // namespace nuvobase
