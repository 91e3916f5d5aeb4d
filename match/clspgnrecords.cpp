#include "match/clspgnrecords.h"

#include "book/clspgnfile.h"
#include "match/clstourneygame.h"

using nuvobase::clsString;

namespace nvoChess {

namespace {

// The last blank-separated word of the text.
clsString LastWord(const clsString& text) {
    clsString trimmed = text;
    trimmed.Trim(' ', true);
    const int blank = trimmed.FindLast(' ');
    return blank < 0 ? trimmed : trimmed.Mid(blank + 1);
}

bool IsResultToken(const clsString& token) {
    return token == "1-0" || token == "0-1" || token == "1/2-1/2" || token == "*";
}

} // namespace

bool clsPgnRecord::IsWhole() const {
    return IsResultToken(LastWord(Moves));
}

bool clsPgnRecord::IsDecided() const {
    return (Game.Code & (CodeUndecided | CodeAborted)) == 0 && (Game.Code & (CodeDecisive | CodeDraw)) != 0;
}

clsString clsPgnRecord::Key() const {
    clsString key;
    for (int i = 0; i < Game.Tags.Count; ++i) key += Game.Tags.GetName(i) + "=" + Game.Tags.GetAt(i) + "\n";
    return key + Moves;
}

clsGameOutcome clsPgnRecord::Outcome() const {
    int32_t white = 0, black = 0;
    clsTourneyGame::Points(Game.Code, white, black);
    return {Game.Tags.GetValue("White"), Game.Tags.GetValue("Black"), white, NumberTag("Round")};
}

int32_t clsPgnRecord::NumberTag(const char* name) const {
    return int32_t(Game.Tags.GetValue(name).ToDecimal());
}

clsString clsPgnRecord::PgnText() const {
    return TagLines + "\n" + MoveLines + "\n";
}

bool ReadPgnRecords(const clsString& file, std::vector<clsPgnRecord>& records) {
    return clsPGNFile::ForEachGame(file, [&](const clsString& text) {
        clsPgnRecord record;
        record.Moves = record.Game.ReadTags(text);
        // The result token closing the move text is the game's result, as a PGN reader takes it.
        const clsString last = LastWord(record.Moves);
        if (IsResultToken(last)) record.Game.SetResultText(last);
        bool inMoves = false;
        for (int position = 0; position >= 0;) {
            const clsString line = text.NextWord('\n', position);
            if (line.IsEmpty() && position < 0) break;
            inMoves = inMoves || line.Text()[0] != '[';
            (inMoves ? record.MoveLines : record.TagLines) += line + "\n";
        }
        records.push_back(std::move(record));
    });
}

} // namespace nvoChess
