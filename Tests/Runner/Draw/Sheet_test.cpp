// Parts and frames that are cut out of pictures, pixel by pixel.
#include "Runner/Draw/Sheet.h"

#include <gtest/gtest.h>

#include <cmath>

namespace
{
using namespace Runner;

// Its pixels' reds count from 1 on, row by row; they are opaque.
Picture Counted(int width, int height)
{
    Picture picture = TransparentPicture(width, height);
    for (size_t i = 0; i < picture.rgba.size(); i += 4)
    {
        picture.rgba[i] = static_cast<uint8_t>(i / 4 + 1);
        picture.rgba[i + 3] = 255;
    }
    return picture;
}

// The reds row by row; 0 for a transparent pixel.
std::string Reds(const Picture& picture)
{
    std::string text;
    for (int y = 0; y < picture.height; ++y)
    {
        for (int x = 0; x < picture.width; ++x)
        {
            const uint8_t* pixel = &picture.rgba[picture.Offset(x, y)];
            text += std::to_string(pixel[3] == 0 ? 0 : pixel[0]) + " ";
        }
        text += "/ ";
    }
    return text;
}

// 1 2 3 / 4 5 6
TEST(PicturePart, IsTransparentBeyondThePicture)
{
    EXPECT_EQ(Reds(CropPicture(Counted(3, 2), 1, 0, 2, 2)), "2 3 / 5 6 / ");
    EXPECT_EQ(Reds(CropPicture(Counted(3, 2), 2, 1, 2, 2)), "6 0 / 0 0 / ");
    EXPECT_EQ(Reds(CropPicture(Counted(3, 2), 3, 0, 1, 1)), "0 / ");
}

// 5 x 4 pixels, a margin of 1 and a spacing of 1: frames of 2 x 2 at 1, 1 and 4, 1, of which the second has one column.
TEST(PictureFrames, LieSideBySideWithoutMarginAndSpacing)
{
    EXPECT_EQ(Reds(JoinFrames(Counted(5, 4), {2, 2, 1, 1, 2, 2})), "7 8 10 0 / 12 13 15 0 / ");
    EXPECT_EQ(Reds(JoinFrames(Counted(5, 4), {2, 2, 1, 1, 1, 2})), "7 8 / 12 13 / 0 0 / 0 0 / ")
        << "one to a row: the second lies below the picture";
}

std::string Text(const TextureArea& area)
{
    const float widths = 195, heights = 192; // of the texture
    const auto pixels = [](float part, float all) { return std::to_string(std::lround(part * all)) + " "; };
    return pixels(area.left, widths) + pixels(area.top, heights) + pixels(area.right, widths) +
           pixels(area.bottom, heights);
}

// 4,100 frames of one pixel have cells of 3 x 3: 65 to a row, since 65 are no fewer than the 64 rows they need. The
// areas of the first 4,096 are kept, the others are worked out when they are asked for.
TEST(SheetArea, LeavesOutTheBorderInEveryCell)
{
    const Sheet sheet(Counted(4100, 1), 1, 1);
    ASSERT_EQ(sheet.Packed().width, 195);
    ASSERT_EQ(sheet.Packed().height, 192);
    EXPECT_EQ(Text(sheet.Area(0)), "1 1 2 2 ");
    EXPECT_EQ(Text(sheet.Area(66)), "4 4 5 5 ");
    EXPECT_EQ(Text(sheet.Area(4095)), "1 190 2 191 ") << "the last that is kept";
    EXPECT_EQ(Text(sheet.Area(4096)), "4 190 5 191 ");
    EXPECT_EQ(Text(sheet.Area(4099)), "13 190 14 191 ");
}

TEST(TransparentColour, IsThatOneAlone)
{
    Picture picture = TransparentPicture(4, 1);
    picture.rgba = {10, 20, 30, 255, 11, 20, 30, 255, 10, 21, 30, 255, 10, 20, 31, 255};
    ClearColour(picture, 10, 20, 30);
    EXPECT_EQ(Reds(picture), "0 11 10 10 / ");
}
} // namespace
