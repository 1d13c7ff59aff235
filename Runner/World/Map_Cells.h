#pragma once

#include "Runner/World/Map_Model.h"

#include <string_view>

namespace Runner
{
// Decodes the cells of a layer or chunk: numbers separated by commas ("csv"), or 32-bit numbers, little-endian, in
// "base64", which may be compressed ("zlib", "gzip", "zstd"). Appends exactly `count` cells, or throws MapFault. No
// more memory is taken than they need, whatever the text would unpack to.
void DecodeMapCells(std::string_view text, std::string_view encoding, std::string_view compression, size_t count,
                    std::vector<MapCell>& cells);

[[noreturn]] void WrongCellCount(const std::string& found, size_t count); // throws MapFault
} // namespace Runner
