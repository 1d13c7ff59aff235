// Where the lines over a view lie: worked out by hand, and held against the camera's own steps.
#include "Runner/Host/Graphics.h"
#include "Runner/Inspect/Overlay.h"
#include "Tests/Runner/Inspect/Inspect_Support.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <ostream>

namespace
{
using namespace Runner;

// ---- the margins of the dead zone ----

struct Zone
{
    float edge, size, border;
};

void PrintTo(const Zone& zone, std::ostream* out)
{
    *out << zone.edge << " + " << zone.size << ", border " << zone.border;
}

class DeadZoneMargins : public testing::TestWithParam<Zone>
{
protected:
    AxisNote Axis() const { return {GetParam().edge, GetParam().size, GetParam().border, -1.0f, false, 0, {}, 0.0f}; }

    static bool Moves(const AxisNote& axis, double target)
    {
        return StagesOf(axis, static_cast<float>(target)).border != axis.edge;
    }
};

TEST_P(DeadZoneMargins, AreWhereTheCameraTurns)
{
    const AxisNote axis = Axis();
    const DeadZone zone = DeadZoneOf(axis);
    ASSERT_FALSE(zone.empty);
    EXPECT_FALSE(Moves(axis, zone.low)) << zone.low;
    EXPECT_TRUE(Moves(axis, zone.low - 0.01)) << zone.low;
    EXPECT_FALSE(Moves(axis, zone.high - 0.01)) << zone.high;
    EXPECT_TRUE(Moves(axis, zone.high)) << zone.high;
}

INSTANTIATE_TEST_SUITE_P(All, DeadZoneMargins,
                         testing::Values(Zone{530, 320, 80}, Zone{530.4f, 320, 80}, Zone{-0.5f, 320, 80.25f},
                                         Zone{100, 400, 199}, Zone{0, 320, -50}, Zone{7.75f, 33.5f, 0}));

// 530 + 80 = 610 keeps; 530 + 320 - 80 = 770 keeps, and everything that is taken down to it.
TEST(DeadZone, ReachesFromTheOneBorderToTheOtherAndAUnitMore)
{
    const DeadZone zone = DeadZoneOf({530, 320, 80, -1, false, 0, {}, 530});
    EXPECT_EQ(zone.low, 610.0);
    EXPECT_EQ(zone.high, 771.0);
}

TEST(DeadZone, IsEmptyWhereBordersLeaveNoneAndForNumbersThatAreNone)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    EXPECT_TRUE(DeadZoneOf({530, 320, 160, -1, false, 0, {}, 530}).empty);
    EXPECT_TRUE(DeadZoneOf({nan, 320, 80, -1, false, 0, {}, 530}).empty);
    EXPECT_TRUE(DeadZoneOf({1e30f, 320, 80, -1, false, 0, {}, 530}).empty);
}

// ---- how far a step can go ----

TEST(Reach, IsASpeedToBothSidesUnlessTheRoomIsNearer)
{
    const AxisNote axis = {530, 320, 80, 6, true, 854, {}, 530}; // the room stops the edge at 854 - 320 = 534
    EXPECT_EQ(ReachOf(axis).low, 524.0f);
    EXPECT_EQ(ReachOf(axis).high, 534.0f);
    EXPECT_EQ(StopsOf(axis).low, 0.0f);
    EXPECT_EQ(StopsOf(axis).high, 534.0f);
}

// ---- on the screen ----

class Overlay : public RunnerTest::InspectTest
{
protected:
    // Smallest rectangle around all lines of a kind in an overlay; empty: right < left.
    static RoomArea Around(const ViewOverlay& overlay, OverlayKind kind)
    {
        RoomArea area = {1e9f, 1e9f, -1e9f, -1e9f};
        for (const OverlayLine& line : overlay.lines)
            for (const Point& point : {line.from, line.to})
                if (line.kind == kind)
                    area = {std::min(area.left, static_cast<float>(point.x)),
                            std::min(area.top, static_cast<float>(point.y)),
                            std::max(area.right, static_cast<float>(point.x)),
                            std::max(area.bottom, static_cast<float>(point.y))};
        return area;
    }

    static void ExpectArea(const RoomArea& area, float left, float top, float right, float bottom)
    {
        EXPECT_NEAR(area.left, left, 0.05f);
        EXPECT_NEAR(area.top, top, 0.05f);
        EXPECT_NEAR(area.right, right, 0.05f);
        EXPECT_NEAR(area.bottom, bottom, 0.05f);
    }

    static bool Has(const ViewOverlay& overlay, OverlayKind kind)
    {
        return std::any_of(overlay.lines.begin(), overlay.lines.end(),
                           [kind](const OverlayLine& line) { return line.kind == kind; });
    }
};

// After its step the view starts at 536 and shows 320 x 180 room units on 640 x 360 pixels: two pixels a unit.
TEST_F(Overlay, LiesAtThePixelsOfTheView)
{
    ASSERT_EQ(Watch(RunnerTest::FOLLOWING_GAME), "");
    const std::vector<ViewOverlay> overlays = MakeOverlays(notes);
    ASSERT_EQ(overlays.size(), 1u);
    const ViewOverlay& overlay = overlays[0];
    ExpectArea(Around(overlay, OverlayKind::Area), 0, 0, 640, 360);
    // x: 536 + 80 = 616 to 536 + 320 - 80 + 1 = 777; y: 40 to 180 - 40 + 1 = 141
    ExpectArea(Around(overlay, OverlayKind::DeadZone), (616 - 536) * 2, 80, (777 - 536) * 2, 282);
    // the centre, 696, 90: 6 to the left; to the right the room allows 540 + 160 = 700; down 20 - 6 units at most
    ExpectArea(Around(overlay, OverlayKind::Reach), (690 - 536) * 2, 180, (700 - 536) * 2, 192);
    ExpectArea(Around(overlay, OverlayKind::Room), -536 * 2, 0, (860 - 536) * 2, 400);
    // stops: edges 0 to 540 and 0 to 20, the centre half a view further
    ExpectArea(Around(overlay, OverlayKind::Stop), (160 - 536) * 2, 180, (700 - 536) * 2, 220);
    // the player's box: 812.4 - 8 to 812.4 + 8, 82 to 98
    ExpectArea(Around(overlay, OverlayKind::Drawn), 536.8f, 164, 568.8f, 196);
    // the cross of nine pixels about 812.4, 90
    ExpectArea(Around(overlay, OverlayKind::Target), 552.8f - 9, 180 - 9, 552.8f + 9, 180 + 9);
    EXPECT_FALSE(Has(overlay, OverlayKind::Culled));
}

TEST_F(Overlay, TellsDrawnInstancesFromCulledOnes)
{
    ASSERT_EQ(
        Watch(
            "local o = object_add{ bbox = {0, 0, 10, 10} }\n"
            "room_add{ width = 1000, height = 100, views = { [0] = { w = 100, h = 100, wport = 100, hport = 100 } },\n"
            "instances = { {o, 20, 20}, {o, 500, 20} } }"),
        "");
    ASSERT_EQ(notes.Views().size(), 1u);
    EXPECT_EQ(notes.Views()[0].drawn, 1);
    EXPECT_EQ(notes.Views()[0].culled, 1);
    const ViewOverlay overlay = MakeOverlays(notes)[0];
    ExpectArea(Around(overlay, OverlayKind::Drawn), 20, 20, 30, 30);
    ExpectArea(Around(overlay, OverlayKind::Culled), 500, 20, 510, 30);
}

// The published area of a turned view is the turned view's own rectangle: it fills the port.
TEST_F(Overlay, TheAreaOfATurnedViewFillsItsPort)
{
    for (const char* angle : {"30", "-75", "90", "200"})
    {
        ASSERT_EQ(
            Watch(std::string("room_add{ views = { [0] = { x = 40, y = 60, w = 400, h = 300, xport = 20, yport = 10, "
                              "wport = 800, hport = 600 } }, create = function()\n"
                              "camera_set_view_angle(view_get_camera(0), ") +
                  angle + ") end }"),
            "");
        const ViewOverlay overlay = MakeOverlays(notes)[0];
        const RoomArea area = Around(overlay, OverlayKind::Area);
        EXPECT_NEAR(area.left, 20.0f, 0.5f) << angle;
        EXPECT_NEAR(area.top, 10.0f, 0.5f) << angle;
        EXPECT_NEAR(area.right, 820.0f, 0.5f) << angle;
        EXPECT_NEAR(area.bottom, 610.0f, 0.5f) << angle;
    }
}

// A box of 10 x 10 at 110, 10 in a view from 100, 0 of 64 x 48, on a surface of that size. Shown twice as large at 10,
// 20 it lies at 10 + 10 * 2, 20 + 10 * 2, although a render target's projection is upside down.
constexpr char SURFACE_GAME[] = "local o = object_add{ bbox = {0, 0, 10, 10} }\n"
                                "room_add{ width = 400, height = 300, views = { [0] = { x = 100, w = 64, h = 48 } }, "
                                "instances = { {o, 110, 10} },\n"
                                "create = function() view_set_surface_id(0, surface_create(64, 48)) end }";

TEST_F(Overlay, OfAViewThatDrawsIntoASurfaceLiesWhereTheSurfaceIsShown)
{
    ASSERT_EQ(Watch(SURFACE_GAME), "");
    EXPECT_TRUE(MakeOverlays(notes).empty()) << "on the screen there is nothing of it";
    ASSERT_EQ(notes.SurfaceViews().size(), 1u);
    EXPECT_EQ(notes.SurfaceViews()[0]->port, (Port{0, 0, 64, 48}));
    const std::vector<ViewOverlay> overlays = MakeOverlays(notes, {{0, {10, 20, 128, 96}}});
    ASSERT_EQ(overlays.size(), 1u);
    EXPECT_EQ(LabelOf(overlays[0]).substr(0, 19), "view 0 into surface");
    ExpectArea(Around(overlays[0], OverlayKind::Drawn), 30, 40, 50, 60);
    ExpectArea(Around(overlays[0], OverlayKind::Area), 10, 20, 138, 116);
}

// Opened while the game stands: nobody saw the frame, and no target is bound.
TEST_F(Overlay, OfASurfaceIsTheSameForAFrameThatNobodyWatched)
{
    ASSERT_EQ(Watch(SURFACE_GAME), "");
    notes.Look(*game);
    const std::vector<ViewOverlay> overlays = MakeOverlays(notes, {{0, {10, 20, 128, 96}}});
    ASSERT_EQ(overlays.size(), 1u);
    ExpectArea(Around(overlays[0], OverlayKind::Area), 10, 20, 138, 116);
    ExpectArea(Around(overlays[0], OverlayKind::Room), 10 - 200, 20, 10 + 600, 20 + 600);
}

// A border of half the view leaves no zone along that axis: the other one's margins go across the whole view. The view
// stands at 536, 0 as above; where the target is centred across, it starts at 540, as far as the room goes.
TEST_F(Overlay, OneAxisMayHaveAZoneAlone)
{
    const auto watched = [this](const std::string& borders)
    {
        std::string text = RunnerTest::FOLLOWING_GAME;
        text.replace(text.find("hborder = 80, vborder = 40"), 26, borders);
        EXPECT_EQ(Watch(text), "");
        return MakeOverlays(notes)[0];
    };
    ExpectArea(Around(watched("hborder = 80, vborder = 90"), OverlayKind::DeadZone), 160, 0, 482, 360);
    ExpectArea(Around(watched("hborder = 160, vborder = 40"), OverlayKind::DeadZone), 0, 80, 640, 282);
    EXPECT_FALSE(Has(watched("hborder = 160, vborder = 90"), OverlayKind::DeadZone));
}

// Across there is no limit, so the view is at 540, and a step reaches from the room's one end to the other; down it is
// 6 units.
TEST_F(Overlay, TheReachIsDrawnWhereOneAxisHasASpeed)
{
    std::string text = RunnerTest::FOLLOWING_GAME;
    text.replace(text.find("hspeed = 6"), 10, "hspeed = -1");
    ASSERT_EQ(Watch(text), "");
    ExpectArea(Around(MakeOverlays(notes)[0], OverlayKind::Reach), (160 - 540) * 2, 180, (700 - 540) * 2, 192);
    text.replace(text.find("vspeed = 6"), 10, "vspeed = -1");
    ASSERT_EQ(Watch(text), "");
    EXPECT_FALSE(Has(MakeOverlays(notes)[0], OverlayKind::Reach));
}

TEST(OverlayTexts, DoNotCoverEachOther)
{
    ViewOverlay overlay = {0, 1, SCREEN_SURFACE, {0, 0, 100, 100}, {}, {}};
    overlay.texts = {{OverlayKind::Target, {10, 10}, "target"},
                     {OverlayKind::Target, {10, 10}, "floored"},
                     {OverlayKind::OtherCamera, {10, 10}, "camera 7"},
                     {OverlayKind::Up, {40, 14}, "angle"},
                     {OverlayKind::Up, {67, 10}, "beside"}};
    SpreadTexts(overlay, 8, 13);
    const double wanted[] = {10, 23, 36, 49, 10}; // "target" ends at 58, "floored" at 66
    for (size_t i = 0; i < overlay.texts.size(); ++i)
        EXPECT_EQ(overlay.texts[i].at.y, wanted[i]) << overlay.texts[i].text;
}

TEST(OverlayTexts, OfAThousandCamerasStayWhereTheyAre)
{
    ViewOverlay overlay = {0, 1, SCREEN_SURFACE, {0, 0, 100, 100}, {}, {}};
    overlay.texts.assign(1000, {OverlayKind::OtherCamera, {10, 10}, "camera"});
    overlay.texts.push_back({OverlayKind::Target, {10, 10}, "target"});
    overlay.texts.push_back({OverlayKind::Up, {10, 10}, "angle"});
    SpreadTexts(overlay, 8, 13);
    EXPECT_EQ(overlay.texts[999].at.y, 10);
    EXPECT_EQ(overlay.texts[1000].at.y, 10);
    EXPECT_EQ(overlay.texts[1001].at.y, 23);
}

TEST_F(Overlay, ShowsTheFrameOfEveryOtherCameraWithASize)
{
    ASSERT_EQ(
        Watch("room_add{ width = 400, height = 400, views = { [0] = { w = 400, h = 400, wport = 400, hport = 400 } },\n"
              "create = function() camera_create_view(100, 50, 80, 60) camera_create() camera_create_view(0, 0, 9, 0) "
              "end }"),
        "");
    const ViewOverlay overlay = MakeOverlays(notes)[0];
    std::vector<std::string> names;
    for (const OverlayText& text : overlay.texts)
        if (text.kind == OverlayKind::OtherCamera)
            names.push_back(text.text);
    EXPECT_EQ(names, std::vector<std::string>{"camera 2"})
        << "the default camera was never built, the last two have no size";
    const RoomArea area = Around(overlay, OverlayKind::OtherCamera);
    EXPECT_NEAR(area.left, 100.0f, 0.05f);
    EXPECT_NEAR(area.right, 180.0f, 0.05f);
    EXPECT_NEAR(area.bottom, 110.0f, 0.05f);
}

// Whoever draws in every frame keeps the areas of cameras that stand still. Frames count from 0.
TEST_F(Overlay, OfKeptAreasFollowsACameraThatMovesGoesAndComes)
{
    ASSERT_EQ(Watch("room_add{ width = 400, height = 400, views = { [0] = { w = 400, h = 400, wport = 400, hport = 400 "
                    "} }, create = function() A = camera_create_view(100, 50, 80, 60) end, step = function()\n"
                    "if frame_number() == 3 then camera_set_view_pos(A, 200, 90) camera_apply(A) end\n"
                    "if frame_number() == 5 then camera_destroy(A) end\n"
                    "if frame_number() == 7 then A = camera_create_view(10, 20, 30, 40) end end }"),
              "");
    CameraAreas areas;
    const auto left = [&]
    {
        const ViewOverlay overlay = MakeOverlays(notes, {}, areas)[0];
        return Has(overlay, OverlayKind::OtherCamera) ? Around(overlay, OverlayKind::OtherCamera).left : -1.0f;
    };
    std::vector<float> lefts;
    for (int frame = 1; frame <= 8; ++frame)
    {
        lefts.push_back(std::round(left()));
        ASSERT_EQ(PlayOn(1), "");
    }
    EXPECT_EQ(lefts, (std::vector<float>{100, 100, 100, 200, 200, -1, -1, 10}));
}

// 100 cameras of 6 x 6 in a row, 10 apart, from 2 on. Of a view of 100 units' width ten of them show, each with four
// lines and the three of its arrow; of one of 1,000 all do.
TEST_F(Overlay, OfManyCamerasHasFramesWithoutNames)
{
    const auto counted = [this](const std::string& width)
    {
        EXPECT_EQ(Watch("room_add{ width = 400, height = 400, views = { [0] = { w = " + width +
                        ", h = 400, wport = 400, hport = 400 } }, create = function() for i = 0, 99 do "
                        "camera_create_view(i * 10 + 2, 50, 6, 6) end end }"),
                  "");
        const ViewOverlay overlay = MakeOverlays(notes)[0];
        const auto isOther = [](const auto& each) { return each.kind == OverlayKind::OtherCamera; };
        return std::pair(std::count_if(overlay.texts.begin(), overlay.texts.end(), isOther),
                         std::count_if(overlay.lines.begin(), overlay.lines.end(), isOther));
    };
    using Counts = std::pair<std::ptrdiff_t, std::ptrdiff_t>;
    EXPECT_EQ(counted("1000"), Counts(0, 400));
    EXPECT_EQ(counted("100"), Counts(10, 70));
}

TEST(OverlayLines, AreDrawnWhereTheyMayShow)
{
    const Port port = {10, 20, 100, 50};
    EXPECT_TRUE(MayShow({OverlayKind::Room, {0.0, 40.0}, {500.0, 40.0}}, port));
    EXPECT_FALSE(MayShow({OverlayKind::Room, {0.0, 10.0}, {500.0, 10.0}}, port)) << "above";
    EXPECT_FALSE(MayShow({OverlayKind::Room, {0.0, 80.0}, {500.0, 75.0}}, port)) << "below";
    EXPECT_FALSE(MayShow({OverlayKind::Room, {5.0, 0.0}, {5.0, 90.0}}, port)) << "to the left";
    EXPECT_FALSE(MayShow({OverlayKind::Room, {120.0, 0.0}, {115.0, 90.0}}, port)) << "to the right";
    EXPECT_TRUE(MayShow({OverlayKind::Room, {8.5, 0.0}, {8.5, 90.0}}, port)) << "a wide line reaches into it";
}

// ---- frames ----

kvMatrix Perspective(float x, float y)
{
    CCamera camera;
    camera.m_viewWidth = 80.0f;
    camera.m_viewHeight = 60.0f;
    camera.Build3DView(x, y);
    return camera.m_viewProjMat;
}

// The 3D build shows exactly its rectangle of the plane z = 0.
TEST(Footprint, OfAPerspectiveCameraIsItsFrustumOnTheGround)
{
    const ViewGeometry geometry(Perspective(140.0f, 90.0f), IdentityMatrix());
    const std::vector<Point> seen = geometry.Footprint();
    ASSERT_EQ(seen.size(), 4u);
    for (const Point& point : seen)
    {
        EXPECT_NEAR(std::abs(point.x - 140.0), 40.0, 0.01);
        EXPECT_NEAR(std::abs(point.y - 90.0), 30.0, 0.01);
    }
}

// An eye at 0, 0, -100 that looks along y, level: below the horizon it sees the ground from some distance on. Its
// frustum of 90 degrees opens as wide as it is far, to the far plane at 1000.
TEST(Footprint, OfALevelCameraReachesFromTheFloorToTheFarPlane)
{
    kvMatrix view, projection;
    kvMatrix::LookAtLH(view, {0.0f, 0.0f, -100.0f}, {0.0f, 1.0f, -100.0f}, {0.0f, 0.0f, 1.0f});
    kvMatrix::PerspectiveLH(projection, 2.0f, 2.0f, 1.0f, 1000.0f);
    const std::vector<Point> seen = ViewGeometry(view, projection).Footprint();
    ASSERT_EQ(seen.size(), 4u);
    double nearest = 1e9, farthest = 0.0;
    for (const Point& point : seen)
    {
        nearest = std::min(nearest, point.y);
        farthest = std::max(farthest, point.y);
        EXPECT_NEAR(std::abs(point.x), point.y, 0.1);
    }
    EXPECT_NEAR(nearest, 100.0, 0.1) << "as far as the eye is high";
    EXPECT_NEAR(farthest, 1000.0, 0.5);
}

TEST(Footprint, IsEmptyForACameraThatLooksAwayFromThePlaneAndForASingularMatrix)
{
    kvMatrix view, projection;
    kvMatrix::LookAtLH(view, {0.0f, 0.0f, -100.0f}, {0.0f, 0.0f, -200.0f}, {0.0f, 1.0f, 0.0f});
    kvMatrix::PerspectiveLH(projection, 1.0f, 1.0f, 1.0f, 1000.0f);
    EXPECT_TRUE(ViewGeometry(view, projection).Footprint().empty());
    EXPECT_TRUE(ViewGeometry(kvMatrix{}, kvMatrix{}).Footprint().empty());
}

TEST(Segment, EndsBeforeTheEye)
{
    kvMatrix view, projection;
    kvMatrix::LookAtLH(view, {0.0f, 0.0f, -100.0f}, {0.0f, 1.0f, -100.0f}, {0.0f, 0.0f, 1.0f});
    kvMatrix::PerspectiveLH(projection, 2.0f, 2.0f, 1.0f, 1000.0f);
    const ViewGeometry geometry(view, projection);
    const Port port = {0, 0, 100, 100};
    EXPECT_FALSE(geometry.ToScreen({0.0, -50.0}, {10.0, -50.0}, port)) << "behind it";
    const auto segment = geometry.ToScreen({0.0, -50.0}, {0.0, 200.0}, port);
    ASSERT_TRUE(segment);
    EXPECT_NEAR(segment->to.x, 50.0, 1e-3);
    EXPECT_NEAR(std::abs(segment->to.y - 50.0), 25.0, 1e-3) << "100 below the eye at a distance of 200";
}
} // namespace
