#pragma once
// Sine, cosine and arc cosine in float, the same bits on every machine.
//
// C libraries differ in the last bit, and matrices and saved states show it. These answer what the C library of the
// module's home, 32-bit ARM Linux, answers for each of the 2^32 floats; Tools/Trigonometry_Proof.cpp shows it. Only
// additions, multiplications, divisions and roots are used, which every processor rounds alike, and never on a denormal
// number, so that a processor that takes those for zero answers the same.
//
// A NaN gives a NaN, whatever its sign and payload; whose sign and payload the answer has is not promised.

#include "Platform/Strict_Float.h"

#include <cmath>
#include <cstdint>
#include <cstring>

struct SineCosine
{
    float sine, cosine;
};

// Both of an angle in radians, of any size, within 0.56 of a unit in the last place; infinities give NaN. The sine of
// minus zero is minus zero.
SineCosine GR_SinCos(float _radians);
float GR_Sin(float _radians);
float GR_Cos(float _radians);

// 0 .. pi in radians; NaN beyond -1 .. 1.
float GR_Acos(float _cosine);

// ---- how: an angle is turned back by whole quarter turns; two polynomials in double serve what is left ----

// The angle is remainder + quarter * pi/2, with a remainder of an eighth of a turn at most. Quarters count modulo 4.
struct QuarterTurns
{
    double remainder;
    uint32_t quarter;
};

// Of an angle of 120 and more: its product with a long 2/pi. Not a number for infinities and NaN.
QuarterTurns ReduceLargeAngle(float radians);

// Of an angle below 120: one multiple of pi/2 in double is exact enough. A sum about 1.5 * 2^52 has no digits behind
// the point: it rounds to the nearest whole number, which stands in its last bits.
inline QuarterTurns ReduceAngle(float radians)
{
    constexpr double toWholeNumbers = 0x1.8p52;
    const double angle = radians;
    const double sum = angle * 0x1.45F306DC9C883p-1 + toWholeNumbers;
    uint64_t bits;
    std::memcpy(&bits, &sum, sizeof bits);
    return {angle - (sum - toWholeNumbers) * 0x1.921FB54442D18p0, static_cast<uint32_t>(bits)};
}

// Polynomials of least error between -pi/4 and pi/4. The order of their operations is fixed, as it decides last bits.
inline double SinePolynomial(double x)
{
    const double x2 = x * x;
    const double x3 = x * x2;
    return (x + x3 * -0x1.555545995A603p-3) + x2 * x3 * (0x1.1107605230BC4p-7 + x2 * -0x1.994EB3774CF24p-13);
}

inline double CosinePolynomial(double x)
{
    const double x2 = x * x;
    const double x4 = x2 * x2;
    return ((1.0 + x2 * -0x1.FFFFFFD0C621Cp-2) + x4 * 0x1.55553E1068F19p-5) +
           x4 * x2 * (-0x1.6C087E89A359Dp-10 + x2 * 0x1.99343027BF8C3p-16);
}

inline SineCosine SinCosOf(QuarterTurns turns)
{
    const float sine = static_cast<float>(SinePolynomial(turns.remainder));
    const float cosine = static_cast<float>(CosinePolynomial(turns.remainder));
    switch (turns.quarter % 4)
    {
    case 0: return {sine, cosine};
    case 1: return {cosine, -sine};
    case 2: return {-sine, -cosine};
    default: return {-cosine, sine};
    }
}

inline QuarterTurns TurnsOf(float radians)
{
    const float size = fabsf(radians);
    if (size < 0.75f)
        return {radians, 0};
    return size < 120.0f ? ReduceAngle(radians) : ReduceLargeAngle(radians);
}

inline SineCosine GR_SinCos(float _radians)
{
    if (fabsf(_radians) < 0x1p-12f) // as most views are
        return {_radians, 1.0f};
    return SinCosOf(TurnsOf(_radians));
}

inline float GR_Sin(float _radians) { return GR_SinCos(_radians).sine; }

inline float GR_Cos(float _radians) { return GR_SinCos(_radians).cosine; }
