#include "app/clschessapplication.h"

#include "nuvobase/clsstdinthread.h"
#include "nuvobase/platform.h"

namespace nvoChess {

clsChessApplication::clsChessApplication(const nuvobase::clsStrings& arguments)
    : clsThread(clsString("Corvane")), Output(&nuvobase::StdOut), Arguments(arguments) {
    LogFile = Arguments.GetValue("-log");
}

clsChessApplication::~clsChessApplication() {
    nuvobase::StdIn.Stop();
    nuvobase::StdIn.Wait();
    Output->Flush();
    nuvobase::SleepMs(200);
}

bool clsChessApplication::Run() {
    nuvobase::StdIn.Start();
    while (GetState() != 0 && CommandLoopPass()) {
    }
    return true;
}

bool clsChessApplication::CommandLoopPass() {
    nuvobase::SleepMs(1);
    clsString line = nuvobase::StdIn.ReadLine(false);
    if (line.IsEmpty()) {
        // At the end of the input the program ends as after quit.
        return !nuvobase::StdIn.IsEndOfInput();
    }
    if (Dispatch(line.BeforeChar(' '), line.AfterChar(' ')) == QuitResult) {
        nuvobase::StdIn.Stop();
        return false;
    }
    return true;
}

void clsChessApplication::ExecuteCommand(const clsString& line) {
    Dispatch(line.BeforeChar(' '), line.AfterChar(' '));
}

int clsChessApplication::Dispatch(const clsString& command, const clsString& arguments) {
    return HandleUci(command, arguments);
}

int clsChessApplication::HandleUci(const clsString& command, const clsString& arguments) {
    if (command == "quit") {
        State = 0;
        return QuitResult;
    }
    return HandleConsole(command, arguments);
}

int clsChessApplication::HandleConsole(const clsString& command, const clsString&) {
    WriteLine(clsString("Error (unknown command): ") + command);
    return 0;
}

void clsChessApplication::WriteLine(const clsString& text) { Output->Write(text, true); }

}  // namespace nvoChess
