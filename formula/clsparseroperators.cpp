// What the operators do to the values on the stack.
#include <cmath>

#include "formula/clsparser.h"

namespace velmora {

namespace {

bool IsComparison(int32_t code) {
    switch (code) {
    case '=':
    case '<':
    case '>':
    case CodeLessEqual:
    case CodeGreaterEqual:
    case CodeNotEqual:
    case '#':
    case CodeNotContains:
    case CodeStartsWith:
    case CodeEndsWith:
    case CodeMatches:
        return true;
    default:
        return false;
    }
}

// The text tests of the "#" family: 1 or 0.
bool TextTest(int32_t code, const clsValue& left, const clsValue& right) {
    const clsString text = left.ToText(), other = right.ToText();
    switch (code) {
    case '#':
        return text.Compare(other, clsString::CompareContains);
    case CodeNotContains:
        return !text.Compare(other, clsString::CompareContains);
    case CodeStartsWith:
        return text.Compare(other, clsString::CompareStartsWith);
    case CodeEndsWith:
        return text.Compare(other, clsString::CompareEndsWith);
    default:
        return text.Compare(other, clsString::ComparePattern);
    }
}

// Text against text ignoring ASCII case, an integer against the other's 64 bits, anything else as doubles.
int Order(const clsValue& left, const clsValue& right) {
    if (left.Type == clsValue::TypeText || left.Type == clsValue::TypeName)
        return left.Text.Compare(right.ToText(), clsString::CompareOrder);
    if (left.Type == clsValue::TypeInteger) {
        const uint64_t other = right.ToWhole();
        return left.Whole < other ? -1 : (left.Whole > other ? 1 : 0);
    }
    const double mine = left.ToDouble(), other = right.ToDouble();
    return mine < other ? -1 : (mine > other ? 1 : 0);
}

bool Compare(int32_t code, const clsValue& left, const clsValue& right) {
    if (left.IsError() || right.IsError()) return false;
    if (code != '=' && code != '<' && code != '>' && code != CodeLessEqual && code != CodeGreaterEqual &&
        code != CodeNotEqual)
        return TextTest(code, left, right);
    const int order = Order(left, right);
    switch (code) {
    case '=':
        return order == 0;
    case '<':
        return order < 0;
    case '>':
        return order > 0;
    case CodeLessEqual:
        return order <= 0;
    case CodeGreaterEqual:
        return order >= 0;
    default:
        return order != 0;
    }
}

bool IsTrue(const clsValue& value) {
    return !value.IsError() &&
           (value.Type == clsValue::TypeInteger ? value.Whole != 0 : value.ToDouble() != 0);
}

// Sum, difference, product and quotient of two integers stay integers, modulo 2^64; everything else is
// worked in doubles. A zero divisor gives an error value.
void Arithmetic(int32_t code, clsValue& left, const clsValue& right, int32_t position) {
    if (code != '^' && left.Type == clsValue::TypeInteger && right.Type == clsValue::TypeInteger) {
        switch (code) {
        case '+':
            return left.SetInteger(left.Whole + right.Whole);
        case '-':
            return left.SetInteger(left.Whole - right.Whole);
        case '*':
            return left.SetInteger(left.Whole * right.Whole);
        default: // "/" and "\"
            if (right.Whole == 0) return left.SetError(position);
            return left.SetInteger(left.Whole / right.Whole);
        }
    }
    const double a = left.ToDouble(), b = right.ToDouble();
    switch (code) {
    case '+':
        return left.SetDouble(a + b);
    case '-':
        return left.SetDouble(a - b);
    case '*':
        return left.SetDouble(a * b);
    case '^':
        return left.SetDouble(std::pow(a, b));
    case '/':
        if (b == 0) return left.SetError(position);
        return left.SetDouble(a / b);
    default: // "\"
        if (b == 0) return left.SetError(position);
        return left.SetDouble(std::floor(a / b));
    }
}

void Bitwise(int32_t code, clsValue& left, const clsValue& right) {
    const uint64_t a = left.ToWhole(), b = right.ToWhole();
    left.SetInteger(code == CodeBitAnd ? a & b : (code == CodeBitOr ? a | b : a ^ b));
}

} // namespace

int clsParser::Run(const clsOperatorEntry& entry) {
    if (!Archive) return SetError(ErrorArchiveClosed, entry.Pos);
    State->Top = State->Values.Count - 1;
    State->Base = entry.Depth;
    switch (entry.Code) {
    case '(':
    case ')':
    case ',':
        return ErrorNone;
    case CodeNot:
    case CodeNeg:
    case '~':
        return RunUnary(entry);
    case CodeAnd:
    case CodeOr:
        return RunBinary(entry);
    default:
        if (entry.Code >= FirstFunctionCode) return RunFunction(entry);
        return RunBinary(entry);
    }
}

int clsParser::RunUnary(const clsOperatorEntry& entry) {
    clsStack& values = State->Values;
    const int since = values.Count - entry.Depth;
    if (entry.Code == '~' ? values.Count < 1 : since < 1) return SetError(ErrorMissingOperand, entry.Pos);
    clsValue& value = values.Values[values.Count - 1];
    if (value.IsError()) return ErrorNone;
    if (entry.Code == '~')
        value.SetInteger(~value.ToWhole());
    else if (entry.Code == CodeNeg)
        value.SetDouble(-value.ToDouble());
    else
        value.SetInteger(value.ToDouble() == 0 ? 1 : 0);
    return ErrorNone;
}

int clsParser::RunBinary(const clsOperatorEntry& entry) {
    clsStack& values = State->Values;
    const int count = values.Count, since = count - entry.Depth;
    const int32_t code = entry.Code;
    if (IsComparison(code)) {
        if (since != 1 || count < 2) return SetError(ErrorArgumentCount, entry.Pos);
    } else if (code == '-' && count == 1) {
        clsValue zero;
        zero.SetDouble(0);
        Arithmetic('-', zero, values.Values[0], entry.Pos);
        values.Values[0] = zero;
        return ErrorNone;
    } else if (code == '-' && since == 0 && count > 1) {
        clsValue& below = values.Values[count - 2];
        if (!below.IsError()) below.SetDouble(-below.ToDouble());
        return ErrorNone;
    } else if (count < 2) {
        return SetError(ErrorMissingOperand, entry.Pos);
    }

    clsValue& left = values.Values[count - 2];
    const clsValue& right = values.Values[count - 1];
    values.Count--;
    if (IsComparison(code) || code == CodeAnd || code == CodeOr) {
        bool result;
        if (code == CodeAnd)
            result = IsTrue(left) && IsTrue(right);
        else if (code == CodeOr)
            result = IsTrue(left) || IsTrue(right);
        else
            result = Compare(code, left, right);
        left.SetInteger(result ? 1 : 0);
        return ErrorNone;
    }
    if (left.IsError()) return ErrorNone;
    if (right.IsError()) {
        left = right;
        return ErrorNone;
    }
    switch (code) {
    case '&':
        left.SetText(left.ToText() + right.ToText());
        break;
    case CodeShift:
        left.SetText(clsString("?"));
        break;
    case CodeBitAnd:
    case CodeBitOr:
    case CodeBitXor:
        Bitwise(code, left, right);
        break;
    default:
        Arithmetic(code, left, right, entry.Pos);
    }
    return ErrorNone;
}

} // namespace velmora
