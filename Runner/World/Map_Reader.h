#pragma once

#include "Runner/World/Map_Files.h"
#include "Runner/World/Map_Model.h"

namespace Runner
{
// Reads a map: TMX or TMJ, versions 1.0 to 1.10, orthogonal, finite or infinite, with its tilesets and templates; which
// format a file has is told by its first character. The path has '/' between its parts and stays in the folder of
// `files`. The pictures must be PNG files; only their sizes are read.
//
// False, and one line that names the file, what is wrong and what to do, when anything cannot be read, is damaged, or
// goes beyond the limits (Map_Limits.h); `map` is then empty.
bool ReadMap(const std::string& path, MapFiles& files, MapModel& map, std::string& error);
} // namespace Runner
