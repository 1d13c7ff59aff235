// The views of the running room as scripts read and set them.

#include "Files/Graphics/Camera_Manager.h"
#include "Tests/Runner/Support/Game_Support.h"

namespace
{
using RunnerTest::GameTest;

class ViewAccessors : public GameTest, public ::testing::WithParamInterface<const char*>
{
protected:
    std::string Get() const { return std::string("view_get_") + GetParam(); }
    std::string Set() const { return std::string("view_set_") + GetParam(); }
};

TEST_P(ViewAccessors, ReadWhatWasSetInEachViewAlone)
{
    EXPECT_EQ(Run("for v = 0, 7 do " + Set() +
                      "(v, v % 2) end\n"
                      "for v = 0, 7 do assert(" +
                      Get() + "(v) == v % 2, v) end",
                  0),
              "");
}

TEST_P(ViewAccessors, RefuseViewsThatDoNotExist)
{
    for (const char* view : {"9", "8", "-1", "2000000000"})
    {
        const std::string tail = "() - there is no view " + std::string(view) + "; views are 0 to 7";
        EXPECT_EQ(Run(Get() + "(" + view + ")"), "main.lua:2: " + Get() + tail);
        EXPECT_EQ(Run(Set() + "(" + view + ", 0)"), "main.lua:2: " + Set() + tail);
    }
}

TEST_P(ViewAccessors, RefuseToWorkWithoutARoom)
{
    EXPECT_EQ(Play(Get() + "(0)"), "main.lua:1: " + Get() + "() - no room is running");
    EXPECT_EQ(Play(Set() + "(0, 0)"), "main.lua:1: " + Set() + "() - no room is running");
}

TEST_P(ViewAccessors, SettersLeaveTheResultAlone) { EXPECT_EQ(Run("assert(" + Set() + "(0, 0) == nil)"), ""); }

INSTANTIATE_TEST_SUITE_P(All, ViewAccessors,
                         ::testing::Values("camera", "visible", "xport", "yport", "wport", "hport", "surface_id"),
                         [](const auto& test) { return std::string(test.param); });

class ViewsTest : public GameTest
{
};

TEST_F(ViewsTest, BeginAsTheRoomDescribesThem)
{
    EXPECT_EQ(Play("room_add{ views = { [2] = { xport = 1, yport = 2, wport = 3, hport = 4 } }, create = function()\n"
                   "assert(view_get_xport(2) == 1 and view_get_yport(2) == 2)\n"
                   "assert(view_get_wport(2) == 3 and view_get_hport(2) == 4)\n"
                   "assert(view_get_visible(2) == 1 and view_get_surface_id(2) == -1)\n"
                   "assert(view_get_visible(0) == 0 and view_get_camera(0) == -1) end }"),
              "");
}

TEST_F(ViewsTest, NumbersAreTakenDownToWholeOnesAndSaturate)
{
    EXPECT_EQ(Run("view_set_xport(0, 2.9) assert(view_get_xport(0) == 2)\n"
                  "view_set_xport(0, 1e20) assert(view_get_xport(0) == 2147483647)\n"
                  "view_set_xport(0, 0/0) assert(view_get_xport(0) == 0)"),
              "");
}

TEST_F(ViewsTest, AssigningACameraPutsItInTheRoomListAtOnce)
{
    ASSERT_EQ(Run("C = camera_create() view_set_camera(3, C)"), "");
    EXPECT_EQ(g_CM.m_roomcameras[4], g_CM.GetCamera(1));
}

TEST_F(ViewsTest, ACameraAssignedInTheStepDrawsInTheSameFrame)
{
    EXPECT_EQ(Play("room_add{ views = { [0] = {} }, step = function() if frame_number() == 1 then\n"
                   "  local c = camera_create_view(0, 0, 11, 22) camera_set_begin_script(c, function()\n"
                   "    print(frame_number(), camera_current() == c) end) view_set_camera(0, c) end end }",
                   2),
              "");
    EXPECT_EQ(Log(), "1\ttrue\n");
}
} // namespace
