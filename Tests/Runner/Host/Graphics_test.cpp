#include "Tests/Runner/Draw/Draw_Support.h"

#include <cmath>
#include <limits>

namespace DrawTest
{
class HostGraphics : public ::testing::Test
{
protected:
    void SetUp() override { Runner::ResetGraphics(); }
    void TearDown() override { Runner::ResetGraphics(); }
};

namespace
{
kvVector3 Map(const kvMatrix& m, const kvVector3& p)
{
    return {p.x * m._11 + p.y * m._21 + p.z * m._31 + m._41, p.x * m._12 + p.y * m._22 + p.z * m._32 + m._42,
            p.x * m._13 + p.y * m._23 + p.z * m._33 + m._43};
}
} // namespace

TEST_F(HostGraphics, SlotsAreIdentityUntilSet)
{
    for (const eMatrix slot : {eM_View, eM_Projection, eM_World})
    {
        for (int i = 0; i < 16; i++)
            EXPECT_EQ(Runner::CurrentMatrix(slot).m[i], i % 5 == 0 ? 1.0f : 0.0f);
    }
}

TEST_F(HostGraphics, SetMatrixCopiesIntoItsSlotAndCounts)
{
    float values[16];
    for (int i = 0; i < 16; i++)
        values[i] = static_cast<float>(i);
    const unsigned version = Runner::MatrixVersion();
    Graphics::SetMatrix(eM_Projection, values);
    values[3] = 99;
    EXPECT_EQ(Runner::CurrentMatrix(eM_Projection).m[3], 3.0f);
    EXPECT_EQ(Runner::CurrentMatrix(eM_View).m[3], 0.0f);
    EXPECT_NE(Runner::MatrixVersion(), version);
}

TEST_F(HostGraphics, RoomToClipAppliesTheWorldFirst)
{
    kvMatrix world = Runner::IdentityMatrix(), view = Runner::IdentityMatrix();
    world._41 = 1;
    view._11 = 10;
    Graphics::SetMatrix(eM_World, world.m);
    Graphics::SetMatrix(eM_View, view.m);
    EXPECT_EQ(Map(Runner::RoomToClip(), {2, 0, 0}).x, 30.0f);
    Runner::ResetWorldMatrix();
    EXPECT_EQ(Map(Runner::RoomToClip(), {2, 0, 0}).x, 20.0f);
}

TEST_F(HostGraphics, ExtentsAreThereToRead)
{
    SetViewExtents(1, 2, 3, 4, 5);
    EXPECT_EQ(g_ViewAreaX, 1.0f);
    EXPECT_EQ(g_ViewAreaY, 2.0f);
    EXPECT_EQ(g_ViewAreaW, 3.0f);
    EXPECT_EQ(g_ViewAreaH, 4.0f);
    EXPECT_EQ(g_ViewAreaA, 5.0f);
}

TEST_F(HostGraphics, AFlatViewMapsItsRectangleToTheClipSquare)
{
    Runner::SetFlatView(100, 200, 50, 80);
    const kvVector3 topLeft = Map(Runner::RoomToClip(), {100, 200, 0});
    EXPECT_NEAR(topLeft.x, -1, 1e-5);
    EXPECT_NEAR(topLeft.y, -1, 1e-5);
    EXPECT_NEAR(topLeft.z, 0.5, 1e-5);
    EXPECT_NEAR(Map(Runner::RoomToClip(), {150, 280, 0}).y, 1, 1e-5);
    EXPECT_NEAR(g_ViewAreaX, 100, 1e-3);
    EXPECT_NEAR(g_ViewAreaH, 80, 1e-3);

    g_RenderTargetActive = 0;
    Runner::SetFlatView(100, 200, 50, 80);
    EXPECT_NEAR(Map(Runner::RoomToClip(), {150, 280, 0}).y, -1, 1e-5);
}

TEST_F(HostGraphics, AWorldMatrixScalesThenTurnsThenMoves)
{
    const kvMatrix world = Runner::BuildWorldMatrix({100, 200, 300}, {0, 0, 90}, {2, 3, 4});
    const kvVector3 right = Map(world, {1, 0, 0}); // to the right, turned counter-clockwise: up, which is smaller y
    EXPECT_NEAR(right.x, 100, 1e-4);
    EXPECT_NEAR(right.y, 198, 1e-4);
    EXPECT_NEAR(right.z, 300, 1e-4);
    EXPECT_NEAR(Map(world, {0, 0, 1}).z, 304, 1e-4);
}

TEST_F(HostGraphics, TurnsAboutXAndYFollowTheSamePattern)
{
    const kvVector3 y = Map(Runner::BuildWorldMatrix({0, 0, 0}, {90, 0, 0}, {1, 1, 1}), {0, 1, 0});
    EXPECT_NEAR(y.z, -1, 1e-6);
    const kvVector3 z = Map(Runner::BuildWorldMatrix({0, 0, 0}, {0, 90, 0}, {1, 1, 1}), {0, 0, 1});
    EXPECT_NEAR(z.x, -1, 1e-6);
}

// ---- what the matrices show ----

static void ExpectNear(const Runner::RoomArea& area, double left, double top, double right, double bottom)
{
    EXPECT_NEAR(static_cast<double>(area.left), left, 1e-2);
    EXPECT_NEAR(static_cast<double>(area.top), top, 1e-2);
    EXPECT_NEAR(static_cast<double>(area.right), right, 1e-2);
    EXPECT_NEAR(static_cast<double>(area.bottom), bottom, 1e-2);
}

TEST_F(HostGraphics, AnUprightViewShowsItsRectangle)
{
    LookAt(10, 20, 300, 200);
    const Runner::RoomRegion region = Runner::VisibleRegion();
    ExpectNear(region.bounds, 10, 20, 310, 220);
    EXPECT_TRUE(region.Touches({0, 0, 10, 20})) << "the corner point";
    EXPECT_FALSE(region.Touches({0, 0, 9.9f, 300}));
}

TEST_F(HostGraphics, ARenderTargetShowsTheSame)
{
    g_RenderTargetActive = 0;
    LookAt(10, 20, 300, 200);
    ExpectNear(Runner::VisibleRegion().bounds, 10, 20, 310, 220);
}

TEST_F(HostGraphics, TheBoundsOfATurnedViewGoThroughItsCorners)
{
    for (int degrees = -360; degrees <= 360; degrees += 7)
    {
        LookAt(10, 20, 300, 200, static_cast<float>(degrees));
        const double angle = degrees * 3.14159265358979 / 180;
        const double halfWidth = 150 * std::abs(std::cos(angle)) + 100 * std::abs(std::sin(angle));
        const double halfHeight = 150 * std::abs(std::sin(angle)) + 100 * std::abs(std::cos(angle));
        SCOPED_TRACE(degrees);
        ExpectNear(Runner::VisibleRegion().bounds, 160 - halfWidth, 120 - halfHeight, 160 + halfWidth,
                   120 + halfHeight);
    }
}

// A square of 200 units about 100, 100, turned by 45 degrees: a rhombus with its corners 141.4 units from the centre.
TEST_F(HostGraphics, AnAreaInACornerOfTheBoundsIsOutsideOfATurnedView)
{
    LookAt(0, 0, 200, 200, 45);
    const Runner::RoomRegion region = Runner::VisibleRegion();
    EXPECT_TRUE(region.Touches({-41, 99, -30, 101}));
    EXPECT_TRUE(region.bounds.Touches({-41, -41, 20, 20}));
    EXPECT_FALSE(region.Touches({-41, -41, 20, 20})); // |dx| + |dy| is 160 at its nearest corner
    EXPECT_TRUE(region.Touches({-41, -41, 30, 30}));  // 140
}

// An area that covers the view has no corner in it, and none of the view's corners need be in a thin one.
TEST_F(HostGraphics, AreasWithoutACornerInTheViewTouchItAllTheSame)
{
    LookAt(0, 0, 200, 200, 45);
    const Runner::RoomRegion region = Runner::VisibleRegion();
    EXPECT_TRUE(region.Touches({-1000, -1000, 1000, 1000}));
    EXPECT_TRUE(region.Touches({-1000, 99, 1000, 101}));
    EXPECT_TRUE(region.Touches({150, -1000, 151, 1000}));
}

// clip x = 0.01 x - 0.5, clip y = 0.02 y + 0.25: x from -50 to 150, y from -62.5 to 37.5.
TEST_F(HostGraphics, AnOffsetOfTheProjectionMovesWhatShows)
{
    kvMatrix projection = Runner::IdentityMatrix();
    projection._11 = 0.01f;
    projection._22 = 0.02f;
    projection._41 = -0.5f;
    projection._42 = 0.25f;
    Graphics::SetMatrix(eM_Projection, projection.m);
    ExpectNear(Runner::VisibleRegion().bounds, -50, -62.5, 150, 37.5);
    projection._44 = 2; // twice the square before the division
    Graphics::SetMatrix(eM_Projection, projection.m);
    ExpectNear(Runner::VisibleRegion().bounds, -150, -112.5, 250, 87.5);
}

// clip x = 0.01 x + 0.02 y, clip y = 0.01 y: y from -100 to 100, x = 100 (clip x - 2 clip y) from -300 to 300.
TEST_F(HostGraphics, AShearMakesAParallelogram)
{
    kvMatrix projection = Runner::IdentityMatrix();
    projection._11 = 0.01f;
    projection._21 = 0.02f;
    projection._22 = 0.01f;
    Graphics::SetMatrix(eM_Projection, projection.m);
    const Runner::RoomRegion region = Runner::VisibleRegion();
    ExpectNear(region.bounds, -300, -100, 300, 100);
    EXPECT_TRUE(region.Touches({290, -99, 299, -99}));
    EXPECT_FALSE(region.Touches({-299, -99, -290, -90}));
}

TEST_F(HostGraphics, MatricesThatNoParallelogramDescribesShowEverything)
{
    constexpr float NOT_A_NUMBER = std::numeric_limits<float>::quiet_NaN();
    constexpr float ENDLESS = std::numeric_limits<float>::infinity();
    struct Entry
    {
        int index;
        float value;
    };
    for (const Entry entry : {Entry{0, 0.0f},
                              {5, 0.0f},
                              {0, NOT_A_NUMBER},
                              {4, NOT_A_NUMBER},
                              {12, NOT_A_NUMBER},
                              {13, ENDLESS},
                              {3, 0.1f},
                              {7, 0.1f},
                              {11, 1.0f},
                              {8, 0.1f},
                              {9, 0.1f},
                              {15, 0.0f},
                              {15, -1.0f},
                              {15, NOT_A_NUMBER},
                              {0, 1e-44f}})
    {
        kvMatrix projection = Runner::IdentityMatrix();
        projection.m[entry.index] = entry.value;
        Graphics::SetMatrix(eM_Projection, projection.m);
        const Runner::RoomRegion region = Runner::VisibleRegion();
        EXPECT_TRUE(region.Touches({1e30f, 1e30f, 2e30f, 2e30f})) << "m[" << entry.index << "] = " << entry.value;
        EXPECT_TRUE(region.Touches({-1e30f, -1e30f, -1e29f, 1e29f})) << "m[" << entry.index << "] = " << entry.value;
    }
}

TEST_F(HostGraphics, NoRoundingLosesAnAreaAtTheEdgeOfAViewFarAway)
{
    for (const float x : {0.0f, 1000.5f, 99999.0f, 999936.0f})
    {
        LookAt(x, 7, 64, 64);
        const Runner::RoomRegion region = Runner::VisibleRegion();
        EXPECT_TRUE(region.Touches({x + 63.5f, 8, x + 70, 9})) << x;
        EXPECT_TRUE(region.Touches({x - 9, 8, x + 0.5f, 9})) << x;
        EXPECT_FALSE(region.Touches({x + 70, 8, x + 71, 9})) << x;
        EXPECT_FALSE(region.Touches({x - 9, 8, x - 6, 9})) << x;
    }
}
} // namespace DrawTest
