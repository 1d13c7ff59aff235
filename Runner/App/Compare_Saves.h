#pragma once

#include <cstdio>
#include <string>

namespace Runner
{
// Compares two saved games without their thumbnails. Prints to out that they are the same, or a line for each thing
// that differs, 20 at most. True when they are the same; false also when one cannot be read, and why in one line then.
bool CompareSaves(const std::string& first, const std::string& second, FILE* out, std::string& why);
} // namespace Runner
