#include "Tests/Runner/Draw/Draw_Support.h"

namespace DrawTest
{
class Surfaces : public Screen
{
protected:
    Pixel SurfacePixel(int surface, int x, int y)
    {
        Runner::Picture picture;
        EXPECT_TRUE(Paint().ReadSurface(surface, picture));
        return At(picture, x, y);
    }
};

TEST_F(Surfaces, ANewSurfaceIsTransparent)
{
    const int surface = Paint().CreateSurface(5, 7);
    Runner::Picture picture;
    ASSERT_TRUE(Paint().ReadSurface(surface, picture));
    EXPECT_EQ(picture.width, 5);
    EXPECT_EQ(picture.height, 7);
    EXPECT_EQ(CountPixels(picture, NOTHING), 35);
    EXPECT_EQ(Paint().SurfaceWidth(surface), 5);
    EXPECT_EQ(Paint().SurfaceHeight(surface), 7);
}

TEST_F(Surfaces, DrawingGoesToTheBoundSurfaceAlone)
{
    const int surface = Paint().CreateSurface(64, 64);
    ASSERT_TRUE(Paint().PushTarget(surface));
    EXPECT_EQ(g_RenderTargetActive, surface);
    Fill(RED, 0, 0, 64, 64);
    ASSERT_TRUE(Paint().PopTarget());
    EXPECT_EQ(g_RenderTargetActive, -1);
    EXPECT_EQ(CountPixels(Shown(), BLACK), 64 * 64);
    EXPECT_EQ(SurfacePixel(surface, 63, 63), RED);
}

TEST_F(Surfaces, ClearMayLeaveASurfaceTransparent)
{
    const int surface = Paint().CreateSurface(8, 8);
    Paint().PushTarget(surface);
    Paint().Clear(Colour(RED));
    EXPECT_EQ(SurfacePixel(surface, 1, 1), RED);
    Paint().Clear(Colour(RED), 0.0f);
    EXPECT_EQ(SurfacePixel(surface, 1, 1), NOTHING);
    Paint().PopTarget();
}

TEST_F(Surfaces, HalfTransparentDrawingKeepsItsColourInASurface)
{
    const int surface = Paint().CreateSurface(8, 8);
    Paint().PushTarget(surface);
    Paint().SetAlpha(0.5f);
    Fill(RED, 0, 0, 8, 8);
    Paint().PopTarget();
    const Pixel kept = SurfacePixel(surface, 1, 1);
    EXPECT_EQ(kept.red, 255);
    EXPECT_NEAR(kept.alpha, 127, 1);

    Paint().Clear(Colour(WHITE)); // no dark fringe: the surface on white is as the rectangle on white
    Paint().SetAlpha(1.0f);
    Paint().Surface(surface, 0, 0);
    EXPECT_EQ(At(Shown(), 1, 1).red, 255);
    EXPECT_NEAR(At(Shown(), 1, 1).green, 128, 1);
}

TEST_F(Surfaces, PopBringsBackMatricesPortAndViewArea)
{
    LookAt(10, 20, 32, 32, 45);
    Paint().SetPort({1, 2, 30, 40});
    kvMatrix world = Runner::BuildWorldMatrix({1, 2, 3}, {0, 0, 0}, {1, 1, 1});
    Graphics::SetMatrix(eM_World, world.m);
    const kvMatrix before = Runner::RoomToClip();
    const float areaX = g_ViewAreaX, areaA = g_ViewAreaA;
    Paint().PushTarget(Paint().CreateSurface(16, 16));
    EXPECT_FLOAT_EQ(g_ViewAreaW, 16.0f);
    Paint().PopTarget();
    const kvMatrix after = Runner::RoomToClip();
    EXPECT_TRUE(std::equal(std::begin(before.u), std::end(before.u), std::begin(after.u)));
    EXPECT_EQ(g_ViewAreaX, areaX);
    EXPECT_EQ(g_ViewAreaA, areaA);
    Paint().Clear(Colour(RED));
    EXPECT_EQ(CountPixels(Shown(), RED, 1, 2, 31, 42), 30 * 40);
    EXPECT_EQ(CountPixels(Shown(), RED), 30 * 40);
}

TEST_F(Surfaces, TargetsNest)
{
    const int outer = Paint().CreateSurface(8, 8), inner = Paint().CreateSurface(8, 8);
    Paint().PushTarget(outer);
    Paint().PushTarget(inner);
    Paint().Clear(Colour(GREEN));
    Paint().PopTarget();
    EXPECT_EQ(g_RenderTargetActive, outer);
    Paint().Clear(Colour(BLUE));
    Paint().PopTarget();
    EXPECT_EQ(SurfacePixel(inner, 4, 4), GREEN);
    EXPECT_EQ(SurfacePixel(outer, 4, 4), BLUE);
}

TEST_F(Surfaces, AStretchedSurfaceFillsItsRectangleInTheDrawingColour)
{
    const int surface = Paint().CreateSurface(2, 2);
    Paint().PushTarget(surface);
    Paint().Clear(Colour(WHITE));
    Paint().PopTarget();
    Paint().SetColour(Colour(GREEN));
    Paint().SurfaceStretched(surface, 10, 10, 30, 50);
    EXPECT_EQ(CountPixels(Shown(), GREEN, 10, 10, 30, 50), 20 * 40);
}

TEST_F(Surfaces, MisuseIsRefusedWithOneLine)
{
    Paint().Surface(3, 0, 0);
    EXPECT_EQ(Paint().TakeError(), "there is no surface 3");
    EXPECT_FALSE(Paint().PushTarget(-1));
    EXPECT_EQ(Paint().TakeError(), "there is no surface -1");
    EXPECT_FALSE(Paint().PopTarget());
    EXPECT_EQ(Paint().TakeError(), "no surface is bound: there is no target to reset");
    EXPECT_EQ(Paint().CreateSurface(0, 5), -1);
    EXPECT_EQ(Paint().TakeError(), "a surface cannot be 0 x 5 pixels: both sides must be 1 to 8192");
    EXPECT_EQ(Paint().CreateSurface(5, 8193), -1);
    EXPECT_NE(Paint().TakeError(), "");
}

TEST_F(Surfaces, ABoundSurfaceCanNeitherBeFreedNorDrawnIntoItself)
{
    const int surface = Paint().CreateSurface(8, 8), other = Paint().CreateSurface(8, 8);
    Paint().PushTarget(surface);
    Paint().Surface(surface, 0, 0);
    EXPECT_EQ(Paint().TakeError(), "surface 0 cannot be drawn into itself");
    EXPECT_FALSE(Paint().FreeSurface(surface));
    EXPECT_EQ(Paint().TakeError(), "surface 0 cannot be freed: it is drawn into");
    Paint().PushTarget(other);
    EXPECT_FALSE(Paint().FreeSurface(surface));
    EXPECT_NE(Paint().TakeError(), "");
    Paint().PopTarget();
    Paint().PopTarget();
    EXPECT_TRUE(Paint().FreeSurface(surface));
    EXPECT_FALSE(Paint().SurfaceExists(surface));
    EXPECT_EQ(Paint().CreateSurface(4, 4), surface);
}

TEST_F(Surfaces, TooManyBoundOnesAreRefused)
{
    const int surface = Paint().CreateSurface(8, 8);
    for (int i = 0; i < 16; i++)
        ASSERT_TRUE(Paint().PushTarget(surface));
    EXPECT_FALSE(Paint().PushTarget(surface));
    EXPECT_EQ(Paint().TakeError(), "surfaces are bound 16 deep already: reset a target first");
    Paint().EndFrame();
    EXPECT_EQ(g_RenderTargetActive, -1);
}

TEST_F(Surfaces, TogetherTheyHaveALimit)
{
    EXPECT_EQ(Paint().CreateSurface(8192, 8191), 0);
    EXPECT_EQ(Paint().CreateSurface(8192, 2), -1);
    EXPECT_EQ(Paint().TakeError(), "there is no memory for a surface of 8192 x 2 pixels: free other surfaces first");
    EXPECT_EQ(Paint().CreateSurface(8192, 1), 1);
}
} // namespace DrawTest
