#include "Tests/Runner/Draw/Draw_Support.h"

namespace DrawTest
{
class Orientation : public Screen
{
};

TEST_F(Orientation, RoomYGrowsDownwardsOnTheScreen)
{
    Fill(RED, 0, 0, 32, 32);
    Fill(YELLOW, 32, 32, 64, 64);
    EXPECT_EQ(CornersOf(Shown()), (Corners{RED, BLACK, BLACK, YELLOW}));
}

TEST_F(Orientation, ASpriteIsUpright)
{
    Paint().Sprite(FourCornerSprite(64), 0, 0, 0);
    EXPECT_EQ(CornersOf(Shown()), UPRIGHT);
    EXPECT_EQ(CountPixels(Shown(), RED, 0, 0, 32, 32), 32 * 32);
    EXPECT_EQ(CountPixels(Shown(), YELLOW, 32, 32, 64, 64), 32 * 32);
}

TEST_F(Orientation, ASpriteTurnsCounterClockwise)
{
    Runner::Placement placement;
    placement.x = placement.y = 32;
    placement.angle = 90;
    Paint().Sprite(FourCornerSprite(64, 32), 0, placement);
    EXPECT_EQ(CornersOf(Shown()), QUARTER_TURN_LEFT);
}

TEST_F(Orientation, ANegativeScaleMirrors)
{
    Runner::Placement placement;
    placement.x = placement.y = 32;
    placement.scaleX = -1;
    Paint().Sprite(FourCornerSprite(64, 32), 0, placement);
    EXPECT_EQ(CornersOf(Shown()), (Corners{GREEN, RED, YELLOW, BLUE}));
}

TEST_F(Orientation, ACamerasPositiveAngleTurnsWhatIsSeenCounterClockwise)
{
    const int sprite = FourCornerSprite(64);
    LookAt(0, 0, 64, 64, 90);
    Paint().Sprite(sprite, 0, 0, 0);
    EXPECT_EQ(CornersOf(Shown()), QUARTER_TURN_LEFT);
}

TEST_F(Orientation, ASurfaceIsUprightInMemory)
{
    const int surface = Paint().CreateSurface(64, 64);
    Paint().PushTarget(surface);
    Paint().Sprite(FourCornerSprite(64), 0, 0, 0);
    Paint().PopTarget();
    Runner::Picture drawn;
    ASSERT_TRUE(Paint().ReadSurface(surface, drawn));
    EXPECT_EQ(CornersOf(drawn), UPRIGHT);
}

TEST_F(Orientation, ACameraThatIsAppliedInASurfaceShowsItUprightToo)
{
    const int surface = Paint().CreateSurface(64, 32);
    Paint().PushTarget(surface);
    LookAt(100, 200, 128, 64);
    Runner::Placement placement;
    placement.x = 100;
    placement.y = 200;
    placement.scaleX = 2;
    Paint().Sprite(FourCornerSprite(64), 0, placement);
    Paint().PopTarget();
    Runner::Picture drawn;
    ASSERT_TRUE(Paint().ReadSurface(surface, drawn));
    EXPECT_EQ(CornersOf(drawn), UPRIGHT);
}

TEST_F(Orientation, ASurfaceOnTheScreenIsUpright)
{
    const int surface = Paint().CreateSurface(64, 64);
    Paint().PushTarget(surface);
    Paint().Sprite(FourCornerSprite(64), 0, 0, 0);
    Paint().PopTarget();
    Paint().Surface(surface, 0, 0);
    EXPECT_EQ(CornersOf(Shown()), UPRIGHT);
}

TEST_F(Orientation, ASurfaceOnTheScreenTurnsCounterClockwiseAboutItsTopLeftCorner)
{
    const int surface = Paint().CreateSurface(64, 64);
    Paint().PushTarget(surface);
    Paint().Sprite(FourCornerSprite(64), 0, 0, 0);
    Paint().PopTarget();
    Runner::Placement placement;
    placement.y = 64;
    placement.angle = 90;
    Paint().Surface(surface, placement);
    EXPECT_EQ(CornersOf(Shown()), QUARTER_TURN_LEFT);
}

TEST_F(Orientation, ASurfaceSeenThroughATurnedCameraTurnsWithTheRoom)
{
    const int surface = Paint().CreateSurface(64, 64);
    Paint().PushTarget(surface);
    Paint().Sprite(FourCornerSprite(64), 0, 0, 0);
    Paint().PopTarget();
    LookAt(0, 0, 64, 64, 90);
    Paint().Surface(surface, 0, 0);
    EXPECT_EQ(CornersOf(Shown()), QUARTER_TURN_LEFT);
}

TEST_F(Orientation, ASurfaceInASurfaceIsUpright)
{
    const int inner = Paint().CreateSurface(64, 64), outer = Paint().CreateSurface(64, 64);
    Paint().PushTarget(inner);
    Paint().Sprite(FourCornerSprite(64), 0, 0, 0);
    Paint().PopTarget();
    Paint().PushTarget(outer);
    Paint().Surface(inner, 0, 0);
    Paint().PopTarget();
    Paint().Surface(outer, 0, 0);
    EXPECT_EQ(CornersOf(Shown()), UPRIGHT);
}

TEST_F(Orientation, AWorldTurnAboutZIsCounterClockwise)
{
    kvMatrix world = Runner::BuildWorldMatrix({32, 32, 0}, {0, 0, 90}, {1, 1, 1});
    Graphics::SetMatrix(eM_World, world.m);
    Paint().Sprite(FourCornerSprite(64, 32), 0, 0, 0);
    EXPECT_EQ(CornersOf(Shown()), QUARTER_TURN_LEFT);
}

TEST_F(Orientation, ATileMapIsUpright)
{
    const int sheet = Paint().AddSheet(FourCorners(32), 16, 16);
    const int map = Paint().CreateTileMap(sheet, 2, 2, 32, 32);
    for (int tile = 0; tile < 4; tile++)
        Paint().SetTile(map, tile % 2, tile / 2, tile);
    Paint().TileMap(map, 0, 0);
    EXPECT_EQ(CornersOf(Shown()), UPRIGHT);
}

TEST_F(Orientation, TextIsUpright)
{
    Paint().Text(0, 0, "L", 4); // a stem on the left, a bar at the bottom: 32 x 48 pixels
    const Runner::Picture shown = Shown();
    EXPECT_EQ(At(shown, 8, 8), WHITE);
    EXPECT_EQ(At(shown, 8, 34), WHITE);
    EXPECT_EQ(At(shown, 26, 34), WHITE);
    EXPECT_EQ(At(shown, 26, 8), BLACK);
}
} // namespace DrawTest
