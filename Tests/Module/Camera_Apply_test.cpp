// The visible area, the matrices handed to the graphics layer.

#include "Platform/Strict_Float.h"

#include "Tests/Support/Compare.h"
#include "Tests/Support/Numbers.h"

#include <cmath>
#include <limits>
#include <random>

using namespace Recording;

namespace
{
constexpr double ROOM_UNITS = 1e-3; // what a visible area may be off by, for rooms of ordinary size
constexpr double NEAR_ZERO = 0.02;  // degrees: acos is that blunt where its cosine is within a rounding of 1

double D(float number) { return static_cast<double>(number); }

struct Area
{
    float x, y, width, height, angle;
};

Area Published() { return {g_ViewAreaX, g_ViewAreaY, g_ViewAreaW, g_ViewAreaH, g_ViewAreaA}; }

std::string Extents(const Area& a)
{
    return "SetViewExtents(" + Describe(a.x) + "," + Describe(a.y) + "," + Describe(a.width) + "," +
           Describe(a.height) + "," + Describe(a.angle) + ")";
}

void ExpectArea(const Area& actual, const Area& expected) { EXPECT_EQ(Extents(actual), Extents(expected)); }
} // namespace

class CameraApply : public ModuleTest
{
protected:
    void Flat(float x, float y, float width, float height, float angle = 0.0f)
    {
        camera.m_viewX = x;
        camera.m_viewY = y;
        camera.m_viewWidth = width;
        camera.m_viewHeight = height;
        camera.m_viewAngle = angle;
        camera.Build2DView(x + width * 0.5f, y + height * 0.5f);
        TakeLog();
    }

    void Deep(float width, float height)
    {
        camera.m_viewWidth = width;
        camera.m_viewHeight = height;
        camera.Build3DView(0, 0);
        TakeLog();
    }

    Area Apply()
    {
        camera.ApplyMatrices();
        return Published();
    }

    // The product's inverse maps clip x to the first row and clip y to the second: half a width and half a height.
    void Rows(const kvVector3& halfWidth, const kvVector3& halfHeight)
    {
        kvMatrix& m = camera.m_invViewProjMat;
        m._11 = halfWidth.x, m._12 = halfWidth.y, m._13 = halfWidth.z;
        m._21 = halfHeight.x, m._22 = halfHeight.y, m._23 = halfHeight.z;
    }

    CCamera camera;
};

// ---- the order of it all ----

TEST_F(CameraApply, ACleanCameraPublishesItsAreaThenSetsViewThenProjection)
{
    Flat(0, 0, 640, 480);
    const Area area = Apply();
    EXPECT_EQ(TakeLog(), (Lines{Extents(area), "SetMatrix(view)", "SetMatrix(projection)"}));
    EXPECT_EQ(LastMatrix(eM_View), camera.m_viewMat);
    EXPECT_EQ(LastMatrix(eM_Projection), camera.m_projMat);
}

TEST_F(CameraApply, TheWorldMatrixIsNotTouched)
{
    kvMatrix world = Identity();
    world._41 = 3.0f;
    Graphics::SetMatrix(eM_World, world.m);
    Flat(0, 0, 640, 480);
    Apply();
    EXPECT_EQ(LastMatrix(eM_World), world);
}

TEST_F(CameraApply, ADirtyFlatViewIsBuiltAboutItsCentreFirst)
{
    Flat(10, 20, 101, 51);
    camera.SetViewDirty();
    const Area area = Apply();
    const Lines log = TakeLog();
    EXPECT_EQ(log.front(), "LookAtLH(60.5,45.5,-16000;60.5,45.5,0;-0,1,0)");
    EXPECT_EQ(log[log.size() - 3], Extents(area));
    EXPECT_FALSE(camera.IsViewDirty());
}

TEST_F(CameraApply, ADirtyDeepViewIsBuiltDeep)
{
    Deep(640, 480);
    camera.SetViewDirty();
    Apply();
    EXPECT_EQ(TakeLog().front(), "LookAtLH(320,240,-640;320,240,0;-0,1,0)");
    EXPECT_NE(camera.m_projMat._34, 0.0f);
    EXPECT_FALSE(camera.IsViewDirty());
}

TEST_F(CameraApply, ACleanViewIsAppliedAsItStandsWhateverItsRectangleSays)
{
    Flat(0, 0, 640, 480);
    camera.m_viewX = 5000.0f;
    camera.m_viewWidth = 1.0f;
    const Area area = Apply();
    EXPECT_NEAR(D(area.x), 0.0, ROOM_UNITS);
    EXPECT_NEAR(D(area.width), 640.0, ROOM_UNITS);
}

// ---- the area of a flat view ----

TEST_F(CameraApply, AFlatViewPublishesItsRectangle)
{
    Flat(100, -50, 640, 480);
    const Area area = Apply();
    EXPECT_NEAR(D(area.x), 100.0, ROOM_UNITS);
    EXPECT_NEAR(D(area.y), -50.0, ROOM_UNITS);
    EXPECT_NEAR(D(area.width), 640.0, ROOM_UNITS);
    EXPECT_NEAR(D(area.height), 480.0, ROOM_UNITS);
    EXPECT_NEAR(Reference::Turn(D(area.angle), 0.0), 0.0, NEAR_ZERO);
}

TEST_F(CameraApply, ATurnedViewPublishesTheOppositeAngle)
{
    for (int degrees = -360; degrees <= 720; ++degrees)
    {
        Flat(0, 0, 640, 480, static_cast<float>(degrees));
        EXPECT_NEAR(Reference::Turn(D(Apply().angle), -static_cast<double>(degrees)), 0.0, NEAR_ZERO) << degrees;
    }
}

TEST_F(CameraApply, AQuarterTurnPublishes270AndBackwards90)
{
    Flat(0, 0, 640, 480, 90);
    EXPECT_NEAR(D(Apply().angle), 270.0, 1e-3);
    Flat(0, 0, 640, 480, -90);
    EXPECT_NEAR(D(Apply().angle), 90.0, 1e-3);
}

TEST_F(CameraApply, ACameraThatWasNeverBuiltPublishesTheClipSquare) { ExpectArea(Apply(), {-1, -1, 2, 2, 0}); }

TEST_F(CameraApply, TheAreaIsMeasuredThroughTheProductsInverseAndPlacedThroughTheViewsInverse)
{
    Rows({3, 4, 0}, {0, 2.5f, 0});
    camera.m_invViewMat._41 = 100.0f;
    camera.m_invViewMat._42 = 200.0f;
    camera.m_invViewProjMat._41 = 7777.0f; // cancels
    ExpectArea(Apply(), {95, 197.5f, 10, 5, 0});
}

TEST_F(CameraApply, AllThreeComponentsCountInALength)
{
    Rows({2, 3, 6}, {0, 0, 4});
    const Area area = Apply();
    EXPECT_EQ(area.width, 14.0f);
    EXPECT_EQ(area.height, 8.0f);
    EXPECT_FLOAT_EQ(area.angle, 90.0f) << "no y component: the cosine is 0";
}

TEST_F(CameraApply, AngleComesFromTheDownwardVector)
{
    Rows({1, 0, 0}, {1, 0, 0});
    EXPECT_FLOAT_EQ(Apply().angle, 90.0f);
    Rows({1, 0, 0}, {-1, 0, 0});
    EXPECT_FLOAT_EQ(Apply().angle, 270.0f) << "to the left: counted the other way round";
    Rows({1, 0, 0}, {0, -1, 0});
    EXPECT_FLOAT_EQ(Apply().angle, 180.0f);
}

TEST_F(CameraApply, AHairToTheLeftPublishesExactly360)
{
    Rows({1, 0, 0}, {-1e-12f, 1, 0});
    EXPECT_EQ(Apply().angle, 360.0f);
}

TEST_F(CameraApply, AnEmptyWidthPublishesZeroWidth)
{
    Rows({0, 0, 0}, {0, 1, 0});
    camera.m_invViewMat._41 = 12.0f;
    ExpectArea(Apply(), {12, -1, 0, 2, 0});
}

TEST_F(CameraApply, AnEmptyHeightPublishesZeroHeightTheCentreAsTopAndNoAngle)
{
    Rows({1, 0, 0}, {0, 0, 0});
    camera.m_invViewMat._42 = 34.5f;
    const Area area = Apply();
    EXPECT_EQ(area.height, 0.0f);
    EXPECT_EQ(area.y, 34.5f);
    EXPECT_TRUE(std::isnan(area.angle)) << area.angle;
}

TEST_F(CameraApply, ALengthThatIsNotANumberCountsAsZero)
{
    Rows({NOT_A_NUMBER, 1, 0}, {1, NOT_A_NUMBER, 0});
    const Area area = Apply();
    EXPECT_EQ(area.width, 0.0f);
    EXPECT_EQ(area.height, 0.0f);
    EXPECT_TRUE(std::isnan(area.angle)) << area.angle;
}

TEST_F(CameraApply, ALengthWhoseSquareUnderflowsCountsAsZero)
{
    Rows({1e-30f, 0, 0}, {0, 1, 0});
    EXPECT_EQ(Apply().width, 0.0f);
}

TEST_F(CameraApply, ARectangleWithoutExtentIsAppliedWithoutComplaint)
{
    for (float size : {0.0f, NOT_A_NUMBER, std::numeric_limits<float>::infinity()})
    {
        Flat(0, 0, size, size);
        TakeLog();
        Apply();
        EXPECT_EQ(TakeLog().size(), 3u) << size;
    }
}

// What was asked for is what is seen: the rectangle, and the angle the other way round.
TEST_F(CameraApply, AFlatViewShowsItsRectangle)
{
    constexpr double roundings = 24.0; // two builds, two inverses and the measurement
    for (float x : {0.0f, -300.5f, 12000.0f})
        for (float y : {0.0f, 77.7f, -9000.0f})
            for (float width : {16.0f, 640.0f, 4096.5f})
                for (float ratio : {0.25f, 0.75f, 1.5f})
                    for (float angle = -360.0f; angle <= 360.0f; angle += 22.25f)
                    {
                        const float height = width * ratio;
                        Flat(x, y, width, height, angle);
                        const Area actual = Apply();
                        // Positions cancel in the lengths, and leave their roundings behind.
                        const double reach = std::fabs(D(x)) + std::fabs(D(y)) + D(width) + D(height);
                        const double slack =
                            roundings * Reference::EPSILON * reach * (1.0 + std::fabs(D(angle)) / 57.0);
                        ASSERT_NEAR(D(actual.x), D(x), slack);
                        ASSERT_NEAR(D(actual.y), D(y), slack);
                        ASSERT_NEAR(D(actual.width), D(width), slack);
                        ASSERT_NEAR(D(actual.height), D(height), slack);
                        ASSERT_LE(Reference::Turn(D(actual.angle), -D(angle)),
                                  Reference::AngleSlack(D(angle), slack / D(height)) + 1e-4)
                            << angle;
                    }
}

// ---- the area of a deep view ----

TEST_F(CameraApply, ADeepViewPublishesTheWholeRoom)
{
    Run_Room = NewRoom(1024, 768);
    Deep(640, 480);
    ExpectArea(Apply(), {0, 0, 1024, 768, 0});
}

TEST_F(CameraApply, ADeepViewWithoutARoomPublishesOneByOne)
{
    Deep(640, 480);
    ExpectArea(Apply(), {0, 0, 1, 1, 0});
}

TEST_F(CameraApply, AnyPerspectiveElementThatIsNotZeroMakesAViewDeep)
{
    for (float element : {1.0f, -1.0f, 1e-45f, NOT_A_NUMBER})
    {
        camera.m_projMat._34 = element;
        ExpectArea(Apply(), {0, 0, 1, 1, 0});
    }
    camera.m_projMat._34 = -0.0f;
    ExpectArea(Apply(), {-1, -1, 2, 2, 0});
}

TEST_F(CameraApply, AFlatViewDoesNotLookAtTheRoomsSize)
{
    Run_Room = NewRoom(5, 5);
    Flat(0, 0, 640, 480);
    EXPECT_NEAR(D(Apply().width), 640.0, ROOM_UNITS);
}

// ---- render targets ----

TEST_F(CameraApply, ABoundRenderTargetFlipsTheSecondColumnOfTheProjection)
{
    for (int i = 0; i < 16; ++i)
        camera.m_projMat.m[i] = i == 11 ? 0.0f : static_cast<float>(i + 1);
    const kvMatrix stored = camera.m_projMat;
    for (int target : {0, 1, 12, -2})
    {
        g_RenderTargetActive = target;
        Apply();
        for (int i = 0; i < 16; ++i)
            EXPECT_EQ(LastMatrix(eM_Projection).m[i], i % 4 == 1 ? -stored.m[i] : stored.m[i])
                << "target " << target << ", element " << i;
        EXPECT_EQ(camera.m_projMat, stored) << "the camera keeps its own";
    }
}

TEST_F(CameraApply, ADeepProjectionIsFlippedToo)
{
    Deep(640, 480);
    g_RenderTargetActive = 3;
    Apply();
    EXPECT_EQ(LastMatrix(eM_Projection)._22, -camera.m_projMat._22);
}

TEST_F(CameraApply, TheFlipIsAProductOfTheHosts)
{
    Flat(0, 0, 640, 480);
    g_RenderTargetActive = 0;
    const Area area = Apply();
    EXPECT_EQ(TakeLog(), (Lines{Extents(area), "Multiply()", "SetMatrix(view)", "SetMatrix(projection)"}));
}

TEST_F(CameraApply, ARenderTargetChangesNeitherAreaNorView)
{
    Flat(0, 0, 640, 480, 30);
    const Area screen = Apply();
    g_RenderTargetActive = 0;
    ExpectArea(Apply(), screen);
    EXPECT_EQ(LastMatrix(eM_View), camera.m_viewMat);
}

TEST_F(CameraApply, TheScreenGetsTheProjectionAsStoredBitForBit)
{
    camera.m_projMat.u[4] = 0x7FC00123u;
    camera.m_projMat.u[5] = 0x80000000u;
    Apply();
    EXPECT_EQ(LastMatrix(eM_Projection), camera.m_projMat);
}
