#include "Runner/Inspect/Number_Text.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace Runner
{
std::string NumberText(float number)
{
    if (std::isnan(number))
        return "nan";
    constexpr float LARGEST_WRITTEN_OUT = 1e9f;
    char text[32] = "";
    if (std::fabs(number) < LARGEST_WRITTEN_OUT && number == std::floor(number))
    {
        std::snprintf(text, sizeof text, "%.0f", static_cast<double>(number));
        return text;
    }
    constexpr int ENOUGH_DIGITS = 9; // for any float
    for (int digits = 1; digits <= ENOUGH_DIGITS; ++digits)
    {
        std::snprintf(text, sizeof text, "%.*g", digits, static_cast<double>(number));
        if (std::strtof(text, nullptr) == number)
            break;
    }
    return text;
}

std::string LuaNumber(float number)
{
    if (std::isnan(number))
        return "(0/0)";
    if (std::isinf(number))
        return number > 0.0f ? "math.huge" : "-math.huge";
    return number == 0.0f && std::signbit(number) ? "-0.0" : NumberText(number); // -0 would be a whole number, 0
}
} // namespace Runner
