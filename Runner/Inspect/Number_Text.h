#pragma once

#include <string>

namespace Runner
{
// The shortest decimal text that reads back as the same float: "812.4", "-0", "1e+09", "inf", "nan".
std::string NumberText(float number);

// The same as an expression of Lua that gives the same float: "-0.0", "math.huge", "(0/0)".
std::string LuaNumber(float number);
} // namespace Runner
