// Running a function: its arguments are the values from the entry's depth to the top of the stack, and its
// result takes the place of the first one.
#include "formula/clsfunctioncall.h"
#include "formula/functiontable.h"

namespace velmora {

namespace {

// Row functions that do nothing here: their first argument stays as the result.
bool KeepsFirstArgument(int32_t code) {
    return (code >= FunctionFRADD && code <= FunctionFRMED) || code == FunctionFRNOZERO ||
           code == FunctionFRZERO;
}

} // namespace

int clsParser::RunFunction(const clsOperatorEntry& entry) {
    clsFunctionCall call(*this, entry);
    if (call.Count < 0) return call.Fail(ErrorArgumentCount);
    int code = ErrorNone;
    if (RunValueFunction(call, code) || RunTextFunction(call, code) || RunLogicFunction(call, code) ||
        RunMathFunction(call, code) || RunVariableFunction(call, code) || RunTableFunction(call, code) ||
        RunListFunction(call, code) || RunMacroFunction(call, code))
        return code;
    if (entry.Code == FunctionFPARSE) return RunParse(call);
    if (KeepsFirstArgument(entry.Code)) return call.Count > 0 ? call.Result(call.At(0)) : ErrorNone;
    // Every name of the table is known, but not every function is built yet.
    return call.Fail(ErrorInFunction);
}

} // namespace velmora
