// Everything one evaluation works on: the working copy of the formula, the operator stack and the value
// stack. A nested evaluation takes a state of its own.
#pragma once

#include <cstdint>

#include "formula/clsstack.h"

namespace velmora {

// An operator or function waiting on the operator stack.
struct clsOperatorEntry {
    int32_t Code = 0;
    int32_t Rank = 0;
    int32_t Depth = 0; // Count of the value stack when it was pushed
    int32_t Pos = 0;   // where it stands in the formula
};

class clsExpressionState {
public:
    static constexpr int MaxOperators = 512;

    int32_t Error = 0;
    int32_t ErrorPos = 0;
    int32_t Top = 0;  // index of the top value while an operator runs
    int32_t Base = 0; // index of its first argument
    clsString Work;   // the formula, cut into tokens with NUL bytes
    clsString Source; // the formula as given, for messages
    clsOperatorEntry Operators[MaxOperators];
    int32_t OperatorCount = 0;
    clsStack Values;
};

} // namespace velmora
