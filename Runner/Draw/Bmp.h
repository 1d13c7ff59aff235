#pragma once

#include "Runner/Draw/Picture.h"

namespace Runner
{
// The picture as a BMP file that any viewer opens: 24 bits a pixel, uncompressed, rows from the bottom up, each padded
// to a multiple of four bytes. Alpha is dropped. (The module's CreateBMP stores red first and pads
// no row: its blocks are not for viewers.)
std::vector<uint8_t> EncodeBmp(const Picture& picture);
} // namespace Runner
