#include "Tests/Runner/Draw/Draw_Support.h"

#include <cmath>
#include <limits>

namespace DrawTest
{
class Shapes : public Screen
{
};

TEST_F(Shapes, ANewScreenIsBlackAndOpaque) { EXPECT_EQ(CountPixels(Shown(), BLACK), 64 * 64); }

TEST_F(Shapes, ClearFillsTheScreenAndKeepsItOpaque)
{
    Paint().Clear(Colour(BLUE), 0.0f);
    EXPECT_EQ(CountPixels(Shown(), BLUE), 64 * 64);
}

TEST_F(Shapes, ARectangleCoversExactlyThePixelsBetweenItsEdges)
{
    Fill(RED, 10, 20, 30, 25);
    const Runner::Picture shown = Shown();
    EXPECT_EQ(CountPixels(shown, RED), 20 * 5);
    EXPECT_EQ(CountPixels(shown, RED, 10, 20, 30, 25), 20 * 5);
}

TEST_F(Shapes, ARectangleMayHaveItsEdgesInAnyOrder)
{
    Fill(RED, 30, 25, 10, 20);
    EXPECT_EQ(CountPixels(Shown(), RED, 10, 20, 30, 25), 20 * 5);
}

TEST_F(Shapes, TheColoursBytesAreRedGreenBlueFromTheLowest)
{
    Paint().SetColour(0xFF332211);
    Paint().Rectangle(0, 0, 64, 64);
    EXPECT_EQ(At(Shown(), 32, 32), (Pixel{0x11, 0x22, 0x33, 255}));
}

TEST_F(Shapes, AnOutlineLiesInsideTheEdges)
{
    Paint().SetColour(Colour(GREEN));
    Paint().SetLineWidth(2);
    Paint().Rectangle(10, 10, 30, 20, true);
    const Runner::Picture shown = Shown();
    EXPECT_EQ(CountPixels(shown, GREEN), 20 * 10 - 16 * 6);
    EXPECT_EQ(CountPixels(shown, BLACK, 12, 12, 28, 18), 16 * 6);
}

TEST_F(Shapes, ATransparentOutlineIsEvenAtItsCorners)
{
    Paint().SetAlpha(0.5f);
    Paint().Rectangle(10, 10, 30, 20, true);
    const Runner::Picture shown = Shown();
    EXPECT_EQ(At(shown, 10, 10), At(shown, 20, 10));
    EXPECT_EQ(At(shown, 29, 19), At(shown, 20, 10));
    EXPECT_NE(At(shown, 20, 10), BLACK);
}

TEST_F(Shapes, AnOutlineThickerThanTheRectangleFillsIt)
{
    Paint().SetColour(Colour(GREEN));
    Paint().SetLineWidth(50);
    Paint().Rectangle(10, 10, 30, 20, true);
    EXPECT_EQ(CountPixels(Shown(), GREEN), 20 * 10);
}

TEST_F(Shapes, ALineThroughPixelCentresIsOnePixelWide)
{
    Paint().Line(5, 10.5f, 20, 10.5f);
    Paint().Line(40.5f, 30, 40.5f, 50);
    const Runner::Picture shown = Shown();
    EXPECT_EQ(CountPixels(shown, WHITE, 5, 10, 20, 11), 15);
    EXPECT_EQ(CountPixels(shown, WHITE, 40, 30, 41, 50), 20);
    EXPECT_EQ(CountPixels(shown, WHITE), 35);
}

TEST_F(Shapes, ALineHasTheWidthThatWasSet)
{
    Paint().SetLineWidth(6);
    Paint().Line(10, 32, 50, 32);
    EXPECT_EQ(CountPixels(Shown(), WHITE, 10, 29, 50, 35), 40 * 6);
}

TEST_F(Shapes, ADiagonalLineCrossesTheScreen)
{
    Paint().SetLineWidth(3);
    Paint().Line(0, 0, 64, 64);
    const Runner::Picture shown = Shown();
    for (int i = 1; i < 63; i++)
        EXPECT_EQ(At(shown, i, i), WHITE) << i;
    EXPECT_EQ(At(shown, 50, 10), BLACK);
    EXPECT_EQ(At(shown, 10, 50), BLACK);
}

TEST_F(Shapes, ALineWithoutLengthShowsNothing)
{
    Paint().Line(10, 10, 10, 10);
    EXPECT_EQ(CountPixels(Shown(), BLACK), 64 * 64);
}

TEST_F(Shapes, ATriangleCoversHalfOfItsRectangle)
{
    Paint().Triangle(0, 0, 64, 0, 0, 64);
    const Runner::Picture shown = Shown();
    EXPECT_EQ(At(shown, 1, 1), WHITE);
    EXPECT_EQ(At(shown, 62, 62), BLACK);
    EXPECT_NEAR(CountPixels(shown, WHITE), 64 * 64 / 2, 64);
}

TEST_F(Shapes, ATrianglesOutlineIsHollow)
{
    Paint().Triangle(4, 4, 60, 4, 4, 60, true);
    const Runner::Picture shown = Shown();
    EXPECT_EQ(At(shown, 15, 15), BLACK);
    EXPECT_GT(CountPixels(shown, WHITE), 100);
}

TEST_F(Shapes, ACircleIsRoundAndInItsPlace)
{
    Paint().Circle(32, 32, 20);
    const Runner::Picture shown = Shown();
    EXPECT_NEAR(CountPixels(shown, WHITE), 3.14159 * 400, 40);
    for (const auto& [x, y] : {std::pair(32, 13), {32, 50}, {13, 32}, {50, 32}, {32, 32}})
        EXPECT_EQ(At(shown, x, y), WHITE) << x << ", " << y;
    for (const auto& [x, y] : {std::pair(32, 11), {32, 52}, {11, 32}, {52, 32}, {16, 16}, {48, 48}})
        EXPECT_EQ(At(shown, x, y), BLACK) << x << ", " << y;
}

TEST_F(Shapes, ACirclesOutlineIsARing)
{
    Paint().SetLineWidth(4);
    Paint().Circle(32, 32, 20, true);
    const Runner::Picture shown = Shown();
    EXPECT_NEAR(CountPixels(shown, WHITE), 3.14159 * (400 - 256), 40);
    EXPECT_EQ(At(shown, 32, 32), BLACK);
    EXPECT_EQ(At(shown, 32, 14), WHITE);
}

TEST_F(Shapes, HalfAlphaMixesHalfAndHalf)
{
    Paint().Clear(Colour(BLUE));
    Paint().SetColour(Colour(RED));
    Paint().SetAlpha(0.5f);
    Paint().Rectangle(0, 0, 64, 64);
    const Pixel mixed = At(Shown(), 32, 32);
    EXPECT_NEAR(mixed.red, 127, 1);
    EXPECT_EQ(mixed.green, 0);
    EXPECT_NEAR(mixed.blue, 128, 1);
    EXPECT_EQ(mixed.alpha, 255);
}

TEST_F(Shapes, AlphaIsClampedAndItsNaNShowsNothing)
{
    Paint().SetAlpha(7.0f);
    EXPECT_EQ(Paint().Alpha(), 1.0f);
    Paint().SetAlpha(-1.0f);
    EXPECT_EQ(Paint().Alpha(), 0.0f);
    Paint().SetAlpha(std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(Paint().Alpha(), 0.0f);
    Paint().Rectangle(0, 0, 64, 64);
    EXPECT_EQ(CountPixels(Shown(), BLACK), 64 * 64);
}

TEST_F(Shapes, LaterShapesCoverEarlierOnesWhateverTheirDepth)
{
    Paint().SetDepth(-100);
    Fill(RED, 0, 0, 64, 64);
    Paint().SetDepth(100);
    Fill(GREEN, 0, 0, 64, 64);
    EXPECT_EQ(CountPixels(Shown(), GREEN), 64 * 64);
}

TEST_F(Shapes, PlacesThatAreNotFiniteOrFarAwayDoNoHarm)
{
    const float bad[] = {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(), -3e38f,
                         3e38f};
    for (const float x : bad)
    {
        Paint().Line(x, 0, 10, 10);
        Paint().Circle(x, 5, 3, true);
        Paint().Circle(5, 5, x == 3e38f ? 1.0f : x);
        Paint().Triangle(x, 0, x, 10, 0, x);
        Paint().Text(x, x, "text");
    }
    Paint().SetLineWidth(std::numeric_limits<float>::quiet_NaN());
    Paint().Line(0, 0, 64, 64);
    Paint().Clear(Colour(BLUE));
    Fill(GREEN, 0, 0, 32, 64);
    const Runner::Picture shown = Shown();
    EXPECT_EQ(CountPixels(shown, GREEN), 32 * 64);
    EXPECT_EQ(CountPixels(shown, BLUE), 32 * 64);
}

TEST_F(Shapes, AMatrixThatIsNotFiniteShowsNothing)
{
    LookAt(0, 0, 0, 64); // a view without a width divides by zero
    Fill(RED, 0, 0, 64, 64);
    EXPECT_EQ(CountPixels(Shown(), BLACK), 64 * 64);
}

TEST_F(Shapes, ShapesAndTextOfOneStateAreOneBatch)
{
    for (int i = 0; i < 50; i++)
    {
        Paint().SetColour(static_cast<unsigned>(i) * 1000);
        Paint().Rectangle(0, 0, 10, 10);
        Paint().Text(0, 0, "ab");
    }
    Paint().EndFrame();
    EXPECT_EQ(Paint().Counts().batches, 1);
    EXPECT_EQ(Paint().Counts().vertices, 50 * 3 * 4);
}

TEST_F(Shapes, EachChangeOfStateIsANewBatchAndNoChangeIsNone)
{
    const int sprite = FourCornerSprite(8);
    Paint().Rectangle(0, 0, 10, 10);
    LookAt(0, 0, 32, 32);
    Paint().Rectangle(0, 0, 10, 10); // other matrices
    LookAt(0, 0, 32, 32);
    Paint().Rectangle(0, 0, 10, 10); // the same again
    Paint().SetPort({0, 0, 32, 32});
    Paint().Rectangle(0, 0, 10, 10); // another port
    Paint().Sprite(sprite, 0, 0, 0); // another texture
    Paint().Sprite(sprite, 0, 9, 9);
    Paint().SetDepthTest(true);
    Paint().Sprite(sprite, 0, 9, 9); // depth
    Paint().EndFrame();
    EXPECT_EQ(Paint().Counts().batches, 5);
    EXPECT_EQ(Paint().Counts().vertices, 7 * 4);
    Paint().BeginFrame();
    EXPECT_EQ(Paint().Counts().batches, 0);
}

TEST_F(Shapes, MoreVerticesThanABatchHoldsAreAllDrawn)
{
    for (int i = 0; i < 64 * 64 * 5; i++) // 81,920 vertices
        Fill(i % 5 == 4 ? WHITE : RED, static_cast<float>(i / 5 % 64), static_cast<float>(i / 5 / 64),
             static_cast<float>(i / 5 % 64 + 1), static_cast<float>(i / 5 / 64 + 1));
    EXPECT_EQ(CountPixels(Shown(), WHITE), 64 * 64);
    EXPECT_EQ(Paint().Counts().batches, 2);
}

TEST_F(Shapes, TheSameDrawingGivesTheSamePixelsAgain)
{
    Runner::Picture pictures[2];
    for (Runner::Picture& picture : pictures)
    {
        Paint().BeginFrame();
        Paint().Clear(0x123456);
        LookAt(3.3f, -2.1f, 50.7f, 44.4f, 33.3f);
        Paint().SetAlpha(0.37f);
        Paint().Circle(25, 25, 17.3f);
        Paint().Text(3, 3, "again", 1.3f);
        picture = Shown();
    }
    EXPECT_EQ(pictures[0].rgba, pictures[1].rgba);
}
} // namespace DrawTest
