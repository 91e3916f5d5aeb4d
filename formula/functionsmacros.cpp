// Macros with numbered placeholders, and blocks of formulas run line by line.
#include "formula/clsfunctioncall.h"
#include "formula/functiontable.h"

namespace velmora {

namespace {

// The byte that FEXECUTE's patch rows of kind 2 put before their text.
constexpr char PatchMark = char(0xA6);
// Written in a macro body, these stand for a double and a single quote.
constexpr const char* DoubleQuoteMark = "^^";
constexpr const char* DegreeSign = "\xC2\xB0";

// The body of the named macro with #1#, #2#... replaced by the texts of the arguments behind the name.
clsString Expand(const clsFunctionCall& call, const clsString& body) {
    clsString text = body;
    for (int k = 1; k < call.Count; k++)
        text.ReplaceAll((clsString("#") + clsString(k) + "#").Text(), call.Text(k).Text());
    return text;
}

int Macro(clsFunctionCall& call) {
    if (call.Count < 1) return call.Fail(ErrorInMacro);
    const clsString body = call.Parser.Macros.GetValue(call.Text(0));
    if (body.IsEmpty()) return call.Result(call.At(0));
    const clsString text = Expand(call, body);
    if (call.Code == FunctionFMACROGET) return call.ResultText(text);
    if (call.Parser.StateIndex + 1 >= clsParser::MaxNestedStates) return call.Fail(ErrorInMacro);
    clsString result;
    // A failure leaves the result empty; only macros nested too deep end the evaluation.
    if (call.Parser.ComputeNested(text, result, false, true) == ErrorInMacro) return call.Fail(ErrorInMacro);
    return call.ResultText(result);
}

int AddMacro(clsFunctionCall& call) {
    if (call.Count != 2) return call.Fail(ErrorInMacro);
    const clsString name = call.Text(0);
    if (!name.IsEmpty()) {
        clsString body = call.Text(1);
        body.ReplaceAll(DoubleQuoteMark, "\"");
        body.ReplaceAll(DegreeSign, "'");
        call.Parser.Macros.SetValue(name, body);
    }
    return call.Result(call.At(0));
}

int DeleteMacro(clsFunctionCall& call) {
    if (call.Count != 1) return call.Fail(ErrorInMacro);
    const clsString name = call.Text(0);
    if (!name.IsEmpty()) call.Parser.Macros.Remove(call.Parser.Macros.Find(name));
    return call.Result(call.At(0));
}

// The running text of FEXECUTE changed by the rows of a patch statement.
clsString Patch(clsArchivio& archive, const clsString& sql, const clsString& joined) {
    clsString text = joined;
    const int rows = archive.OpenRowSet(sql, 0);
    for (; !archive.AtEnd(rows); archive.MoveNext(rows)) {
        const clsString patch = archive.FieldText(rows, clsString("Testo"));
        switch (archive.FieldInteger(rows, clsString("Tipo"))) {
        case 0:
            text = patch;
            break;
        case 1:
            text = joined;
            break;
        case 2:
            text += PatchMark;
            text += patch;
            break;
        default:
            break;
        }
    }
    archive.CloseRowSet(rows);
    return text;
}

// FEXECUTE: each line of the text evaluated in one new state; the results of the lines that succeed,
// joined with LF. A failing last line gives code 18.
int Execute(clsFunctionCall& call) {
    if (call.Count < 1) return call.Fail(ErrorInMacro);
    const clsString text = call.Text(0);
    if (text.IsEmpty()) return call.Result(call.At(0));
    clsParser& parser = call.Parser;
    if (parser.StateIndex + 1 >= clsParser::MaxNestedStates) return call.Fail(ErrorInMacro);
    parser.PushState();
    clsString joined;
    int last = ErrorNone;
    bool any = false;
    for (int position = 0; position >= 0;) {
        clsString result;
        last = parser.Compute(text.NextWord('\n', position, true), result);
        if (last != ErrorNone) continue;
        if (any) joined += '\n';
        joined += result;
        any = true;
    }
    parser.PopState();
    if (call.Count == 3 && call.Text(1) == "PATCH") {
        joined = Patch(*parser.Archive, call.Text(2), joined);
        last = ErrorNone;
    }
    return last != ErrorNone ? call.Fail(ErrorInMacro) : call.ResultText(joined);
}

// FSCRIPT: the text cut at CR alone into the lines of a script; the script's code is the result.
int Script(clsFunctionCall& call) {
    if (call.Count != 1) return call.ResultNumber(0);
    nuvobase::clsStrings lines, output;
    lines.Split(call.Text(0), '\r');
    return call.ResultNumber(call.Parser.RunScript(lines, output));
}

} // namespace

bool RunMacroFunction(clsFunctionCall& call, int& code) {
    switch (call.Code) {
    case FunctionFMACRO:
    case FunctionFMACROGET:
        code = Macro(call);
        return true;
    case FunctionFMACROADD:
        code = AddMacro(call);
        return true;
    case FunctionFMACRODEL:
        code = DeleteMacro(call);
        return true;
    case FunctionFMACROCLEAR:
        if (call.Count != 0) {
            code = call.Fail(ErrorInMacro);
        } else {
            call.Parser.Macros.Clear();
            code = ErrorNone; // leaves no value
        }
        return true;
    case FunctionFEXECUTE:
        code = Execute(call);
        return true;
    case FunctionFSCRIPT:
        code = Script(call);
        return true;
    default:
        return false;
    }
}

} // namespace velmora
