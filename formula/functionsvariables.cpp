// Variables and options: look-ups go through FindVariable, sets into the current scope.
#include "formula/clsfunctioncall.h"
#include "formula/functiontable.h"

namespace velmora {

namespace {

// FV, FVAR and FVARN: the value as it is, or what stands for a missing one.
int Look(clsFunctionCall& call) {
    if (call.Count != 1) return call.Fail(ErrorArgumentCount);
    clsValue value;
    if (!call.Parser.GetVariable(call.Text(0), value))
        value.SetText(clsString(call.Code == FunctionFV ? "" : "0"));
    if (call.Code == FunctionFVARN) return call.ResultNumber(value.ToDouble());
    return call.Result(value);
}

int Exists(clsFunctionCall& call) {
    if (call.Count != 1) return call.Fail(ErrorArgumentCount);
    clsValue value;
    const bool found = call.Parser.GetVariable(call.Text(0), value);
    return call.ResultNumber(found == (call.Code == FunctionFVAROK) ? 1 : 0);
}

int Names(clsFunctionCall& call) {
    if (call.CountOutside(1, 2)) return call.Fail(ErrorArgumentCount);
    const clsString filter = call.Text(0), separator = call.Count > 1 ? call.Text(1) : clsString();
    clsString text;
    for (int s = 0; s <= call.Parser.ScopeIndex; s++) {
        const clsVariabili& scope = *call.Parser.Scopes.At(s);
        for (int i = 0; i < scope.Count(); i++) {
            const clsString name = scope.NameAt(i);
            if (!filter.IsEmpty() && !name.Compare(filter, clsString::CompareContains)) continue;
            if (!text.IsEmpty()) text += separator.IsEmpty() ? clsString(",") : separator;
            text += separator.IsEmpty() ? name : name + "=" + scope.At(i)->ToText();
        }
    }
    return call.ResultText(text);
}

int Set(clsFunctionCall& call) {
    if (call.Count < 2 || call.Count % 2) return call.Fail(ErrorArgumentCount);
    for (int i = 0; i < call.Count; i += 2) {
        const clsString name = call.Text(i);
        if (!name.IsEmpty()) call.Parser.SetVariable(name, call.At(i + 1));
    }
    return call.Result(call.At(call.Count - 1));
}

// Pairs of name=value, each ended by the separator's first character.
int SetFromText(clsFunctionCall& call) {
    if (call.Count != 3) return call.Fail(ErrorArgumentCount);
    const clsString text = call.Text(0);
    const char separator = call.FirstChar(1);
    if (call.Number(2) == 0) call.Parser.Reset();
    int pairs = 0;
    for (int position = 0; position >= 0 && position < text.Size(); pairs++) {
        const clsString name = text.NextWord('=', position, true);
        const clsString value = position >= 0 ? text.NextWord(separator, position, true) : clsString();
        if (!name.IsEmpty()) call.Parser.SetVariable(name, clsValue(value));
    }
    return call.ResultNumber(pairs);
}

int Swap(clsFunctionCall& call) {
    if (call.Count != 2) return call.Fail(ErrorArgumentCount);
    const clsString name = call.Text(0);
    clsValue old;
    if (!call.Parser.GetVariable(name, old)) old.SetDouble(0);
    if (!name.IsEmpty()) call.Parser.SetVariable(name, clsValue(call.Text(1)));
    return call.Result(old);
}

// 1 as soon as a variable NOTA_ and one of the comma-separated words exists.
int Noted(clsFunctionCall& call) {
    if (call.Count < 1) return call.Fail(ErrorArgumentCount);
    clsValue value;
    for (int i = 0; i < call.Count; i++) {
        const clsString list = call.Text(i);
        for (int position = 0; position >= 0;)
            if (call.Parser.GetVariable(clsString("NOTA_") + list.NextWord(',', position), value))
                return call.ResultNumber(1);
    }
    return call.ResultNumber(0);
}

} // namespace

bool RunVariableFunction(clsFunctionCall& call, int& code) {
    switch (call.Code) {
    case FunctionFV:
    case FunctionFVAR:
    case FunctionFVARN:
        code = Look(call);
        return true;
    case FunctionFVAROK:
    case FunctionFVARKO:
        code = Exists(call);
        return true;
    case FunctionFVARNAMES:
        code = Names(call);
        return true;
    case FunctionFSET:
        code = Set(call);
        return true;
    case FunctionFSETVARS:
        code = SetFromText(call);
        return true;
    case FunctionFSWAP:
        code = Swap(call);
        return true;
    case FunctionFSETOPT:
        if (call.Count != 2) {
            code = call.Fail(ErrorArgumentCount);
        } else {
            call.Parser.SetOption(call.Text(0), call.Text(1));
            code = call.ResultText(call.Text(1));
        }
        return true;
    case FunctionFGETOPT:
        code = call.Count != 1 ? call.Fail(ErrorArgumentCount)
                               : call.ResultText(call.Parser.Options.GetValue(call.Text(0)));
        return true;
    case FunctionFNOTA:
        code = Noted(call);
        return true;
    default:
        return false;
    }
}

} // namespace velmora
