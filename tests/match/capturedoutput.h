#pragma once
// An output whose text the test reads back as it reached the stream.
#include "nuvobase/clstsafeoutput.h"

#include <cstdio>
#include <string>

class CapturedOutput {
public:
    CapturedOutput() : Stream(std::tmpfile()), Output(true, Stream) {}
    ~CapturedOutput() { std::fclose(Stream); }
    CapturedOutput(const CapturedOutput&) = delete;
    CapturedOutput& operator=(const CapturedOutput&) = delete;

    std::string Text() {
        std::fflush(Stream);
        std::rewind(Stream);
        std::string text;
        for (int c; (c = std::fgetc(Stream)) != EOF;) text += char(c);
        return text;
    }

    std::FILE* Stream;
    nuvobase::clsTSafeOutput Output;
};
