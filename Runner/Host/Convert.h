#pragma once
// Numbers out of values, defined for every value. The conversions of Files/Code/Function.h stand on these.

#include "Files/LLVM/RValue.h"

#include <limits>
#include <string_view>

namespace Runner
{
// The number that a value stands for: a real, an integer, a bool, or a string that is a decimal number, with blanks
// around it or without. False for every other value; number is then 0.
bool NumberOf(const RValue& value, double& number);
bool ParseNumber(std::string_view text, double& number);

// Truncates towards zero and clamps to the range of Int. NaN gives 0.
template <typename Int> constexpr Int NearestInteger(double number)
{
    constexpr Int LOWEST = std::numeric_limits<Int>::min();
    constexpr Int HIGHEST = std::numeric_limits<Int>::max();
    constexpr Int HALF = HIGHEST / 2 + 1;                   // a power of two, which a double holds exactly
    constexpr double END = 2.0 * static_cast<double>(HALF); // one past the highest
    if (number != number)
        return 0;
    if (number <= static_cast<double>(LOWEST))
        return LOWEST;
    return number >= END ? HIGHEST : static_cast<Int>(number);
}

// Rounds to the nearest float, ties to even. Beyond the range infinite; NaN stays NaN.
float NearestFloatOutside(double number); // for numbers beyond the largest float, and NaN
inline float NearestFloat(double number)
{
    constexpr double HIGHEST = static_cast<double>(std::numeric_limits<float>::max());
    return number >= -HIGHEST && number <= HIGHEST ? static_cast<float>(number) : NearestFloatOutside(number);
}
} // namespace Runner
