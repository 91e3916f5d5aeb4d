#pragma once
// An application object whose replies are caught, for driving the XBoard front end and the console
// directly on the test's thread.
#include "app/clschessapplication.h"
#include "match/capturedoutput.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace nvoChess {

class XBoardTest : public testing::Test {
protected:
    XBoardTest() : App(Arguments()) {
        // The engine writes where the application does once it is made anew.
        App.Output = &Captured.Output;
        App.SetEngine(clsString("vesko"));
        // A new engine speaks XBoard.
        App.SetBoard(clsString(nvoChess::StartPositionFen));
    }

    static nuvobase::clsStrings Arguments() {
        nuvobase::clsStrings arguments;
        arguments.SetValue(clsString("memory"), clsString("1"));
        return arguments;
    }

    // One line to the XBoard front end; the lines it wrote.
    std::vector<std::string> Send(const char* command, const char* arguments = "", bool echo = false) {
        App.HandleXBoard(clsString(command), clsString(arguments), echo);
        return Written();
    }

    // The lines written since the last look.
    std::vector<std::string> Written() {
        const std::string text = Captured.Text();
        const std::vector<std::string> lines = Split(text.substr(Seen), '\n');
        Seen = text.size();
        return lines;
    }

    static std::vector<std::string> Split(const std::string& text, char separator) {
        std::vector<std::string> parts;
        std::stringstream stream(text);
        for (std::string part; std::getline(stream, part, separator);) parts.push_back(part);
        return parts;
    }

    CapturedOutput Captured;
    size_t Seen = 0;
    clsChessApplication App;
};

} // namespace nvoChess
