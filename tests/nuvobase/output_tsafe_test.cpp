// clsTSafeOutput: direct and buffered lines, and whole lines from two threads.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <thread>

#include "nuvobase/clstsafeoutput.h"

using namespace nuvobase;

namespace {

// Everything written to a stream so far.
std::string Contents(std::FILE* stream) {
    std::fflush(stream);
    std::string text;
    std::rewind(stream);
    for (int c; (c = std::fgetc(stream)) != EOF;) text += static_cast<char>(c);
    return text;
}

} // namespace

TEST(Output, DirectWritesAtOnceBufferedOnlyAtFlush) {
    std::FILE* direct = std::tmpfile();
    std::FILE* buffered = std::tmpfile();
    ASSERT_NE(direct, nullptr);
    ASSERT_NE(buffered, nullptr);
    {
        clsTSafeOutput now(true, direct), later(false, buffered);
        later.Flush(); // nothing pending: nothing written
        for (clsTSafeOutput* output : {&now, &later}) {
            output->Write("", true); // an empty line, which only the direct mode keeps
            output->Write(clsString(), true);
            output->Write("bestmove ", false).Write(clsString("e2e4"), true);
        }
        EXPECT_EQ(Contents(direct), "\n\nbestmove e2e4\n");
        EXPECT_EQ(Contents(buffered), "");
        later.Flush();
        EXPECT_EQ(Contents(buffered), "bestmove e2e4\n");
        later.Write("unfinished", false); // written by the destructor's Flush
    }
    EXPECT_EQ(Contents(buffered), "bestmove e2e4\nunfinished\n");
    std::fclose(direct);
    std::fclose(buffered);
}

// Two threads writing whole lines never mix them, in either mode.
TEST(ThreadedOutput, LinesNeverInterleave) {
    constexpr int lines = 2000;
    const std::string words[2] = {std::string(40, 'a'), std::string(40, 'b')};
    for (bool direct : {true, false}) {
        SCOPED_TRACE(direct ? "direct" : "buffered");
        std::FILE* stream = std::tmpfile();
        ASSERT_NE(stream, nullptr);
        std::string text;
        {
            clsTSafeOutput output(direct, stream);
            auto writer = [&](const std::string& word) {
                for (int i = 0; i < lines; ++i) output.Write(clsString(word.c_str()) + clsString(i), true);
            };
            std::thread a(writer, words[0]);
            std::thread b(writer, words[1]);
            a.join();
            b.join();
            output.Flush();
            text = Contents(stream);
        }
        std::fclose(stream);

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
