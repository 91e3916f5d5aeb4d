#include "nuvobase/clsprotected.h"
#include "nuvobase/platform.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

using namespace nuvobase;

namespace {
// Lets the tests see whether the list was ever created.
class clsVisibleQueue : public clsProtectedStrings {
public:
    bool HasList() const { return Data != nullptr; }
};
class clsVisibleString : public clsProtectedString {
public:
    bool HasText() const { return Data != nullptr; }
};
} // namespace

TEST(ProtectedStrings, LinesLeaveInArrivalOrder) {
    clsVisibleQueue queue;
    EXPECT_TRUE(queue.Pop().IsEmpty());
    EXPECT_EQ(queue.Count(), 0);
    EXPECT_FALSE(queue.HasList()); // a Pop on a queue never pushed to creates nothing

    queue.Push("first");
    queue.Push("");
    queue.Push("third");
    EXPECT_TRUE(queue.HasList());
    EXPECT_EQ(queue.Count(), 3);
    EXPECT_EQ(clsString("first"), queue.Pop());
    EXPECT_TRUE(queue.Pop().IsEmpty()); // a pushed empty line is a line too
    queue.Push("fourth");
    EXPECT_EQ(clsString("third"), queue.Pop());
    EXPECT_EQ(clsString("fourth"), queue.Pop());
    EXPECT_TRUE(queue.Pop().IsEmpty());
    EXPECT_EQ(queue.Count(), 0);
}

TEST(ProtectedStrings, PushKeepsItsOwnCopy) {
    clsProtectedStrings queue;
    clsString text("original");
    queue.Push(text);
    text.Assign("changed");
    EXPECT_EQ(clsString("original"), queue.Pop());
}

TEST(ProtectedString, GetAndSet) {
    clsVisibleString text;
    EXPECT_TRUE(text.Get().IsEmpty());
    EXPECT_FALSE(text.HasText());
    EXPECT_TRUE(text.Set("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"));
    EXPECT_EQ(clsString("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"), text.Get());
    EXPECT_TRUE(text.Set("8/8/8/8/8/8/8/8 w - - 0 1"));
    EXPECT_EQ(clsString("8/8/8/8/8/8/8/8 w - - 0 1"), text.Get());
}

TEST(ThreadedProtectedStrings, ProducersAndAConsumer) {
    constexpr int perProducer = 3000;
    clsProtectedStrings queue;
    auto produce = [&](char who) {
        for (int i = 0; i < perProducer; ++i) {
            clsString line(who, 1);
            line += clsString(i);
            queue.Push(line);
        }
    };
    std::thread a(produce, 'a');
    std::thread b(produce, 'b');
    // Each producer's lines arrive complete and in its own order.
    int next[2] = {0, 0};
    int received = 0;
    bool inOrder = true;
    const std::uint64_t giveUp = ClockMs() + 60000; // a lost line must not hang the test
    while (received < 2 * perProducer && ClockMs() < giveUp) {
        clsString line = queue.Pop();
        if (line.IsEmpty()) continue;
        int who = *line.At(0) == 'a' ? 0 : 1;
        inOrder = inOrder && line.From(1).ToSigned() == next[who];
        ++next[who];
        ++received;
    }
    a.join();
    b.join();
    EXPECT_TRUE(inOrder);
    EXPECT_EQ(next[0], perProducer);
    EXPECT_EQ(next[1], perProducer);
    EXPECT_TRUE(queue.Pop().IsEmpty());
}
