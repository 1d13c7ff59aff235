// Compares a screenshot with a picture that may be transparent, which is laid over a colour first. The picture may be
// larger: what the screenshot does not show of it, to the right and below, is not compared.
//
//   compare_pictures SHOT PICTURE COLOUR DISPLACED
//
// Says how many pixels differ by more than one of 255 in a channel, and the largest difference. Status 1 when there are
// any but DISPLACED ones, which show what the picture has one pixel beside; 2 when a picture cannot be read or is too
// small. COLOUR is six hexadecimal digits.

#include "Runner/Draw/Png_Reader.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace
{
using Runner::Picture;

constexpr int TOLERANCE = 1;

struct Difference
{
    int pixels = 0, largest = 0;
    int displaced = 0; // of the pixels: those that show what the other picture has beside them
    int firstX = -1, firstY = -1;
};

bool ReadBoth(const char* const* paths, Picture& shot, Picture& picture)
{
    std::string why;
    if (Runner::ReadPng(paths[1], shot, why) && Runner::ReadPng(paths[2], picture, why))
        return true;
    std::fprintf(stderr, "%s\n", why.c_str());
    return false;
}

// The largest difference of a channel between an opaque pixel and one that lies over the colour.
int DifferenceOf(const uint8_t* opaque, const uint8_t* transparent, unsigned colour)
{
    const int alpha = transparent[3];
    int largest = 0;
    for (int channel = 0; channel < 3; channel++)
    {
        const int below = static_cast<int>(colour >> (16 - 8 * channel) & 255);
        const int shown = (transparent[channel] * alpha + below * (255 - alpha) + 127) / 255;
        largest = std::max(largest, std::abs(shown - opaque[channel]));
    }
    return largest;
}

// Whether the opaque pixel is one of the eight around x, y.
bool ShowsNeighbour(const uint8_t* opaque, const Picture& picture, int x, int y, unsigned colour)
{
    for (int row = std::max(y - 1, 0); row <= std::min(y + 1, picture.height - 1); row++)
        for (int column = std::max(x - 1, 0); column <= std::min(x + 1, picture.width - 1); column++)
            if (DifferenceOf(opaque, &picture.rgba[picture.Offset(column, row)], colour) <= TOLERANCE)
                return true;
    return false;
}

Difference Compare(const Picture& shot, const Picture& picture, unsigned colour)
{
    Difference found;
    for (int y = 0; y < shot.height; y++)
        for (int x = 0; x < shot.width; x++)
        {
            const uint8_t* shown = &shot.rgba[shot.Offset(x, y)];
            const int difference = DifferenceOf(shown, &picture.rgba[picture.Offset(x, y)], colour);
            found.largest = std::max(found.largest, difference);
            if (difference <= TOLERANCE)
                continue;
            if (found.pixels++ == 0)
                found.firstX = x, found.firstY = y;
            found.displaced += ShowsNeighbour(shown, picture, x, y, colour) ? 1 : 0;
        }
    return found;
}
} // namespace

int main(int count, char** arguments)
{
    Picture shot, picture;
    if (count != 5 || !ReadBoth(arguments, shot, picture))
        return 2;
    if (shot.width > picture.width || shot.height > picture.height)
    {
        std::printf("%s has %d x %d pixels, and the other one only %d x %d\n", arguments[1], shot.width, shot.height,
                    picture.width, picture.height);
        return 2;
    }
    const Difference found = Compare(shot, picture, static_cast<unsigned>(std::strtoul(arguments[3], nullptr, 16)));
    if (found.pixels == 0)
        std::printf("equal, at most %d of 255 apart\n", found.largest);
    else
        std::printf("%d pixels differ, by up to %d of 255, the first at %d, %d; %d of them are displaced by one\n",
                    found.pixels, found.largest, found.firstX, found.firstY, found.displaced);
    return found.pixels == found.displaced && found.displaced <= std::atoi(arguments[4]) ? 0 : 1;
}
