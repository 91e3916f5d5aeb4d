#pragma once
// An application object whose replies are caught, for driving the XBoard front end and the console
// directly on the test's thread.
#include "app/clschessapplication.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

namespace nvoChess {

// Everything written to it collects in memory; Take hands out the lines written since the last call.
class CapturedOutput {
public:
    CapturedOutput() : Stream(open_memstream(&Buffer, &Size)), Output(true, Stream) {}
    ~CapturedOutput() {
        std::fclose(Stream);
        std::free(Buffer);
    }

    std::vector<std::string> Take() {
        std::fflush(Stream);
        std::vector<std::string> lines;
        std::string text(Buffer + Taken, Size - Taken);
        Taken = Size;
        for (size_t start = 0; start < text.size();) {
            const size_t end = text.find('\n', start);
            lines.push_back(text.substr(start, end - start));
            start = end == std::string::npos ? text.size() : end + 1;
        }
        return lines;
    }

private:
    char* Buffer = nullptr;
    size_t Size = 0;
    size_t Taken = 0;
    std::FILE* Stream;

public:
    nuvobase::clsTSafeOutput Output;
};

class XBoardTest : public testing::Test {
protected:
    XBoardTest() : App(Arguments()) {
        // The engine writes where the application does once it is made anew.
        App.Output = &Captured.Output;
        App.SetEngine(clsString("vesko"));
        // A new engine speaks XBoard.
        App.SetBoard(clsString(clsChessApplication::StartFen));
    }

    static nuvobase::clsStrings Arguments() {
        nuvobase::clsStrings arguments;
        arguments.SetValue(clsString("memory"), clsString("1"));
        return arguments;
    }

    // One line to the XBoard front end; the lines it wrote.
    std::vector<std::string> Send(const char* command, const char* arguments = "", bool echo = false) {
        Result = App.HandleXBoard(clsString(command), clsString(arguments), echo);
        return Captured.Take();
    }

    std::string Position() { return App.Engine->GetPosition().Text(); }

    CapturedOutput Captured;
    clsChessApplication App;
    int Result = 0;
};

}  // namespace nvoChess
