#pragma once
// Lets a person end a long job early. While a catcher lives, the first interrupt (Ctrl-C, SIGINT) or
// SIGTERM is only noted, and the job ends at a point of its choosing; a second one ends the program at
// once. Before and after, the two signals end the program as usual, and a signal that the program was
// started with ignored stays ignored. One catcher at a time.

#include <csignal>

namespace nuvobase {

class clsInterruptCatcher {
public:
    clsInterruptCatcher();
    // Gives the signals back their former handling.
    ~clsInterruptCatcher();

    // True once an interrupt came while this catcher lived.
    bool Interrupted() const;

    clsInterruptCatcher(const clsInterruptCatcher&) = delete;
    clsInterruptCatcher& operator=(const clsInterruptCatcher&) = delete;

private:
    struct sigaction FormerInterrupt {};
    struct sigaction FormerTerminate {};
};

} // namespace nuvobase
