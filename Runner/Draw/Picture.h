#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Runner
{
// Largest side of a picture, a surface or the screen, in pixels.
constexpr int PICTURE_SIDE_LIMIT = 8192;

// Pixels in memory: red, green, blue, alpha bytes; rows from the top down without padding; colours not multiplied by
// alpha. rgba holds width * height * 4 bytes.
struct Picture
{
    int width = 0;
    int height = 0;
    std::vector<uint8_t> rgba;

    size_t Offset(int x, int y) const
    {
        return (static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)) * 4;
    }
};

// A picture of that size whose every pixel is transparent black.
inline Picture TransparentPicture(int width, int height)
{
    Picture picture;
    picture.width = width;
    picture.height = height;
    picture.rgba.assign(picture.Offset(0, height), 0);
    return picture;
}

// The same in opaque black.
inline Picture BlackPicture(int width, int height)
{
    Picture picture = TransparentPicture(width, height);
    for (size_t alpha = 3; alpha < picture.rgba.size(); alpha += 4)
        picture.rgba[alpha] = 255;
    return picture;
}
} // namespace Runner
