#pragma once
// Whether a float is the correctly rounded square root, or the floor, of another: by definition, in doubles that are
// exact at each step.

#include "Tests/Support/Trigonometry_Hashes.h"

#include <cmath>
#include <limits>

namespace Trigonometry
{
// NaN below zero and for NaN; zeros and infinity are their own roots. Else no float is nearer to the root: the number
// lies between the squares of the middles between the root and its neighbours. A middle has 25 digits and its square
// 50, so a double holds it; and it is never a float, so there is no tie.
inline bool IsRoundedRoot(float number, float root)
{
    if (!(number >= 0.0f))
        return root != root;
    if (number == 0.0f || number > std::numeric_limits<float>::max())
        return root == number && std::signbit(root) == std::signbit(number);
    if (!(root > 0.0f))
        return false;
    const double value = static_cast<double>(number);
    const double below = (static_cast<double>(root) + static_cast<double>(FromBits(BitsOf(root) - 1))) * 0.5;
    const double above = (static_cast<double>(root) + static_cast<double>(FromBits(BitsOf(root) + 1))) * 0.5;
    return below * below < value && value < above * above;
}

// NaN for NaN; a number of 2^23 and more is whole already. Else the whole number w with w <= number < w + 1, and its
// sign, so that minus zero stays.
inline bool IsFloor(float number, float whole)
{
    constexpr float allAreWhole = 8388608.0f;
    if (number != number)
        return whole != whole;
    if (std::fabs(number) >= allAreWhole)
        return whole == number;
    const bool isWhole = std::fabs(whole) <= allAreWhole && whole == static_cast<float>(static_cast<int>(whole));
    const bool isBelow = whole <= number && static_cast<double>(number) < static_cast<double>(whole) + 1.0;
    return isWhole && isBelow && std::signbit(whole) == std::signbit(number);
}
} // namespace Trigonometry
