#include "Tests/Runner/Draw/Draw_Support.h"

namespace DrawTest
{
class Space : public Screen
{
protected:
    // An upright square in the plane z.
    void Square(const Pixel& colour, float z, float left = 0, float top = 0, float right = 64, float bottom = 64)
    {
        Paint().SetColour(Colour(colour));
        Paint().Quad(-1, 0, {{left, top, z}, {right, top, z}, {right, bottom, z}, {left, bottom, z}});
    }
};

TEST_F(Space, ThePlaneOfZeroDepthShowsTheViewsRectangleWithRoomYUpwards)
{
    LookInto(0, 0, 64, 64);
    Paint().Sprite(FourCornerSprite(64), 0, 0, 0);
    EXPECT_EQ(CornersOf(Shown()), (Corners{BLUE, YELLOW, RED, GREEN}));
}

TEST_F(Space, ThingsAtTwiceTheDistanceLookHalfAsLarge)
{
    LookInto(-32, -32, 64, 64); // the eye is at 0, 0, -64
    Square(RED, 64, -32, -32, 32, 32);
    EXPECT_EQ(CountPixels(Shown(), RED, 16, 16, 48, 48), 32 * 32);
    EXPECT_EQ(CountPixels(Shown(), RED), 32 * 32);
}

TEST_F(Space, TheNearerCoversWithTheDepthTest)
{
    LookInto(0, 0, 64, 64);
    Paint().SetDepthTest(true);
    Square(GREEN, -10);
    Square(RED, 0);
    EXPECT_EQ(CountPixels(Shown(), GREEN), 64 * 64);
}

TEST_F(Space, TheLaterCoversWithoutTheDepthTest)
{
    LookInto(0, 0, 64, 64);
    Square(GREEN, -10);
    Square(RED, 0);
    EXPECT_EQ(CountPixels(Shown(), RED), 64 * 64);
}

TEST_F(Space, FlatViewsTestDepthToo)
{
    Paint().SetDepthTest(true);
    Square(GREEN, -1);
    Square(RED, 1);
    Square(BLUE, -2, 0, 0, 32, 64);
    const Runner::Picture shown = Shown();
    EXPECT_EQ(CountPixels(shown, BLUE, 0, 0, 32, 64), 32 * 64);
    EXPECT_EQ(CountPixels(shown, GREEN), 32 * 64);
}

TEST_F(Space, AFlatCameraSeesSixteenThousandBothWays)
{
    for (const float z : {-15999.0f, 15999.0f})
    {
        Paint().Clear(0);
        Square(GREEN, z);
        EXPECT_EQ(CountPixels(Shown(), GREEN), 64 * 64) << z;
    }
    for (const float z : {-16010.0f, 16010.0f})
    {
        Paint().Clear(0);
        Square(GREEN, z);
        EXPECT_EQ(CountPixels(Shown(), BLACK), 64 * 64) << z;
    }
}

TEST_F(Space, SurfacesThatCutEachOtherShowWhatIsNearer)
{
    Paint().SetDepthTest(true);
    Paint().SetColour(Colour(RED)); // leans: near on the left, far on the right, at the other's depth in the middle
    Paint().Quad(-1, 0, {{0, 0, -32}, {64, 0, 32}, {64, 64, 32}, {0, 64, -32}});
    Square(GREEN, 0);
    const Runner::Picture shown = Shown();
    EXPECT_GE(CountPixels(shown, RED, 0, 0, 32, 64), 31 * 64);
    EXPECT_GE(CountPixels(shown, GREEN, 32, 0, 64, 64), 31 * 64);
}

TEST_F(Space, ClearForgetsDepthsInThePortAlone)
{
    Paint().SetDepthTest(true);
    Square(GREEN, -10);
    Paint().SetPort({0, 0, 32, 64});
    Paint().Clear(0);
    Paint().SetPort({0, 0, 64, 64});
    Square(RED, 0);
    const Runner::Picture shown = Shown();
    EXPECT_EQ(CountPixels(shown, RED, 0, 0, 32, 64), 32 * 64);
    EXPECT_EQ(CountPixels(shown, GREEN, 32, 0, 64, 64), 32 * 64);
}

TEST_F(Space, FullyTransparentPixelsDoNotHideWhatIsBehind)
{
    Runner::Picture holed = Filled(2, 1, GREEN);
    Set(holed, 1, 0, NOTHING);
    const int sprite = Paint().AddSheet(holed, 2, 1);
    Paint().SetDepthTest(true);
    Paint().Quad(sprite, 0, {{0, 0, -10}, {64, 0, -10}, {64, 64, -10}, {0, 64, -10}});
    Square(RED, 0);
    const Runner::Picture shown = Shown();
    EXPECT_EQ(CountPixels(shown, GREEN, 0, 0, 32, 64), 32 * 64);
    EXPECT_EQ(CountPixels(shown, RED, 32, 0, 64, 64), 32 * 64);
}

TEST_F(Space, SurfacesHaveDepthsOfTheirOwn)
{
    const int surface = Paint().CreateSurface(64, 64);
    Paint().SetDepthTest(true);
    Square(GREEN, -10);
    Paint().PushTarget(surface);
    Square(RED, 0);
    Square(BLUE, 5);
    Paint().PopTarget();
    Runner::Picture drawn;
    Paint().ReadSurface(surface, drawn);
    EXPECT_EQ(CountPixels(drawn, RED), 64 * 64);
    EXPECT_EQ(CountPixels(Shown(), GREEN), 64 * 64);
}

TEST_F(Space, AQuadShowsItsPictureFromCornerToCorner)
{
    const int sprite = FourCornerSprite(64);
    Paint().Quad(sprite, 0, {{0, 0, 5}, {64, 0, 5}, {64, 64, 5}, {0, 64, 5}});
    EXPECT_EQ(CornersOf(Shown()), UPRIGHT);
}

TEST_F(Space, APictureThatRecedesIsDrawnInPerspective)
{
    // A floor from z = 0 to z = 192 below the eye at z = -64: its middle row, z = 96, appears at 64 / (64 + 96) = 0.4
    // of the front edge's distance from the horizon. Drawn without perspective it would be half-way, at 0.625.
    const int sprite = FourCornerSprite(64);
    LookInto(-32, -32, 64, 64);
    Paint().Quad(sprite, 0,
                 {{-32, -32, 192}, {32, -32, 192}, {32, -32, 0}, {-32, -32, 0}}); // room y up: y -32 is below
    const Runner::Picture shown = Shown();
    const int middleRow = 32 + 13; // 32 rows from horizon to edge; 0.4 of them is 12.8
    EXPECT_EQ(At(shown, 30, middleRow - 2), RED);
    EXPECT_EQ(At(shown, 30, middleRow + 1), BLUE);
    EXPECT_EQ(At(shown, 34, middleRow + 1), YELLOW);
}

TEST_F(Space, ABoxShowsItsFrontFaceUprightAndUndarkened)
{
    Paint().SetDepthTest(true);
    Paint().Box(FourCornerSprite(64), 0, {0, 0, -32}, {64, 64, 32});
    EXPECT_EQ(CornersOf(Shown()), UPRIGHT);
}

TEST_F(Space, ABoxIsDarkenedByDirection)
{
    struct Look
    {
        kvVector3 turn;
        int light;
    };
    // turned so that the named face comes to the front: small z, large z, small y, large y, small x, large x
    const Look looks[] = {{{0, 0, 0}, 200},  {{0, 180, 0}, 100}, {{-90, 0, 0}, 170},
                          {{90, 0, 0}, 120}, {{0, 90, 0}, 150},  {{0, -90, 0}, 140}};
    Paint().SetDepthTest(true);
    Paint().SetColour(0xC8C8C8);
    for (const Look& look : looks)
    {
        kvMatrix world = Runner::BuildWorldMatrix({32, 32, 0}, look.turn, {1, 1, 1});
        Graphics::SetMatrix(eM_World, world.m);
        Paint().Clear(0);
        Paint().Box(-1, 0, {-32, -32, -32}, {32, 32, 32});
        EXPECT_EQ(At(Shown(), 32, 32), (Pixel{look.light, look.light, look.light, 255}))
            << look.turn.x << ", " << look.turn.y;
    }
}

TEST_F(Space, ThingsBehindTheEyeAreNotSeen)
{
    LookInto(0, 0, 64, 64);
    Square(RED, -100);
    EXPECT_EQ(CountPixels(Shown(), BLACK), 64 * 64);
}

TEST_F(Space, AMissingSpriteIsAnErrorAndMinusOneIsNone)
{
    Paint().Quad(5, 0, {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}});
    EXPECT_EQ(Paint().TakeError(), "there is no sprite 5");
    Paint().Box(-2, 0, {0, 0, 0}, {1, 1, 1});
    EXPECT_EQ(Paint().TakeError(), "there is no sprite -2");
}
} // namespace DrawTest
