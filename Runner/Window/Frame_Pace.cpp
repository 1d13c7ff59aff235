#include "Runner/Window/Frame_Pace.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numeric>

namespace Runner
{
namespace
{
constexpr double MILLISECOND = 1e6;
} // namespace

FramePace PaceOf(const std::vector<int64_t>& times)
{
    FramePace pace;
    if (times.empty())
        return pace;
    const auto count = static_cast<double>(times.size());
    const double mean = static_cast<double>(std::accumulate(times.begin(), times.end(), int64_t{0})) / count;
    const auto longest = std::max_element(times.begin(), times.end());
    const auto near = std::count_if(
        times.begin(), times.end(),
        [mean](int64_t time)
        { return std::abs(static_cast<double>(time) - mean) <= static_cast<double>(FramePace::TOLERANCE); });
    pace.frames = times.size();
    pace.mean = mean / MILLISECOND;
    pace.longest = static_cast<double>(*longest) / MILLISECOND;
    pace.longestFrame = static_cast<size_t>(longest - times.begin()) + 1;
    pace.within = static_cast<double>(near) * 100.0 / count;
    return pace;
}

std::string TextOf(const FramePace& pace)
{
    char text[160];
    std::snprintf(text, sizeof text,
                  "%zu frames, %.2f ms each; %.1f %% within 2 ms of that, the longest %.2f ms at frame %zu",
                  pace.frames, pace.mean, pace.within, pace.longest, pace.longestFrame);
    return text;
}
} // namespace Runner
