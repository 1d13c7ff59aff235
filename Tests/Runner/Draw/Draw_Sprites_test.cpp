#include "Tests/Runner/Draw/Draw_Support.h"

namespace DrawTest
{
class Sprites : public Screen
{
protected:
    // Four frames of 4 x 4 side by side: red, green, blue, yellow.
    int FourFrames()
    {
        Runner::Picture strip = Filled(16, 4, RED);
        const Pixel colours[] = {RED, GREEN, BLUE, YELLOW};
        for (int x = 0; x < 16; x++)
        {
            for (int y = 0; y < 4; y++)
                Set(strip, x, y, colours[x / 4]);
        }
        return Paint().AddSheet(strip, 4, 4);
    }
};

TEST_F(Sprites, TheOriginGoesToThePlace)
{
    const int sprite = Paint().AddSheet(Filled(10, 6, RED), 10, 6, 4, 5);
    Paint().Sprite(sprite, 0, 20, 30);
    EXPECT_EQ(CountPixels(Shown(), RED, 16, 25, 26, 31), 60);
    EXPECT_EQ(CountPixels(Shown(), RED), 60);
    const Runner::SpriteInfo* info = Paint().FindSprite(sprite);
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info->width, 10);
    EXPECT_EQ(info->height, 6);
    EXPECT_EQ(info->frames, 1);
    EXPECT_EQ(info->originY, 5.0f);
}

TEST_F(Sprites, FramesAreCountedFromTheLeftAndWrapRound)
{
    const int sprite = FourFrames();
    const Pixel expected[] = {RED, GREEN, BLUE, YELLOW};
    for (int frame = -5; frame < 9; frame++)
    {
        Paint().Sprite(sprite, frame, 0, 0);
        EXPECT_EQ(At(Shown(), 2, 2), expected[(frame + 8) % 4]) << frame;
    }
    Paint().Sprite(sprite, -2147483647 - 1, 0, 0); // a multiple of 4
    EXPECT_EQ(At(Shown(), 2, 2), RED);
}

TEST_F(Sprites, AFrameNeverShowsItsNeighbours)
{
    const int sprite = FourFrames();
    for (int i = 0; i < 100; i++)
    {
        Paint().Clear(0);
        Runner::Placement placement;
        placement.x = 20 + static_cast<float>(i) * 0.0137f;
        placement.y = 20 - static_cast<float>(i) * 0.0291f;
        placement.scaleX = placement.scaleY = 1 + static_cast<float>(i) * 0.043f;
        placement.angle = static_cast<float>(i) * 3.7f;
        Paint().Sprite(sprite, 1, placement);
        const Runner::Picture shown = Shown();
        EXPECT_EQ(CountPixels(shown, GREEN) + CountPixels(shown, BLACK), 64 * 64) << i;
        EXPECT_GT(CountPixels(shown, GREEN), 8) << i;
    }
}

TEST_F(Sprites, ALongStripOfFramesIsOneSprite)
{
    Runner::Picture strip = Filled(8192, 2, BLUE);
    Set(strip, 8191, 1, RED);
    const int sprite = Paint().AddSheet(strip, 1, 2);
    ASSERT_GE(sprite, 0);
    EXPECT_EQ(Paint().FindSprite(sprite)->frames, 8192);
    Paint().Sprite(sprite, 8191, 0, 0);
    EXPECT_EQ(At(Shown(), 0, 0), BLUE);
    EXPECT_EQ(At(Shown(), 0, 1), RED);
}

TEST_F(Sprites, ColourAndAlphaMultiplyThePicture)
{
    const int sprite = Paint().AddSheet(Filled(8, 8, {200, 100, 255, 255}), 8, 8);
    Runner::Placement placement;
    placement.colour = Colour({128, 255, 0, 255});
    Paint().Sprite(sprite, 0, placement);
    const Pixel solid = At(Shown(), 4, 4);
    EXPECT_NEAR(solid.red, 100, 1);
    EXPECT_EQ(solid.green, 100);
    EXPECT_EQ(solid.blue, 0);

    Paint().Clear(Colour(WHITE));
    placement.alpha = 0.5f;
    Paint().Sprite(sprite, 0, placement);
    EXPECT_NEAR(At(Shown(), 4, 4).red, 178, 2); // (100 + 255) / 2
    EXPECT_NEAR(At(Shown(), 4, 4).blue, 128, 2);
}

TEST_F(Sprites, APicturesOwnAlphaMixes)
{
    Paint().Clear(Colour(WHITE));
    Paint().Sprite(Paint().AddSheet(Filled(8, 8, {255, 0, 0, 64}), 8, 8), 0, 0, 0);
    const Pixel mixed = At(Shown(), 4, 4);
    EXPECT_EQ(mixed.red, 255);
    EXPECT_NEAR(mixed.green, 191, 1); // three quarters of white
    EXPECT_NEAR(mixed.blue, 191, 1);
}

TEST_F(Sprites, TheDrawingAlphaIsUsedWhereNoPlacementSaysMore)
{
    const int sprite = Paint().AddSheet(Filled(8, 8, WHITE), 8, 8);
    Paint().SetAlpha(0.5f);
    Paint().Sprite(sprite, 0, 0, 0);
    Paint().Sprite(sprite, 0, Runner::Placement{20, 20});
    EXPECT_NEAR(At(Shown(), 4, 4).red, 127, 1);
    EXPECT_EQ(At(Shown(), 24, 24), WHITE);
}

TEST_F(Sprites, AStretchedSpriteFillsItsRectangle)
{
    Paint().SpriteStretched(FourCornerSprite(8), 0, 10, 20, 50, 30);
    EXPECT_EQ(CornersOf(Shown(), 10, 20, 50, 30), UPRIGHT);
    EXPECT_EQ(CountPixels(Shown(), BLACK), 64 * 64 - 400);
}

TEST_F(Sprites, PixelsOfAnEnlargedSpriteStaySharp)
{
    Paint().SpriteStretched(FourCornerSprite(2), 0, 0, 0, 64, 64);
    EXPECT_EQ(Shown().rgba, FourCorners(64).rgba);
}

TEST_F(Sprites, AMissingSpriteIsOneClearError)
{
    Paint().Sprite(7, 0, 0, 0);
    Paint().Sprite(8, 0, 0, 0);
    EXPECT_EQ(Paint().TakeError(), "there is no sprite 7");
    EXPECT_EQ(Paint().TakeError(), "");
    EXPECT_EQ(Paint().FindSprite(-1), nullptr);
}

TEST_F(Sprites, AFreedNumberIsGivenAgain)
{
    const int first = FourFrames(), second = FourFrames();
    EXPECT_EQ(first, 0);
    EXPECT_EQ(second, 1);
    Paint().Sprite(first, 0, 0, 0);
    EXPECT_TRUE(Paint().FreeSprite(first)); // what waits to be drawn is drawn first
    EXPECT_EQ(At(Shown(), 2, 2), RED);
    EXPECT_EQ(Paint().FindSprite(first), nullptr);
    EXPECT_EQ(FourFrames(), first);
    EXPECT_FALSE(Paint().FreeSprite(99));
    EXPECT_EQ(Paint().TakeError(), "there is no sprite 99");
}

TEST_F(Sprites, AFrameThatDoesNotFitIsRefused)
{
    for (const auto& [width, height] : {std::pair(0, 4), {4, 0}, {-1, 4}, {17, 4}, {4, 5}})
    {
        EXPECT_EQ(Paint().AddSheet(Filled(16, 4, RED), width, height), -1);
        EXPECT_EQ(Paint().TakeError(), "a picture of 16 x 4 pixels holds no frame of " + std::to_string(width) + " x " +
                                           std::to_string(height));
    }
}
} // namespace DrawTest
