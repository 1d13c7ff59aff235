// Points of the screen and of the room, against what the matrices say when they are worked out by hand.
#include "Tests/Runner/Support/Game_Support.h"

#include "Runner/Game/View_Points.h"

#include "Files/Graphics/Graphics_Support.h"

#include <cmath>

namespace
{
using namespace Runner;

class ViewPoints : public RunnerTest::GameTest
{
protected:
    // A room of 1000 x 800 with one view of 400 x 200 at 100, 50, in a port of 800 x 400 at 20, 10.
    void Open(const std::string& create = "", int frames = 1)
    {
        ASSERT_EQ(Play("room_add{ width = 1000, height = 800, views = { [0] = { x = 100, y = 50, w = 400, h = 200, "
                       "xport = 20, yport = 10, wport = 800, hport = 400 } }, create = function()\n" +
                           create + "\nend }",
                       frames),
                  "");
    }

    PlanePoint ToRoom(double x, double y, double z = 0.0)
    {
        PlanePoint room;
        EXPECT_TRUE(ViewToRoom(*game, 0, {x, y}, z, room)) << x << ", " << y << ", plane " << z;
        return room;
    }

    void ExpectThereAndBack(double z)
    {
        for (const double x : {20.0, 333.0, 820.0})
            for (const double y : {10.0, 200.0, 410.0})
            {
                const PlanePoint room = ToRoom(x, y, z);
                PlanePoint screen;
                ASSERT_TRUE(RoomToView(*game, 0, room, z, screen));
                EXPECT_NEAR(screen.x, x, 1e-6);
                EXPECT_NEAR(screen.y, y, 1e-6);
            }
    }
};

TEST_F(ViewPoints, AFlatViewScalesAndShifts)
{
    Open();
    const PlanePoint corner = ToRoom(20.0, 10.0), inside = ToRoom(220.0, 210.0);
    EXPECT_NEAR(corner.x, 100.0, 1e-3);
    EXPECT_NEAR(corner.y, 50.0, 1e-3);
    EXPECT_NEAR(inside.x, 200.0, 1e-3); // 200 of 800 pixels: a quarter of 400 units
    EXPECT_NEAR(inside.y, 150.0, 1e-3);
    EXPECT_NEAR(ToRoom(0.0, 10.0).x, 90.0, 1e-3) << "beside the port, beside what is seen";
    ExpectThereAndBack(0.0);
}

// About the middle (300, 150). What is drawn and where the mouse points must agree, so the picture is asked: at 90
// degrees the screen's right is the room's up or down, 200 units away at the port's edge over its half width.
TEST_F(ViewPoints, ATurnedViewTurnsTheRoom)
{
    Open("camera_set_view_angle(view_get_camera(0), 90)");
    const PlanePoint middle = ToRoom(420.0, 210.0), right = ToRoom(820.0, 210.0), below = ToRoom(420.0, 410.0);
    EXPECT_NEAR(middle.x, 300.0, 1e-3);
    EXPECT_NEAR(middle.y, 150.0, 1e-3);
    EXPECT_NEAR(right.x, 300.0, 1e-3);
    EXPECT_NEAR(std::fabs(right.y - 150.0), 200.0, 1e-3);
    EXPECT_NEAR(std::fabs(below.x - 300.0), 100.0, 1e-3);
    ExpectThereAndBack(0.0);
}

// clip x = 2 (x + y / 2) / 400, clip y = 2 y / 200, for every z: a sheared view whose middle is the room's origin.
TEST_F(ViewPoints, AShearedViewIsSolvedForBothCoordinates)
{
    Open("local c = view_get_camera(0) camera_set_view_mat(c, {1,0,0,0, 0.5,1,0,0, 0,0,1,0, 0,0,1,1}) "
         "camera_set_proj_mat(c, {2/400,0,0,0, 0,2/200,0,0, 0,0,0.001,0, 0,0,0,1}) "
         "camera_set_update_script(c, function() end)");
    const PlanePoint room = ToRoom(620.0, 310.0); // clip 0.5, 0.5: y = 50, x = 100 - 25
    EXPECT_NEAR(room.x, 75.0, 1e-4);
    EXPECT_NEAR(room.y, 50.0, 1e-4);
    ExpectThereAndBack(10.0);
}

// The eye at 0, 0, -100 looks along z with a near plane of 2 x 1 at distance 1, off its centre by half its width:
// clip x = (x + w / 2) / w with w = z + 100.
class Perspective : public ViewPoints
{
protected:
    void Open()
    {
        ViewPoints::Open("local c = view_get_camera(0) camera_set_view_mat(c, {1,0,0,0, 0,1,0,0, 0,0,1,0, 0,0,100,1}) "
                         "camera_set_proj_mat(c, {1,0,0,0, 0,2,0,0, 0.5,0,1.01,1, 0,0,-1.01,0}) "
                         "camera_set_update_script(c, function() end)");
    }
};

TEST_F(Perspective, AnOffCentrePerspectiveMeetsThePlane)
{
    Open();
    const PlanePoint middle = ToRoom(420.0, 210.0); // clip 0, 0: x + 50 = 0
    EXPECT_NEAR(middle.x, -50.0, 1e-4);
    EXPECT_NEAR(middle.y, 0.0, 1e-4);
    const PlanePoint nearer = ToRoom(820.0, 410.0, -50.0); // clip 1, 1 where w = 50: x = 25, y = 25
    EXPECT_NEAR(nearer.x, 25.0, 1e-4);
    EXPECT_NEAR(nearer.y, 25.0, 1e-4);
    ExpectThereAndBack(0.0);
    ExpectThereAndBack(-50.0);
}

TEST_F(Perspective, WhatIsBehindTheEyeCannotBeSeen)
{
    Open();
    PlanePoint point;
    EXPECT_FALSE(ViewToRoom(*game, 0, {420.0, 210.0}, -150.0, point));
    EXPECT_FALSE(RoomToView(*game, 0, {0.0, 0.0}, -150.0, point));
    EXPECT_FALSE(RoomToView(*game, 0, {0.0, 0.0}, -100.0, point)) << "at the eye itself";
    EXPECT_FALSE(RoomToView(*game, 0, {0.0, 0.0}, -99.5, point)) << "nearer than the near plane";
    EXPECT_TRUE(RoomToView(*game, 0, {0.0, 0.0}, 0.0, point));
}

TEST_F(ViewPoints, APlaneSeenFromItsEdgeHasNoPoint)
{
    Open("local c = view_get_camera(0) camera_set_view_mat(c, {1,0,0,0, 0,0,1,0, 0,1,0,0, 0,0,500,1}) "
         "camera_set_proj_mat(c, {0.01,0,0,0, 0,0.01,0,0, 0,0,0.001,0, 0,0,0,1}) "
         "camera_set_update_script(c, function() end)");
    PlanePoint point;
    EXPECT_FALSE(ViewToRoom(*game, 0, {420.0, 200.0}, 0.0, point));
}

TEST_F(ViewPoints, ARoomsViewHasItsMatricesFromTheStart)
{
    Open("", 0);
    EXPECT_NEAR(ToRoom(420.0, 210.0).x, 300.0, 1e-3);
}

TEST_F(ViewPoints, WithoutACameraOrMatricesThereIsNoPoint)
{
    Open("view_set_camera(0, camera_create())", 0);
    PlanePoint point;
    EXPECT_FALSE(ViewToRoom(*game, 0, {420.0, 210.0}, 0.0, point)) << "its matrices are made when it is drawn";
    EXPECT_FALSE(ViewToRoom(*game, 1, {420.0, 210.0}, 0.0, point));
}

TEST_F(ViewPoints, NotANumberHasNoPoint)
{
    Open("local c = view_get_camera(0) camera_set_view_size(c, 0, 0)");
    PlanePoint point;
    EXPECT_FALSE(ViewToRoom(*game, 0, {420.0, 210.0}, 0.0, point));
}

TEST_F(ViewPoints, TheViewOnTopLiesUnderAPoint)
{
    ASSERT_EQ(Play("room_add{ views = { [0] = {}, [2] = { xport = 100, wport = 50, hport = 50 }, "
                   "[3] = { xport = 120, wport = 50, hport = 50, visible = false } } }"),
              "");
    EXPECT_EQ(ViewAt(*game, {99.0, 10.0}), 0);
    EXPECT_EQ(ViewAt(*game, {100.0, 10.0}), 2);
    EXPECT_EQ(ViewAt(*game, {149.9, 49.9}), 2);
    EXPECT_EQ(ViewAt(*game, {150.0, 10.0}), 0);
    EXPECT_EQ(ViewAt(*game, {-1.0, 10.0}), NO_VIEW);
    EXPECT_EQ(ViewAt(*game, {NAN, 10.0}), NO_VIEW);
}
} // namespace
