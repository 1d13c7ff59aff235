#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace Runner
{
// Where a map, and what it refers to, is read from. An implementation reads below one folder, the game's, and follows
// no symbolic link out of it.
class MapFiles
{
public:
    virtual ~MapFiles() = default;

    // Reads a whole file of at most `limit` bytes. The path is relative to the folder, its parts are separated by '/',
    // and none of them is empty, "." or "..". On failure false, and why in words that follow the path and a colon:
    // "there is no such file".
    virtual bool Read(const std::string& path, size_t limit, std::vector<uint8_t>& bytes, std::string& why) = 0;

protected:
    MapFiles() = default;
    MapFiles(const MapFiles&) = default;
    MapFiles& operator=(const MapFiles&) = default;
};
} // namespace Runner
