#pragma once
// An output whose text the test reads back as it reached the stream.
#include "nuvobase/clstsafeoutput.h"

#include <cstdio>
#include <string>

// Everything written to a stream so far.
inline std::string StreamText(std::FILE* stream) {
    std::fflush(stream);
    std::rewind(stream);
    std::string text;
    for (int c; (c = std::fgetc(stream)) != EOF;) text += char(c);
    return text;
}

class CapturedOutput {
public:
    explicit CapturedOutput(bool direct = true) : Stream(std::tmpfile()), Output(direct, Stream) {}
    ~CapturedOutput() { std::fclose(Stream); }
    CapturedOutput(const CapturedOutput&) = delete;
    CapturedOutput& operator=(const CapturedOutput&) = delete;

    std::string Text() { return StreamText(Stream); }

    std::FILE* Stream;
    nuvobase::clsTSafeOutput Output;
};
