#include "Runner/Base/Area.h"

#include <gtest/gtest.h>

namespace
{
using Runner::RoomArea;
using Runner::RoomRegion;
using Runner::RoomSlab;

TEST(Area, AreasTouchAtTheirEdges)
{
    const RoomArea area = {0, 0, 10, 10};
    EXPECT_TRUE(area.Touches({10, 10, 20, 20}));
    EXPECT_TRUE(area.Touches({-5, -5, 15, 15}));
    EXPECT_FALSE(area.Touches({10.5f, 0, 20, 10}));
    EXPECT_FALSE(area.Touches({0, -10, 10, -0.5f}));
}

// Between the lines x + y = 10 and x + y = 30.
TEST(Area, ASlabTouchesWhatReachesBetweenItsLines)
{
    const RoomSlab slab = {1, 1, -20, 10};
    EXPECT_TRUE(slab.Touches({9, 9, 12, 12}));
    EXPECT_TRUE(slab.Touches({0, 0, 5, 5})) << "its corner lies on the line";
    EXPECT_TRUE(slab.Touches({-100, -100, 100, 100}));
    EXPECT_TRUE(slab.Touches({15, 15, 40, 40}));
    EXPECT_FALSE(slab.Touches({0, 0, 4.9f, 5}));
    EXPECT_FALSE(slab.Touches({15.1f, 15, 40, 40}));
    EXPECT_TRUE(slab.Touches({-990, 1000, -985, 1005})) << "far along the slab";
}

TEST(Area, ASlabOfUnknownNumbersTouchesEverything)
{
    EXPECT_TRUE(RoomSlab().Touches({5, 5, 6, 6}));
    EXPECT_TRUE((RoomSlab{NAN, 1, 0, 1}.Touches({5, 5, 6, 6})));
    EXPECT_TRUE((RoomSlab{1, 1, 0, 1}.Touches({-INFINITY, 5, INFINITY, 6})));
    EXPECT_TRUE((RoomSlab{1e38f, -1e38f, 0, 1}.Touches({1e9f, 1e9f, 2e9f, 2e9f})));
}

TEST(Area, ARegionWithoutSlabsIsItsRectangle)
{
    const RoomRegion region = {{0, 0, 10, 10}};
    EXPECT_TRUE(region.Touches({10, 10, 20, 20}));
    EXPECT_FALSE(region.Touches({11, 10, 20, 20}));
    EXPECT_TRUE(Runner::ENTIRE_PLANE.Touches({1e38f, -1e38f, 2e38f, 1e38f}));
}

TEST(Area, ARegionIsWhereItsSlabsAndItsRectangleMeet)
{
    const RoomRegion region = {{0, 0, 20, 20}, {1, 1, -20, 10}, {1, -1, 0, 10}}; // a square on its corner, about 10, 10
    EXPECT_TRUE(region.Touches({9, 9, 11, 11}));
    EXPECT_TRUE(region.Touches({-5, 9, 0, 11})) << "the corner on the left";
    EXPECT_FALSE(region.Touches({0, 0, 4, 4}));
    EXPECT_FALSE(region.Touches({16, 0, 20, 4}));
    EXPECT_FALSE(region.Touches({-5, 9, -1, 11}));
}
} // namespace
