#include "nuvobase/clscurrency.h"

#include <cmath>

namespace nuvobase {

namespace {

const uint64_t PowersOfTen[clsCurrency::MaxDecimals + 1] = {
    1ULL,
    10ULL,
    100ULL,
    1000ULL,
    10000ULL,
    100000ULL,
    1000000ULL,
    10000000ULL,
    100000000ULL,
    1000000000ULL,
    10000000000ULL,
    100000000000ULL,
    1000000000000ULL,
    10000000000000ULL,
    100000000000000ULL,
    1000000000000000ULL,
    10000000000000000ULL,
    100000000000000000ULL,
    1000000000000000000ULL,
    10000000000000000000ULL,
};

// Truncates toward zero, clamping to the 64-bit range (NaN gives 0).
int64_t SaturatingTruncate(double value) {
    if (!(value == value)) return 0;
    if (value >= 9223372036854775807.0) return INT64_MAX;
    if (value <= -9223372036854775808.0) return INT64_MIN;
    return static_cast<int64_t>(value);
}

} // namespace

uint64_t clsCurrency::PowerOfTen(int exponent) {
    return exponent >= 0 && exponent <= MaxDecimals ? PowersOfTen[exponent] : 0;
}

clsCurrency::clsCurrency(double amount, int decimals) : Decimals(decimals) {
    if (!HasValidScale()) return;
    double product = amount * static_cast<double>(PowersOfTen[decimals]);
    Value = SaturatingTruncate(product > 0 ? product + 0.5 : product - 0.5);
}

double clsCurrency::ToDouble() const {
    if (!HasValidScale()) return 0;
    return static_cast<double>(Value) / static_cast<double>(PowersOfTen[Decimals]);
}

clsString clsCurrency::Text(bool comma, bool group) const {
    if (!HasValidScale()) return clsString("0");
    char area[128];
    for (char& c : area) c = ' ';
    const char mark = comma ? ',' : '.';
    const char groupMark = comma ? '.' : ',';
    // The magnitude as unsigned, so that the most negative value has one too.
    uint64_t rest = Value < 0 ? 0 - static_cast<uint64_t>(Value) : static_cast<uint64_t>(Value);
    int at = sizeof(area);
    for (int i = 0; i < Decimals; i++) {
        area[--at] = static_cast<char>('0' + rest % 10);
        rest /= 10;
    }
    if (Decimals > 0) area[--at] = mark;
    int digits = 0;
    do {
        if (group && digits > 0 && digits % 3 == 0) area[--at] = groupMark;
        area[--at] = static_cast<char>('0' + rest % 10);
        rest /= 10;
        digits++;
    } while (rest != 0);
    if (Value < 0) area[--at] = '-';
    return clsString().Append(area + at, static_cast<int>(sizeof(area)) - at);
}

int clsCurrency::Compare(const clsCurrency& other) const {
    if (!HasValidScale() || !other.HasValidScale()) {
        double a = ToDouble(), b = other.ToDouble();
        return a < b ? -1 : (a > b ? 1 : 0);
    }
    // 128 bits hold any 64-bit value times 10^19, so scaling and comparing cannot overflow.
    const int scale = Decimals > other.Decimals ? Decimals : other.Decimals;
    const __int128 a = static_cast<__int128>(Value) * PowersOfTen[scale - Decimals];
    const __int128 b = static_cast<__int128>(other.Value) * PowersOfTen[scale - other.Decimals];
    return a < b ? -1 : (a > b ? 1 : 0);
}

} // namespace nuvobase
