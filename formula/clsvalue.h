// One value of the formula language: an entry of the value stack and the content of a variable.
#pragma once

#include <cstdint>

#include "nuvobase/clsstring.h"

namespace velmora {

using nuvobase::clsString;

class clsValue {
public:
    enum Types : int32_t {
        TypeText = 0,
        TypeDouble = 1,
        TypeInteger = 2, // unsigned 64 bits
        TypeName = 4,    // a token with a colon, such as the range A1:B2, kept unevaluated
        TypeError = 5,
    };

    int32_t Type = TypeText;
    clsString Text;       // types 0 and 4
    double Real = 0;      // type 1
    uint64_t Whole = 0;   // type 2; a double keeps its truncation here
    int32_t ErrorPos = 0; // type 5: where in the formula the error arose

    clsValue() = default;
    explicit clsValue(const clsString& text) { SetText(text); }

    void SetText(const clsString& text, int32_t type = TypeText);
    void SetDouble(double value);
    void SetInteger(uint64_t value);
    void SetError(int32_t position);

    bool IsError() const { return Type == TypeError; }
    // The text: a double by FromDouble(value, -1), an integer in decimal, anything else its text.
    clsString ToText() const;
    // The number: text read by ToDouble with fallback 0, an error as 0.
    double ToDouble() const;
    // The 64-bit form: text by ToUInt64, a double truncated, an integer as it is.
    uint64_t ToWhole() const;
    // The double truncated, then cut to 32 bits.
    int32_t ToInt() const;

    // A double truncated to 64 bits: the two's complement of a negative value, the unsigned value from 2^63
    // up, the nearest end for values beyond, 0 for NaN.
    static uint64_t Truncate(double value);
};

} // namespace velmora
