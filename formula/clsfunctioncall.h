// One run of a built-in function: its arguments A0.. on the value stack, their conversions, and the ways
// it ends: a result that takes the place of A0, an error value there, or a code that ends the evaluation.
#pragma once

#include <cstdint>

#include "formula/clsparser.h"

namespace velmora {

class clsFunctionCall {
public:
    clsFunctionCall(clsParser& parser, const clsOperatorEntry& entry);

    clsParser& Parser;
    const int32_t Code;
    const int32_t Position;
    const int Count; // ARGC
    clsValue* const Arguments;

    const clsValue& At(int index) const { return Arguments[index]; }
    clsString Text(int index) const { return Arguments[index].ToText(); }
    double Number(int index) const { return Arguments[index].ToDouble(); }
    int32_t Int(int index) const { return Arguments[index].ToInt(); }
    uint64_t Whole(int index) const { return Arguments[index].ToWhole(); }
    // The first character of an argument's text, the separator of the list functions; 0 for empty text.
    char FirstChar(int index) const { return *Text(index).At(0); }
    // True when the argument's text is one byte other than NUL.
    bool IsOneByte(int index) const;

    // Each replaces A0 and pops the other arguments; all return 0.
    int Result(const clsValue& value);
    int ResultText(const clsString& text);
    int ResultNumber(double value);
    int ResultInteger(uint64_t value);
    int ResultError();
    // A code that ends the evaluation at the function.
    int Fail(int code) const { return Parser.SetError(code, Position); }
    // Code 8 unless ARGC lies in low..high.
    bool CountOutside(int low, int high) const { return Count < low || Count > high; }
};

// The groups of functions. Each runs the call when the code is one of its own and returns the code of the
// run through code; false when the code belongs to another group.
bool RunValueFunction(clsFunctionCall& call, int& code);
bool RunTextFunction(clsFunctionCall& call, int& code);
bool RunLogicFunction(clsFunctionCall& call, int& code);
bool RunMathFunction(clsFunctionCall& call, int& code);
bool RunVariableFunction(clsFunctionCall& call, int& code);
bool RunTableFunction(clsFunctionCall& call, int& code);
bool RunListFunction(clsFunctionCall& call, int& code);
bool RunMacroFunction(clsFunctionCall& call, int& code);
// FPARSE.
int RunParse(clsFunctionCall& call);

} // namespace velmora
