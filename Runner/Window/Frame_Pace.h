#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace Runner
{
// How evenly frames were shown: each is the time from the frame shown before it, in nanoseconds.
struct FramePace
{
    static constexpr int64_t TOLERANCE = 2000000; // nanoseconds about the mean

    size_t frames = 0;
    double mean = 0.0, longest = 0.0; // milliseconds
    size_t longestFrame = 0;          // counted from 1
    double within = 0.0;              // the share of frames within the tolerance of the mean, percent
};

FramePace PaceOf(const std::vector<int64_t>& times); // all 0 for none

// "600 frames, 16.67 ms each; 99.5 % within 2 ms of that, the longest 21.30 ms at frame 312".
std::string TextOf(const FramePace& pace);
} // namespace Runner
