// The engine side of the XBoard protocol, version 2. The game lives on the engine's board: user moves are
// made there at once, and FenHistory keeps the positions that undo goes back to.
#include "app/clschessapplication.h"
#include "app/commandnumbers.h"

#include "book/clsbookentry.h"
#include "match/clsengineinterface.h"
#include "nuvobase/clscollection.h"
#include "nuvobase/clstimer.h"

#include <cstdint>

namespace nvoChess {

namespace {

using App = clsChessApplication;
using Handler = int (*)(App& app, const clsString& arguments);

struct XBoardCommand {
    const char* Word;
    Handler Run;
};

void WriteLine(App& app, const clsString& text) {
    app.Output->Write(text, true);
}

void Remark(App& app, const clsString& text) {
    app.Engine->Info(text);
}

// Ends a running search and forgets its move, which belongs to a position about to change or to a side the
// engine no longer plays: delivered later, it would be played in the wrong game.
void DropSearch(App& app) {
    app.HaltEngine();
    int score = 0;
    app.Engine->GetBestMoveText(true, score);
    app.AnswerDue = false;
}

// The commands that end the game in hand or take the engine's side away share this start.
void StopInState(App& app, int32_t state) {
    app.State = state;
    DropSearch(app);
}

int SwitchToUci(App& app, const clsString&) {
    app.Engine->Protocol = clsEngineInterface::Uci;
    return app.HandleUci(clsString("uci"), clsString());
}

int SwitchToXBoard(App& app, const clsString&) {
    app.Engine->Protocol = clsEngineInterface::XBoard;
    WriteLine(app, clsString());
    return 0;
}

// The search ends, and its best move so far is played at once.
int MoveNow(App& app, const clsString&) {
    app.FinishSearch();
    return 0;
}

int Quit(App& app, const clsString&) {
    StopInState(app, App::StateIdle);
    return App::QuitResult;
}

// Unlike force, this leaves the engine without a side until go, white or black gives it one again.
int StopWithoutMove(App& app, const clsString&) {
    StopInState(app, App::StateStopped);
    return 0;
}

int Force(App& app, const clsString&) {
    StopInState(app, App::StateIdle);
    return 0;
}

// white and black name the side to move next, so the engine takes the other one.
int TakeSide(App& app, int32_t state) {
    StopInState(app, App::StateIdle);
    app.State = state;
    return 0;
}

// The features announced to the GUI, in the order it reads them. myname follows the current engine.
clsString FeatureLines(App& app) {
    return clsString("ping=1\nsetboard=1\nusermove=1\ntime=1\ndraw=1\nreuse=1\nmyname=\"") +
           app.Engine->Name +
           "\"\nics=1\nname=1\ndebug=1\nmemory=1\nsmp=1\nnps=0\nsan=0\nsigint=0\nsigterm=0\nanalyze="
           "0\ncolors=0\n"
           "done=1";
}

int Protover(App& app, const clsString&) {
    app.Features.Clear();
    app.Features.Split(FeatureLines(app), '\n', nuvobase::clsStrings::SplitNameValue);
    WriteLine(app, clsString("feature ") + app.Features.Join(clsString(" "), true));
    return 0;
}

// A refused feature flips its value; the name features are not the GUI's to refuse.
int Rejected(App& app, const clsString& feature) {
    if (feature.Compare("name", nuvobase::clsString::CompareContains)) return 0;
    const int64_t value = ReadBounded(app.Features.GetValue(feature), MaxCount);
    app.Features.SetValue(feature, clsString(1 - value));
    return 0;
}

int Ping(App& app, const clsString& text) {
    app.PendingPing = text;
    // During a search the answer waits for the move, so the GUI knows the move belongs to the old state; a
    // search that has just ended hands its move over first.
    if (!app.Engine->IsRunning()) {
        app.FinishSearch();
        app.SendPong();
    }
    return 0;
}

int New(App& app, const clsString&) {
    StopInState(app, App::StateIdle);
    app.SetBoard(clsString(StartPositionFen));
    app.State = App::StateEngineBlack;
    app.EngineTimeMs = app.InitialTimeMs;
    app.OpponentTimeMs = app.InitialTimeMs;
    app.ShowBanner();
    return 0;
}

int Go(App& app, const clsString&) {
    app.Engine->StopEngine();
    app.State = app.Engine->IsWhiteToMove() ? App::StateEngineWhite : App::StateEngineBlack;
    return app.StartThinking() ? 1 : 0;
}

int Level(App& app, const clsString& arguments) {
    int position = 0;
    const clsString moves = arguments.NextWord(' ', position, false, true);
    const clsString base = arguments.NextWord(' ', position, false, true);
    const clsString increment = arguments.NextWord(' ', position, false, true);
    app.MovesPerControl = ReadBounded(moves, MaxMovesPerControl);
    app.BaseTimeMs = SecondsToMs(base.ToSeconds());
    app.IncrementMs = SecondsToMs(ReadBounded(increment, MaxClockSeconds));
    app.EngineTimeMs = app.BaseTimeMs;
    app.OpponentTimeMs = app.BaseTimeMs;
    return 0;
}

int SearchDepth(App& app, const clsString& depth) {
    app.Engine->SetMaxDepth(depth.IsEmpty() ? 2 : int(ReadBounded(depth, MaxCount)));
    return 0;
}

// time and otim give centiseconds.
int64_t CentisecondsToMs(const clsString& text) {
    return ReadBounded(text, MaxClockSeconds * 100) * 10;
}

int Time(App& app, const clsString& centiseconds) {
    app.EngineTimeMs = CentisecondsToMs(centiseconds);
    Remark(app, clsString("engine time set to ") + clsString(app.EngineTimeMs) + " ms");
    return 0;
}

int OpponentTime(App& app, const clsString& centiseconds) {
    app.OpponentTimeMs = CentisecondsToMs(centiseconds);
    Remark(app, clsString("opponent time set to ") + clsString(app.OpponentTimeMs) + " ms");
    return 0;
}

int Result(App& app, const clsString& result) {
    StopInState(app, App::StateIdle);
    Remark(app, clsString("result ") + result);
    return 0;
}

int SetBoard(App& app, const clsString& fen) {
    DropSearch(app);
    app.SetBoard(fen);
    return 0;
}

int BookMove(App& app, const clsString&) {
    nuvobase::clsPCollection<clsBookEntryExt> entries(true);
    const int count = app.Engine->GetBookEntries(entries, true);
    const clsBookEntryExt* best = count ? entries.At(entries.Count - 1) : nullptr;
    WriteLine(app, best ? clsString(" best book move: ") + best->Move + "\n\n"
                        : clsString(" no book moves found\n\n"));
    return 0;
}

int Undo(App& app, const clsString&) {
    StopInState(app, App::StateIdle);
    // With nothing to take back the game starts again.
    clsString fen(StartPositionFen);
    if (app.FenHistory.Count > 0) {
        fen = app.FenHistory.GetAt(app.FenHistory.Count - 1);
        app.FenHistory.Delete(app.FenHistory.Count - 1);
    }
    app.SetBoard(fen);
    return 0;
}

int Memory(App& app, const clsString& megabytes) {
    app.Engine->SetOption("memory", megabytes);
    if (!app.Engine->IsRunning())
        app.SetMemory(megabytes.IsEmpty() ? app.DefaultMemoryMb : ReadBounded(megabytes, MaxCount));
    return 0;
}

int Perft(App& app, const clsString& arguments) {
    const int depth = int(ReadBounded(arguments.BeforeChar(' '), MaxCount));
    // The count walks the engine's board, which a search must not share; the search's move stays for the
    // command loop to deliver.
    app.HaltEngine();
    nuvobase::clsTimer timer;
    const uint64_t nodes = app.Engine->Perft(depth, false);
    const uint64_t ms = timer.Lap();
    WriteLine(app, clsString("Nodes: ") + clsString(int64_t(nodes)) + ", Time: " + clsString(int64_t(ms)) +
                       " ms, Nodes/s: " + clsString(int64_t(nodes * 1000 / (ms + 1))));
    return 0;
}

int Divide(App& app, const clsString& depth) {
    app.HaltEngine();
    app.Engine->Perft(int(ReadBounded(depth, MaxCount)), true);
    return 0;
}

int Option(App& app, const clsString& pair) {
    app.Engine->SetOption(pair.BeforeChar('='), pair.AfterChar('='));
    return 0;
}

int Ignore(App&, const clsString&) {
    return 0;
}

// Tested in this order, ignoring case; the user moves come before them.
const XBoardCommand Commands[] = {
    {"uci", SwitchToUci},
    {"xboard", SwitchToXBoard},
    {"?", MoveNow},
    {"protover", Protover},
    {"accepted", Ignore},
    {"rejected", Rejected},
    {"ping", Ping},
    {"variant", Ignore},
    {"new", New},
    {"quit", Quit},
    {"stop", StopWithoutMove},
    {"force", Force},
    {"go", Go},
    {"white", [](App& app, const clsString&) { return TakeSide(app, App::StateEngineBlack); }},
    {"black", [](App& app, const clsString&) { return TakeSide(app, App::StateEngineWhite); }},
    {"level", Level},
    {"sd", SearchDepth},
    {"time", Time},
    {"otim", OpponentTime},
    {"draw", Ignore},
    {"result", Result},
    {"setboard", SetBoard},
    {"edit", Ignore},
    {"hint", Ignore},
    {"ics",
     [](App& app, const clsString& host) {
         app.IcsHost = host;
         return 0;
     }},
    {"bk", BookMove},
    {"undo", Undo},
    {"remove", Ignore},
    {"easy",
     [](App& app, const clsString&) {
         app.Ponder = false;
         return 0;
     }},
    {"hard",
     [](App& app, const clsString&) {
         app.Ponder = true;
         return 0;
     }},
    {"post",
     [](App& app, const clsString&) {
         app.Post = true;
         return 0;
     }},
    {"nopost",
     [](App& app, const clsString&) {
         app.Post = false;
         return 0;
     }},
    {"analyze", Ignore},
    {"name",
     [](App& app, const clsString&) {
         WriteLine(app, app.Engine->Name);
         return 0;
     }},
    {"rating",
     [](App& app, const clsString&) {
         WriteLine(app, clsString("1350 1350"));
         return 0;
     }},
    {"computer",
     [](App& app, const clsString&) {
         Remark(app, clsString("hello my peer!"));
         return 0;
     }},
    {"memory", Memory},
    {"option", Option},
    {"cores",
     [](App& app, const clsString& count) {
         app.Engine->SetOption(clsString("cores"), count);
         return 0;
     }},
    {"perft", Perft},
    {"divide", Divide},
};

// A word whose second character is a rank digit is a move, whatever else it looks like.
bool LooksLikeMove(const clsString& word) {
    const char second = *word.At(1);
    return second >= '1' && second <= '8';
}

int UserMove(App& app, const clsString& move) {
    // A GUI moves only while the engine does not think; if it moves anyway, the search is for a position
    // that is about to go.
    if (app.Engine->IsRunning()) DropSearch(app);
    if (!app.Engine->MakeMoveText(move)) {
        WriteLine(app, clsString("Illegal move: ") + move);
        return 1;
    }
    app.FenHistory.Add(app.GetFen());
    if (app.State == App::StateIdle) {
        Remark(app, clsString("I'm not thinking"));
        app.PublishedFen.Set(app.Engine->GetPosition());
    } else if (app.State == App::StateEngineWhite || app.State == App::StateEngineBlack) {
        // The engine answers whichever side it is on: the GUI names its side before it moves.
        app.StartThinking();
    }
    return 0;
}

} // namespace

int clsChessApplication::HandleXBoard(const clsString& command, const clsString& arguments, bool echo) {
    const clsString line = command + "\t" + arguments;
    if (echo) Engine->Info(clsString("XBoard_Command: ") + line);
    // The log is one long text: no line ends.
    if (!LogFile.IsEmpty()) line.SaveToFile(LogFile.ToForwardSlashes().Text(), false);

    if (command == "usermove") return UserMove(*this, arguments);
    if (LooksLikeMove(command)) return UserMove(*this, command);
    for (const XBoardCommand& entry : Commands) {
        if (command == entry.Word) return entry.Run(*this, arguments);
    }
    return HandleConsole(command, arguments);
}

} // namespace nvoChess
