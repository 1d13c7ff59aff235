// The angle is multiplied by 2/pi as a whole number of many words: no bit of 2/pi that counts is left out, and those
// that make whole turns are left out from the start (the reduction of Payne and Hanek).

#include "Runner/Base/Range_Reduction.h"

#include "Runner/Base/Bits.h"
#include "Runner/Base/Series.h"

#include <array>
#include <cmath>

namespace Runner
{
namespace
{
constexpr float EIGHTH_OF_A_TURN = 0.785f; // or a little less

// 2/pi after the point, with a word of zeros before it.
constexpr uint32_t TWO_OVER_PI[] = {0x00000000, 0xA2F9836E, 0x4E441529, 0xFC2757D1, 0xF534DDC0, 0xDB629599,
                                    0x3C439041, 0xFE5163AB, 0xDEBBC561, 0xB7246E3A, 0x424DD2E0, 0x06492EEA};
constexpr int WORD_BITS = 32;
constexpr int FRACTION_WORDS = 5;

using Words = std::array<uint32_t, FRACTION_WORDS>; // the first is the highest

// The words of 2/pi from a bit on.
Words TwoOverPiFrom(int bit)
{
    Words window = {};
    const int word = bit / WORD_BITS, shift = bit % WORD_BITS;
    for (int i = 0; i < FRACTION_WORDS; ++i)
    {
        const uint64_t pair = uint64_t{TWO_OVER_PI[word + i]} << WORD_BITS | TWO_OVER_PI[word + i + 1];
        window[static_cast<size_t>(i)] = static_cast<uint32_t>(pair << shift >> WORD_BITS);
    }
    return window;
}

// The words of the product behind the point.
Words TimesWhole(const Words& fraction, uint32_t whole)
{
    Words product = {};
    uint64_t carry = 0;
    for (size_t i = FRACTION_WORDS; i > 0; --i)
    {
        carry += uint64_t{fraction[i - 1]} * whole;
        product[i - 1] = static_cast<uint32_t>(carry);
        carry >>= WORD_BITS;
    }
    return product;
}
} // namespace

ReducedAngle ReduceAngleExactly(float radians)
{
    if (std::fabs(radians) < EIGHTH_OF_A_TURN)
        return {static_cast<double>(radians), false};
    const auto bits = BitsOf<uint32_t>(radians);
    const uint32_t mantissa = (bits & 0x7FFFFF) | 0x800000;
    const int exponent = static_cast<int>(bits >> 23 & 0xFF) - 150; // the angle is mantissa * 2^exponent

    // A fraction of four quarters: bits of 2/pi that weigh four and more with the exponent make whole turns.
    const Words turn = TimesWhole(TwoOverPiFrom(WORD_BITS + exponent - 2), mantissa);
    const uint32_t quarter = (turn[0] + 0x20000000u) >> 30; // the nearest whole number
    const auto rest = static_cast<int32_t>(turn[0] - (quarter << 30));
    DoubleDouble quarters = DoubleDouble(rest * 0x1p-30) + DoubleDouble(turn[1] * 0x1p-62) +
                            DoubleDouble(turn[2] * 0x1p-94) + DoubleDouble(turn[3] * 0x1p-126);
    if (radians < 0.0f)
        quarters = -quarters;
    return {quarters * Series::HALF_PI, (quarter & 1) != 0};
}
} // namespace Runner
