#pragma once

#include "Runner/Draw/Picture.h"

#include <string>

namespace Runner
{
// The format in which a picture of this name is written, "png" or "bmp": what the name ends in (.png or .bmp, in any
// case), and for a name without an extension what was asked for, or else PNG. asked: a format, or empty.
// Empty, and why in one line, when the name ends in something else or contradicts what was asked for.
std::string PictureFormat(const std::string& name, const std::string& asked, std::string& why);

// Writes a picture into the save area. format: as asked above. The file appears whole or not at all: a picture of that
// name stays as it was when this one cannot be written. False, and why in one line.
bool WriteScreenshot(Picture picture, const std::string& name, const std::string& format, std::string& why);
} // namespace Runner
