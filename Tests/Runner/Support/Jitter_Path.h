#pragma once
// Random paths of something that runs, jumps, stops, turns and flies: smooth within each phase.

#include <cstdint>
#include <vector>

namespace RunnerTest
{
struct PathFrame
{
    float x = 0.0f, y = 0.0f;
    double speedX = 0.0, speedY = 0.0; // by which it got here
    int constantX = 0, constantY = 0;  // frames with this speed, this one included; 0 while the speed changes
};

// So many frames in a square room. The same seed gives the same path.
std::vector<PathFrame> RandomPath(uint64_t seed, int roomSize, int frames);
} // namespace RunnerTest
