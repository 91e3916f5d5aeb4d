// Values and logic: picking, joining and testing arguments. No function short-cuts: every argument has
// been evaluated before the function runs.
#include <algorithm>

#include "formula/clsfunctioncall.h"
#include "formula/functiontable.h"

namespace velmora {

namespace {

int Pick(clsFunctionCall& call) {
    const int index = call.Int(0);
    return call.ResultText(index >= 1 && index < call.Count ? call.Text(index) : clsString());
}

// The text of an argument joined to those of the ones after it.
int Join(clsFunctionCall& call, int first, const clsString& separator) {
    clsString text;
    for (int i = first; i < call.Count; i++) {
        if (i > first) text += separator;
        text += call.Text(i);
    }
    return call.ResultText(text);
}

int ValueOfFE(clsFunctionCall& call) {
    if (call.Count != 1) return call.Fail(ErrorFEParameters);
    clsValue value;
    if (!call.Parser.GetVariable(clsString("FE_") + call.Text(0), value)) return call.Fail(ErrorInFE);
    return call.Result(value);
}

bool IsNotZero(const clsValue& value) {
    return value.ToDouble() != 0;
}

// AND, OR and NOT over the numbers of all arguments: 1 or 0, as a number.
int Logic(clsFunctionCall& call) {
    if (call.Count < 1) return call.Fail(ErrorArgumentCount);
    const clsValue* begin = call.Arguments;
    const clsValue* end = begin + call.Count;
    bool result;
    if (call.Code == FunctionAND)
        result = std::all_of(begin, end, IsNotZero);
    else if (call.Code == FunctionOR)
        result = std::any_of(begin, end, IsNotZero);
    else
        result = std::none_of(begin, end, IsNotZero);
    return call.ResultNumber(result ? 1 : 0);
}

// MIN, MAX and AVG, written as text.
int Statistic(clsFunctionCall& call) {
    if (call.Count < 1) {
        if (call.Code == FunctionAVG) return call.ResultText(clsString());
        return call.Fail(ErrorArgumentCount);
    }
    double result = call.Number(0), sum = 0;
    for (int i = 0; i < call.Count; i++) {
        const double number = call.Number(i);
        sum += number;
        if (call.Code == FunctionMIN ? number < result : number > result) result = number;
    }
    if (call.Code == FunctionAVG) result = sum / call.Count;
    return call.ResultText(clsString().FromDouble(result, -1));
}

} // namespace

bool RunValueFunction(clsFunctionCall& call, int& code) {
    switch (call.Code) {
    case FunctionFP:
        code = Pick(call);
        return true;
    case FunctionFN:
        code = call.ResultNumber(call.Count > 0 ? call.Number(0) : 0);
        return true;
    case FunctionFE:
        code = ValueOfFE(call);
        return true;
    case FunctionFQ:
        code = call.Count != 1 ? call.Fail(ErrorFEParameters) : call.ResultText(call.Text(0).Quote('\''));
        return true;
    case FunctionFS:
        code = call.Count < 1 ? call.Fail(ErrorArgumentCount) : Join(call, 0, clsString());
        return true;
    case FunctionFSS:
        code = call.Count < 2 ? call.Fail(ErrorArgumentCount) : Join(call, 1, call.Text(0));
        return true;
    default:
        return false;
    }
}

bool RunLogicFunction(clsFunctionCall& call, int& code) {
    switch (call.Code) {
    case FunctionIF:
        code = call.Count != 3 ? call.Fail(ErrorArgumentCount)
                               : call.Result(call.At(IsNotZero(call.At(0)) ? 1 : 2));
        return true;
    case FunctionAND:
    case FunctionOR:
    case FunctionNOT:
        code = Logic(call);
        return true;
    case FunctionNEG:
        code =
            call.Count < 1 ? call.Fail(ErrorArgumentCount) : call.ResultNumber(-call.Number(call.Count - 1));
        return true;
    case FunctionMIN:
    case FunctionMAX:
    case FunctionAVG:
        code = Statistic(call);
        return true;
    default:
        return false;
    }
}

} // namespace velmora
