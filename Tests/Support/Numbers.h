#pragma once
// Numbers that tests share.

#include <limits>

constexpr float NOT_A_NUMBER = std::numeric_limits<float>::quiet_NaN();
constexpr double NOT_A_NUMBER_64 = std::numeric_limits<double>::quiet_NaN();
