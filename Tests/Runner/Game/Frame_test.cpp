// The order of a frame, what callbacks may do to it, and where the picture ends up.

#include "Tests/Runner/Support/Game_Support.h"

#include "Files/Graphics/Camera_Manager.h"
#include "Files/Graphics_API/Graphics_API.h"

namespace
{
using RunnerTest::GameTest;

class FrameTest : public GameTest
{
};

TEST_F(FrameTest, RunsItsPartsInOrder)
{
    EXPECT_EQ(Play("local o = object_add{ step = function() print('step') end, draw = function() print('draw') end }\n"
                   "room_add{ views = { [0] = {}, [1] = { visible = false }, [3] = {} }, instances = { {o, 0, 0} },\n"
                   "  step = function() print('room step') end, draw = function() print('room draw') end,\n"
                   "  draw_gui = function() print('gui') end,\n"
                   "  create = function() for v = 0, 3 do local c = view_get_camera(v)\n"
                   "    for _, s in ipairs{'begin', 'update', 'end'} do\n"
                   "      _G['camera_set_' .. s .. '_script'](c, function() print(s, v) end) end end end }"),
              "");
    EXPECT_EQ(Log(), "room step\nstep\n"
                     "begin\t0\nupdate\t0\nroom draw\ndraw\nend\t0\n"
                     "begin\t3\nupdate\t3\nroom draw\ndraw\nend\t3\n"
                     "gui\n");
}

TEST_F(FrameTest, ARoomWithoutAVisibleViewIsDrawnByTheDefaultCamera)
{
    EXPECT_EQ(Play("room_add{ draw = function() print('draw', camera_get_active()) end }"), "");
    EXPECT_EQ(Log(), "draw\t0\n");
}

TEST_F(FrameTest, AViewWithoutACameraShowsNothing)
{
    EXPECT_EQ(Run("view_set_visible(0, true)", 2), "");
    EXPECT_EQ(Play("room_add{ views = { [0] = {} }, create = function() camera_destroy(view_get_camera(0)) end,\n"
                   "draw = function() print('draw') end }"),
              "");
    EXPECT_EQ(Log(), "warning: view 0 of room \"room0\" shows camera 1, which does not exist, so nothing is drawn\n");
}

TEST_F(FrameTest, TheCameraThatDrawsIsTheActiveOne)
{
    EXPECT_EQ(Play("room_add{ views = { [0] = {}, [1] = {} },\n"
                   "  step = function() assert(camera_get_active() == -1) end,\n"
                   "  draw = function() print(camera_get_active()) end }",
                   2),
              "");
    EXPECT_EQ(Log(), "1\n2\n1\n2\n");
}

TEST_F(FrameTest, AViewFollowsItsTargetBeforeItIsDrawn)
{
    ASSERT_EQ(Play("local o = object_add{ step = function(self) self.x = 1000 end }\n"
                   "room_add{ width = 4000, height = 400, instances = { {o, 0, 200} },\n"
                   "  views = { [0] = { w = 400, h = 400, hborder = 50, target = o } } }"),
              "");
    EXPECT_EQ(g_CM.GetCamera(1)->m_viewX, 650.0f); // 1000 + 50 - 400
}

TEST_F(FrameTest, ACameraDestroyedByItsBeginCallbackDrawsNothingAndTheFrameGoesOn)
{
    EXPECT_EQ(Play("room_add{ views = { [0] = {}, [1] = {} }, draw = function() print(camera_get_active()) end,\n"
                   "  create = function() local c = view_get_camera(0)\n"
                   "    camera_set_begin_script(c, function() camera_destroy(c) end) end }"),
              "");
    EXPECT_EQ(Log(), "2\n");
}

TEST_F(FrameTest, ACameraReplacedByItsUpdateCallbackHandsOverToTheNewOne)
{
    EXPECT_EQ(Play("room_add{ views = { [0] = {} }, draw = function() print('draw') end,\n"
                   "  create = function() local c, d = view_get_camera(0), camera_create_view(0, 0, 9, 9)\n"
                   "    camera_set_end_script(d, function() print('end of the new one') end)\n"
                   "    camera_set_end_script(c, function() print('end of the old one') end)\n"
                   "    camera_set_update_script(c, function() view_set_camera(0, d) end) end }"),
              "");
    EXPECT_EQ(Log(), "draw\nend of the new one\n");
    EXPECT_EQ(g_ViewAreaW, 9.0f); // published by the new camera
}

TEST_F(FrameTest, InstancesDestroyedWhileDrawingAreNotDrawn)
{
    EXPECT_EQ(Play("local o = object_add{ draw = function(self) print(self.id) instance_destroy(100001) end }\n"
                   "room_add{ instances = { {o, 0, 0}, {o, 0, 0}, {o, 0, 0} } }"),
              "");
    EXPECT_EQ(Log(), "100000\n100002\n");
}

TEST_F(FrameTest, DrawingOutsideOfDrawEventsIsRefused)
{
    EXPECT_EQ(Run("draw_circle(1, 2, 3)"),
              "main.lua:2: draw_circle() - only while drawing: in draw, draw_gui or a camera's callback");
}

TEST_F(FrameTest, GameEndEndsAfterTheFrame)
{
    EXPECT_EQ(
        Play("room_add{ step = function() print('step') game_end() end, draw = function() print('draw') end }", 5), "");
    EXPECT_EQ(Log(), "step\ndraw\n");
    EXPECT_TRUE(game->HasEnded());
}

TEST_F(FrameTest, AViewWithASurfaceDrawsIntoItWithTheFlipOfATarget)
{
    EXPECT_EQ(Play("room_add{ views = { [0] = {}, [1] = {} }, create = function()\n"
                   "  view_set_surface_id(0, surface_create(64, 32)) end,\n"
                   "  draw = function() local p = camera_get_proj_mat(camera_get_active())\n"
                   "    print(camera_get_active(), p[6] > 0) end }"),
              "");
    EXPECT_EQ(Log(), "1\tfalse\n2\ttrue\n");
    EXPECT_EQ(g_RenderTargetActive, -1);
}

TEST_F(FrameTest, AViewOfAFreedSurfaceIsSkipped)
{
    EXPECT_EQ(Play("room_add{ views = { [0] = {} }, create = function()\n"
                   "  local s = surface_create(64, 32) view_set_surface_id(0, s) surface_free(s) end,\n"
                   "  draw = function() print('draw') end }"),
              "");
    EXPECT_EQ(Log(), "view 0 shows nothing: it draws into surface 0, which does not exist\n");
}

TEST_F(FrameTest, ATargetThatAScriptForgetsIsTakenBackAtTheEndOfTheView)
{
    EXPECT_EQ(Play("room_add{ views = { [0] = {}, [1] = {} }, create = function() S = surface_create(8, 8) end,\n"
                   "  draw = function() surface_set_target(S) surface_set_target(S) end }",
                   2),
              "");
    EXPECT_EQ(g_RenderTargetActive, -1);
}

// ---- pictures: colours at places, worked out from the ports ----

unsigned ColourAt(const Runner::Picture& picture, int x, int y)
{
    const uint8_t* pixel = picture.rgba.data() + picture.Offset(x, y);
    return static_cast<unsigned>(pixel[0] | pixel[1] << 8 | pixel[2] << 16);
}

class FramePicture : public GameTest
{
protected:
    FramePicture()
    {
        options.draw = true;
        options.width = 64;
        options.height = 32;
    }
};

constexpr unsigned RED = 0x0000FF, BLUE = 0xFF0000, BLACK = 0;

TEST_F(FramePicture, PortsAreScaledFromTheGamesScreenToThePicture)
{
    ASSERT_EQ(Play("screen_set_size(640, 320)\n"
                   "room_add{ background = colours.red, views = { [0] = { wport = 320 } } }"),
              "");
    const Runner::Picture picture = game->Screen();
    ASSERT_EQ(picture.width, 64);
    EXPECT_EQ(ColourAt(picture, 31, 31), RED);
    EXPECT_EQ(ColourAt(picture, 32, 0), BLACK);
}

TEST_F(FramePicture, TheDefaultCameraFitsTheRoomIntoTheMiddle)
{
    ASSERT_EQ(Play("room_add{ width = 100, height = 100, background = colours.red }"), "");
    const Runner::Picture picture = game->Screen();
    EXPECT_EQ(ColourAt(picture, 15, 16), BLACK); // 32 wide, so 16 pixels stay black on either side
    EXPECT_EQ(ColourAt(picture, 16, 0), RED);
    EXPECT_EQ(ColourAt(picture, 47, 31), RED);
    EXPECT_EQ(ColourAt(picture, 48, 16), BLACK);
}

TEST_F(FramePicture, RoomDrawLiesUnderInstancesAndTheGuiOverAll)
{
    ASSERT_EQ(
        Play("screen_set_size(64, 32)\n"
             "local o = object_add{ draw = function() draw_set_colour(colours.blue) draw_rectangle(0, 0, 20, 20)\n"
             "  end }\n"
             "room_add{ width = 64, height = 32, instances = { {o, 0, 0} }, draw = function()\n"
             "  draw_set_colour(colours.red) draw_rectangle(0, 0, 40, 40) end,\n"
             "  draw_gui = function() draw_rectangle(0, 0, 10, 10) end }"),
        "");
    const Runner::Picture picture = game->Screen();
    EXPECT_EQ(ColourAt(picture, 5, 5), 0xFFFFFFu); // the gui begins with white
    EXPECT_EQ(ColourAt(picture, 15, 15), BLUE);
    EXPECT_EQ(ColourAt(picture, 30, 15), RED);
    EXPECT_EQ(ColourAt(picture, 50, 15), BLACK);
}

TEST_F(FramePicture, AViewThatIsHiddenLeavesNothingBehind)
{
    ASSERT_EQ(
        Play("screen_set_size(64, 32)\n"
             "room_add{ background = colours.red, views = { [0] = { wport = 32 }, [1] = { xport = 32, wport = 32 } },\n"
             "  step = function() if frame_number() == 1 then view_set_visible(1, false) end end }",
             1),
        "");
    EXPECT_EQ(ColourAt(game->Screen(), 40, 5), RED);
    ASSERT_EQ(PlayOn(1), "");
    EXPECT_EQ(ColourAt(game->Screen(), 40, 5), BLACK);
}
} // namespace
