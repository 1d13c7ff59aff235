#pragma once

#include <cstdint>

namespace Runner
{
// Sixteen-bit floats: a sign, five bits of exponent, ten of fraction.
uint16_t HalfFromReal(double number); // rounded to nearest, ties to even; beyond the range infinite; NaN stays NaN
double RealFromHalf(uint16_t half);   // exact
} // namespace Runner
