// Parts and frames that are cut out of pictures, pixel by pixel.
#include "Runner/Draw/Sheet.h"

#include <gtest/gtest.h>

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

TEST(TransparentColour, IsThatOneAlone)
{
    Picture picture = TransparentPicture(4, 1);
    picture.rgba = {10, 20, 30, 255, 11, 20, 30, 255, 10, 21, 30, 255, 10, 20, 31, 255};
    ClearColour(picture, 10, 20, 30);
    EXPECT_EQ(Reds(picture), "0 11 10 10 / ");
}
} // namespace
