#include "formula/clsparser.h"

#include "formula/functiontable.h"

namespace velmora {

namespace {

constexpr const char* ValueFieldOption = "FT_FIELD";

} // namespace

clsParser::clsParser(clsArchivio* archive) : Archive(archive) {
    OpenFirstScopes();
    PushState();
    for (const FunctionName& function : FunctionNames)
        Functions.Add(clsString(function.Name), new int32_t(function.Code));
    Functions.Sort();
    SetOption(ValueFieldOption, ValueField);
}

clsParser::~clsParser() = default;

void clsParser::OpenFirstScopes() {
    PushScope();
    if (Archive) {
        clsValue value;
        const struct {
            const char* Name;
            const char* Text;
        } predefined[] = {{"CR", "\r"}, {"LF", "\n"}, {"CRLF", "\r\n"}, {"TAB", "\t"}, {"NULL", ""}};
        for (const auto& variable : predefined) {
            value.SetText(clsString(variable.Text));
            SetVariable(clsString(variable.Name), value);
        }
        const int rows = Archive->OpenRowSet("select * from ZSYSVARS order by Name", 0);
        for (; !Archive->AtEnd(rows); Archive->MoveNext(rows)) {
            value.SetText(Archive->FieldText(rows, 1));
            SetVariable(Archive->FieldText(rows, 0), value);
        }
        Archive->CloseRowSet(rows);
    }
    PushScope();
}

void clsParser::Reset() {
    Scopes.Clear();
    ScopeIndex = -1;
    OpenFirstScopes();
}

void clsParser::PushScope() {
    ScopeIndex = Scopes.Add(new clsVariabili);
}

void clsParser::PopScope() {
    if (ScopeIndex < 1) return;
    Scopes.Delete(ScopeIndex--);
}

void clsParser::PushState() {
    if (StateIndex + 1 >= States.Count) States.Add(new clsExpressionState);
    State = States.At(++StateIndex);
}

void clsParser::PopState() {
    if (StateIndex > 0) State = States.At(--StateIndex);
}

void clsParser::SetVariable(const clsString& name, const clsValue& value) {
    Scopes.At(ScopeIndex)->Set(name, value);
}

void clsParser::SetGlobal(const clsString& name, const clsValue& value) {
    Scopes.At(0)->Set(name, value);
}

clsVariabili* clsParser::FindVariable(const clsString& name, int& index) const {
    clsString key = name;
    if (key.Size() >= 3 && *key.At(0) == '$' && key.Find('.', 2) >= 0) {
        key.RemoveChar('$');
        key.Insert(0, '$');
    }
    for (int scope = ScopeIndex; scope >= 0; scope--) {
        index = Scopes.At(scope)->IndexOf(key);
        if (index >= 0) return Scopes.At(scope);
    }
    index = -1;
    return nullptr;
}

bool clsParser::GetVariable(const clsString& name, clsValue& value) const {
    int index;
    const clsVariabili* scope = FindVariable(name, index);
    if (!scope) return false;
    value = *scope->At(index);
    return true;
}

void clsParser::SetOption(const clsString& name, const clsString& value) {
    Options.SetValue(name, value);
    Options.Sort();
    if (name == ValueFieldOption) ValueField = value;
}

int clsParser::SetError(int code, int position) {
    State->Error = code;
    State->ErrorPos = position;
    return code;
}

int clsParser::GetErrorText(clsString& text) const {
    const int code = State->Error;
    text = ErrorText(code);
    if (code != ErrorNone) text += clsString(": ") + State->Source.From(State->ErrorPos);
    return code;
}

int clsParser::ComputeNested(const clsString& formula, clsString& result, bool translate, bool newState) {
    if (!newState) return Compute(formula, result, translate);
    if (StateIndex + 1 >= MaxNestedStates) return SetError(ErrorInMacro, 0);
    PushState();
    const int code = Compute(formula, result, translate);
    PopState();
    return code;
}

} // namespace velmora
