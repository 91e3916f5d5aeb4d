#include "app/clschessapplication.h"

#include "chess/bits.h"
#include "match/pgnreport.h"
#include "nuvobase/clsstdinthread.h"
#include "nuvobase/platform.h"
#include "search/clsembeddedplayer.h"
#include "search/clsenginecorvane.h"
#include "search/clstimerule.h"
#include "vesko/clsenginevesko.h"

#include <memory>
#include <utility>

namespace nvoChess {

namespace {

// Where -use=report writes the standings when -out names no file.
constexpr const char* DefaultReportFile = "report.results.json";
// How often a running search shows its progress.
constexpr uint64_t ProgressIntervalMs = 1000;

} // namespace

clsChessApplication::clsChessApplication(const nuvobase::clsStrings& arguments)
    : clsThread(clsString("Corvane")), Output(&nuvobase::StdOut), Arguments(arguments) {
    // Every engine of this program reads its start-up options from the command line.
    clsEngineCorvane::CommandLine = Arguments;
    clsTourneyGame::MakeEmbedded = [](const clsString& name, nuvobase::clsTSafeOutput* output,
                                      clsTourneyGame* game) -> std::unique_ptr<clsEngineInterface> {
        // A learning run hands the soul of its candidate to the player through a file.
        clsString soul;
        soul.LoadFromFile(clsTourney::SoulFile);
        return std::make_unique<clsEmbeddedPlayer>(name, output, game, soul);
    };
    LogFile = Arguments.GetValue("-log");
    if (Arguments.Find(clsString("-strictuci")) >= 0) Strict = std::make_unique<clsStrictUci>(*this);
    SetEngine(clsString("vesko"));
    const clsString memory = Arguments.GetValue("memory");
    SetMemory(memory.IsEmpty() ? DefaultMemoryMb : memory.ToDecimal());
    Engine->SetPosition(clsString(StartPositionFen));
    PublishedFen.Set(Engine->GetPosition());
}

clsChessApplication::~clsChessApplication() {
    // The application's own thread works on every field: it ends first.
    Stop();
    Wait();
    // The search is stopped by its own flag rather than cancelled: a search meets no cancellation point.
    HaltEngine();
    Tourneys.clear();
    nuvobase::StdIn.Stop();
    nuvobase::StdIn.Wait();
    Output->Flush();
    nuvobase::SleepMs(200);
}

bool clsChessApplication::Run() {
    SetEngine(Arguments.GetValue("-engine"));
    Engine->Protocol = clsEngineInterface::Uci;
    if (Arguments.GetValue("-use") == "tourney") {
        // Quoted, as a user types a file with blanks in its name.
        ExecuteCommand(clsString("\\tourney ") + Arguments.GetValue("-ini").Quote('"'));
        // The program ends once the tournament has ended and written its files.
        while (GetState() == ThreadRunning && !Tourneys.empty() && Tourneys.back()->IsRunning())
            nuvobase::SleepMs(1);
    } else if (Arguments.GetValue("-use") == "report") {
        // Every argument that is no switch names a PGN file.
        std::vector<clsString> files;
        for (int i = 0; i < Arguments.Count; ++i)
            if (Arguments.GetAt(i).IsEmpty() && Arguments.GetName(i).Text()[0] != '-')
                files.push_back(Arguments.GetName(i));
        const clsString out = Arguments.GetValue("-out");
        WriteReport(files, out.IsEmpty() ? clsString(DefaultReportFile) : out, *Output);
    } else {
        const clsString soulFile = Arguments.GetValue("-load");
        if (!soulFile.IsEmpty()) ExecuteCommand(clsString("\\loadsoul ") + soulFile.Quote('"'));
        nuvobase::StdIn.Start();
        while (GetState() != ThreadStopped && CommandLoopPass()) {
        }
    }
    Engine->Info(clsString("end"));
    return true;
}

bool clsChessApplication::CommandLoopPass() {
    const uint64_t now = nuvobase::ClockMs();
    const bool searching = Engine->IsRunning();
    if (IsStrict())
        Strict->Watch(now);
    else if (searching)
        WatchSearch(now);
    else
        DeliverMove(now);
    nuvobase::SleepMs(1);
    const clsString line = nuvobase::StdIn.ReadLine(false);
    if (line.IsEmpty()) {
        // Once the input has ended nobody can stop a search any more: the one running ends at its
        // deadline, delivers its move, and then the program ends as after quit.
        if (!nuvobase::StdIn.IsEndOfInput()) return true;
        if (IsStrict()) return Strict->InputEnded();
        // A search that ended during this pass is delivered by the next one.
        if (searching && Deadline != 0 && now > Deadline && !AwaitingEpdAnswer()) Engine->StopEngine();
        // An EPD run given with the input goes on to its last line.
        return searching || EpdRunning();
    }
    if (Dispatch(line.BeforeChar(' '), line.AfterChar(' ')) == QuitResult) {
        nuvobase::StdIn.Stop();
        return false;
    }
    return true;
}

void clsChessApplication::WatchSearch(uint64_t now) {
    if (Deadline != 0 && now > Deadline && Engine->MaxDepth == 0) {
        if (!AwaitingEpdAnswer()) Engine->StopEngine();
    } else if (now - LastProgress >= ProgressIntervalMs) {
        LastProgress = now;
        ShowProgress();
    }
}

void clsChessApplication::DeliverMove(uint64_t now) {
    if (State != StateEngineWhite && State != StateEngineBlack && State != StateEpd) return;
    ShowProgress();
    int score = 0;
    const clsString best = Engine->GetBestMoveText(true, score);
    const bool due = std::exchange(AnswerDue, false);
    if (State == StateEpd) {
        // The run scores the engine's own answer.
        if (EpdRunning()) EpdStep(best);
    } else if (due || !best.IsEmpty()) {
        // A search stopped before it found a move still owes the GUI one whenever the position has one.
        AnswerGo(best.IsEmpty() ? FirstLegalMove() : best, now);
    }
    SendPong();
}

void clsChessApplication::AnswerGo(const clsString& best, uint64_t now) {
    if (!best.IsEmpty()) {
        const int64_t elapsed = int64_t(now - ThinkStart) + 1;
        EngineTimeMs += IncrementMs - elapsed;
        Engine->Info(Engine->GetStatistics(elapsed));
        if (Engine->Protocol == clsEngineInterface::XBoard) {
            Engine->MakeMoveText(best);
            FenHistory.Add(GetFen());
            WriteLine(clsString("move ") + best);
        } else if (Engine->Protocol == clsEngineInterface::Uci) {
            // UCI writes a promotion without the "=" of the engine's move text.
            WriteLine(clsString("bestmove ") + clsEngineInterface::UciMoveText(best));
            State = StateIdle;
        }
        if (ShowBoard) Engine->PrintBoard();
    } else if (Engine->Protocol == clsEngineInterface::Uci) {
        // A GUI waits for one answer to every go, also when the position has no move.
        WriteLine(clsString("bestmove 0000"));
        State = StateIdle;
    }
}

void clsChessApplication::ExecuteCommand(const clsString& line) {
    Dispatch(line.BeforeChar(' '), line.AfterChar(' '));
}

int clsChessApplication::Dispatch(const clsString& command, const clsString& arguments) {
    if (Engine->Protocol == clsEngineInterface::XBoard) return HandleXBoard(command, arguments, false);
    if (IsStrict()) return Strict->Handle(command, arguments);
    if (Engine->Protocol == clsEngineInterface::Uci) return HandleUci(command, arguments);
    return 0;
}

bool clsChessApplication::SetEngine(const clsString& name) {
    std::unique_ptr<clsEngineInterface> engine;
    if (name == "vesko")
        engine = std::make_unique<clsEngineVesko>(clsString("Vesko"), Output);
    else if (name == "corvane")
        engine = std::make_unique<clsEngineCorvane>(&Share, clsString("Corvane"), Output);
    if (!engine) return false;
    // The search of the old engine is ended by its stop flag: a cancel would not reach it.
    if (Engine) HaltEngine();
    Engine = std::move(engine);
    return true;
}

bool clsChessApplication::SetMemory(int64_t megabytes) {
    if (Engine && Engine->IsRunning()) return false;
    Share.ResizeTable(megabytes < 0 ? 0 : megabytes);
    return true;
}

bool clsChessApplication::SetBoard(const clsString& fen) {
    Engine->SetPosition(fen);
    PublishedFen.Set(Engine->GetPosition());
    return true;
}

clsString clsChessApplication::GetFen() {
    return PublishedFen.Get();
}

void clsChessApplication::HaltEngine() {
    // A stop that reaches a search thread before the search has begun may be forgotten when the search
    // begins, so it is asked again until the thread has ended.
    Engine->StopEngine();
    while (Engine->IsRunning()) {
        nuvobase::SleepMs(1);
        Engine->StopEngine();
    }
    Engine->Wait();
}

void clsChessApplication::FinishSearch() {
    HaltEngine();
    if (!IsStrict()) DeliverMove(nuvobase::ClockMs());
}

clsString clsChessApplication::FirstLegalMove() {
    // Rarely needed, and a board is large: it lives for this one look.
    const auto board = std::make_unique<clsChessCore>();
    board->SetPosition(GetFen());
    return board->FirstLegalMove();
}

bool clsChessApplication::StartThinking() {
    HaltEngine();
    Engine->Post = Post;
    const int64_t controlMoves = MovesPerControl;
    int64_t moveNumber = Engine->MoveNumber;
    if (controlMoves > 0 && moveNumber > controlMoves) {
        moveNumber %= controlMoves;
    } else if (moveNumber > 0 && moveNumber == controlMoves) {
        EngineTimeMs += BaseTimeMs;
        moveNumber = 0;
    }
    PublishedFen.Set(Engine->GetPosition());
    ThinkStart = LastProgress = nuvobase::ClockMs();
    int64_t allowance;
    if (State == StateEpd) {
        allowance = BaseTimeMs;
        EngineTimeMs = 100 * allowance;
    } else {
        allowance = ApplicationTimeRule.Allowance(EngineTimeMs, controlMoves, moveNumber);
    }
    // An allowance used up before the start stops the search at the first look; 0 would mean no deadline.
    const int64_t deadline = int64_t(ThinkStart) + allowance;
    Deadline = deadline > 0 ? uint64_t(deadline) : 1;
    if (State != StateEpd) {
        Engine->Info(clsString("moves ") + clsString(moveNumber) + "/" + clsString(controlMoves) +
                     " - time " + clsString(allowance) + "/" + clsString(EngineTimeMs) + " ms");
    }
    // Also a thread that cannot start owes the GUI its move.
    AnswerDue = true;
    return Engine->Start();
}

void clsChessApplication::ShowProgress() {
    if (!Post) return;
    const clsString line = Engine->GetInfoLine();
    if (line.IsEmpty()) return;
    if (Engine->Protocol == clsEngineInterface::XBoard) {
        WriteLine(line);
    } else if (Engine->Protocol == clsEngineInterface::Uci) {
        int score = 0;
        WriteLine(clsString("currmove ") + Engine->GetBestMoveText(false, score));
    }
}

void clsChessApplication::SendPong() {
    if (PendingPing.IsEmpty()) return;
    WriteLine(clsString("pong ") + PendingPing);
    PendingPing.Clear();
}

void clsChessApplication::ShowBanner() {
    Engine->Info(Engine->Name + " - chess engine of the Corvane console - PopCount " +
                 (UsePopCount ? "enabled" : "disabled"));
}

void clsChessApplication::WriteLine(const clsString& text) {
    Output->Write(text, true);
}

} // namespace nvoChess
