#pragma once

#include <cstdint>
#include <string>

namespace Runner
{
// Which game this is. A saved game fits only the files that made it: what they define has no names in the save.
struct GameIdentity
{
    std::string name;      // of the main file
    uint64_t files = 0;    // fingerprint of the main file and of what it included, before the first room
    uint64_t seed = 0;     // of the random numbers at the game's start
    bool usesSeed = false; // the main file has drawn random numbers, so its values depend on the seed
};
} // namespace Runner
