#pragma once

#include <string>

namespace Runner
{
// The folder of the camera kit that comes with this program, without a slash at its end: installed beside it, or in the
// sources that it was built in. Empty when there is none.
std::string InstalledKit();
} // namespace Runner
