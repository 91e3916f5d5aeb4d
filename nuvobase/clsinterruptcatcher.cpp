#include "nuvobase/clsinterruptcatcher.h"

#include <atomic>

namespace nuvobase {

namespace {

// The signals noted since the catcher was made. A signal handler may touch only a lock-free atomic.
std::atomic<int> interrupts{0};
static_assert(std::atomic<int>::is_always_lock_free);

extern "C" void NoteInterrupt(int signal) {
    if (interrupts.fetch_add(1) == 0) return;
    // The second one: the signal's own action, which ends the program, once this handler has returned.
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

// Catches signal unless it is ignored; former keeps what was there.
void Catch(int signal, struct sigaction& former) {
    sigaction(signal, nullptr, &former);
    if (former.sa_handler == SIG_IGN) return;
    struct sigaction action {};
    action.sa_handler = NoteInterrupt;
    sigemptyset(&action.sa_mask);
    // The other threads' reads and writes go on as if nothing had come.
    action.sa_flags = SA_RESTART;
    sigaction(signal, &action, nullptr);
}

} // namespace

clsInterruptCatcher::clsInterruptCatcher() {
    interrupts = 0;
    Catch(SIGINT, FormerInterrupt);
    Catch(SIGTERM, FormerTerminate);
}

clsInterruptCatcher::~clsInterruptCatcher() {
    sigaction(SIGINT, &FormerInterrupt, nullptr);
    sigaction(SIGTERM, &FormerTerminate, nullptr);
}

bool clsInterruptCatcher::Interrupted() const {
    return interrupts > 0;
}

} // namespace nuvobase
