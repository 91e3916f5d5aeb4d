// clsEngineInterface::RunFileTest: perft over a file of positions with their expected counts, resumable.
#include "match/clsengineinterface.h"
#include "nuvobase/clstimer.h"

using nuvobase::clsString;

namespace nvoChess {

namespace {

const char* const ResultExtension = "out.txt";
const char* const LineEnd = "\r\n";

// The result line of one position: the FEN alone when nothing was counted.
clsString ResultLine(const clsString& fen, uint64_t nodes, uint64_t expected, uint64_t ms) {
    if (nodes == 0) return fen;
    const bool ok = expected == 0 || expected == nodes;
    return fen + "\t[TIME_MS=" + clsString(int64_t(ms)) + "]\t[NPS=" + clsString(int64_t(nodes * 1000 / ms)) +
           "]\t[STATUS=" + (ok ? "OK" : "ERROR") + "]";
}

// The lines of file that hold something, without their line ends.
void ReadLines(const clsString& file, nuvobase::clsCStrings& lines) {
    clsString text;
    text.LoadFromFile(file.Text());
    nuvobase::clsCStrings all;
    all.SetText(text, '\n', false);
    for (int i = 0; i < all.Count; i++) {
        clsString line = all.GetAt(i).TrimRight('\r');
        if (!clsString(line).Trim().IsEmpty()) lines.Add(line);
    }
}

} // namespace

int clsEngineInterface::RunFileTest(const clsString& file, int depth, bool divide) {
    auto Say = [this](const clsString& text) {
        if (Output) Output->Write(text, true);
    };
    nuvobase::clsCStrings lines;
    clsString resultFile;
    int done = 0;
    if (file.IsEmpty()) {
        lines.Add(GetPosition());
    } else {
        ReadLines(file, lines);
        resultFile = clsString(file).ChangeExtension(ResultExtension);
        clsString results;
        results.LoadFromFile(resultFile.Text());
        for (int i = 0; i < results.Size(); i++)
            if (results.Text()[i] == '\n') done++;
        Say(clsString("starting perft from perft line ") + clsString(done));
    }
    bool reported = false;
    for (int i = done; i < lines.Count; i++) {
        const clsString line = lines.GetAt(i);
        const clsString fen = clsString(line.BeforeChar(',')).Trim();
        const uint64_t expected = line.AfterLastChar(',').ToUInt64();
        Say(clsString(i + 1) + "/" + clsString(lines.Count) + "\t" + line);
        SetPosition(fen);
        nuvobase::clsTimer timer;
        const uint64_t nodes = Perft(depth, divide);
        const uint64_t elapsed = timer.Lap();
        const clsString result = ResultLine(fen, nodes, expected, elapsed > 0 ? elapsed : 1);
        if (resultFile.IsEmpty()) {
            Say(result);
        } else if (!(result + LineEnd).SaveToFile(resultFile.Text(), false) && !reported) {
            Info(clsString("cannot write ") + resultFile);
            reported = true;
        }
    }
    return 0;
}

} // namespace nvoChess
