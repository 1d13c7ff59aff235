// The cells of a map's layer as meshes: the shape of chunks, the order of tiles, animations. Nothing is drawn here.
#include "Runner/Draw/Layer_Grid.h"

#include <gtest/gtest.h>

namespace
{
using namespace Runner;

// Tiles of cells of 8 x 8, by number: 1 and 2 of two sprites fill their cell, 3 shows 1 for 100 milliseconds and 2 for
// 50, 4 to 7 reach out of their cell to the left, top, right and bottom by one, 8 does so when it is turned, 9 shows 7
// at times, 10 is an animation that never lasts, 11 reaches out to the right by two.
std::shared_ptr<TileLooks> Looks()
{
    constexpr TileRect INSIDE = {0, 0, 8, 8};
    auto looks = std::make_shared<TileLooks>();
    looks->looks = {{-1, 0, INSIDE, INSIDE},      {0, 0, INSIDE, INSIDE},        {1, 3, INSIDE, INSIDE},
                    {0, 0, INSIDE, INSIDE},       {0, 0, {-1, 0, 8, 8}, INSIDE}, {0, 0, {0, -1, 8, 8}, INSIDE},
                    {0, 0, {0, 0, 9, 8}, INSIDE}, {0, 0, {0, 0, 8, 9}, INSIDE},  {0, 0, INSIDE, {0, 0, 8, 9}},
                    {0, 0, INSIDE, INSIDE},       {0, 0, INSIDE, INSIDE},        {0, 0, {0, 0, 10, 8}, INSIDE}};
    looks->animationOf = {-1, -1, -1, 0, -1, -1, -1, -1, -1, 1, 2, -1};
    looks->animations = {{{1, 100}, {2, 150}}, {{1, 10}, {7, 20}}, {{2, 0}}};
    return looks;
}

LayerGrid Grid(int columns, int rows, std::vector<uint32_t> cells, const TileOrder& order = {})
{
    cells.resize(static_cast<size_t>(columns) * static_cast<size_t>(rows));
    return {Looks(), {columns, rows, 8.0f, 8.0f}, order, std::move(cells)};
}

struct Whole
{
    static TextureArea Area(int frame) { return {static_cast<float>(frame), 0.0f, 1.0f, 1.0f}; }
};

std::vector<LayerGrid::BuiltRun> Built(LayerGrid& grid, int64_t milliseconds = 0)
{
    std::vector<LayerGrid::BuiltRun> runs;
    const Whole sheet;
    grid.Build(
        0, 0, milliseconds, [&sheet](int) { return sheet; }, runs);
    return runs;
}

// The sprites of the runs with how many tiles each has, as "0x2 1x1".
std::string Text(const std::vector<LayerGrid::BuiltRun>& runs)
{
    std::string text;
    for (const LayerGrid::BuiltRun& run : runs)
        text += std::to_string(run.sprite) + "x" + std::to_string(run.vertices.size() / 4) + " ";
    return text;
}

// ---- animations ----

TEST(TileAnimation, ShowsEachStepUntilItsEndAndBeginsAgain)
{
    const auto looks = Looks();
    for (const auto& [at, tile, from, until] : {std::array<int64_t, 4>{0, 1, 0, 100},
                                                {99, 1, 0, 100},
                                                {100, 2, 100, 150},
                                                {149, 2, 100, 150},
                                                {150, 1, 150, 250},
                                                {449, 2, 400, 450}})
    {
        const TileLooks::Moment moment = looks->At(3, at);
        EXPECT_EQ(moment.tile, static_cast<uint32_t>(tile)) << at;
        EXPECT_EQ(moment.from, from) << at;
        EXPECT_EQ(moment.until, until) << at;
    }
}

TEST(TileAnimation, OfNoLengthOrNoneAtAllIsOnePictureForever)
{
    EXPECT_EQ(Looks()->At(10, 7).tile, 2u);
    EXPECT_EQ(Looks()->At(10, 7).until, INT64_MAX);
    EXPECT_EQ(Looks()->At(1, 7).tile, 1u);
    EXPECT_EQ(Looks()->At(1, 7).until, INT64_MAX);
}

TEST(TileAnimation, AChunkIsRightUntilTheFirstOfItsTilesChanges)
{
    LayerGrid grid = Grid(2, 1, {3, 9}); // 9 changes each 10 milliseconds, 3 at 100
    EXPECT_EQ(Text(Built(grid, 95)), "0x2 ") << "9 shows 7 of the same sprite";
    EXPECT_EQ(grid.ChunkAt(0, 0).from, 90);
    EXPECT_EQ(grid.ChunkAt(0, 0).until, 100);
    EXPECT_EQ(Text(Built(grid, 105)), "1x1 0x1 ");
    EXPECT_EQ(grid.ChunkAt(0, 0).from, 100);
    EXPECT_EQ(grid.ChunkAt(0, 0).until, 110);
}

// ---- cells and chunks ----

TEST(LayerCells, AreThereBetweenTheFirstAndTheLast)
{
    const LayerGrid grid = Grid(4, 3, {});
    EXPECT_TRUE(grid.Contains(0, 0) && grid.Contains(3, 2));
    EXPECT_FALSE(grid.Contains(-1, 0) || grid.Contains(4, 0) || grid.Contains(0, -1) || grid.Contains(0, 3));
}

// Of 100 x 70 cells squares of 32 make 4 x 3 chunks, strips of 128 make 1 x 70.
constexpr RoomArea ALL = {0, 0, 799, 559};

bool IsSquares(const LayerGrid& grid)
{
    const LayerGrid::ChunkRange range = grid.Reached(ALL);
    const bool isSquares = range.right == 3 && range.bottom == 2, isStrips = range.right == 0 && range.bottom == 69;
    EXPECT_TRUE(isSquares || isStrips) << range.right << ", " << range.bottom;
    return isSquares;
}

TEST(LayerChunks, AreStripsWhereATileReachesOutOfItsCellToAnySide)
{
    for (const uint32_t inside : {0u, 1u, 3u, 8u, 4u | TILE_DIAGONAL})
        EXPECT_TRUE(IsSquares(Grid(100, 70, {inside}))) << inside;
    for (const uint32_t outside : {4u, 5u, 6u, 7u, 8u | TILE_DIAGONAL, 9u})
        EXPECT_FALSE(IsSquares(Grid(100, 70, {1, 1, outside, outside}))) << outside;
}

// The meshes of the old chunks become orphans, for the caller to delete; those of strips stay.
TEST(LayerChunks, BecomeStripsWithTheFirstTileThatReachesOut)
{
    LayerGrid grid = Grid(100, 70, {1});
    grid.ChunkAt(0, 0).runs = {{0, 77, 5}};
    grid.ChunkAt(0, 0).built = true;
    grid.Hold(5);
    grid.Set(0, 0, 1);
    EXPECT_TRUE(grid.ChunkAt(0, 0).built) << "it was that already";
    grid.Set(0, 0, 2);
    EXPECT_FALSE(grid.ChunkAt(0, 0).built);
    EXPECT_TRUE(IsSquares(grid));
    grid.Set(0, 0, 6);
    EXPECT_FALSE(IsSquares(grid));
    EXPECT_EQ(grid.TakeOrphans(), std::vector<unsigned>{77});
    EXPECT_EQ(grid.HeldQuads(), 0);
    grid.ChunkAt(0, 0).runs = {{0, 78, 1}};
    grid.Set(1, 0, 11);
    EXPECT_TRUE(grid.TakeOrphans().empty()) << "strips stay as they are";
    EXPECT_EQ(grid.AreaOf(0, 0).right, 802.0f) << "100 cells, and two units that a tile reaches out";
}

TEST(LayerChunks, ThatWereNotSeenCanBeDroppedAndAllForgotten)
{
    LayerGrid grid = Grid(100, 70, {1});
    grid.ChunkAt(0, 0).runs = {{0, 5, 2}};
    grid.ChunkAt(1, 0).runs = {{0, 6, 3}};
    grid.ChunkAt(1, 0).seen = true;
    grid.Hold(5);
    grid.DropUnseen();
    EXPECT_EQ(grid.TakeOrphans(), std::vector<unsigned>{5});
    EXPECT_EQ(grid.HeldQuads(), 3);
    grid.ForgetMeshes();
    EXPECT_EQ(grid.HeldQuads(), 0);
    EXPECT_TRUE(grid.TakeOrphans().empty()) << "they are gone with their device";
}

// Squares of 256 units: what ends at 256 touches the second one.
TEST(LayerChunks, OfARegionAreThoseThatMeetIt)
{
    const LayerGrid grid = Grid(100, 70, {1});
    const auto reached = [&grid](const RoomArea& area)
    {
        const LayerGrid::ChunkRange range = grid.Reached(area);
        return std::array<int, 4>{range.left, range.top, range.right, range.bottom};
    };
    EXPECT_EQ(reached({10, 10, 20, 20}), (std::array<int, 4>{0, 0, 0, 0}));
    EXPECT_EQ(reached({200, 300, 256, 900}), (std::array<int, 4>{0, 1, 1, 2}));
    const LayerGrid::ChunkRange left = grid.Reached({-900, 0, -500, 10});
    EXPECT_GT(left.left, left.right) << "none";
    const LayerGrid::ChunkRange below = grid.Reached({0, 5000, 10, 6000});
    EXPECT_GT(below.top, below.bottom);
}

// ---- building ----

TEST(LayerBuilding, JoinsTilesOfASpriteWhereNoneOverlapsAnother)
{
    LayerGrid squares = Grid(4, 1, {1, 2, 1, 0}), strips = Grid(4, 1, {1, 2, 1, 6});
    EXPECT_EQ(Text(Built(squares)), "0x2 1x1 ");
    EXPECT_EQ(Text(Built(strips)), "0x1 1x1 0x2 ") << "later tiles cover earlier ones";
}

TEST(LayerBuilding, GoesInTheOrderOfDrawing)
{
    const auto corners = [](const TileOrder& order)
    {
        LayerGrid grid = Grid(2, 2, {1, 1, 1, 1}, order);
        std::string text;
        const std::vector<Vertex> vertices = Built(grid).at(0).vertices;
        for (size_t i = 0; i < vertices.size(); i += 4)
            text += std::to_string(static_cast<int>(vertices[i].x)) + "," +
                    std::to_string(static_cast<int>(vertices[i].y)) + " ";
        return text;
    };
    EXPECT_EQ(corners({false, false}), "0,0 8,0 0,8 8,8 ");
    EXPECT_EQ(corners({true, false}), "8,0 0,0 8,8 0,8 ");
    EXPECT_EQ(corners({false, true}), "0,8 8,8 0,0 8,0 ");
    EXPECT_EQ(corners({true, true}), "8,8 0,8 8,0 0,0 ");
}

// Tile 8 turned is 8 x 9, and its corners are exchanged: what was at the top right is at the bottom left.
TEST(LayerBuilding, ATurnedTileHasItsOwnPlaceAndCorners)
{
    LayerGrid grid = Grid(1, 1, {8 | TILE_DIAGONAL});
    const std::vector<Vertex> vertices = Built(grid).at(0).vertices;
    EXPECT_EQ(vertices[2].y, 9.0f);
    EXPECT_EQ(vertices[1].u, 0.0f);
    EXPECT_EQ(vertices[1].v, 1.0f);
    EXPECT_EQ(vertices[3].u, 1.0f);
    EXPECT_EQ(vertices[3].v, 0.0f);
}
} // namespace
