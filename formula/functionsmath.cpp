// Arithmetic, rounding and currency text. Results are numbers unless said otherwise.
#include <cmath>

#include "formula/clsfunctioncall.h"
#include "formula/functiontable.h"

namespace velmora {

namespace {

constexpr double Pi = 3.141592653589793;
constexpr int MaxRoundDigits = 10;
// A fraction this close below one half already counts as one half, so that 2.345 scaled to 234.49999999999997
// still rounds up.
constexpr double HalfTolerance = 1e-9;
constexpr int CentsPerUnit = 100;
constexpr int GroupDigits = 3;

int OneArgument(clsFunctionCall& call) {
    if (call.Count != 1) return call.Fail(ErrorArgumentCount);
    const double x = call.Number(0);
    switch (call.Code) {
    case FunctionFABS:
        return call.ResultNumber(std::fabs(x));
    case FunctionFSIN:
        return call.ResultNumber(std::sin(x));
    case FunctionFCOS:
        return call.ResultNumber(std::cos(x));
    case FunctionFTAN:
        return call.ResultNumber(std::tan(x));
    case FunctionFASIN:
        return call.ResultNumber(std::asin(x));
    case FunctionFACOS:
        return call.ResultNumber(std::acos(x));
    case FunctionFATAN:
        return call.ResultNumber(std::atan(x));
    case FunctionFRAD:
        return call.ResultNumber(x * Pi / 180);
    case FunctionFDEG:
        return call.ResultNumber(x * 180 / Pi);
    default: // FSQR
        if (x < 0) return call.Fail(ErrorNegativeRoot);
        return call.ResultNumber(std::sqrt(x));
    }
}

// Mode -1 rounds down, 1 up, 0 half away from zero; any other mode gives 0.
double IntegralPart(double x, int mode) {
    switch (mode) {
    case -1:
        return std::floor(x);
    case 1:
        return std::ceil(x);
    case 0:
        return std::trunc(x + std::fmod(x, 1));
    default:
        return 0;
    }
}

int Integral(clsFunctionCall& call) {
    if (call.CountOutside(1, 2)) return call.Fail(ErrorArgumentCount);
    const double x = call.Number(0);
    if (call.Code == FunctionFROUND && call.Count == 2) {
        const double step = call.Number(1);
        if (step == 0) return call.Fail(ErrorDivisionByZero);
        return call.ResultNumber(x - std::fmod(x, step));
    }
    return call.ResultNumber(IntegralPart(x, call.Count == 2 ? call.Int(1) : 0));
}

int Decimals(clsFunctionCall& call) {
    if (call.Count != 2) return call.Fail(ErrorArgumentCount);
    const int digits = call.Int(1);
    if (digits < 0 || digits > MaxRoundDigits) return call.Fail(ErrorParameter2);
    const double scale = std::pow(10.0, digits);
    double x = call.Number(0) * scale;
    if (call.Code == FunctionROUNDUP) {
        x = std::ceil(x);
    } else if (call.Code == FunctionROUNDDOWN) {
        x = std::floor(x);
    } else {
        const double fraction = std::fmod(x, 1);
        if (fraction >= 0.5 - HalfTolerance)
            x += 1;
        else if (fraction <= -0.5 + HalfTolerance)
            x -= 1;
        x -= fraction;
    }
    return call.ResultNumber(x / scale);
}

int Distance(clsFunctionCall& call) {
    if (call.Count != 6) return call.Fail(ErrorArgumentCount);
    const double dx = call.Number(3) - call.Number(0), dy = call.Number(4) - call.Number(1),
                 dz = call.Number(5) - call.Number(2);
    return call.ResultNumber(std::sqrt(dx * dx + dy * dy + dz * dz));
}

// An amount with two decimals: the decimal mark, and groups of three digits with the other mark.
int Currency(clsFunctionCall& call) {
    if (call.Count < 1) return call.Fail(ErrorArgumentCount);
    const bool grouping = call.Count < 2 || call.Number(1) == 0;
    const int mode = call.Count > 2 ? call.Int(2) : 0;
    const bool comma = mode == 1 || (mode != 2 && call.Parser.DecimalComma);
    const double cents = std::round(call.Number(0) * CentsPerUnit); // halves away from zero
    uint64_t amount = clsValue::Truncate(std::fabs(cents));
    clsString digits;
    digits.FromUInt(amount % CentsPerUnit, false, 10, 2);
    digits.Insert(0, comma ? ',' : '.');
    amount /= CentsPerUnit;
    for (int group = 0;; group++) {
        clsString part;
        part.FromUInt(amount % 1000, false, 10, amount >= 1000 ? GroupDigits : 1);
        if (group > 0 && grouping) part += comma ? '.' : ',';
        digits.Insert(0, part.Text());
        amount /= 1000;
        if (amount == 0) break;
    }
    if (cents < 0) digits.Insert(0, '-');
    return call.ResultText(digits);
}

} // namespace

bool RunMathFunction(clsFunctionCall& call, int& code) {
    switch (call.Code) {
    case FunctionFABS:
    case FunctionFSIN:
    case FunctionFCOS:
    case FunctionFTAN:
    case FunctionFASIN:
    case FunctionFACOS:
    case FunctionFATAN:
    case FunctionFRAD:
    case FunctionFDEG:
    case FunctionFSQR:
        code = OneArgument(call);
        return true;
    case FunctionFINT:
    case FunctionFROUND:
        code = Integral(call);
        return true;
    case FunctionFMOD:
        code = call.Count != 2       ? call.Fail(ErrorArgumentCount)
               : call.Number(1) == 0 ? call.Fail(ErrorDivisionByZero)
                                     : call.ResultNumber(std::fmod(call.Number(0), call.Number(1)));
        return true;
    case FunctionFDIST:
        code = Distance(call);
        return true;
    case FunctionROUND:
    case FunctionROUNDUP:
    case FunctionROUNDDOWN:
        code = Decimals(call);
        return true;
    case FunctionFCURR:
        code = Currency(call);
        return true;
    case FunctionFDPIC:
        if (call.Count != 1) {
            code = call.Fail(ErrorArgumentCount);
        } else {
            call.Parser.DecimalComma = call.Number(0) != 0;
            code = call.ResultNumber(call.Number(0));
        }
        return true;
    default:
        return false;
    }
}

} // namespace velmora
