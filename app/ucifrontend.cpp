// The engine side of UCI: the words of the protocol become calls on the current engine and on
// StartThinking; every other word goes to the console.
#include "app/clschessapplication.h"

#include <cstring>

namespace nvoChess {

namespace {

// Quotes inside which a keyword is not looked for.
constexpr char SingleQuote = '\'';
constexpr char DoubleQuote = '"';

// Where keyword starts in text at or behind from, or -1; an empty keyword is found at from.
int FindKeyword(const clsString& text, const char* keyword, int from) {
    if (*keyword == 0) return from;
    return text.FindOutsideQuotes(keyword, from, SingleQuote, DoubleQuote);
}

clsString TrimmedSpan(const clsString& text, int from, int to) {
    clsString span = text.Mid(from, to - from);
    return span.Trim(' ');
}

} // namespace

void clsChessApplication::SplitKeywords(const clsString& text, const char* firstKeyword,
                                        const char* secondKeyword, clsString& firstValue,
                                        clsString& secondValue) {
    const int length = text.Size();
    const int first = FindKeyword(text, firstKeyword, 0);
    const int firstEnd = first < 0 ? 0 : first + int(std::strlen(firstKeyword));
    const int second = FindKeyword(text, secondKeyword, firstEnd);
    const int secondEnd = second < 0 ? length : second + int(std::strlen(secondKeyword));
    firstValue = first < 0 ? clsString() : TrimmedSpan(text, firstEnd, second < 0 ? length : second);
    secondValue = second < 0 ? clsString() : TrimmedSpan(text, secondEnd, length);
}

int clsChessApplication::HandleUci(const clsString& command, const clsString& arguments) {
    if (command == "xboard") {
        Engine->Protocol = clsEngineInterface::XBoard;
    } else if (command == "uci") {
        WriteLine(clsString("id name ") + Engine->Name);
        WriteLine(clsString("uciok"));
    } else if (command == "debug") {
        Engine->SetDebug(true);
    } else if (command == "isready") {
        WriteLine(clsString("readyok"));
    } else if (command == "setoption") {
        clsString name, value;
        SplitKeywords(arguments, "name", "value", name, value);
        Engine->SetOption(name, value);
    } else if (command == "register" || command == "ponderhit") {
        // Accepted and ignored.
    } else if (command == "ucinewgame") {
        ShowBanner();
    } else if (command == "position") {
        return UciPosition(arguments);
    } else if (command == "go") {
        return UciGo(arguments);
    } else if (command == "stop") {
        FinishSearch();
    } else if (command == "quit") {
        State = StateIdle;
        Engine->StopEngine();
        return QuitResult;
    } else {
        return HandleConsole(command, arguments);
    }
    return 0;
}

int clsChessApplication::UciPosition(const clsString& arguments) {
    // A go not yet answered gets its move before the position changes under it.
    FinishSearch();
    SetUpPosition(*Engine, arguments);
    return 0;
}

int clsChessApplication::UciGo(const clsString& arguments) {
    // ponder, and any word not known, is skipped: a ponder search runs as a normal one.
    Engine->TakeGo(clsGoLimits::Read(arguments));
    FinishSearch();
    State = Engine->IsWhiteToMove() ? StateEngineWhite : StateEngineBlack;
    return StartThinking();
}

} // namespace nvoChess
