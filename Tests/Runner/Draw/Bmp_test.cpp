// BMP files as the Runner writes them, read by the format's rules: a 14-byte file header, a 40-byte picture header,
// rows from the bottom up, each padded to a multiple of four bytes, blue first.

#include "Runner/Draw/Bmp.h"
#include "Tests/Runner/Draw/Draw_Support.h"

#include <gtest/gtest.h>

namespace
{
using DrawTest::Pixel;
using Runner::Picture;

unsigned Little(const std::vector<uint8_t>& bytes, size_t at, size_t count)
{
    unsigned number = 0;
    for (size_t i = count; i > 0; --i)
        number = number << 8 | bytes[at + i - 1];
    return number;
}

// Each pixel differs from its neighbours in every channel.
Picture Pattern(int width, int height)
{
    Picture picture = DrawTest::Filled(width, height, DrawTest::BLACK);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            DrawTest::Set(picture, x, y, {(x * 7 + y) & 255, (y * 5 + 3) & 255, (x * 3 + y * 11) & 255, 255});
    return picture;
}

class BmpOfWidth : public ::testing::TestWithParam<int>
{
};

TEST_P(BmpOfWidth, HoldsEveryPixelWhereAReaderLooks)
{
    const int width = GetParam(), height = 5;
    const Picture picture = Pattern(width, height);
    const std::vector<uint8_t> file = Runner::EncodeBmp(picture);
    const auto row = static_cast<size_t>((width * 24 + 31) / 32 * 4); // the format's own formula
    ASSERT_EQ(file.size(), 54 + row * 5);
    EXPECT_EQ(file[0], 'B');
    EXPECT_EQ(file[1], 'M');
    EXPECT_EQ(Little(file, 2, 4), file.size());
    EXPECT_EQ(Little(file, 6, 4), 0u);
    EXPECT_EQ(Little(file, 10, 4), 54u); // where the pixels start
    EXPECT_EQ(Little(file, 14, 4), 40u); // the picture header's size
    EXPECT_EQ(Little(file, 18, 4), static_cast<unsigned>(width));
    EXPECT_EQ(Little(file, 22, 4), static_cast<unsigned>(height));
    EXPECT_EQ(Little(file, 26, 2), 1u);  // planes
    EXPECT_EQ(Little(file, 28, 2), 24u); // bits a pixel
    EXPECT_EQ(Little(file, 30, 4), 0u);  // not compressed
    EXPECT_EQ(Little(file, 34, 4), row * 5);
    EXPECT_EQ(Little(file, 46, 4), 0u); // no palette
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
        {
            const uint8_t* pixel = file.data() + 54 + row * static_cast<size_t>(height - 1 - y) + x * 3;
            ASSERT_EQ((Pixel{pixel[2], pixel[1], pixel[0], 255}), DrawTest::At(picture, x, y)) << x << ", " << y;
        }
}

TEST_P(BmpOfWidth, PadsRowsWithZeros)
{
    const int width = GetParam();
    const std::vector<uint8_t> file = Runner::EncodeBmp(DrawTest::Filled(width, 2, DrawTest::WHITE));
    const size_t row = (file.size() - 54) / 2;
    for (size_t i = 0; i < file.size() - 54; ++i)
        ASSERT_EQ(file[54 + i], i % row < static_cast<size_t>(width) * 3 ? 255 : 0) << i;
}

INSTANTIATE_TEST_SUITE_P(Each, BmpOfWidth, ::testing::Values(1, 2, 3, 4, 5, 201, 1280));

TEST(Bmp, OfAHundredRowsOfTwoHundredAndOnePixelsHasTheSizeThatReadersExpect)
{
    EXPECT_EQ(Runner::EncodeBmp(DrawTest::Filled(201, 100, DrawTest::RED)).size(), 60454u);
}
} // namespace
