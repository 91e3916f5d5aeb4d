#include "nuvobase/clsthread.h"
#include "nuvobase/platform.h"
#include "thread_wait.h"

#include <atomic>
#include <gtest/gtest.h>
#include <pthread.h>

using namespace nuvobase;
using nuvobase_test::Eventually;

namespace {

// Counts its runs and ends when Release is set; records what happened on the way.
class clsProbe : public clsThread {
public:
    clsProbe() : clsThread("probe") {}
    ~clsProbe() override {
        Release = true;
        Wait();
    }
    bool Run() override {
        ++Runs;
        Entered = true;
        while (!Release) SleepMs(1);
        Finished = true;
        return true;
    }
    void OnExit() override {
        ExitSawState = GetState();
        OnExitOnOwnThread = !pthread_equal(pthread_self(), Creator);
        ++Exits;
    }

    pthread_t Creator = pthread_self();
    std::atomic<int> Runs{0}, Exits{0}, ExitSawState{-1};
    std::atomic<bool> Entered{false}, Release{false}, Finished{false}, OnExitOnOwnThread{false};
};

// Sleeps forever: only a cancellation ends it, from outside or, once told, from its own body.
class clsSleeper : public clsThread {
public:
    ~clsSleeper() override {
        Stop();
        Wait();
    }
    bool Run() override {
        // Destroyed by the unwinding of the cancelled thread.
        struct Witness {
            std::atomic<bool>& Flag;
            ~Witness() { Flag = true; }
        } witness{Unwound};
        Entered = true;
        for (;;) {
            if (StopItself) {
                Stop();
                StateAfterStop = GetState();
            }
            SleepMs(1);
        }
    }
    void OnExit() override { ExitCalled = true; }
    std::atomic<bool> Entered{false}, Unwound{false}, ExitCalled{false}, StopItself{false};
    std::atomic<int> StateAfterStop{-1};
};

// Reports itself busy whatever its thread does.
class clsAlwaysBusy : public clsProbe {
public:
    int GetState() override { return 1; }
};

class clsUntagged : public clsProbe {
public:
    clsUntagged() { Tag = 0; }
};

} // namespace

TEST(ThreadedThread, StartTwiceCreatesOneThreadAndWaitReturnsWhenItHasEnded) {
    clsProbe probe;
    EXPECT_TRUE(probe.Stop()); // stopping and waiting for a thread never started are harmless
    EXPECT_FALSE(probe.Wait());
    EXPECT_TRUE(probe.Start());
    EXPECT_TRUE(probe.Start());
    EXPECT_EQ(probe.GetState(), 1);
    ASSERT_TRUE(Eventually([&] { return probe.Entered.load(); }));
    probe.Release = true;
    EXPECT_FALSE(probe.Wait());
    EXPECT_TRUE(probe.Finished);
    EXPECT_EQ(probe.Exits, 1); // OnExit has run too
    EXPECT_EQ(probe.Runs, 1);
    EXPECT_EQ(probe.GetState(), 0);
}

TEST(ThreadedThread, EndingByItselfAndStartingAgain) {
    clsProbe probe;
    probe.Release = true;
    probe.Start(); // true or false, by whether the thread has ended already
    ASSERT_TRUE(Eventually([&] { return probe.Exits == 1; }));
    EXPECT_EQ(probe.GetState(), 0);
    EXPECT_EQ(probe.ExitSawState, 0); // the state went to 0 before OnExit
    EXPECT_TRUE(probe.OnExitOnOwnThread);
    EXPECT_FALSE(probe.Wait());
    // A second run on the same object.
    probe.Start();
    ASSERT_TRUE(Eventually([&] { return probe.Exits == 2; }));
    EXPECT_EQ(probe.Runs, 2);
}

TEST(ThreadedThread, StopCancelsAtTheNextCancellationPoint) {
    clsSleeper sleeper;
    ASSERT_TRUE(sleeper.Start());
    ASSERT_TRUE(Eventually([&] { return sleeper.Entered.load(); }));
    EXPECT_TRUE(sleeper.Stop());
    EXPECT_EQ(sleeper.GetState(), 0); // at once, before the thread has ended
    EXPECT_FALSE(sleeper.Wait());     // and Wait still joins it
    EXPECT_TRUE(sleeper.Unwound);
    EXPECT_FALSE(sleeper.ExitCalled);
    // Stopped and joined, it can run again.
    sleeper.Entered = false;
    ASSERT_TRUE(sleeper.Start());
    EXPECT_TRUE(Eventually([&] { return sleeper.Entered.load(); }));
}

TEST(ThreadedThread, AThreadStopsItselfWhileItsOwnerWaits) {
    clsSleeper thread;
    ASSERT_TRUE(thread.Start());
    thread.StopItself = true;
    EXPECT_FALSE(thread.Wait());
    EXPECT_EQ(thread.StateAfterStop, 0);
    EXPECT_TRUE(thread.Unwound);
}

TEST(ThreadedThread, StartAndTheEntryCheckTheObject) {
    // Start asks through an overridden GetState: "running" already, so no thread is made.
    clsAlwaysBusy busy;
    EXPECT_TRUE(busy.Start());
    // The entry refuses an object without its tag.
    clsUntagged untagged;
    untagged.Start();
    EXPECT_FALSE(untagged.Wait());
    EXPECT_EQ(untagged.Runs, 0);
    EXPECT_EQ(untagged.Exits, 0);
    SleepMs(50);
    EXPECT_EQ(busy.Runs, 0);
}
