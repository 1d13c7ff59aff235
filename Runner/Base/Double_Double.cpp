#include "Runner/Base/Double_Double.h"

#include "Runner/Base/Bits.h"

namespace Runner
{
float RoundToFloat(DoubleDouble number)
{
    auto bits = BitsOf<uint64_t>(number.high);
    if (number.low != 0.0 && (bits & 1) == 0)
        bits = (number.low > 0.0) == (number.high > 0.0) ? bits + 1 : bits - 1;
    return static_cast<float>(BitsOf<double>(bits));
}

namespace
{
constexpr int LEAST_EXPONENT = -1022; // of a normal double
constexpr int SMALLEST_BIT = -1074;

// A result below the normal doubles is a whole number of smallest bits: round that number, once, half to even.
double ScaledToDenormal(DoubleDouble number, int exponent)
{
    const double high = std::ldexp(number.high, exponent - SMALLEST_BIT);
    const double low = std::ldexp(number.low, exponent - SMALLEST_BIT);
    double whole = std::floor(high);
    const double rest = high - whole; // exact; low is less than a quarter
    const bool isOdd = whole - 2.0 * std::floor(whole / 2.0) == 1.0;
    if (rest > 0.5 || (rest == 0.5 && (low > 0.0 || (low == 0.0 && isOdd))))
        whole += 1.0;
    return std::ldexp(whole, SMALLEST_BIT);
}
} // namespace

double Scaled(DoubleDouble number, int exponent)
{
    const double rounded = number.high + number.low;
    int ofNumber = 0;
    std::frexp(rounded, &ofNumber);
    if (ofNumber - 1 + exponent < LEAST_EXPONENT)
        return ScaledToDenormal(number, exponent);
    return std::ldexp(rounded, exponent);
}
} // namespace Runner
