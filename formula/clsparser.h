// The formula language: Compute reads a formula once, from left to right, with a stack of operators and a
// stack of values, and runs each operator or function as soon as a lower-ranking operator pops it. The
// result is text; failures are codes with a position, never exceptions.
#pragma once

#include <cstdint>

#include "archive/clsarchivio.h"
#include "formula/clsexpressionstate.h"
#include "formula/clsvariabili.h"
#include "formula/parsercodes.h"
#include "nuvobase/clscollection.h"
#include "nuvobase/clsstrings.h"

namespace velmora {

class clsParser {
public:
    // Evaluations nested in one another by macros, blocks and lists; one deeper fails with code 18.
    static constexpr int MaxNestedStates = 32;

    // Without an archive a parser reads single values but runs no operator (code 7).
    explicit clsParser(clsArchivio* archive);
    virtual ~clsParser();
    clsParser(const clsParser&) = delete;
    clsParser& operator=(const clsParser&) = delete;

    // Evaluates formula into result, replaced by its translation when translate is set and one exists.
    // Returns the error code, 0 for success. Throws when result is formula itself.
    int Compute(const clsString& formula, clsString& result, bool translate = false);
    // Compute, in a state of its own with newState; code 18 when states are already nested MaxNestedStates
    // deep.
    int ComputeNested(const clsString& formula, clsString& result, bool translate, bool newState);
    // Runs the lines of a script; what it prints is added to output. Returns the code of the last formula
    // evaluated, 18 when states are nested too deep or the scripts run too many lines.
    int RunScript(const nuvobase::clsStrings& lines, nuvobase::clsStrings& output);
    // The code of the last evaluation; text gets its message, with the formula from the error on.
    int GetErrorText(clsString& text) const;
    // Records an error in the current state; returns code.
    int SetError(int code, int position);

    void SetVariable(const clsString& name, const clsValue& value); // in the current scope
    void SetGlobal(const clsString& name, const clsValue& value);   // in the first scope
    // The innermost scope that holds name, with its position there in index; null when none does.
    clsVariabili* FindVariable(const clsString& name, int& index) const;
    // Copies the value; false when there is no such variable.
    bool GetVariable(const clsString& name, clsValue& value) const;
    void PushScope();
    void PopScope(); // the first scope stays
    // Drops every scope, then opens the two first ones with the predefined variables.
    void Reset();
    void PushState();
    void PopState();
    // Stores the option; FT_FIELD also names the value column of the table functions.
    void SetOption(const clsString& name, const clsString& value);

    bool DecimalComma = false;
    int32_t StateIndex = -1;
    clsExpressionState* State = nullptr;
    nuvobase::clsPCollection<clsExpressionState> States;
    clsArchivio* Archive;
    nuvobase::clsStrings Macros;
    nuvobase::clsStrings Translations; // result text to its replacement
    int32_t ScopeIndex = -1;
    nuvobase::clsPCollection<clsVariabili> Scopes;
    clsString ValueField = "@0";
    nuvobase::clsStrings Options;
    nuvobase::clsCollection<int32_t> Functions; // upper-case name to code, sorted
    // Lines the running scripts may still run: the outermost script sets it, the scripts that its formulas
    // start share it, so that nested loops stay bounded as well.
    int32_t ScriptLinesLeft = 0;
    int32_t ScriptDepth = 0;

private:
    // The outermost scope with CR, LF, CRLF, TAB, NULL and the rows of ZSYSVARS, and a second one above it.
    void OpenFirstScopes();
    // The reading loop of Compute over the working copy; the code of the first failure.
    int Evaluate();
    // Pushes an operator entry; code 2 when the stack is full.
    int PushOperator(int32_t code, int32_t rank, int32_t position);
    // Pops and runs entries while the top ranks at least rank.
    int PopOperators(int32_t rank);
    // Reads the operand token (or string) and pushes its value.
    int PushOperand(const char* token, int position);
    // Runs a popped entry: an operator or a function.
    int Run(const clsOperatorEntry& entry);
    int RunBinary(const clsOperatorEntry& entry);
    int RunUnary(const clsOperatorEntry& entry);
    int RunFunction(const clsOperatorEntry& entry);
};

} // namespace velmora
