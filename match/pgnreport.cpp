#include "match/pgnreport.h"

#include "match/clspgnrecords.h"
#include "match/clsstandings.h"

#include <algorithm>
#include <set>
#include <string>

using nuvobase::clsString;

namespace nvoChess {

bool WriteReport(const std::vector<clsString>& files, const clsString& out,
                 nuvobase::clsTSafeOutput& output) {
    const auto remark = [&](const clsString& text) { output.Write("# report: " + text, true); };
    if (files.empty()) remark("no PGN file named: corvane -use=report FILE... [-out=FILE]");
    std::vector<clsPgnRecord> records;
    for (const clsString& file : files)
        if (!ReadPgnRecords(file, records)) remark("cannot read " + file.Quote('"'));
    std::set<std::string> seen;
    std::vector<const clsPgnRecord*> counted;
    int32_t unfinished = 0, repeated = 0;
    for (const clsPgnRecord& record : records) {
        if (!record.IsWhole() || !record.IsDecided())
            ++unfinished;
        else if (!seen.insert(record.Key().Text()).second)
            ++repeated;
        else
            counted.push_back(&record);
    }
    // In the order of play, so that the players stand in the order of a tournament's first round.
    std::stable_sort(counted.begin(), counted.end(), [](const clsPgnRecord* a, const clsPgnRecord* b) {
        const int32_t roundA = a->NumberTag("Round"), roundB = b->NumberTag("Round");
        return roundA != roundB ? roundA < roundB : a->NumberTag("GameId") < b->NumberTag("GameId");
    });
    clsStandings standings;
    for (const clsPgnRecord* record : counted) standings.Add(record->Outcome());
    remark(clsString(int64_t(counted.size())) + " games counted from " + clsString(int64_t(files.size())) +
           " files; " + clsString(unfinished) + " unfinished or cut short and " + clsString(repeated) +
           " repeated left out");
    for (const clsString& line : standings.TableLines()) output.Write("# " + line, true);
    if (!standings.JsonText().SaveToFile(out.Text())) {
        remark("cannot write " + out.Quote('"'));
        return false;
    }
    remark("standings written to " + out);
    return !counted.empty();
}

} // namespace nvoChess
