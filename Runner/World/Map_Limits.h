#pragma once
// What a map may have at most. The limits bound the memory that a hostile file can take, to some hundred megabytes.

#include <cstddef>
#include <cstdint>

namespace Runner
{
namespace MapLimits
{
constexpr size_t FILE_BYTES = size_t{64} << 20;      // of one file
constexpr size_t ALL_BYTES = size_t{256} << 20;      // of all files of a map
constexpr size_t XML_TREE_BYTES = size_t{400} << 20; // of a file's tree while it is read, estimated from above
constexpr size_t PARTS = 1000000;                    // elements or values, and attributes, of all files; cells apart
constexpr size_t COPIED_BYTES = size_t{128} << 20;   // what objects take over from templates and tiles
constexpr int DEPTH = 64;                            // of elements or values in each other

constexpr int SIDE = 1 << 20;            // of a map or a layer, in tiles; of a tile, in pixels
constexpr int64_t LAYER_CELLS = 1 << 24; // of one layer, chunks joined
constexpr int64_t ALL_CELLS = 1 << 25;   // of all layers
constexpr size_t LAYERS = 1000;          // groups included
constexpr size_t TILESETS = 1000;
constexpr int TILES = 1 << 20;     // of one tileset
constexpr double COORDINATE = 1e9; // largest size of positions, sizes and offsets
constexpr size_t PATH_BYTES = 1000;
} // namespace MapLimits
} // namespace Runner
