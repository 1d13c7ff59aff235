// Between a room and a picture, by matrices that are reckoned in the head. Overlay_test.cpp: of cameras.
#include "Runner/Inspect/View_Geometry.h"

#include <gtest/gtest.h>

#include <limits>

namespace
{
using namespace Runner;

constexpr float INFINITE = std::numeric_limits<float>::infinity();
constexpr double FAR = std::numeric_limits<double>::infinity();
constexpr Port PORT = {0, 0, 100, 100};

// Rows of a matrix for points that stand to its left.
kvMatrix Rows(std::array<float, 16> numbers)
{
    kvMatrix matrix = {};
    std::copy(numbers.begin(), numbers.end(), matrix.m);
    return matrix;
}

kvMatrix Unchanged() { return Rows({1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}); }

// Looks along z from 10 below the room, and has no far plane: clip z is z + 10 - 1, w is z + 10.
kvMatrix Endless() { return Rows({1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 1, 0, 0, 9, 10}); }

// Clip x is x + y, y is x - y, z is z + 0.5.
kvMatrix Diamond() { return Rows({1, 1, 0, 0, 1, -1, 0, 0, 0, 0, 1, 0, 0, 0, 0.5f, 1}); }

TEST(ViewGeometryTest, ThePointOfTheRoomIsBetweenTheNearAndTheFarPlane)
{
    const auto point = ViewGeometry(Unchanged(), Diamond()).RoomPoint(0.5, -0.25);
    ASSERT_TRUE(point);
    EXPECT_DOUBLE_EQ(point->x, 0.125) << "half of 0.5 - 0.25";
    EXPECT_DOUBLE_EQ(point->y, 0.375);
    EXPECT_FALSE(ViewGeometry(Unchanged(), Unchanged()).RoomPoint(0.0, 0.0)) << "all of it lies behind the near plane";
}

TEST(ViewGeometryTest, WithoutAFarPlaneOrWithASingularMatrixThereIsNoPointAndNoFootprint)
{
    const ViewGeometry endless(Unchanged(), Endless()), singular(kvMatrix{}, Unchanged());
    const ViewGeometry infinite(Rows({INFINITE, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}), Unchanged());
    for (const ViewGeometry& geometry : {endless, singular, infinite})
    {
        EXPECT_FALSE(geometry.RoomPoint(0.5, 0.5));
        EXPECT_FALSE(geometry.RoomPoint(0.0, 0.0));
        EXPECT_TRUE(geometry.Footprint().empty());
    }
}

TEST(ViewGeometryTest, AFootprintGoesAroundItsMiddleEvenWhereCornersAreLevelWithIt)
{
    const std::vector<Point> seen = ViewGeometry(Unchanged(), Diamond()).Footprint();
    ASSERT_EQ(seen.size(), 4u);
    const Point wanted[] = {{1, 0}, {0, 1}, {-1, 0}, {0, -1}};
    for (size_t i = 0; i < 4; ++i)
    {
        EXPECT_NEAR(seen[i].x, wanted[i].x, 1e-12) << i;
        EXPECT_NEAR(seen[i].y, wanted[i].y, 1e-12) << i;
    }
}

// Clip w is 1 - x, so that everything from x = 1 on is behind the eye.
TEST(ViewGeometryTest, ALineEndsBeforeTheEyeWhicheverEndIsBehindIt)
{
    const ViewGeometry geometry(Unchanged(), Rows({1, 0, 0, -1, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}));
    const auto forth = geometry.ToScreen({0.0, 0.0}, {2.0, 0.0}, PORT);
    const auto back = geometry.ToScreen({2.0, 0.0}, {0.0, 0.0}, PORT);
    ASSERT_TRUE(forth && back);
    EXPECT_DOUBLE_EQ(forth->from.x, 50.0);
    EXPECT_GT(forth->to.x, 1e6) << "the line goes on to the edge of what can be seen";
    EXPECT_DOUBLE_EQ(back->to.x, forth->from.x);
    EXPECT_DOUBLE_EQ(back->from.x, forth->to.x);
    EXPECT_FALSE(geometry.ToScreen({2.0, 0.0}, {3.0, 0.0}, PORT));
}

TEST(ViewGeometryTest, ALineToWhereNoNumberReachesIsNone)
{
    const ViewGeometry flat(Unchanged(), Unchanged());
    const ViewGeometry tall(Unchanged(), Rows({1, 0, 0, 0, 0, 1e30f, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}));
    EXPECT_TRUE(flat.ToScreen({0.0, 0.0}, {1.0, 1.0}, PORT));
    EXPECT_FALSE(flat.ToScreen({FAR, 0.0}, {1.0, 1.0}, PORT));
    EXPECT_FALSE(flat.ToScreen({0.0, 0.0}, {FAR, 1.0}, PORT));
    EXPECT_FALSE(tall.ToScreen({0.0, 1e300}, {0.0, 0.0}, PORT)) << "1e330 is too large for y alone";
}

TEST(ViewGeometryTest, TheWorldOfWhatWasDrawnIsFoundUnlessItBendsLines)
{
    const kvMatrix moved = Rows({1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 3, -2, 0, 1});
    const auto world = WorldOf(moved, Unchanged());
    ASSERT_TRUE(world);
    EXPECT_DOUBLE_EQ((*world)[12], 3.0);
    EXPECT_EQ(ClipThrough(*world, Diamond()).m[12], 1.0f) << "3 - 2";
    EXPECT_EQ(ClipThrough(*world, Diamond()).m[13], 5.0f) << "3 + 2";
    EXPECT_FALSE(WorldOf(Endless(), Unchanged())) << "another picture's perspective";
    EXPECT_FALSE(WorldOf(moved, kvMatrix{})) << "a room that no matrix leads back to";
}
} // namespace
