#include "nuvobase/clsstdinthread.h"
#include "nuvobase/platform.h"
#include "thread_wait.h"

#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <unistd.h>

using namespace nuvobase;
using nuvobase_test::Eventually;

namespace {

// A reader on the read end of a pipe that the test writes to.
class ThreadedStdIn : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(pipe(Ends), 0);
        Reader = new clsStdInThread(Ends[0]);
    }
    void TearDown() override {
        delete Reader;
        CloseWriter();
        close(Ends[0]);
    }

    void Send(const char* text) {
        ASSERT_EQ(write(Ends[1], text, std::strlen(text)), (ssize_t)std::strlen(text));
    }
    void CloseWriter() {
        if (Ends[1] >= 0) close(Ends[1]);
        Ends[1] = -1;
    }
    // The next line, waiting for it within a generous bound.
    clsString NextLine() {
        clsString line;
        Eventually([&] { return !(line = Reader->ReadLine(false)).IsEmpty(); });
        return line;
    }

    int Ends[2] = {-1, -1};
    clsStdInThread* Reader = nullptr;
};

} // namespace

TEST_F(ThreadedStdIn, LinesComeOutWholeAndInOrderWithoutBlankOnes) {
    ASSERT_TRUE(Reader->Start());
    Send("uci\n\nisready\r\n\r\ngo wtime 1000");
    EXPECT_EQ(clsString("uci"), Reader->ReadLine(true));
    EXPECT_EQ(clsString("isready"), Reader->ReadLine(true));
    SleepMs(30);
    EXPECT_TRUE(Reader->ReadLine(false).IsEmpty()); // no line end yet
    Send(" btime 2000\r");
    SleepMs(30);
    Send("\n  \n");
    EXPECT_EQ(clsString("go wtime 1000 btime 2000"), NextLine());
    EXPECT_EQ(clsString("  "), NextLine()); // blanks are no empty line
    EXPECT_FALSE(Reader->IsEndOfInput());
    // Blank lines leave a waiting read waiting.
    clsString line;
    std::thread consumer([&] { line = Reader->ReadLine(true); });
    Send("\n\r\n");
    SleepMs(50);
    Send("quit\n");
    consumer.join();
    EXPECT_EQ(clsString("quit"), line);

    // An overlong line keeps its first part, and the next line comes whole.
    const std::string overlong(3 * clsStdInThread::MaxLineBytes + 5, 'x');
    Send((overlong + "\nnext\n").c_str());
    EXPECT_EQ(std::string(clsStdInThread::MaxLineBytes, 'x'), Reader->ReadLine(true).Text());
    EXPECT_EQ(clsString("next"), Reader->ReadLine(true));
}

TEST_F(ThreadedStdIn, EndOfInputEndsTheReader) {
    ASSERT_TRUE(Reader->Start());
    Send("first\nsecond\nlast line without end");
    CloseWriter();
    // The reader ends by itself instead of polling a closed pipe forever.
    ASSERT_TRUE(Eventually([&] { return !Reader->IsRunning(); }));
    EXPECT_FALSE(Reader->Wait());
    // The lines read before the end are still served, then the end shows.
    EXPECT_FALSE(Reader->IsEndOfInput());
    EXPECT_EQ(clsString("first"), Reader->ReadLine(true));
    EXPECT_EQ(clsString("second"), Reader->ReadLine(true));
    EXPECT_FALSE(Reader->IsEndOfInput());
    EXPECT_EQ(clsString("last line without end"), Reader->ReadLine(true));
    EXPECT_TRUE(Reader->IsEndOfInput());
    // A waiting read does not hang once nothing can come any more.
    EXPECT_TRUE(Reader->ReadLine(true).IsEmpty());
}

TEST_F(ThreadedStdIn, EmptyInputEndsAtOnce) {
    CloseWriter();
    Reader->Start(); // may already have ended when Start looks at the state
    ASSERT_TRUE(Eventually([&] { return Reader->IsEndOfInput(); }));
    EXPECT_TRUE(Reader->ReadLine(true).IsEmpty());
}

TEST_F(ThreadedStdIn, StopEndsAReaderThatWaitsForInput) {
    ASSERT_TRUE(Reader->Start());
    SleepMs(20);
    EXPECT_TRUE(Reader->Stop());
    EXPECT_FALSE(Reader->Wait());
    EXPECT_FALSE(Reader->IsEndOfInput()); // stopped, not at the end
    // Input that comes later waits in the pipe for the next start.
    Send("later\n");
    ASSERT_TRUE(Reader->Start());
    EXPECT_EQ(clsString("later"), NextLine());
}
