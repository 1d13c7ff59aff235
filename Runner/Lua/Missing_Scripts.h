#pragma once
// Cameras whose callback is a number that script_add never gave: the module asks for the script each frame, and nothing
// runs. The console says so once for each camera, callback and number.

#include "Runner/Lua/Warnings.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Runner
{
class MissingScripts
{
public:
    static constexpr size_t LINES_AT_MOST = 50; // in a game; then one last line says that the rest is not told

    // The registered camera of that identifier was to perform the script of that number; others are not told.
    void Tell(Warnings& warnings, int cameraId, int number);

private:
    struct Callback
    {
        uint32_t birth; // of the camera: its identifier may go to another one
        const char* name;
        int number;
        bool operator==(const Callback& other) const
        {
            return birth == other.birth && name == other.name && number == other.number;
        }
    };

    void TellOnce(Warnings& warnings, int cameraId, const Callback& callback);

    std::vector<Callback> m_told; // at most LINES_AT_MOST
};
} // namespace Runner
