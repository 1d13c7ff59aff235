#include "Runner/App/Contact_Sheet.h"

#include <gtest/gtest.h>

#include <array>

namespace
{
using Runner::ContactSheet;
using Runner::Picture;

using Pixel = std::array<int, 4>;

Picture Plain(int width, int height, Pixel colour)
{
    Picture picture;
    picture.width = width;
    picture.height = height;
    for (int i = 0; i < width * height; ++i)
        for (const int channel : colour)
            picture.rgba.push_back(static_cast<uint8_t>(channel));
    return picture;
}

Pixel At(const Picture& picture, int x, int y)
{
    const uint8_t* bytes = &picture.rgba[picture.Offset(x, y)];
    return {bytes[0], bytes[1], bytes[2], bytes[3]};
}

int Wanted(int frames)
{
    const ContactSheet sheet(frames);
    int count = 0;
    for (int frame = 0; frame < frames; ++frame)
        count += sheet.Wants(frame) ? 1 : 0;
    return count;
}

constexpr Pixel RED = {255, 0, 0, 255};
constexpr Pixel BLUE = {0, 0, 255, 255};
constexpr Pixel BLACK = {0, 0, 0, 255};

TEST(ContactSheet, TwelveFramesOfALongRunAreWanted)
{
    EXPECT_EQ(Wanted(12), 12);
    EXPECT_EQ(Wanted(13), 12);
    EXPECT_EQ(Wanted(600), 12);
    EXPECT_EQ(Wanted(100000000 / 1000), 12);
}

TEST(ContactSheet, EveryFrameOfAShortRunIsWanted)
{
    EXPECT_EQ(Wanted(1), 1);
    EXPECT_EQ(Wanted(11), 11);
}

TEST(ContactSheet, WantedFramesAreEvenlySpread)
{
    const ContactSheet sheet(600);
    for (int frame = 0; frame < 600; ++frame)
        EXPECT_EQ(sheet.Wants(frame), frame % 50 == 0) << frame;
}

TEST(ContactSheet, FramesStandInReadingOrderWithGapsBetween)
{
    ContactSheet sheet(12);
    EXPECT_TRUE(sheet.IsEmpty());
    sheet.Add(Plain(40, 20, RED));
    for (int i = 0; i < 4; ++i)
        sheet.Add(Plain(40, 20, BLUE));
    const Picture& picture = sheet.Sheet();
    EXPECT_EQ(picture.width, 4 * 48 + 8);
    EXPECT_EQ(picture.height, 3 * 28 + 8);
    EXPECT_EQ(At(picture, 8, 8), RED);
    EXPECT_EQ(At(picture, 47, 27), RED);
    EXPECT_EQ(At(picture, 48, 8), BLACK);
    EXPECT_EQ(At(picture, 56, 8), BLUE);
    EXPECT_EQ(At(picture, 8, 28 + 8), BLUE) << "the fifth frame starts the second row";
    EXPECT_EQ(At(picture, 56, 28 + 8), BLACK);
}

TEST(ContactSheet, LargeFramesShrinkToTheMeanOfTheirPixels)
{
    Picture halves = Plain(800, 400, RED); // every small pixel stands for one red and one blue column
    for (int y = 0; y < 400; ++y)
        for (int x = 1; x < 800; x += 2)
            for (size_t channel = 0; channel < 4; ++channel)
                halves.rgba[halves.Offset(x, y) + channel] = static_cast<uint8_t>(BLUE[channel]);
    ContactSheet sheet(12);
    sheet.Add(halves);
    EXPECT_EQ(sheet.Sheet().width, 4 * 408 + 8);
    EXPECT_EQ(sheet.Sheet().height, 3 * 208 + 8);
    EXPECT_EQ(At(sheet.Sheet(), 100, 100), (Pixel{128, 0, 128, 255})) << "127.5 rounds up";
}

TEST(ContactSheet, AThirteenthFrameIsLeftOut)
{
    ContactSheet sheet(12);
    for (int i = 0; i < 12; ++i)
        sheet.Add(Plain(40, 20, RED));
    sheet.Add(Plain(40, 20, BLUE));
    EXPECT_EQ(At(sheet.Sheet(), 3 * 48 + 8, 2 * 28 + 8), RED);
}
} // namespace
