#pragma once

#include "Runner/Draw/Picture.h"

#include <string>

namespace Runner
{
// Reads a PNG file of any kind as 8-bit RGBA: palette entries and greys are expanded, 16 bits rounded to 8.
// Sides up to PICTURE_SIDE_LIMIT. False and one line with the file's name when it is missing, damaged, cut short or
// too large; out is then empty.
bool ReadPng(const std::string& file, Picture& out, std::string& error);
} // namespace Runner
