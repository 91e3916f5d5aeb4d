#pragma once
// The application object: the thread that reads commands, hands them to the front end of the current
// protocol, watches the running engine and delivers its moves.

#include "nuvobase/clsprotected.h"
#include "nuvobase/clsstring.h"
#include "nuvobase/clsstrings.h"
#include "nuvobase/clsthread.h"
#include "nuvobase/clstsafeoutput.h"

#include <cstdint>

namespace nvoChess {

using nuvobase::clsString;

class clsChessApplication : public nuvobase::clsThread {
public:
    // What the command loop hands a handler's result: 4 ends the loop.
    static constexpr int QuitResult = 4;

    // arguments: the name/value table of the command line.
    explicit clsChessApplication(const nuvobase::clsStrings& arguments);
    ~clsChessApplication() override;

    bool Run() override;
    // Splits line at the first blank and hands it to the front end of the current protocol.
    virtual void ExecuteCommand(const clsString& line);

    int HandleUci(const clsString& command, const clsString& arguments);
    int HandleConsole(const clsString& command, const clsString& arguments);

    nuvobase::clsTSafeOutput* Output;
    int32_t DefaultMemoryMb = 64;
    nuvobase::clsStrings Arguments;  // the command line, copied
    nuvobase::clsStrings Features;
    clsString LogFile;
    nuvobase::clsCStrings TestLines;
    int32_t TestIndex = 0;
    nuvobase::clsCStrings FenHistory;
    int32_t State = 0;
    int32_t TestScore = 0;
    bool Ponder = false;
    bool Post = false;
    bool ShowBoard = false;
    int64_t InitialTimeMs = 300000;
    int64_t MovesPerControl = 0;
    int64_t BaseTimeMs = 0;
    int64_t IncrementMs = 0;
    int64_t EngineTimeMs = 300000;
    int64_t OpponentTimeMs = 300000;
    uint64_t ThinkStart = 0;
    uint64_t Deadline = 0;
    uint64_t LastProgress = 0;
    nuvobase::clsProtectedString PublishedFen;
    clsString PendingPing;
    clsString IcsHost;
    nuvobase::clsStrings LearnBookLines;

private:
    // One pass of the command loop; false once the loop is to end.
    bool CommandLoopPass();
    int Dispatch(const clsString& command, const clsString& arguments);
    void WriteLine(const clsString& text);
};

}  // namespace nvoChess
