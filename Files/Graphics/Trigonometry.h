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
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

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

// Minimax polynomials for -pi/4 .. pi/4: the sine by three odd terms after x, the cosine by four even ones after 1. The
// order of their operations is fixed: it decides the last bits.
constexpr double SINE_3 = -0x1.555545995A603p-3, SINE_5 = 0x1.1107605230BC4p-7, SINE_7 = -0x1.994EB3774CF24p-13;
constexpr double COSINE_2 = -0x1.FFFFFFD0C621Cp-2, COSINE_4 = 0x1.55553E1068F19p-5;
constexpr double COSINE_6 = -0x1.6C087E89A359Dp-10, COSINE_8 = 0x1.99343027BF8C3p-16;

#if defined(__SSE2__)

// Both have the same operations from x^3 and x^4 on: two lanes, the sine in the first.
inline SineCosine PolynomialsOf(double x)
{
    const double x2 = x * x;
    const __m128d square = _mm_set1_pd(x2);
    const __m128d power = _mm_mul_pd(_mm_setr_pd(x, x2), square);
    const __m128d near =
        _mm_add_pd(_mm_setr_pd(x, 1.0 + x2 * COSINE_2), _mm_mul_pd(power, _mm_setr_pd(SINE_3, COSINE_4)));
    const __m128d far = _mm_add_pd(_mm_setr_pd(SINE_5, COSINE_6), _mm_mul_pd(square, _mm_setr_pd(SINE_7, COSINE_8)));
    const __m128 both = _mm_cvtpd_ps(_mm_add_pd(near, _mm_mul_pd(_mm_mul_pd(power, square), far)));
    return {_mm_cvtss_f32(both), _mm_cvtss_f32(_mm_shuffle_ps(both, both, 1))};
}

#else

inline SineCosine PolynomialsOf(double x)
{
    const double x2 = x * x;
    const double x3 = x * x2;
    const double x4 = x2 * x2;
    const double sine = (x + x3 * SINE_3) + x2 * x3 * (SINE_5 + x2 * SINE_7);
    const double cosine = ((1.0 + x2 * COSINE_2) + x4 * COSINE_4) + x4 * x2 * (COSINE_6 + x2 * COSINE_8);
    return {static_cast<float>(sine), static_cast<float>(cosine)};
}

#endif

inline SineCosine SinCosOf(QuarterTurns turns)
{
    const SineCosine of = PolynomialsOf(turns.remainder);
    switch (turns.quarter % 4)
    {
    case 0: return of;
    case 1: return {of.cosine, -of.sine};
    case 2: return {-of.sine, -of.cosine};
    default: return {-of.cosine, of.sine};
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
