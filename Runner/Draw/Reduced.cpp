#include "Runner/Draw/Reduced.h"

#include <algorithm>

namespace Runner
{
namespace
{
struct Span
{
    int first, end; // at least one pixel
};

// The n-th of `parts` parts of a length.
Span PartOf(int length, int n, int parts)
{
    const auto start = [length, parts](int64_t part) { return static_cast<int>(part * length / parts); };
    return {start(n), std::max(start(int64_t{n} + 1), start(n) + 1)};
}

// The mean of a rectangle, channel by channel, to the nearest.
void PutMean(const Picture& from, Span columns, Span rows, uint8_t* to)
{
    uint64_t sums[4] = {};
    for (int y = rows.first; y < rows.end; ++y)
        for (int x = columns.first; x < columns.end; ++x)
            for (size_t channel = 0; channel < 4; ++channel)
                sums[channel] += from.rgba[from.Offset(x, y) + channel];
    const auto count =
        static_cast<uint64_t>(columns.end - columns.first) * static_cast<uint64_t>(rows.end - rows.first);
    for (size_t channel = 0; channel < 4; ++channel)
        to[channel] = static_cast<uint8_t>((sums[channel] + count / 2) / count);
}
} // namespace

Picture Reduced(const Picture& picture, int width, int height)
{
    if (picture.width <= width && picture.height <= height)
        return picture;
    Picture small;
    const bool isWide = int64_t{picture.width} * height >= int64_t{picture.height} * width;
    small.width = isWide ? width : std::max(1, static_cast<int>(int64_t{picture.width} * height / picture.height));
    small.height = isWide ? std::max(1, static_cast<int>(int64_t{picture.height} * width / picture.width)) : height;
    small.rgba.resize(static_cast<size_t>(small.width) * static_cast<size_t>(small.height) * 4);
    for (int y = 0; y < small.height; ++y)
        for (int x = 0; x < small.width; ++x)
            PutMean(picture, PartOf(picture.width, x, small.width), PartOf(picture.height, y, small.height),
                    small.rgba.data() + small.Offset(x, y));
    return small;
}
} // namespace Runner
