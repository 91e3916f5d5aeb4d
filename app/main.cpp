// The program's entry: the command line becomes a table of name/value pairs, the application thread runs
// the program, and main waits for it.
#include "app/clschessapplication.h"

int main(int argc, char** argv) {
    nuvobase::clsStrings arguments;
    for (int i = 1; i < argc; ++i) {
        nuvobase::clsString argument(argv[i]);
        arguments.SetValue(argument.BeforeChar('='), argument.AfterChar('='), false);
    }
    {
        nvoChess::clsChessApplication application(arguments);
        if (application.Start()) {
            application.Wait();
        }
    }
    return 0;
}
