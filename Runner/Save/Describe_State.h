#pragma once
// A saved state as text, one line for each thing in it, for who compares two.

#include "Runner/Save/Saved_State.h"

#include <string>
#include <utility>
#include <vector>

namespace Runner
{
// What a line is about, such as "instance 100003 x", and its value. In the order of the file, each name once.
using Description = std::vector<std::pair<std::string, std::string>>;

// Everything but the thumbnail.
Description Describe(const SavedState& state);
} // namespace Runner
