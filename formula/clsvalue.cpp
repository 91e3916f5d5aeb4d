#include "formula/clsvalue.h"

#include <cmath>

#include "nuvobase/clsvariant.h"

namespace velmora {

void clsValue::SetText(const clsString& text, int32_t type) {
    Type = type;
    Text = text;
    Real = 0;
    Whole = 0;
}

void clsValue::SetDouble(double value) {
    Type = TypeDouble;
    Text.Clear();
    Real = value;
    Whole = Truncate(value);
}

void clsValue::SetInteger(uint64_t value) {
    Type = TypeInteger;
    Text.Clear();
    Real = 0;
    Whole = value;
}

void clsValue::SetError(int32_t position) {
    Type = TypeError;
    Text.Clear();
    ErrorPos = position;
}

clsString clsValue::ToText() const {
    clsString text;
    switch (Type) {
    case TypeDouble:
        return text.FromDouble(Real, -1);
    case TypeInteger:
        return text.FromUInt(Whole);
    default:
        return Text;
    }
}

double clsValue::ToDouble() const {
    switch (Type) {
    case TypeDouble:
        return Real;
    case TypeInteger:
        return double(Whole);
    case TypeError:
        return 0;
    default:
        return Text.ToDouble(0);
    }
}

uint64_t clsValue::ToWhole() const {
    switch (Type) {
    case TypeDouble:
    case TypeInteger:
        return Whole;
    case TypeError:
        return 0;
    default:
        return Text.ToUInt64();
    }
}

int32_t clsValue::ToInt() const {
    return int32_t(Truncate(ToDouble()));
}

uint64_t clsValue::Truncate(double value) {
    constexpr double TwoTo63 = 9223372036854775808.0;
    if (std::isnan(value)) return 0;
    if (value >= TwoTo63) return nuvobase::NumberCast<uint64_t>(value);
    return uint64_t(nuvobase::NumberCast<int64_t>(value));
}

} // namespace velmora
