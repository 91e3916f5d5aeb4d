// Scripts: lines of statements that open queries on the archive, walk and change their rows, set variables
// and collect printed text. A script never stops on a failed formula; it returns the code of the last one.
#include <algorithm>

#include "formula/clsparser.h"
#include "formula/clsscriptquery.h"

namespace velmora {

namespace {

// Lines a script may run, jumps and the scripts it starts included, so that a loop that never ends still
// returns.
constexpr int MaxScriptLines = 20000;
// Text the output list may collect; what a script prints beyond it is dropped.
constexpr int MaxOutputBytes = 16 << 20;
constexpr const char* RowIndexName = "$ROW_INDEX";

// The first word of text, up to a space; text keeps what follows, without its leading spaces.
clsString CutWord(clsString& text) {
    text.Trim(' ', false);
    const int space = text.Find(' ');
    clsString word = space < 0 ? text : text.Left(space);
    text = space < 0 ? clsString() : text.From(space + 1);
    text.Trim(' ', false);
    return word;
}

class ScriptRun {
public:
    ScriptRun(clsParser& parser, nuvobase::clsStrings& output) : Parser(parser), Output(output) {}

    int Run(const nuvobase::clsStrings& lines);

private:
    clsParser& Parser;
    nuvobase::clsStrings& Output;
    nuvobase::clsCollection<clsScriptQuery> Queries;
    nuvobase::clsCollection<int> Loops; // a query's name to the index of its loop line
    int64_t OutputBytes = 0;
    int Code = ErrorNone;
    int Line = 0;

    clsScriptQuery* Query(const clsString& name) const { return Queries.ValueAt(Queries.Find(name)); }
    // The query when both row sets are open and the reading one stands on a row.
    clsScriptQuery* QueryOnRow(const clsString& name) const;
    clsString Evaluate(const clsString& formula);
    void Bind(int handle, const clsString& name);
    void Print(const clsString& text, bool newLine);
    void Statement(const clsString& word, clsString rest);
    void OpenQuery(clsString rest);
    void Loop(clsString rest);
    void Walk(clsString rest, bool next);
    void Set(const clsString& rest);
};

int ScriptRun::Run(const nuvobase::clsStrings& lines) {
    for (; Line < lines.Count; Line++) {
        if (--Parser.ScriptLinesLeft < 0) return ErrorInMacro;
        clsString text = lines.GetAt(Line);
        text.ReplaceAll("\t", " ");
        text.Trim(' ');
        if (text.IsEmpty()) continue;
        const clsString word = CutWord(text);
        Statement(word, text);
    }
    return Code;
}

void ScriptRun::Statement(const clsString& word, clsString rest) {
    if (word == "query") {
        OpenQuery(rest);
    } else if (word == "close") {
        Queries.Remove(Queries.Find(CutWord(rest)));
    } else if (word == "loop") {
        Loop(rest);
    } else if (word == "next" || word == "seek") {
        Walk(rest, word == "next");
    } else if (word == "copy" || word == "new" || word == "update") {
        const clsString name = CutWord(rest);
        const clsScriptQuery* query = QueryOnRow(name);
        if (!query) return;
        clsArchivio& archive = *query->Archive;
        const int row = archive.RowIndex(query->ReadSet);
        if (word == "update") {
            archive.MoveTo(query->WriteSet, row);
            return;
        }
        Bind(word == "copy" ? query->ReadSet : query->WriteSet, name + "$");
        archive.AddRow(query->WriteSet, word == "copy" ? row : -1);
        Bind(query->WriteSet, name);
    } else if (word == "set") {
        Set(rest);
    } else if (word == "print" || word == "printl") {
        Print(Evaluate(rest), word == "printl");
    }
}

clsScriptQuery* ScriptRun::QueryOnRow(const clsString& name) const {
    clsScriptQuery* query = Query(name);
    if (!query || query->ReadSet < 0 || query->WriteSet < 0 || query->Archive->RowIndex(query->ReadSet) < 0)
        return nullptr;
    return query;
}

clsString ScriptRun::Evaluate(const clsString& formula) {
    clsString result;
    Code = Parser.ComputeNested(formula, result, false, true);
    return result;
}

void ScriptRun::Bind(int handle, const clsString& name) {
    const clsArchivio& archive = *Parser.Archive;
    const clsString prefix = name.IsEmpty() || *name.At(0) == '.' ? name : name + ".";
    clsValue value;
    value.SetText(clsString(archive.RowIndex(handle)));
    Parser.SetVariable(prefix + RowIndexName, value);
    const clsRowSet* rows = archive.RowSet(handle);
    if (!rows) return;
    for (int i = 0; i < rows->Columns.Count; i++) {
        value.SetText(rows->FieldText(i));
        Parser.SetVariable(prefix + rows->Columns.GetAt(i), value);
    }
}

void ScriptRun::Print(const clsString& text, bool newLine) {
    if (OutputBytes + text.Size() > MaxOutputBytes) return;
    OutputBytes += text.Size();
    clsString* last = Output.ValueAt(Output.Count - 1);
    if (newLine || !last) {
        Output.AddLine(text);
        return;
    }
    // Doubling, so that a loop of prints costs in proportion to what it prints.
    const int needed = last->Size() + text.Size() + 1;
    if (needed > last->GetCapacity()) last->Reserve(std::max(needed, 2 * last->GetCapacity()));
    *last += text;
}

void ScriptRun::OpenQuery(clsString rest) {
    const clsString name = CutWord(rest);
    if (name.IsEmpty() || !(CutWord(rest) == "as") || !Parser.Archive) return;
    clsString sql;
    if (Parser.Compute(rest, sql) != ErrorNone || sql.IsEmpty()) return;
    Queries.Set(name, new clsScriptQuery(Parser.Archive, sql));
}

void ScriptRun::Loop(clsString rest) {
    if (!(CutWord(rest) == "on")) return;
    const clsString name = CutWord(rest);
    const clsScriptQuery* query = Query(name);
    if (!query) return;
    query->Archive->MoveTo(query->ReadSet, 0);
    Bind(query->ReadSet, name);
    Loops.Set(name, new int(Line));
}

// next and seek: an optional formula gives the row to stand on; next then steps, and past the last row the
// script goes on below. Otherwise it goes back to the line after the loop.
void ScriptRun::Walk(clsString rest, bool next) {
    const clsString name = CutWord(rest);
    const int* recorded = Loops.ValueAt(Loops.Find(name));
    const int loopLine = recorded ? *recorded : 0;
    const clsScriptQuery* query = Query(name);
    if (loopLine < 0 || !query) return;
    clsArchivio& archive = *query->Archive;
    if (!rest.IsEmpty()) {
        const int64_t index = nuvobase::VariantText::ToInt64(Evaluate(rest));
        if (index >= 0) archive.MoveTo(query->ReadSet, int(std::min<int64_t>(index, INT32_MAX)));
    }
    if (next && archive.MoveNext(query->ReadSet) < 0) return;
    Line = loopLine;
    Bind(query->ReadSet, name);
}

void ScriptRun::Set(const clsString& rest) {
    const int equals = rest.Find('=');
    if (equals < 0) return;
    clsString target = rest.Left(equals);
    clsString formula = rest.From(equals + 1);
    formula.Trim(' ');
    if (formula.IsEmpty()) return;
    const clsString result = Evaluate(formula);
    const int dot = target.Find('.');
    clsString name = dot < 0 ? target : target.Left(dot);
    clsString field = dot < 0 ? clsString() : target.From(dot + 1);
    name.Trim(' ');
    field.Trim(' ');
    if (dot < 0 || field.IsEmpty()) {
        if (!name.IsEmpty()) Parser.SetVariable(name, clsValue(result));
        Output.SetValue(name, result, false);
        return;
    }
    const clsScriptQuery* query = Query(name);
    if (!query || query->WriteSet < 0 || query->Archive->AtEnd(query->WriteSet)) return;
    query->Archive->Changed = true;
    query->Archive->SetFieldText(query->WriteSet, field, result);
    Output.AddLine(result);
}

} // namespace

int clsParser::RunScript(const nuvobase::clsStrings& lines, nuvobase::clsStrings& output) {
    if (StateIndex + 1 >= MaxNestedStates) return ErrorInMacro;
    if (ScriptDepth++ == 0) ScriptLinesLeft = MaxScriptLines;
    PushState();
    ScriptRun run(*this, output);
    const int code = run.Run(lines);
    PopState();
    ScriptDepth--;
    return code;
}

} // namespace velmora
