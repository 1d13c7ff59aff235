#include "Tests/Runner/Draw/Draw_Support.h"

#include "Runner/Draw/Tile_Grid.h"

#include <limits>

namespace DrawTest
{
class Tiles : public Screen
{
protected:
    // A 3 x 3 sheet of 8-pixel tiles, the middle one green and its neighbours red, so that a sample beyond its edge
    // shows.
    int GreenAmongRed()
    {
        Runner::Picture sheet = Filled(24, 24, RED);
        for (int y = 8; y < 16; y++)
        {
            for (int x = 8; x < 16; x++)
                Set(sheet, x, y, GREEN);
        }
        return Paint().AddSheet(sheet, 8, 8);
    }

    int MapOf(int tile, int columns, int rows, float size)
    {
        const int map = Paint().CreateTileMap(GreenAmongRed(), columns, rows, size, size);
        for (int i = 0; i < columns * rows; i++)
            Paint().SetTile(map, i % columns, i / columns, tile);
        return map;
    }
};

TEST_F(Tiles, AnEmptyMapShowsNothing)
{
    Paint().TileMap(MapOf(-1, 8, 8, 8), 0, 0);
    EXPECT_EQ(CountPixels(Shown(), BLACK), 64 * 64);
}

TEST_F(Tiles, EachTileCoversItsPlace)
{
    const int map = MapOf(-1, 8, 8, 8);
    Paint().SetTile(map, 3, 5, 4);
    Paint().SetTile(map, 7, 0, 0);
    EXPECT_EQ(Paint().GetTile(map, 3, 5), 4);
    EXPECT_EQ(Paint().GetTile(map, 4, 5), -1);
    Paint().TileMap(map, 0, 0);
    const Runner::Picture shown = Shown();
    EXPECT_EQ(CountPixels(shown, GREEN, 24, 40, 32, 48), 64);
    EXPECT_EQ(CountPixels(shown, RED, 56, 0, 64, 8), 64);
    EXPECT_EQ(CountPixels(shown, BLACK), 64 * 64 - 128);
}

TEST_F(Tiles, AChangedTileIsSeenAtTheNextDrawing)
{
    const int map = MapOf(4, 8, 8, 8);
    Paint().TileMap(map, 0, 0);
    Paint().SetTile(map, 0, 0, 0);
    Paint().SetTile(map, 1, 0, -1);
    Paint().Clear(0);
    Paint().TileMap(map, 0, 0);
    EXPECT_EQ(CornersOf(Shown(), 0, 0, 16, 16), (Corners{RED, BLACK, GREEN, GREEN}));
}

TEST_F(Tiles, NoGapAndNoNeighbourShowsAtAnyPlaceZoomOrAngle)
{
    const int map = MapOf(4, 100, 100, 8); // 800 x 800 units, 4 x 4 chunks
    uint32_t seed = 12345;
    const auto random = [&seed](float low, float high)
    {
        seed = seed * 1664525u + 1013904223u;
        return low + (high - low) * static_cast<float>(seed >> 8) / 16777216.0f;
    };
    for (int i = 0; i < 240; i++)
    {
        const float size = i % 3 == 0 ? random(3, 40) : random(40, 380); // its diagonal stays inside the map
        const float x = 400 - size / 2 + random(-30, 30), y = 400 - size / 2 + random(-30, 30);
        const float angle = i % 4 == 0 ? 0.0f : random(-360, 360);
        LookAt(x, y, size, size, angle);
        Paint().Clear(Colour({255, 0, 255, 255}));
        Paint().TileMap(map, i % 2 == 0 ? 0.0f : random(-10, 10), random(-10, 10));
        EXPECT_EQ(CountPixels(Shown(), GREEN), 64 * 64) << i << ": " << x << ", " << y << ", " << size << ", " << angle;
    }
}

TEST_F(Tiles, NoGapShowsInPerspectiveOrATurnedWorld)
{
    const int map = MapOf(4, 100, 100, 8);
    for (int i = 0; i < 40; i++)
    {
        const auto turn = static_cast<float>(i);
        kvMatrix world = Runner::BuildWorldMatrix({0, 0, 0}, {turn * 0.5f, 0, turn * 9}, {1, 1, 1});
        Graphics::SetMatrix(eM_World, world.m);
        LookInto(-40 - turn, -30, 80, 80 + turn);
        Paint().Clear(Colour(BLUE));
        Paint().TileMap(map, -400, -400);
        EXPECT_EQ(CountPixels(Shown(), GREEN), 64 * 64) << i;
    }
}

TEST_F(Tiles, OnlyChunksInSightAreDrawn)
{
    const int side = 20 * Runner::TileGrid::CHUNK;
    const int map = MapOf(4, side, side, 8);
    const auto chunk = static_cast<float>(Runner::TileGrid::CHUNK * 8);
    LookAt(chunk * 5.25f, chunk * 7.25f, chunk * 0.5f, chunk * 0.5f);
    Paint().TileMap(map, 0, 0);
    EXPECT_EQ(Paint().Counts().batches, 1);
    EXPECT_EQ(CountPixels(Shown(), GREEN), 64 * 64);
    Paint().BeginFrame();
    LookAt(chunk * 5.25f, chunk * 7.25f, chunk * 0.5f, chunk * 0.5f, 30); // the corners' neighbours cannot be ruled out
    Paint().TileMap(map, 0, 0);
    EXPECT_LE(Paint().Counts().batches, 5);
    EXPECT_EQ(CountPixels(Shown(), GREEN), 64 * 64);
    Paint().BeginFrame();
    LookAt(-5000, 0, 64, 64);
    Paint().TileMap(map, 0, 0);
    EXPECT_EQ(Paint().Counts().batches, 0);
}

TEST_F(Tiles, AMapAndShapesKeepTheirOrder)
{
    const int map = MapOf(4, 8, 8, 8);
    Fill(BLUE, 0, 0, 64, 64);
    Paint().SetColour(Colour(WHITE));
    Paint().TileMap(map, 32, 0);
    Fill(RED, 48, 0, 64, 64);
    const Runner::Picture shown = Shown();
    EXPECT_EQ(At(shown, 10, 10), BLUE);
    EXPECT_EQ(At(shown, 40, 10), GREEN);
    EXPECT_EQ(At(shown, 60, 10), RED);
}

TEST_F(Tiles, ColourAndAlphaMultiplyTheTiles)
{
    const int map = MapOf(4, 8, 8, 8);
    Paint().SetColour(Colour({255, 100, 255, 255}));
    Paint().TileMap(map, 0, 0);
    EXPECT_EQ(At(Shown(), 5, 5), (Pixel{0, 100, 0, 255}));
    Paint().Clear(0);
    Paint().SetColour(Colour(WHITE));
    Paint().SetAlpha(0.5f);
    Paint().TileMap(map, 0, 0);
    EXPECT_NEAR(At(Shown(), 5, 5).green, 127, 1);
}

TEST_F(Tiles, MisuseIsRefusedWithOneLine)
{
    const int sheet = GreenAmongRed();
    EXPECT_EQ(Paint().CreateTileMap(9, 1, 1, 8, 8), -1);
    EXPECT_EQ(Paint().TakeError(), "there is no sprite 9");
    for (const auto& [columns, rows] : {std::pair(0, 1), {1, -1}, {100000, 100000}})
    {
        EXPECT_EQ(Paint().CreateTileMap(sheet, columns, rows, 8, 8), -1);
        EXPECT_NE(Paint().TakeError(), "");
    }
    EXPECT_EQ(Paint().CreateTileMap(sheet, 1, 1, std::numeric_limits<float>::quiet_NaN(), 8), -1);
    EXPECT_NE(Paint().TakeError(), "");

    const int map = Paint().CreateTileMap(sheet, 4, 4, 8, 8);
    EXPECT_FALSE(Paint().SetTile(map, 4, 0, 0));
    EXPECT_EQ(Paint().TakeError(), "tile map 0 has no cell 4, 0");
    EXPECT_FALSE(Paint().SetTile(map, 0, 0, 9));
    EXPECT_EQ(Paint().TakeError(), "sprite 0 has no frame 9 for a tile");
    EXPECT_FALSE(Paint().FreeSprite(sheet));
    EXPECT_EQ(Paint().TakeError(), "sprite 0 cannot be freed: a tile map shows it");
    EXPECT_TRUE(Paint().FreeTileMap(map));
    EXPECT_TRUE(Paint().FreeSprite(sheet));
    Paint().TileMap(map, 0, 0);
    EXPECT_EQ(Paint().TakeError(), "there is no tile map 0");
    EXPECT_EQ(Paint().GetTile(map, 0, 0), -1);
}
} // namespace DrawTest
