#pragma once

#include <string>
#include <string_view>

namespace Runner
{
// The path that `reference`, written in the file `from`, leads to; both paths are relative to the game's folder. Throws
// MapFault when it does not stay in the folder: an absolute path, more ".." than there are folders, a backslash, a
// drive, an address.
std::string ResolveMapPath(std::string_view from, std::string_view reference);
} // namespace Runner
