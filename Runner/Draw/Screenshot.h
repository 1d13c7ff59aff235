#pragma once

#include "Runner/Draw/Picture.h"

#include <string>

namespace Runner
{
// Writes a picture into the save area. format: "png" or "bmp". The file appears whole or not at all: a picture of that
// name stays as it was when this one cannot be written. False, and why in one line.
bool WriteScreenshot(Picture picture, const std::string& name, const std::string& format, std::string& why);

// The name decides the format: a BMP when it ends in ".bmp", else a PNG.
bool WriteScreenshot(Picture picture, const std::string& name, std::string& why);
} // namespace Runner
