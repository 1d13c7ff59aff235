#pragma once
// Numbers out of values, defined for every value. The conversions of Files/Code/Function.h stand on these.

#include "Files/LLVM/RValue.h"

#include <limits>
#include <string_view>

namespace Runner
{
// The number that a value is: a real, an integer, a bool, or a string that is a decimal number (blanks around it are
// fine). False for everything else; number is then 0.
bool NumberOf(const RValue& value, double& number);
bool ParseNumber(std::string_view text, double& number);

// The whole part, or the nearest integer in range; not a number gives 0.
template <typename Int> constexpr Int NearestInteger(double number)
{
    constexpr Int LOWEST = std::numeric_limits<Int>::min();
    constexpr Int HIGHEST = std::numeric_limits<Int>::max();
    constexpr double END = 2.0 * static_cast<double>(HIGHEST / 2 + 1); // one past the highest, a power of two: exact
    if (number != number)
        return 0;
    if (number <= static_cast<double>(LOWEST))
        return LOWEST;
    return number >= END ? HIGHEST : static_cast<Int>(number);
}

// Rounded to the nearest float, ties to even; beyond range infinite; not a number stays so.
float NearestFloat(double number);
} // namespace Runner
