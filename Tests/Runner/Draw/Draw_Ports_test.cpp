#include "Tests/Runner/Draw/Draw_Support.h"

namespace DrawTest
{
class Ports : public Screen
{
};

TEST_F(Ports, NothingIsDrawnOutsideOfThePort)
{
    Paint().SetPort({8, 16, 20, 10});
    Fill(RED, -1000, -1000, 1000, 1000);
    EXPECT_EQ(CountPixels(Shown(), RED, 8, 16, 28, 26), 20 * 10);
    EXPECT_EQ(CountPixels(Shown(), BLACK), 64 * 64 - 200);
}

// A frame that fails leaves the picture of the frame before; the next one draws on.
TEST_F(Ports, AFrameThatIsTakenBackLeavesTheScreenOfTheOneBefore)
{
    Fill(RED, 0, 0, 64, 64);
    Paint().EndFrame();
    for (const Pixel& colour : {BLUE, GREEN})
    {
        Paint().BeginFrame();
        Paint().Clear(0);
        Fill(colour, 0, 0, 32, 64);
        Paint().TakeBackFrame();
        EXPECT_EQ(CountPixels(Paint().ReadScreen(), RED), 64 * 64);
    }
    Paint().BeginFrame();
    Paint().Clear(0);
    Fill(YELLOW, 0, 0, 32, 64);
    Paint().EndFrame();
    EXPECT_EQ(CountPixels(Paint().ReadScreen(), YELLOW), 32 * 64);
    EXPECT_EQ(CountPixels(Paint().ReadScreen(), BLACK), 32 * 64);
}

TEST_F(Ports, AWideLineDoesNotSpillEither)
{
    Paint().SetPort({8, 16, 20, 10});
    Paint().SetLineWidth(30);
    Paint().Line(0, 0, 64, 64);
    EXPECT_EQ(CountPixels(Shown(), WHITE), CountPixels(Shown(), WHITE, 8, 16, 28, 26));
    EXPECT_GT(CountPixels(Shown(), WHITE), 100);
}

TEST_F(Ports, FourPortsShowFourViewsSideBySide)
{
    const int sprite = FourCornerSprite(64);
    for (int i = 0; i < 4; i++) // port i shows quarter i of the sprite
    {
        const int x = i % 2 * 32, y = i / 2 * 32;
        Paint().SetPort({x, y, 32, 32});
        LookAt(static_cast<float>(x), static_cast<float>(y), 32, 32);
        Paint().Sprite(sprite, 0, 0, 0);
    }
    EXPECT_EQ(Shown().rgba, FourCorners(64).rgba);
}

TEST_F(Ports, ClearKeepsToThePort)
{
    Paint().SetPort({0, 0, 64, 10});
    Paint().Clear(Colour(GREEN));
    EXPECT_EQ(CountPixels(Shown(), GREEN, 0, 0, 64, 10), 640);
    EXPECT_EQ(CountPixels(Shown(), GREEN), 640);
}

TEST_F(Ports, APortMayReachBeyondTheScreen)
{
    const int sprite = FourCornerSprite(64);
    Paint().SetPort({-32, -32, 64, 64});
    Paint().Sprite(sprite, 0, 0, 0);
    Paint().SetPort({32, 32, 64, 64});
    Paint().Sprite(sprite, 0, 0, 0);
    const Runner::Picture shown = Shown();
    EXPECT_EQ(CountPixels(shown, YELLOW, 0, 0, 32, 32), 32 * 32);
    EXPECT_EQ(CountPixels(shown, RED, 32, 32, 64, 64), 32 * 32);
}

TEST_F(Ports, PortsWithoutPixelsShowNothing)
{
    const int ports[][4] = {{0, 0, 0, 64},   {0, 0, 64, 0},    {0, 0, -5, 64},
                            {64, 0, 10, 10}, {0, -70, 10, 10}, {-2147483647, -2147483647, 2147483647, 2147483647}};
    for (const auto& port : ports)
    {
        Paint().SetPort({port[0], port[1], port[2], port[3]});
        Paint().Clear(Colour(RED));
        Fill(RED, -1000, -1000, 1000, 1000);
    }
    EXPECT_EQ(CountPixels(Shown(), BLACK), 64 * 64);
}

TEST_F(Ports, AFrameBeginsWithTheWholeScreenAndFreshState)
{
    Paint().SetPort({5, 5, 5, 5});
    Paint().SetAlpha(0.1f);
    Paint().SetColour(5);
    Paint().SetDepthTest(true);
    Paint().PushTarget(Paint().CreateSurface(4, 4));
    Paint().BeginFrame();
    EXPECT_EQ(g_RenderTargetActive, -1);
    EXPECT_EQ(Paint().Alpha(), 1.0f);
    EXPECT_EQ(Paint().Colour(), 0xFFFFFFu);
    EXPECT_FALSE(Paint().DepthTest());
    Paint().Rectangle(0, 0, 64, 64);
    EXPECT_EQ(CountPixels(Shown(), WHITE), 64 * 64);
}
} // namespace DrawTest
