#pragma once
// Sine, cosine and arc cosine in float, the same bits on every machine.
//
// C libraries differ in the last bit of these, and matrices and saved states show it. These answer for each of the 2^32
// floats what the C library of the module's home, 32-bit ARM Linux, answers; Tools/Trigonometry_Proof.cpp compares
// them. Their arithmetic is what every processor rounds alike: sums, products, quotients and a square root, to nearest.
// A denormal number is handed back as it is or lost beside a larger one, so that a processor which takes such numbers
// for zero answers the same.
//
// A NaN gives a NaN, whatever its sign and payload; the sign and payload of the answer are not promised.

#include "Platform/Strict_Float.h"

#include <cmath>
#include <cstdint>
#include <cstring>

struct SineCosine
{
    float sine, cosine;
};

// Of an angle in radians, of any size; within 0.57 of a unit in the last place. The sine of minus zero is minus zero.
// Infinities give NaN. Both together take little longer than one.
SineCosine GR_SinCos(float radians);
float GR_Sin(float radians);
float GR_Cos(float radians);

// In radians, from 0 to pi; within 0.9 of a unit in the last place. NaN beyond -1 .. 1.
float GR_Acos(float cosine);

namespace CameraModule
{
// ---- range reduction: whole quarter turns are taken off; two polynomials in double serve the remainder ----

// The angle is remainder + quarter * pi/2, the remainder between -pi/4 and pi/4. Quarters count modulo 4.
struct QuarterTurns
{
    double remainder;
    uint32_t quarter;
};

// Range reduction of an angle of 120 and more, by a long 2/pi. The remainder is NaN for infinities and NaN.
QuarterTurns ReduceLargeAngle(float radians);

constexpr double HALF_PI = 0x1.921FB54442D18p0;

// Range reduction of an angle below 120, where one multiple of pi/2 in double is exact enough. A double of about
// 1.5 * 2^52 has no digits behind its point: the sum rounds to the nearest whole number, which its last bits hold.
inline QuarterTurns ReduceAngle(float radians)
{
    constexpr double twoOverPi = 0x1.45F306DC9C883p-1, toWholeNumbers = 0x1.8p52;
    const double angle = static_cast<double>(radians);
    const double sum = angle * twoOverPi + toWholeNumbers;
    uint64_t bits;
    std::memcpy(&bits, &sum, sizeof bits);
    return {angle - (sum - toWholeNumbers) * HALF_PI, static_cast<uint32_t>(bits)};
}

// The same for an angle that is known to be so many quarter turns, either way.
inline QuarterTurns ReduceByQuarters(float radians, int quarters)
{
    const double angle = static_cast<double>(radians);
    return radians < 0.0f ? QuarterTurns{angle + quarters * HALF_PI, static_cast<uint32_t>(-quarters)}
                          : QuarterTurns{angle - quarters * HALF_PI, static_cast<uint32_t>(quarters)};
}

// Up to 225 degrees comparisons find the quarter: a branch that is foreseen does not wait for a product.
inline QuarterTurns TurnsOf(float radians)
{
    const float size = fabsf(radians);
    if (size < 0.78539816f) // pi/4
        return {static_cast<double>(radians), 0};
    if (size < 2.3561945f) // 3 pi/4
        return ReduceByQuarters(radians, 1);
    if (size < 3.9269908f) // 5 pi/4
        return ReduceByQuarters(radians, 2);
    return size < 120.0f ? ReduceAngle(radians) : ReduceLargeAngle(radians);
}

// Minimax polynomials for -pi/4 .. pi/4. The order of their operations is fixed: it decides the last bits.
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

} // namespace CameraModule

// Below 2^-12 the next terms are lost in the rounding. Angle 0 is the common case, and minus zero keeps its sign.
inline SineCosine GR_SinCos(float radians)
{
    if (fabsf(radians) < 0x1p-12f)
        return {radians, 1.0f};
    return CameraModule::SinCosOf(CameraModule::TurnsOf(radians));
}

inline float GR_Sin(float radians) { return GR_SinCos(radians).sine; }

inline float GR_Cos(float radians) { return GR_SinCos(radians).cosine; }
