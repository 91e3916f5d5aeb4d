// clsProtectedStrings and clsProtectedString: order, copies, and producers on other threads.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <thread>

#include "nuvobase/clsprotected.h"
#include "nuvobase/platform.h"
#include "rows.h"

using namespace nuvobase;
using nuvobase_test::Bytes;
using nuvobase_test::CheckRows;

TEST(ProtectedStrings, LinesLeaveInArrivalOrder) {
    clsProtectedStrings queue;
    EXPECT_TRUE(queue.Pop().IsEmpty());

    clsString text("first");
    queue.Push(text);
    text.Assign("changed"); // the queue keeps its own copy
    queue.Push("");         // a pushed empty line is a line too
    queue.Push("third");
    EXPECT_EQ(queue.Count(), 3);
    CheckRows<std::string>({TEXT(queue.Pop(), "first"), TEXT(queue.Pop(), ""),
                            TEXT((queue.Push("fourth"), queue.Pop()), "third"), TEXT(queue.Pop(), "fourth")});
    EXPECT_EQ(queue.Count(), 0);

    clsProtectedString fen;
    EXPECT_TRUE(fen.Get().IsEmpty());
    EXPECT_TRUE(fen.Set("8/8/8/8/8/8/8/8 w - - 0 1"));
    EXPECT_EQ(Bytes(fen.Get()), "8/8/8/8/8/8/8/8 w - - 0 1");
}

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
