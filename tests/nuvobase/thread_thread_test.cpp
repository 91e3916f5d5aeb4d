// clsThread: starting, ending, stopping and waiting; clsMutex against its holder and against other threads;
// clsProtectedStrings between producers and a consumer; clsTimer.
#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <thread>

#include <pthread.h>

#include "nuvobase/clsmutex.h"
#include "nuvobase/clsprotected.h"
#include "nuvobase/clsthread.h"
#include "nuvobase/clstimer.h"
#include "nuvobase/platform.h"
#include "thread_wait.h"

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

// Sleeps forever: only a cancellation ends it, from outside or, once told, from its own body. Given a mutex,
// it first sleeps a while holding it.
class clsSleeper : public clsThread {
public:
    explicit clsSleeper(clsMutex* mutex = nullptr) : Mutex(mutex) {}
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
        if (Mutex && Mutex->Lock() == 0) {
            Holding = true;
            SleepMs(HoldMs);
            Mutex->Unlock();
            Released = true;
        }
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

    static constexpr int HoldMs = 200; // long enough for a Stop to come while the mutex is held
    clsMutex* Mutex;
    std::atomic<bool> Entered{false}, Unwound{false}, ExitCalled{false}, StopItself{false};
    std::atomic<bool> Holding{false}, Released{false};
    std::atomic<int> StateAfterStop{-1};
};

} // namespace

TEST(ThreadedThread, StartTwiceRunsOnceAndStopCancelsAtTheNextCancellationPoint) {
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

    // A second run on the same object, which ends by itself before anyone waits for it.
    probe.Start(); // true or false, by whether the thread has ended already
    ASSERT_TRUE(Eventually([&] { return probe.Exits == 2; }));
    EXPECT_EQ(probe.GetState(), 0);
    EXPECT_EQ(probe.ExitSawState, 0); // the state went to 0 before OnExit
    EXPECT_TRUE(probe.OnExitOnOwnThread);
    EXPECT_FALSE(probe.Wait());
    EXPECT_EQ(probe.Runs, 2);

    // Stop cancels at the next cancellation point.
    clsSleeper sleeper;
    ASSERT_TRUE(sleeper.Start());
    ASSERT_TRUE(Eventually([&] { return sleeper.Entered.load(); }));
    EXPECT_TRUE(sleeper.Stop());
    EXPECT_EQ(sleeper.GetState(), 0); // at once, before the thread has ended
    EXPECT_FALSE(sleeper.Wait());     // and Wait still joins it
    EXPECT_TRUE(sleeper.Unwound);
    EXPECT_FALSE(sleeper.ExitCalled);
    // Stopped and joined, it can run again, and stop itself while its owner waits.
    sleeper.Entered = false;
    sleeper.Unwound = false;
    ASSERT_TRUE(sleeper.Start());
    EXPECT_TRUE(Eventually([&] { return sleeper.Entered.load(); }));
    sleeper.StopItself = true;
    EXPECT_FALSE(sleeper.Wait());
    EXPECT_EQ(sleeper.StateAfterStop, 0);
    EXPECT_TRUE(sleeper.Unwound);
}

TEST(ThreadedMutex, HolderOthersAndStop) {
    clsMutex mutex;
    ASSERT_TRUE(mutex.Ready);
    ASSERT_EQ(mutex.Lock(), 0);
    EXPECT_EQ(mutex.Lock(), EDEADLK);
    EXPECT_NE(mutex.TryLock(), 0);
    int fromOther = 0;
    std::thread([&] { fromOther = mutex.TryLock(); }).join();
    EXPECT_EQ(fromOther, EBUSY);
    mutex.Unlock();
    // One Unlock frees it: the refused second Lock left nothing to undo.
    std::thread([&] {
        if ((fromOther = mutex.TryLock()) == 0) mutex.Unlock();
    }).join();
    EXPECT_EQ(fromOther, 0);

    // A Stop waits until the holder lets go.
    clsSleeper holder(&mutex);
    ASSERT_TRUE(holder.Start());
    ASSERT_TRUE(Eventually([&] { return holder.Holding.load(); }));
    holder.Stop();
    EXPECT_FALSE(holder.Wait());
    // The cancellation was held off until the section ended, so the lock is free.
    EXPECT_TRUE(holder.Released);
    EXPECT_EQ(mutex.TryLock(), 0);
    mutex.Unlock();
}

// The order of one thread's lines is also what the standard input reader's tests see.
TEST(ThreadedProtectedStrings, ProducersAndAConsumer) {
    constexpr int perProducer = 3000;
    clsProtectedStrings queue;
    auto produce = [&](char who) {
        for (int i = 0; i < perProducer; ++i) queue.Push(clsString(who, 1) + clsString(i));
    };
    std::thread a(produce, 'a');
    std::thread b(produce, 'b');
    // Each producer's lines arrive complete and in its own order.
    int next[2] = {0, 0};
    bool inOrder = true;
    const std::uint64_t giveUp = ClockMs() + 60000; // a lost line must not hang the test
    while (next[0] + next[1] < 2 * perProducer && ClockMs() < giveUp) {
        clsString line = queue.Pop();
        if (line.IsEmpty()) continue;
        int who = *line.At(0) == 'a' ? 0 : 1;
        inOrder = inOrder && line.From(1).ToSigned() == next[who];
        ++next[who];
    }
    a.join();
    b.join();
    EXPECT_TRUE(inOrder);
    EXPECT_EQ(next[0], perProducer);
    EXPECT_EQ(next[1], perProducer);
    EXPECT_TRUE(queue.Pop().IsEmpty());
}

// The program takes one lap of a timer: the time since it was made.
TEST(Timer, LapIsTheTimeSinceTheStart) {
    clsTimer timer;
    SleepMs(20);
    const std::uint64_t lap = timer.Lap();
    EXPECT_GE(lap, 20u);
    EXPECT_LE(lap, ClockMs() - timer.Start);
}
