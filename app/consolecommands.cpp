// The program's own commands, beside the two chess protocols: both front ends hand every word they do not
// know to HandleConsole. Each command reads its arguments word by word and calls into the part that does
// the work.
#include "app/bookcommands.h"
#include "app/clschessapplication.h"
#include "app/clscommandwords.h"
#include "app/commandnumbers.h"
#include "app/formulaconsole.h"

#include "chess/random.h"
#include "match/clsengineinterface.h"
#include "match/clstourney.h"
#include "nuvobase/asciichars.h"
#include "nuvobase/clsxml.h"

#include <algorithm>
#include <iterator>

namespace nvoChess {

namespace {

using App = clsChessApplication;

// A command with what \help shows of it: its arguments, [optional] ones in brackets, and what it does.
struct ConsoleCommand {
    const char* Word;
    const char* Arguments;
    const char* Summary;
    void (*Run)(App& app, const clsString& arguments);
};

// The line \help ends with: every command reads its words the same way.
constexpr const char* QuotingNote = "a file or folder with blanks goes in double quotes, and \\ works as /: "
                                    "\\mergebooks \"my books\" \"my books\\all.cbk\"";

// The book of \loadbook when none is named: a file in the working folder.
constexpr const char* DefaultBookFile = "corvane.cbk";

void Remark(App& app, const clsString& text) {
    app.Engine->Info(text);
}

void ToggleBoard(App& app, const clsString& arguments) {
    app.ShowBoard = !app.ShowBoard;
    app.Engine->PrintBoard();
    if (*arguments.At(0) == 'm') app.Engine->PrintMoves(true);
}

// Replays a known position through the XBoard front end, each command shown as it is fed.
void DebugScenario(App& app, const clsString&) {
    app.HandleXBoard(clsString("\\vesko"), clsString(), true);
    app.HandleXBoard(clsString("setboard"), clsString("6k1/6pP/6KP/8/8/8/8/8 b"), true);
    app.HandleXBoard(clsString("level"), clsString("0 1000 0"), true);
    app.HandleXBoard(clsString("go"), clsString(), true);
}

// Shows a soul file; the engine keeps its own soul.
void LoadSoul(App& app, const clsString& arguments) {
    clsString soul;
    soul.LoadFromFile(clsCommandWords(arguments).Next().ToForwardSlashes().Text());
    Remark(app, clsString("new soul: ") + soul);
}

// Moves straight onto the engine's board, ":" allowed between the squares; the game history stays as it is.
void PlayMoves(App& app, const clsString& arguments) {
    clsString moves = arguments;
    moves.RemoveChar(':');
    int position = 0;
    do {
        app.Engine->MakeMoveText(moves.NextWord(' ', position));
        app.Engine->PrintBoard();
    } while (position >= 0);
}

// The book and limit words of \loadbook and \savebook.
struct BookWords {
    clsString Book;
    int Limit = 0;

    explicit BookWords(const clsString& arguments) {
        clsCommandWords words(arguments);
        Book = words.Next();
        Limit = int(words.NextNumber());
    }
};

void LoadBook(App& app, const clsString& arguments) {
    BookWords words(arguments);
    if (words.Book.IsEmpty()) words.Book = DefaultBookFile;
    Remark(app, clsString("wait..."));
    clsEngineInterface& engine = *app.Engine;
    clsString error;
    if (!engine.LoadBookFile(words.Book.ToForwardSlashes(), words.Limit, error))
        Remark(app,
               clsString("error loading ") + words.Book + (error.IsEmpty() ? clsString() : ": " + error));
    else if (!engine.PolyglotBook.IsEmpty())
        Remark(app, clsString("book ") + words.Book + " loaded with " +
                        clsString(int64_t(engine.PolyglotBook.Count())) + " moves");
    else
        Remark(app, clsString("book ") + words.Book + " loaded with " + clsString(engine.Book.Count) +
                        " positions");
}

void SaveBook(App& app, const clsString& arguments) {
    const BookWords words(arguments);
    if (words.Book.IsEmpty()) {
        Remark(app, clsString("savebook book [limit]"));
        Remark(app, clsString("book: filename.cbk"));
        Remark(app, clsString("limit: save only positions played more than 'limit' times"));
        return;
    }
    Remark(app, clsString("wait..."));
    if (!app.Engine->Book.Save(words.Book.ToForwardSlashes(), words.Limit))
        Remark(app, clsString("error saving ") + words.Book);
    else
        Remark(app, clsString("book ") + words.Book + " saved");
}

// \perftfile [file] depth [divide]: perft over the positions of a file, or of the current position when the
// first word is the depth.
void PerftFile(App& app, const clsString& arguments) {
    clsCommandWords words(arguments);
    clsString file = words.Next();
    clsString depth = words.Next();
    bool onlyDepth = !file.IsEmpty();
    for (int i = 0; i < file.Size(); i++) onlyDepth = onlyDepth && nuvobase::IsAsciiDigit(file.Text()[i]);
    if (onlyDepth) {
        depth = file;
        file = clsString();
    }
    const clsString divide = words.Next();
    if (depth.IsEmpty()) {
        Remark(app, clsString("perftfile [file] depth [divide]"));
        return;
    }
    app.HaltEngine(); // the count walks the engine's board
    app.Engine->RunFileTest(file.ToForwardSlashes(), int(ReadBounded(depth, MaxCount)),
                            divide == "divide" || divide == "1");
}

// \json file: the XML tree that a JSON file is read into.
void ShowJson(App& app, const clsString& arguments) {
    nuvobase::clsXML document;
    document.LoadJson(clsCommandWords(arguments).Next().ToForwardSlashes());
    const clsString text = document.ToText();
    for (int position = 0; position >= 0;) {
        clsString line = text.NextWord('\n', position);
        if (position >= 0 || !line.IsEmpty()) app.Output->Write(line.TrimRight('\r'), true);
    }
}

// \learn file generations engines_count ms_per_move max_moves
void Learn(App& app, const clsString& arguments) {
    clsCommandWords words(arguments);
    const clsString file = words.Next();
    int64_t numbers[4];
    for (int64_t& number : numbers) number = words.NextNumber();
    if (*std::min_element(std::begin(numbers), std::end(numbers)) < 1) {
        Remark(app, clsString("learn file generations engines_count ms_per_move max_moves"));
        Remark(app, clsString("sample: \\learn learn.csv 100 20 60 170"));
        return;
    }
    app.LearnPopulation(file, numbers[0], numbers[1], numbers[2], numbers[3]);
}

// The tournament of \tourney when none is named: a file in the working folder.
constexpr const char* DefaultTourneyFile = "tourney.xml";

// Starts a tournament on its own thread and returns at once.
void StartTourney(App& app, const clsString& arguments) {
    app.Output->Write("tourney command...", true);
    clsString file = clsCommandWords(arguments).Next();
    if (file.IsEmpty()) file = DefaultTourneyFile;
    Remark(app, "initializing tourney " + file.Quote('\''));
    auto tourney = std::make_unique<clsTourney>(int32_t(app.Tourneys.size()) + 1, file, app.Output);
    // The switches of the command line hold for every tournament the program starts.
    tourney->Resume = app.Arguments.Find(clsString("-resume")) >= 0;
    const clsString shard = app.Arguments.GetValue("-shard");
    if (!shard.IsEmpty() && !tourney->SetShard(shard)) {
        Remark(app, "-shard=" + shard + " is no K/N with K from 1 to N; the tournament does not start");
        return;
    }
    app.Tourneys.push_back(std::move(tourney));
    app.Tourneys.back()->Start();
}

// Ten random souls, each played by the first player of the default tournament through the soul file.
void TrySouls(App& app, const clsString&) {
    constexpr int SoulCount = 10;
    constexpr int32_t ValueLimit = 100;
    const clsString text = app.Engine->GetSoulText();
    int parameters = 1;
    for (const char* c = text.Text(); *c; ++c) parameters += *c == '\t';
    nuvobase::clsCInts souls[SoulCount];
    for (nuvobase::clsCInts& soul : souls)
        for (int p = 0; p < parameters; ++p) soul.Add(RandomBelow(ValueLimit));
    for (int i = 0; i < SoulCount; ++i) {
        (clsString(int64_t(i)) + "=" + souls[i].GetText("\t")).SaveToFile(clsTourney::SoulFile);
        clsTourney tourney(1, clsString(DefaultTourneyFile), app.Output);
        int64_t score = 0;
        if (tourney.Start()) tourney.Wait();
        if (!tourney.Players.empty()) score += tourney.Players.front()->GetScore();
        Remark(app, clsString("=================> ") + clsString(int64_t(i)) + " = " + clsString(score));
    }
}

void Nothing(App&, const clsString&) {}

void ShowHelp(App& app, const clsString&);

// Tested in this order, ignoring case. The README lists the commands as \help shows them.
const ConsoleCommand Commands[] = {
    {"\\", "[m]", "show the board, and switch showing it after each move; m lists the root's moves too",
     ToggleBoard},
    {"\\dbg", "", "play a small XBoard scenario with Vesko", DebugScenario},
    {"\\loadsoul", "file", "show the soul text of a file; the engine keeps its soul", LoadSoul},
    {"\\epd", "[seconds [file]]", "search each position of an EPD file (arasan19.epd) and score the answers",
     [](App& app, const clsString& arguments) { app.StartEpdRun(arguments); }},
    {"\\moves", "move...", "play the moves straight onto the engine's board", PlayMoves},
    {"\\tourney", "[file]", "start the tournament of an XML file (tourney.xml) on its own thread",
     StartTourney},
    {"\\soul", "", "accepted; does nothing", Nothing},
    {"\\testsouls", "", "accepted; does nothing", Nothing},
    {"\\console", "", "the formula console, until exit",
     [](App& app, const clsString&) { RunFormulaConsole(app); }},
    {"\\learnt", "", "ten random souls, each tried in the tournament of tourney.xml", TrySouls},
    {"\\learn", "file generations engines_count ms_per_move max_moves", "breed souls, resuming from the file",
     Learn},
    {"\\play", "ms_per_move max_moves file [soulA soulB]", "one game between two Corvane engines",
     [](App& app, const clsString& arguments) { app.PlayCommand(arguments); }},
    {"\\loadbook", "[book [limit]]", "load a book (corvane.cbk), keeping positions of weight limit or more",
     LoadBook},
    {"\\savebook", "book [limit]", "save the engine's book", SaveBook},
    {"\\listbook", "", "the legal moves with their book statistics",
     [](App& app, const clsString&) { app.Engine->ListBookMoves(); }},
    {"\\vesko", "", "choose the Vesko engine",
     [](App& app, const clsString&) { app.SetEngine(clsString("vesko")); }},
    {"\\corvane", "", "choose the Corvane engine",
     [](App& app, const clsString&) { app.SetEngine(clsString("corvane")); }},
    {"\\perftfile", "[file] depth [divide]", "perft over the positions of a file, or of the current position",
     PerftFile},
    {"\\json", "file", "show the XML tree a JSON file is read into", ShowJson},
    {"\\buildbooks", "path [moves_count [type]]",
     "a book beside every PGN file below path; type 1 adds a table", BuildBooks},
    {"\\mergebooks", "books_path new_book [limit]", "join every book below books_path into new_book",
     MergeBooks},
    {"\\cvbooks", "", "save each book under pgn twice and compare the copies", ConvertBooks},
    {"\\help", "", "this list", ShowHelp},
};

// One line a command, as "\word arguments - summary", written straight out for the person who asked.
void ShowHelp(App& app, const clsString&) {
    for (const ConsoleCommand& entry : Commands) {
        clsString line = entry.Word;
        if (*entry.Arguments) line += clsString(" ") + entry.Arguments;
        app.Output->Write(line + " - " + entry.Summary, true);
    }
    app.Output->Write(QuotingNote, true);
}

} // namespace

int clsChessApplication::HandleConsole(const clsString& command, const clsString& arguments) {
    for (const ConsoleCommand& entry : Commands) {
        if (command == entry.Word) {
            entry.Run(*this, arguments);
            return 0;
        }
    }
    Output->Write(clsString("Error (unknown command): ") + command, true);
    return 0;
}

} // namespace nvoChess
