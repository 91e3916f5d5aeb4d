// clsCurrency: a fixed-point amount, Value = amount * 10^Decimals.
#pragma once

#include <cstdint>

#include "nuvobase/clsstring.h"

namespace nuvobase {

class clsCurrency {
public:
    // Scales Decimals can take; a currency with another scale reads as 0.
    static constexpr int MaxDecimals = 19;

    int64_t Value = 0; // the amount times 10 to the power Decimals
    int32_t Decimals = 2;

    clsCurrency() = default;
    // Rounds half away from zero at the given scale (-2.5 -> -250 at 2 decimals).
    explicit clsCurrency(double amount, int decimals = 2);

    bool HasValidScale() const { return Decimals >= 0 && Decimals <= MaxDecimals; }
    // Value / 10^Decimals; 0 for an invalid scale.
    double ToDouble() const;
    // Exactly Decimals digits behind the mark, which is ',' with comma and '.' otherwise. With group the
    // integer digits get the other mark between every three. A leading '-' for a negative amount.
    clsString Text(bool comma = false, bool group = false) const;
    // Negative, 0 or positive after bringing both sides to the same scale.
    int Compare(const clsCurrency& other) const;

    // Exact powers of ten, 10^0 .. 10^MaxDecimals.
    static uint64_t PowerOfTen(int exponent);
};

} // namespace nuvobase
