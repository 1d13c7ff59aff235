#pragma once
// Writers of PNG files to measure ours against, each with its library's own defaults.

#include <cstdint>
#include <vector>

namespace Bench
{
struct PngPeer
{
    const char* name;
    bool (*write)(const char* path, std::vector<uint8_t>& pixels, int width, int height); // RGBA, top row first
    bool givesSameBytes; // as ours: the same library with the same settings
};

constexpr int PNG_PEER_COUNT = 4;
extern const PngPeer PNG_PEERS[PNG_PEER_COUNT];

// The RGBA pixels of a PNG, empty when it is none.
std::vector<uint8_t> DecodePng(const std::vector<uint8_t>& file);
} // namespace Bench
