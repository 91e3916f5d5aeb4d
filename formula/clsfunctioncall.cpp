#include "formula/clsfunctioncall.h"

namespace velmora {

clsFunctionCall::clsFunctionCall(clsParser& parser, const clsOperatorEntry& entry)
    : Parser(parser), Code(entry.Code), Position(entry.Pos), Count(parser.State->Values.Count - entry.Depth),
      Arguments(parser.State->Values.Values + entry.Depth) {}

bool clsFunctionCall::IsOneByte(int index) const {
    const clsString text = Text(index);
    return text.Size() == 1 && *text.At(0) != 0;
}

int clsFunctionCall::Result(const clsValue& value) {
    const clsValue copy = value; // value may be one of the arguments
    Arguments[0] = copy;
    Parser.State->Values.Count = int32_t(Arguments - Parser.State->Values.Values) + 1;
    return ErrorNone;
}

int clsFunctionCall::ResultText(const clsString& text) {
    return Result(clsValue(text));
}

int clsFunctionCall::ResultNumber(double value) {
    clsValue result;
    result.SetDouble(value);
    return Result(result);
}

int clsFunctionCall::ResultInteger(uint64_t value) {
    clsValue result;
    result.SetInteger(value);
    return Result(result);
}

int clsFunctionCall::ResultError() {
    clsValue result;
    result.SetError(Position);
    return Result(result);
}

} // namespace velmora
