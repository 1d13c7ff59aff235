// PNG files, read back by a reader that shares no code with the library that wrote them, not even the decompression.

#include "Tests/Support/Fixture.h"

#include <algorithm>
#include <lodepng.h>
#include <random>

namespace
{
using namespace Recording;

using Bytes = std::vector<unsigned char>;

Bytes RandomPixels(unsigned width, unsigned height)
{
    std::mt19937 random(width * 8192 + height);
    Bytes pixels(size_t{width} * height * 4);
    std::generate(pixels.begin(), pixels.end(), [&random] { return static_cast<unsigned char>(random() & 0xFF); });
    return pixels;
}

// Rows that repeat and differ little, so that each of the format's row filters pays somewhere.
Bytes SmoothPixels(unsigned width, unsigned height)
{
    Bytes pixels;
    pixels.reserve(size_t{width} * height * 4);
    for (unsigned y = 0; y < height; ++y)
        for (unsigned x = 0; x < width; ++x)
            for (const unsigned channel : {x, y, x + y, (x ^ y) * 3})
                pixels.push_back(static_cast<unsigned char>(channel & 0xFF));
    return pixels;
}

class PNGReadBack : public ModuleTest
{
protected:
    static void Expect(Bytes pixels, unsigned width, unsigned height)
    {
        char name[] = "image.png";
        ASSERT_EQ(WritePNG32(name, pixels.data(), static_cast<int>(width), static_cast<int>(height)), 1);
        Bytes read;
        unsigned readWidth = 0, readHeight = 0;
        const unsigned error = lodepng::decode(read, readWidth, readHeight, SaveArea() + "/image.png");
        ASSERT_EQ(error, 0u) << lodepng_error_text(error) << ", " << width << " x " << height;
        EXPECT_EQ(readWidth, width);
        EXPECT_EQ(readHeight, height);
        EXPECT_TRUE(read == pixels) << width << " x " << height;
    }
};

TEST_F(PNGReadBack, EverySmallSize)
{
    for (unsigned width = 1; width <= 18; ++width)
        for (unsigned height = 1; height <= 18; ++height)
            Expect(RandomPixels(width, height), width, height);
}

TEST_F(PNGReadBack, SizesUpTo4096)
{
    for (const auto& [width, height] : {std::pair{4096u, 1u}, {1u, 4096u}, {4095u, 3u}, {640u, 480u}, {1023u, 1025u}})
    {
        Expect(RandomPixels(width, height), width, height);
        Expect(SmoothPixels(width, height), width, height);
    }
    Expect(RandomPixels(4096, 4096), 4096, 4096);
}

TEST_F(PNGReadBack, PicturesThatCompressWell)
{
    for (const unsigned side : {1u, 100u, 1000u})
    {
        Expect(SmoothPixels(side, side), side, side);
        Expect(Bytes(size_t{side} * side * 4, 0), side, side);
    }
}
} // namespace
