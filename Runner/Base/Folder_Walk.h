#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace Runner
{
// Adds the ordinary files below a folder, at any depth, by their names relative to it, sorted. Links are left out, and
// so are folders below it that may not be read. At most that many entries are looked at. 0, or errno of the first that
// could not be read: the list then lacks it.
int ListFilesBelow(const std::string& folder, size_t entries, std::vector<std::string>& files);
} // namespace Runner
