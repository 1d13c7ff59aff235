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

TEST_F(HostGraphics, TheVisibleAreaOfAnUnturnedViewIsTheView)
{
    LookAt(10, 20, 300, 200);
    const Runner::RoomArea area = Runner::VisibleArea();
    EXPECT_NEAR(area.left, 10, 1e-2);
    EXPECT_NEAR(area.top, 20, 1e-2);
    EXPECT_NEAR(area.right, 310, 1e-2);
    EXPECT_NEAR(area.bottom, 220, 1e-2);
}

TEST_F(HostGraphics, TheVisibleAreaCoversEveryCornerOfATurnedView)
{
    for (int degrees = -360; degrees <= 360; degrees += 7)
    {
        LookAt(10, 20, 300, 200, static_cast<float>(degrees));
        const Runner::RoomArea area = Runner::VisibleArea();
        const double turn = degrees * 3.14159265358979 / 180;
        const double halfWidth = 150 * std::abs(std::cos(turn)) + 100 * std::abs(std::sin(turn));
        const double halfHeight = 150 * std::abs(std::sin(turn)) + 100 * std::abs(std::cos(turn));
        EXPECT_NEAR(static_cast<double>(area.left), 160 - halfWidth, 0.1) << degrees;
        EXPECT_NEAR(static_cast<double>(area.right), 160 + halfWidth, 0.1) << degrees;
        EXPECT_NEAR(static_cast<double>(area.top), 120 - halfHeight, 0.1) << degrees;
        EXPECT_NEAR(static_cast<double>(area.bottom), 120 + halfHeight, 0.1) << degrees;
    }
}

TEST_F(HostGraphics, AnAreaThatIsNotFiniteHidesNothing)
{
    SetViewExtents(0, 0, 10, 10, std::numeric_limits<float>::quiet_NaN());
    EXPECT_TRUE(Runner::VisibleArea().Touches({1e30f, 1e30f, 2e30f, 2e30f}));
    SetViewExtents(0, 0, std::numeric_limits<float>::infinity(), 10, 0);
    EXPECT_TRUE(Runner::VisibleArea().Touches({-1e30f, -1e30f, -1e29f, -1e29f}));
}

TEST_F(HostGraphics, AreasTouchAtTheirEdges)
{
    const Runner::RoomArea area = {0, 0, 10, 10};
    EXPECT_TRUE(area.Touches({10, 10, 20, 20}));
    EXPECT_TRUE(area.Touches({-5, -5, 15, 15}));
    EXPECT_FALSE(area.Touches({10.5f, 0, 20, 10}));
    EXPECT_FALSE(area.Touches({0, -10, 10, -0.5f}));
}
} // namespace DrawTest
