#include "nuvobase/clstsafeoutput.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <string>
#include <thread>

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

TEST(Output, DirectWritesAtOnceAndKeepsEmptyLines) {
    std::FILE* stream = std::tmpfile();
    ASSERT_NE(stream, nullptr);
    {
        clsTSafeOutput output(true, stream);
        output.Write("", true);
        EXPECT_EQ(Contents(stream), "\n");
        output.Write(clsString(), true); // a text without buffer, too
        output.Write("bestmove ", false).Write(clsString("e2e4"), true);
        EXPECT_EQ(Contents(stream), "\n\nbestmove e2e4\n");
    }
    std::fclose(stream);
}

TEST(Output, BufferedWritesOnlyAtFlush) {
    std::FILE* stream = std::tmpfile();
    ASSERT_NE(stream, nullptr);
    {
        clsTSafeOutput output(false, stream);
        output.Flush(); // nothing pending: nothing written
        output.Write("bestmove ", false).Write(clsString("e2e4"), true);
        output.Write("", true); // an empty entry gives no line
        output.Write("two", true);
        EXPECT_EQ(Contents(stream), "");
        output.Flush();
        EXPECT_EQ(Contents(stream), "bestmove e2e4\ntwo\n");
        output.Flush(); // the lines were forgotten
        EXPECT_EQ(Contents(stream), "bestmove e2e4\ntwo\n");
        output.Write("unfinished", false); // written by the destructor's Flush
    }
    EXPECT_EQ(Contents(stream), "bestmove e2e4\ntwo\nunfinished\n");
    std::fclose(stream);
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
