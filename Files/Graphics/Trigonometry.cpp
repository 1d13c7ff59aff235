// Range reduction of large angles, and the arc cosine.
#include "Platform/Strict_Float.h"

#include "Files/Graphics/Trigonometry.h"

#include <cstring>
#include <limits>

namespace
{

// 2/pi in binary, 32 bits to a word; the first word stands before the point.
constexpr uint32_t TWO_OVER_PI[] = {0,           0xA2F9836Eu, 0x4E441529u, 0xFC2757D1u,
                                    0xF534DDC0u, 0xDB629599u, 0x3C439041u, 0xFE5163ABu};

// 32 bits of 2/pi from any bit on.
uint32_t TwoOverPiFrom(uint32_t bit)
{
    const uint32_t* const word = TWO_OVER_PI + bit / 32;
    return word[0] << bit % 32 | word[1] >> 1 >> (31 - bit % 32); // in two steps: one by 32 would not be defined
}

// A whole number times 2/pi, less whole turns: 64 bits of the fraction of a turn, of which the two highest count
// quarters. The bits of 2/pi before the given one make whole turns only, and so does what overflows here.
uint64_t FractionOfTurn(uint32_t number, uint32_t bit)
{
    const uint64_t wide = number;
    const uint64_t high = wide * TwoOverPiFrom(bit) << 32;
    const uint64_t middle = wide * TwoOverPiFrom(bit + 32);
    const uint64_t low = wide * TwoOverPiFrom(bit + 64) >> 32;
    return high + middle + low;
}

// (arcsin x - x) / x, as a rational function of x squared.
float ArcSineExcess(float x2)
{
    const float above =
        x2 * (1.6666667163e-01f +
              x2 * (-3.2556581497e-01f +
                    x2 * (2.0121252537e-01f +
                          x2 * (-4.0055535734e-02f + x2 * (7.9153501429e-04f + x2 * 3.4793309169e-05f)))));
    const float below = 1.0f + x2 * (-2.4033949375e+00f +
                                     x2 * (2.0209457874e+00f + x2 * (-6.8828397989e-01f + x2 * 7.7038154006e-02f)));
    return above / below;
}

// A float with the lower half of its digits cleared: its square is exact.
float UpperHalf(float number)
{
    uint32_t bits;
    std::memcpy(&bits, &number, sizeof bits);
    bits &= 0xFFFFF000u;
    std::memcpy(&number, &bits, sizeof bits);
    return number;
}

constexpr float PI_HIGH = 3.1415925026e+00f, HALF_PI_HIGH = 1.5707962513e+00f; // cut off; the rest stands apart
constexpr float HALF_PI_LOW = 7.5497894159e-08f;

// Half-angle formula for 0.5 .. 1: twice the arc sine of the root of (1 - cosine) / 2, the root in two parts.
float AcosNearOne(float cosine)
{
    const float square = (1.0f - cosine) * 0.5f;
    const float root = sqrtf(square);
    const float upper = UpperHalf(root);
    const float lower = (square - upper * upper) / (root + upper);
    return 2.0f * (upper + (ArcSineExcess(square) * root + lower));
}

// Half-angle formula for -1 .. -0.5: pi less twice the arc sine of the root of (1 + cosine) / 2.
float AcosNearMinusOne(float cosine)
{
    const float square = (1.0f + cosine) * 0.5f;
    const float root = sqrtf(square);
    return PI_HIGH - 2.0f * (root + (ArcSineExcess(square) * root - HALF_PI_LOW));
}

} // namespace

// Payne and Hanek's method: the float is a whole number of 24 bits times a power of 2, which selects the bits of 2/pi
// that matter.
CameraModule::QuarterTurns CameraModule::ReduceLargeAngle(float radians)
{
    uint32_t bits;
    std::memcpy(&bits, &radians, sizeof bits);
    const uint32_t exponent = bits >> 23 & 0xFFu;
    if (exponent == 0xFFu)
        return {std::numeric_limits<double>::quiet_NaN(), 0};
    const uint64_t fraction = FractionOfTurn((bits & 0x7FFFFFu) | 0x800000u, exponent - 120);
    const uint64_t quarter = (fraction + (1ull << 61)) >> 62;
    const double remainder =
        static_cast<double>(static_cast<int64_t>(fraction - (quarter << 62))) * 0x1.921FB54442D18p-62;
    return radians < 0.0f ? QuarterTurns{-remainder, static_cast<uint32_t>(4 - quarter)}
                          : QuarterTurns{remainder, static_cast<uint32_t>(quarter)};
}

float GR_Acos(float cosine)
{
    const float size = fabsf(cosine);
    if (size < 0.5f)
        return HALF_PI_HIGH - (cosine - (HALF_PI_LOW - cosine * ArcSineExcess(cosine * cosine)));
    if (!(size <= 1.0f))
        return std::numeric_limits<float>::quiet_NaN();
    if (cosine == 1.0f) // no root to divide by
        return 0.0f;
    return cosine > 0.0f ? AcosNearOne(cosine) : AcosNearMinusOne(cosine);
}
