#pragma once

// Decimal numbers as the standard library's <charconv> has them, which not every library has for floating point.

#include <charconv>
#include <string>

namespace Runner
{
// Writes as std::to_chars does: the fewest digits that are read back as the same number, without an exponent unless
// that makes it shorter.
std::string DecimalText(double number);

// Reads a decimal number, as std::from_chars does: the nearest number, no blanks, no plus in front, "inf" and "nan" in
// any case. The result's pointer stands behind what was read; out of range, the value stays as it was.
std::from_chars_result ReadDecimal(const char* first, const char* last, double& value);
std::from_chars_result ReadDecimal(const char* first, const char* last, float& value);
} // namespace Runner
