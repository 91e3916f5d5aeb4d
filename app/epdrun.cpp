// The EPD test run: each line of a file is searched for a fixed time and its answer compared with the
// line's best move or avoided move. The run lives in the command loop, one position per finished search,
// so the program keeps reading commands while it runs.
#include "app/clschessapplication.h"
#include "app/clscommandwords.h"
#include "app/commandnumbers.h"
#include "app/learnfile.h"

namespace nvoChess {

namespace {

// The suite run when \epd names no file, looked for in the working folder.
constexpr const char* DefaultEpdFile = "arasan19.epd";
constexpr int64_t DefaultEpdMs = 60000;
constexpr int PercentDigits = 2;

} // namespace

void clsChessApplication::StartEpdRun(const clsString& arguments) {
    TestIndex = 0;
    clsCommandWords words(arguments);
    BaseTimeMs = SecondsToMs(words.Next().ToSeconds());
    if (BaseTimeMs == 0) BaseTimeMs = DefaultEpdMs;
    clsString file = words.Next();
    if (file.IsEmpty()) file = DefaultEpdFile;
    // Blank lines, and the CR of CR LF files, are no positions.
    TestLines = FileLines(file.ToForwardSlashes());
    if (TestLines.Count == 0) {
        Engine->Info(clsString("no positions to test in ") + file.Quote('\''));
        return;
    }
    if (!EpdNotation) EpdNotation = std::make_unique<clsChessCore>();
    TestScore = 0;
    State = StateEpd;
    Engine->Info(clsString("time ") + clsString(BaseTimeMs) + " ms - file " + file);
    TestPosition(TestLines.GetAt(0));
}

void clsChessApplication::TestPosition(const clsString& line) {
    HaltEngine();
    Engine->Info(clsString("testing: ") + line);
    SetBoard(line);
    // Vesko reads no EPD operations: the board that reads the moves of the line fills the engine's fields.
    EpdNotation->SetPosition(line, &Engine->EpdFields);
    StartThinking();
}

bool clsChessApplication::EpdRunning() const {
    return State == StateEpd && TestIndex < TestLines.Count;
}

bool clsChessApplication::AwaitingEpdAnswer() {
    // A position under test is scored by the move found: on a busy machine its search runs past its time
    // until it has one, or ends by itself on a position without moves.
    int score = 0;
    return State == StateEpd && Engine->GetBestMoveText(false, score).IsEmpty();
}

void clsChessApplication::EpdStep(const clsString& best) {
    const auto coordinates = [this](const char* operation) {
        return EpdNotation->SanToCoordinates(Engine->EpdFields.GetValue(clsString(operation)), false);
    };
    const clsString bestMove = coordinates("bm"), avoidMove = coordinates("am");
    // A search that found no move (a mate or stalemate on the board) has no answer to pass with.
    const bool passed = !best.IsEmpty() && (best == bestMove || (!avoidMove.IsEmpty() && best != avoidMove));
    clsString line = clsString("move ") + best;
    if (passed)
        line += clsString(" ok ---> score : ") + clsString(int64_t(++TestScore));
    else
        line += " bad!";
    Engine->Info(line);
    if (++TestIndex < TestLines.Count) {
        TestPosition(TestLines.GetAt(TestIndex));
        return;
    }
    const int percent = int(int64_t(TestScore) * 100 / TestLines.Count);
    Engine->Info(clsString("test results: ") + clsString(int64_t(TestScore)) + "/" +
                 clsString(int64_t(TestLines.Count)) + " " + clsString(percent, PercentDigits) + "%");
}

} // namespace nvoChess
