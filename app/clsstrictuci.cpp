#include "app/clsstrictuci.h"

#include "app/clschessapplication.h"
#include "nuvobase/platform.h"
#include "search/clsenginecorvane.h"
#include "search/clssoul.h"
#include "search/clstimerule.h"

#include <algorithm>

namespace nvoChess {

using nuvobase::clsString;

namespace {

constexpr const char* Author = "the Corvane developers";
constexpr const char* NoMove = "0000";
constexpr int64_t LargestHashMb = 65536;
constexpr int64_t Absent = -1; // a word of go that did not come

} // namespace

clsStrictUci::clsStrictUci(clsChessApplication& app) : App(app), Mirror(std::make_unique<clsChessCore>()) {}

int clsStrictUci::Handle(const clsString& command, const clsString& arguments) {
    if (command == "uci") {
        Identify();
    } else if (command == "setoption") {
        SetOption(arguments);
    } else if (command == "ucinewgame") {
        Finish();
        App.HaltEngine();
        App.Share.ClearTable();
        App.ShowBanner();
    } else if (command == "position") {
        Finish();
        App.HaltEngine();
        clsChessApplication::SetUpPosition(*App.Engine, arguments);
        clsChessApplication::SetUpPosition(*Mirror, arguments);
    } else if (command == "go") {
        return Go(arguments);
    } else if (command == "stop") {
        Finish();
    } else if (command == "ponderhit") {
        if (Pending && PonderAllowance != Absent)
            Deadline = std::max<uint64_t>(nuvobase::ClockMs() + uint64_t(PonderAllowance), 1);
        PonderAllowance = Absent;
        Held = Infinite;
    } else {
        if (command == "quit") Pending = false;
        return App.HandleUci(command, arguments);
    }
    return 0;
}

void clsStrictUci::Identify() {
    clsEngineInterface& engine = *App.Engine;
    WriteLine("id name " + engine.Name);
    WriteLine(clsString("id author ") + Author);
    WriteLine("option name Hash type spin default " + clsString(int64_t(App.Share.TTBytes >> 20)) +
              " min 0 max " + clsString(LargestHashMb));
    // Souls and books belong to the Corvane engine; Vesko has neither.
    if (auto* corvane = dynamic_cast<clsEngineCorvane*>(&engine)) {
        clsString souls = "option name Soul type combo default " + corvane->SoulName;
        for (const char* named : clsSoul::Named) souls += " var " + clsString(named).BeforeChar('=');
        WriteLine(souls);
        clsString book = App.Arguments.GetValue("book");
        if (book.IsEmpty()) book = clsEngineCorvane::DefaultBook;
        WriteLine("option name Book type string default " + book);
    }
    WriteLine("uciok");
}

void clsStrictUci::SetOption(const clsString& arguments) {
    clsString name, value;
    clsChessApplication::SplitKeywords(arguments, "name", "value", name, value);
    auto* corvane = dynamic_cast<clsEngineCorvane*>(App.Engine.get());
    if (name == "Hash") {
        Finish();
        App.HaltEngine();
        App.SetMemory(value.ToDecimal());
    } else if (name == "Soul" && corvane) {
        Finish();
        App.HaltEngine();
        corvane->SelectSoul(value);
    } else if (name == "Book" && corvane) {
        Finish();
        App.HaltEngine();
        // A file that cannot be read leaves the engine without a book.
        corvane->Book.Clear();
        corvane->PolyglotBook.Clear();
        clsString error;
        if (!corvane->LoadBookFile(value.ToForwardSlashes(), 0, error) && !error.IsEmpty())
            corvane->Info("error loading " + value + ": " + error);
    } else {
        App.Engine->SetOption(name, value);
    }
}

int clsStrictUci::Go(const clsString& arguments) {
    // The GUI's clock runs from the go: so does the allowance.
    const uint64_t start = nuvobase::ClockMs();
    Finish();
    const clsGoLimits words = clsGoLimits::Read(arguments);
    const auto number = [&words](clsGoLimits::eNumber word) { return words.ValueOr(word, Absent); };
    clsEngineInterface& engine = *App.Engine;
    App.HaltEngine();
    const bool white = Mirror->Board.SideToMove == 0;
    // Nothing of an earlier search bounds this one.
    engine.MaxDepth = 0;
    engine.Limits.Plies = int32_t(std::clamp<int64_t>(number(clsGoLimits::Depth), 0, NodeCount));
    const int64_t nodes = number(clsGoLimits::Nodes);
    engine.Limits.Nodes = nodes > 0 ? uint64_t(nodes) : 0;
    engine.Limits.DepthLines = true;
    engine.Post = App.Post;

    const int64_t clock = number(white ? clsGoLimits::WhiteTime : clsGoLimits::BlackTime);
    const int64_t moveTime = number(clsGoLimits::MoveTime);
    int64_t allowance = Absent;
    if (moveTime != Absent)
        allowance = std::max<int64_t>(moveTime, 0);
    else if (clock != Absent)
        allowance = StrictUciTimeRule.Allowance(clock, number(clsGoLimits::MovesToGo));
    Infinite = words.Infinite;
    Held = Infinite || words.Ponder;
    // A ponder search thinks on the opponent's time; its own time starts at ponderhit.
    PonderAllowance = words.Ponder ? allowance : Absent;
    if (words.Ponder) allowance = Absent;
    if (allowance != Absent) engine.Info("time " + clsString(allowance) + " ms");

    App.State = white ? clsChessApplication::StateEngineWhite : clsChessApplication::StateEngineBlack;
    App.PublishedFen.Set(engine.GetPosition());
    App.ThinkStart = start;
    // 0 means no deadline, so an allowance used up at the start still stops the search at the first look.
    Deadline = allowance == Absent ? 0 : std::max<uint64_t>(App.ThinkStart + uint64_t(allowance), 1);
    Pending = true;
    engine.Start();
    return 0;
}

void clsStrictUci::Watch(uint64_t now) {
    if (!Pending) return;
    if (App.Engine->IsRunning()) {
        if (Deadline == 0 || now < Deadline) return;
        // The answer does not wait for the search's thread to end: on a busy machine that thread may be long
        // in coming back to a processor, and the move it would leave is the one it holds now.
        App.Engine->SetStopped();
    }
    if (!Held) Answer();
}

bool clsStrictUci::InputEnded() {
    const clsSearchLimits& limits = App.Engine->Limits;
    const bool endsByItself = Deadline != 0 || limits.Plies != 0 || limits.Nodes != 0;
    if (Pending && (Held || !endsByItself)) Finish();
    return Pending;
}

void clsStrictUci::Finish() {
    if (!Pending) return;
    Halt();
    Answer();
}

void clsStrictUci::Halt() {
    // Both engines keep a stop that comes before their search has begun, so one stop and a join end the
    // search at once, without the pauses of the application's repeated asking.
    App.Engine->StopEngine();
    App.Engine->Wait();
}

void clsStrictUci::Answer() {
    clsEngineInterface& engine = *App.Engine;
    int score = 0;
    const clsString found = engine.GetBestMoveText(true, score);
    engine.Info(engine.GetStatistics(int64_t(nuvobase::ClockMs() - App.ThinkStart) + 1));
    WriteLine("bestmove " + LegalMove(found));
    // The limits were this search's alone; a search of the XBoard front end runs without them. A search
    // still on its way to its end reads them, and the next go sets them anew.
    if (!engine.IsRunning()) engine.Limits = clsSearchLimits();
    Pending = Held = false;
    App.State = clsChessApplication::StateIdle;
}

clsString clsStrictUci::LegalMove(const clsString& engineMove) {
    clsChessCore& board = *Mirror;
    const clsString first = board.FirstLegalMove();
    if (first.IsEmpty()) return clsString(NoMove);
    const clsString wanted = clsEngineInterface::UciMoveText(engineMove);
    const clsSimpleNode& root = *board.Root;
    for (const clsMove* move = root.Moves; move != root.End(); ++move) {
        const clsString text = clsEngineInterface::UciMoveText(board.MoveText(move, false));
        if (text == wanted) return text;
    }
    if (!engineMove.IsEmpty()) App.Engine->Info("no legal move from the engine: " + engineMove);
    return clsEngineInterface::UciMoveText(first);
}

void clsStrictUci::WriteLine(const clsString& text) {
    App.Output->Write(text, true);
}

} // namespace nvoChess
