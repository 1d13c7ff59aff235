#pragma once

#include "Runner/Save/Recording.h"

#include <string>
#include <vector>

namespace Runner
{
// Reads values of cameras such as "0.border_x=200,0.speed_x=4", in the order given. Answers what is wrong with the
// text, empty when nothing is.
std::string ReadCameraValues(const std::string& text, std::vector<HandChange>& values);
} // namespace Runner
