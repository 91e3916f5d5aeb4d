// clsTSafeOutput: direct and buffered lines, and whole lines from two threads.
#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "match/capturedoutput.h"

using namespace nuvobase;

TEST(Output, DirectWritesAtOnceBufferedOnlyAtFlush) {
    CapturedOutput now(true), later(false);
    later.Output.Flush(); // nothing pending: nothing written
    for (clsTSafeOutput* output : {&now.Output, &later.Output}) {
        output->Write("", true); // an empty line, which only the direct mode keeps
        output->Write(clsString(), true);
        output->Write("bestmove ", false).Write(clsString("e2e4"), true);
    }
    EXPECT_EQ(now.Text(), "\n\nbestmove e2e4\n");
    EXPECT_EQ(later.Text(), "");
    later.Output.Flush();
    EXPECT_EQ(later.Text(), "bestmove e2e4\n");
    std::FILE* stream = std::tmpfile();
    ASSERT_NE(stream, nullptr);
    clsTSafeOutput(false, stream).Write("unfinished", false); // written by the destructor's Flush
    EXPECT_EQ(StreamText(stream), "unfinished\n");
    std::fclose(stream);
}

// Two threads writing whole lines never mix them, in either mode.
TEST(ThreadedOutput, LinesNeverInterleave) {
    constexpr int lines = 2000;
    const std::string words[2] = {std::string(40, 'a'), std::string(40, 'b')};
    for (bool direct : {true, false}) {
        SCOPED_TRACE(direct ? "direct" : "buffered");
        CapturedOutput captured(direct);
        auto writer = [&](const std::string& word) {
            for (int i = 0; i < lines; ++i)
                captured.Output.Write(clsString(word.c_str()) + clsString(i), true);
        };
        std::thread a(writer, words[0]);
        std::thread b(writer, words[1]);
        a.join();
        b.join();
        captured.Output.Flush();
        const std::string text = captured.Text();

        int next[2] = {0, 0};
        size_t begin = 0;
        for (size_t end; (end = text.find('\n', begin)) != std::string::npos; begin = end + 1) {
            std::string line = text.substr(begin, end - begin);
            int who = line[0] == 'a' ? 0 : 1;
            ASSERT_EQ(line, words[who] + std::to_string(next[who])) << "at byte " << begin;
            ++next[who];
        }
        EXPECT_EQ(begin, text.size());
        EXPECT_EQ(next[0], lines);
        EXPECT_EQ(next[1], lines);
    }
}
