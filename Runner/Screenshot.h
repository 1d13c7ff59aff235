#pragma once

#include "Runner/Draw/Picture.h"

#include <string>

namespace Runner
{
// Writes a picture as a PNG into the save area. The file appears whole or not at all. False, and why in one line.
bool WriteScreenshot(Picture picture, const std::string& name, std::string& why);
} // namespace Runner
