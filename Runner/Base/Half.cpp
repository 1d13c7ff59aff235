#include "Runner/Base/Half.h"

#include "Runner/Base/Bits.h"

namespace Runner
{
uint16_t HalfFromReal(double number)
{
    constexpr uint64_t INFINITE = 0x7C00;
    const uint64_t bits = BitsOf<uint64_t>(number);
    const uint64_t sign = (bits >> 48) & 0x8000;
    const int exponent = static_cast<int>((bits >> 52) & 0x7FF) - 1023;
    if (number != number)
        return static_cast<uint16_t>(sign | INFINITE | 0x200);
    if (exponent > 15)
        return static_cast<uint16_t>(sign | INFINITE);
    // The number is mantissa * 2^(exponent - 52). A normal half keeps the upper eleven of the mantissa's 53 bits. Below
    // 2^-14 halves are subnormal: their exponent stays at its lowest value, and fewer bits are kept.
    const int dropped = exponent >= -14 ? 42 : 42 - 14 - exponent;
    if (dropped > 53)
        return static_cast<uint16_t>(sign);
    const uint64_t mantissa = (bits & ((UINT64_C(1) << 52) - 1)) | (UINT64_C(1) << 52);
    const uint64_t half = UINT64_C(1) << (dropped - 1);
    const uint64_t rest = mantissa & (2 * half - 1);
    uint64_t result = mantissa >> dropped;
    if (rest > half || (rest == half && (result & 1) != 0))
        ++result;
    // The leading bit, which is kept, adds one to the exponent field. A carry out of the fraction adds another one, up
    // to infinity.
    if (exponent >= -14)
        result += static_cast<uint64_t>(exponent + 14) << 10;
    return static_cast<uint16_t>(sign | result);
}

double RealFromHalf(uint16_t half)
{
    const uint64_t sign = static_cast<uint64_t>(half & 0x8000u) << 48;
    const uint64_t exponent = (half >> 10) & 0x1Fu;
    const uint64_t fraction = half & 0x3FFu;
    if (exponent == 0) // zero or subnormal: a multiple of 2^-24, without a leading bit
        return (sign != 0 ? -1.0 : 1.0) * static_cast<double>(fraction) / 16777216.0;
    const uint64_t widened = exponent == 0x1F ? 0x7FF : exponent + (1023 - 15);
    return BitsOf<double>(sign | (widened << 52) | (fraction << 42));
}
} // namespace Runner
