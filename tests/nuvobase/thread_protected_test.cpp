// clsProtectedStrings: producers on other threads and a consumer. The order of one thread's lines is also
// what the standard input reader's tests see.
#include <gtest/gtest.h>

#include <cstdint>
#include <thread>

#include "nuvobase/clsprotected.h"
#include "nuvobase/platform.h"

using namespace nuvobase;

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
