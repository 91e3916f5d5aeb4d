// clsInterruptCatcher: the first interrupt is noted, the second ends the program, and without a catcher an
// interrupt ends it as usual.
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>

#include "nuvobase/clsinterruptcatcher.h"

using nuvobase::clsInterruptCatcher;

TEST(InterruptCatcherDeathTest, FirstSignalNotedSecondEndsTheProgram) {
    constexpr int NotNoted = 1, Survived = 2;
    for (int signal : {SIGINT, SIGTERM}) {
        EXPECT_EXIT(
            {
                clsInterruptCatcher catcher;
                std::raise(signal);
                if (!catcher.Interrupted()) std::_Exit(NotNoted);
                std::raise(signal);
                std::_Exit(Survived);
            },
            testing::KilledBySignal(signal), "")
            << signal;
        EXPECT_EXIT(
            {
                { clsInterruptCatcher catcher; }
                std::raise(signal);
                std::_Exit(Survived);
            },
            testing::KilledBySignal(signal), "")
            << signal;
    }
}
