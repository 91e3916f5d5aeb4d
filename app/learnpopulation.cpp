// The genetic learner: a population of Corvane engines plays every pairing twice from a balanced opening,
// the ranking of each generation goes to a result file, and the better souls are crossed into the worse.
// A result file is resumed from its last generation.
#include "app/clschessapplication.h"
#include "app/commandnumbers.h"
#include "app/learnfile.h"
#include "app/learnnames.h"

#include "chess/random.h"
#include "nuvobase/clsfile.h"
#include "nuvobase/clsinterruptcatcher.h"
#include "search/clsenginecorvane.h"

#include <algorithm>
#include <vector>

namespace nvoChess {

namespace {

using nuvobase::clsCStrings;

// Looked for in the folder of the result file: a position table of balanced openings.
constexpr const char* OpeningFile = "ficsgamesdb_2014_standard2000_nomovetimes_1286521.txt";
constexpr int OpeningFenField = 3;
// An opening is played when a search of this depth finds it within one pawn either way.
constexpr int OpeningDepth = 4;
constexpr int OpeningBalance = 105;
// Drawn openings that are all out of balance would be drawn for ever: give up after this many.
constexpr int OpeningTries = 200;
constexpr int MembersPerBreedingTry = 8;
constexpr const char* Rule = "---------------------";
constexpr const char* LongRule = "----------------------------------";

struct LearnMember {
    clsString Name;
    int64_t Score = 0;
    bool Keep = false;
    std::unique_ptr<clsEngineCorvane> Engine;
};

class clsLearnRun {
public:
    clsLearnRun(clsChessApplication& app, const clsString& file, int64_t msPerMove, int64_t maxMoves)
        : App(app), File(file), MsPerMove(msPerMove), MaxMoves(maxMoves),
          Judge(std::make_unique<clsEngineCorvane>(&app.Share, clsString("Corvane"), app.Output)) {
        // The judge's board goes to the GUI in the dialect of the application's engine.
        Judge->Protocol = app.Engine->Protocol;
    }

    bool LoadOpenings();
    // The highest generation of the result file, and the members it gives; 0 for a new run.
    int64_t Build(int count);
    // False when the run has to end early.
    bool PlayGeneration(int64_t generation);

private:
    void Remark(const clsString& text) { App.Engine->Info(text); }
    void Write(const clsString& text) { App.Output->Write(text, true); }
    bool ChooseOpening(clsString& fen);
    void Rank(int64_t generation);
    void Breed();
    void Resume(const clsCStrings& lines, int first, int count);
    clsString SoulLine(const LearnMember& member) const {
        return "'" + member.Name + "'\t" + clsString(member.Score) + "\t" + member.Engine->GetSoulText();
    }

    clsChessApplication& App;
    clsString File;
    int64_t MsPerMove, MaxMoves;
    std::vector<LearnMember> Members;
    // Weighs the openings in the members' own unit, whichever engine the application holds.
    std::unique_ptr<clsEngineCorvane> Judge;
};

bool clsLearnRun::LoadOpenings() {
    const int slash = File.FindLast('/');
    const clsString path = (slash < 0 ? clsString() : File.Left(slash + 1)) + OpeningFile;
    const clsCStrings lines = FileLines(path);
    App.LearnBookLines.Clear();
    for (int i = 0; i < lines.Count; ++i) App.LearnBookLines.AddLine(lines.GetAt(i));
    if (lines.Count == 0) {
        Remark(clsString("can't load book file: ") + path);
        return false;
    }
    Remark(clsString("using ") + clsString(int64_t(lines.Count)) + " book lines");
    return true;
}

int64_t clsLearnRun::Build(int count) {
    const clsCStrings lines = FileLines(File);
    int first = 0;
    const int64_t highest = HighestGeneration(lines, first);
    for (int i = 0; i < lines.Count; ++i) Write(lines.GetAt(i));
    Write(clsString(Rule));
    Members.resize(size_t(count));
    for (int i = 0; i < count; ++i) {
        LearnMember& member = Members[size_t(i)];
        member.Engine = std::make_unique<clsEngineCorvane>(&App.Share, clsString("Corvane"), App.Output);
        member.Name = LearnNames[i];
        member.Keep = i == 0;
        if (highest < 1 && i % 2 == 1) member.Engine->RandomizeSoul();
    }
    if (highest >= 1) Resume(lines, first, count);
    for (int i = 0; i < count; ++i)
        Write(clsString(int64_t(i)) + ":\t" + Members[size_t(i)].Engine->GetSoulText());
    if (highest >= 1) {
        std::stable_sort(Members.begin(), Members.end(),
                         [](const LearnMember& a, const LearnMember& b) { return a.Score > b.Score; });
        for (size_t i = 0; i < Members.size(); ++i)
            Write(clsString("\t") + clsString(int64_t(i + 1)) + "\t" + SoulLine(Members[i]));
    }
    return highest;
}

void clsLearnRun::Resume(const clsCStrings& lines, int first, int count) {
    if (lines.Count - first < count)
        Remark(clsString("the last generation of ") + File + " has " +
               clsString(int64_t(lines.Count - first)) + " lines for " + clsString(int64_t(count)) +
               " members: the others start empty");
    for (int i = 0; i < count; ++i) {
        LearnMember& member = Members[size_t(i)];
        const clsString line = lines.GetAt(first + i);
        const clsLearnLine read = ReadLearnLine(line);
        if (!line.IsEmpty() && !read.Complete) Remark(clsString("incomplete line in ") + File + ": " + line);
        if (!read.Numeric) Remark(clsString("text in a number field of ") + File + ", read as 0: " + line);
        member.Name = read.Name;
        member.Score = read.Score;
        member.Keep = member.Name == "ORIGINAL";
        if (member.Keep)
            member.Engine->LoadDefaultSoul();
        else
            member.Engine->LoadSoulText(read.Soul);
    }
}

bool clsLearnRun::ChooseOpening(clsString& fen) {
    const int count = App.LearnBookLines.Count;
    for (int attempt = 0; attempt < OpeningTries; ++attempt) {
        fen = TabField(App.LearnBookLines.GetAt(RandomBelow(count)), OpeningFenField);
        Judge->SetPosition(fen);
        int64_t nodes = 0;
        const int value = Judge->SearchFixedDepth(OpeningDepth, nodes);
        if (value >= -OpeningBalance && value <= OpeningBalance) {
            Judge->PrintBoard();
            return true;
        }
    }
    Remark(clsString("no opening within a pawn in ") + clsString(int64_t(OpeningTries)) +
           " tries of the book file: learning ends");
    return false;
}

bool clsLearnRun::PlayGeneration(int64_t generation) {
    Remark(clsString("---------------------------- GENERATION ") + clsString(generation));
    // The members share the table with the application's engine, which must not search meanwhile.
    App.HaltEngine();
    for (size_t a = 0; a < Members.size(); ++a) {
        for (size_t b = a + 1; b < Members.size(); ++b) {
            clsString fen;
            if (!ChooseOpening(fen)) return false;
            LearnMember& first = Members[a];
            LearnMember& second = Members[b];
            App.Output->Write(clsString("\r\nGeneration ") + clsString(generation) + "\r\n", false);
            Remark(clsString(int64_t(a + 1)) + "-" + clsString(int64_t(b + 1)) + " '" + first.Name + "' " +
                   clsString(first.Score) + " vs '" + second.Name + "' " + clsString(second.Score));
            int result = App.PlaySelfGame(*first.Engine, *second.Engine, MsPerMove, MaxMoves, fen);
            first.Score += result;
            second.Score -= result;
            result = App.PlaySelfGame(*second.Engine, *first.Engine, MsPerMove, MaxMoves, fen);
            second.Score += result;
            first.Score -= result;
        }
    }
    Rank(generation);
    Breed();
    for (LearnMember& member : Members) member.Score = 0;
    return true;
}

void clsLearnRun::Rank(int64_t generation) {
    std::stable_sort(Members.begin(), Members.end(),
                     [](const LearnMember& a, const LearnMember& b) { return a.Score > b.Score; });
    clsString block;
    for (size_t i = 0; i < Members.size(); ++i) {
        Remark(clsString("'") + Members[i].Name + "' = " + clsString(Members[i].Score));
        block +=
            clsString(generation) + "\t" + clsString(int64_t(i + 1)) + "\t" + SoulLine(Members[i]) + "\r\n";
    }
    block += "\r\n";
    block.ReplaceAll(".", ",");
    // Each file is replaced whole, so that a run killed at any moment resumes from its last whole generation.
    // The file of the generation goes first: a generation that the result file lacks is played again.
    const clsString own = GenerationFile(File, generation);
    if (!nuvobase::clsFile::SaveReplacing(own, block, false)) Remark(clsString("can't write ") + own);
    if (!nuvobase::clsFile::SaveReplacing(File, block, true)) Remark(clsString("can't write ") + File);
    Remark(clsString(LongRule));
    Remark(Members.front().Engine->GetSoulText());
    Remark(clsString(LongRule));
}

void clsLearnRun::Breed() {
    const int count = int(Members.size());
    for (int attempt = 0; attempt < count / MembersPerBreedingTry + 1; ++attempt) {
        const int x = RandomBelow(count - 1), y = RandomBelow(count - 1);
        if (x == y) continue;
        LearnMember& worse = Members[size_t(std::max(x, y))];
        if (worse.Keep) continue;
        worse.Engine->CrossSoul(Members[size_t(std::min(x, y))].Engine.get());
    }
}

} // namespace

void clsChessApplication::LearnPopulation(const clsString& file, int64_t generations, int64_t enginesCount,
                                          int64_t msPerMove, int64_t maxMoves) {
    State = StateLearning;
    // The lines typed meanwhile wait in the input for the run's end; an interrupt ends it between
    // generations.
    const nuvobase::clsInterruptCatcher interrupt;
    clsLearnRun run(*this, file.ToForwardSlashes(), msPerMove, maxMoves);
    if (enginesCount > LearnNameCount) {
        Engine->Info(clsString("at most ") + clsString(int64_t(LearnNameCount)) + " members");
    } else if (run.LoadOpenings()) {
        const int64_t highest = run.Build(int(enginesCount));
        int64_t generation = highest + 1;
        for (; generation < generations; ++generation) {
            if (interrupt.Interrupted()) State = StateStopped;
            if (State == StateStopped || !run.PlayGeneration(generation)) break;
        }
        if (State == StateStopped)
            Engine->Info(clsString("learning stopped before generation ") + clsString(generation));
    }
    State = StateIdle;
}

} // namespace nvoChess
