#include "nuvobase/clsmutex.h"
#include "nuvobase/clsthread.h"
#include "nuvobase/platform.h"
#include "thread_wait.h"

#include <atomic>
#include <cerrno>
#include <gtest/gtest.h>
#include <thread>

using namespace nuvobase;
using nuvobase_test::Eventually;

TEST(ThreadedMutex, SecondLockByHolderFailsAndOthersWait) {
    clsMutex mutex;
    ASSERT_TRUE(mutex.Ready);
    int sections = 0, secondLock = 0, fromOther = 0;
    if (mutex.Lock() == 0) {
        ++sections;
        if ((secondLock = mutex.Lock()) == 0) { // refused, so its section is skipped
            ++sections;
            mutex.Unlock();
        }
        EXPECT_NE(mutex.TryLock(), 0);
        std::thread([&] { fromOther = mutex.TryLock(); }).join();
        mutex.Unlock();
    }
    EXPECT_EQ(sections, 1);
    EXPECT_EQ(secondLock, EDEADLK);
    EXPECT_EQ(fromOther, EBUSY);
    // One Unlock frees it: the refused second Lock left nothing to undo.
    std::thread([&] {
        fromOther = mutex.TryLock();
        if (fromOther == 0) mutex.Unlock();
    }).join();
    EXPECT_EQ(fromOther, 0);
}

namespace {
// Sleeps (a cancellation point) while it holds a mutex, then idles without it.
class clsSleepingHolder : public clsThread {
public:
    explicit clsSleepingHolder(clsMutex& mutex) : Mutex(mutex) {}
    ~clsSleepingHolder() override {
        Stop();
        Wait();
    }
    bool Run() override {
        if (Mutex.Lock() == 0) {
            Holding = true;
            SleepMs(200);
            Mutex.Unlock();
            Released = true;
        }
        for (;;) SleepMs(1);
    }
    clsMutex& Mutex;
    std::atomic<bool> Holding{false};
    std::atomic<bool> Released{false};
};
} // namespace

TEST(ThreadedMutex, StopWaitsUntilTheHolderLetsGo) {
    clsMutex mutex;
    clsSleepingHolder holder(mutex);
    ASSERT_TRUE(holder.Start());
    ASSERT_TRUE(Eventually([&] { return holder.Holding.load(); }));
    holder.Stop();
    EXPECT_FALSE(holder.Wait());
    // The cancellation was held off until the section ended, so the lock is free.
    EXPECT_TRUE(holder.Released);
    EXPECT_EQ(mutex.TryLock(), 0);
    mutex.Unlock();
}
