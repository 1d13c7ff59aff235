// Rooms: their start, their end, and which cameras live how long.

#include "Runner/World/Running_Room.h"

#include "Tests/Runner/Support/Game_Support.h"

#include "Files/Graphics/Camera_Manager.h"

namespace
{
using RunnerTest::GameTest;

int CamerasAlive()
{
    int count = 0;
    for (int slot = 0; slot < g_CM.m_cameraListSize; ++slot)
        count += g_CM.m_cameras[slot] != nullptr ? 1 : 0;
    return count;
}

class RoomsTest : public GameTest
{
};

TEST_F(RoomsTest, EachListedViewBeginsWithACameraOfItsOwn)
{
    ASSERT_EQ(Play("room_add{ width = 900, height = 800, views = {\n"
                   "  [0] = { x = 10, y = 20, w = 101, h = 51, hborder = 3, vborder = 4, hspeed = 5, vspeed = 6,\n"
                   "          target = 100007 },\n"
                   "  [7] = { visible = false, wport = 64, hport = 32 } } }"),
              "");
    const auto& views = game->rooms.Running()->views;
    const CCamera* first = g_CM.GetCamera(views[0].cameraID);
    const CCamera* last = g_CM.GetCamera(views[7].cameraID);
    ASSERT_NE(first, nullptr);
    ASSERT_NE(last, nullptr);
    EXPECT_EQ(first->m_viewWidth, 101.0f);
    EXPECT_EQ(first->m_viewHeight, 51.0f);
    EXPECT_EQ(first->m_viewBorderX, 3.0f);
    EXPECT_EQ(first->m_viewBorderY, 4.0f);
    EXPECT_EQ(first->m_viewSpeedX, 5.0f);
    EXPECT_EQ(first->m_viewSpeedY, 6.0f);
    EXPECT_EQ(first->m_targetInstance, 100007);
    EXPECT_EQ(last->m_viewWidth, 64.0f); // a view is as large as its port unless it says otherwise
    EXPECT_EQ(last->m_viewHeight, 32.0f);
    EXPECT_EQ(views[1].cameraID, -1);
    EXPECT_EQ(g_CM.m_roomcameras[1], first);
    EXPECT_EQ(g_CM.m_roomcameras[8], last);
    EXPECT_EQ(g_CM.m_roomcameras[2], nullptr);
}

TEST_F(RoomsTest, TheDefaultCameraComesFirstAndLiesBelowTheHighPoint)
{
    ASSERT_EQ(Run("assert(camera_get_default() == 0)"), "");
    EXPECT_EQ(g_DefaultCameraID, 0);
    EXPECT_EQ(g_CM.m_InitialLoadHighPoint, 1);
}

TEST_F(RoomsTest, CamerasOfTheMainFileCountAsLoaded)
{
    ASSERT_EQ(Play("camera_create() camera_create() room_add{}"), "");
    EXPECT_EQ(g_CM.m_InitialLoadHighPoint, 3);
}

TEST_F(RoomsTest, TheDefaultCameraShowsTheWholeRoom)
{
    ASSERT_EQ(Play("room_add{ width = 500, height = 300 }"), "");
    const CCamera& camera = *g_CM.GetCamera(0);
    EXPECT_EQ(camera.m_viewX, 0.0f);
    EXPECT_EQ(camera.m_viewWidth, 500.0f);
    EXPECT_EQ(camera.m_viewHeight, 300.0f);
}

TEST_F(RoomsTest, StartsWithItsCamerasThenItsInstancesThenItsCreateEvent)
{
    EXPECT_EQ(Play("local o = object_add{ create = function(self)\n"
                   "  print('instance', self.x, room_get(), camera_get_view_width(view_get_camera(0))) end }\n"
                   "room_add{ views = { [0] = { w = 77 } }, instances = { {o, 1, 2}, {o, 3, 4} },\n"
                   "  create = function() print('room', instance_count(o)) end }",
                   0),
              "");
    EXPECT_EQ(Log(), "instance\t1.0\t0\t77\ninstance\t3.0\t0\t77\nroom\t2\n");
}

TEST_F(RoomsTest, RoomGotoTakesEffectAtTheEndOfTheStep)
{
    EXPECT_EQ(Play("local o = object_add{ step = function() print('step', room_get()) end }\n"
                   "local a = room_add{ instances = { {o, 0, 0} }, step = function() room_goto(1)\n"
                   "  print('goto', room_get()) end, draw = function() print('draw a') end }\n"
                   "room_add{ draw = function() print('draw b', room_get(), instance_count(o)) end }"),
              "");
    EXPECT_EQ(Log(), "goto\t0\nstep\t0\ndraw b\t1\t0\n");
}

TEST_F(RoomsTest, TheMainFileMayPickTheFirstRoom)
{
    ASSERT_EQ(Play("room_add{} room_goto(room_add{ name = 'second' })"), "");
    EXPECT_EQ(game->rooms.Running()->spec.name, "second");
}

TEST_F(RoomsTest, ARoomCanBeStartedAnew)
{
    EXPECT_EQ(Play("local o = object_add{}\n"
                   "room_add{ instances = { {o, 0, 0} }, create = function() print(instance_find(o, 0)) end,\n"
                   "  step = function() room_goto(0) end }",
                   2),
              "");
    EXPECT_EQ(Log(), "100000\n100001\n100002\n");
}

TEST_F(RoomsTest, ViewCamerasGoWithTheirRoomAndScriptsCamerasStay)
{
    ASSERT_EQ(Play("room_add{ views = { [0] = {}, [1] = {} }, create = function() camera_create() end,\n"
                   "  step = function() room_goto(1) end }\n"
                   "room_add{}"),
              "");
    EXPECT_EQ(CamerasAlive(), 2); // the default one and the script's
    EXPECT_EQ(g_CM.GetCamera(1), nullptr);
    EXPECT_EQ(g_CM.GetCamera(2), nullptr);
    EXPECT_NE(g_CM.GetCamera(3), nullptr);
}

TEST_F(RoomsTest, AnotherCameraThatTookAViewCamerasNumberStays)
{
    ASSERT_EQ(Play("room_add{ views = { [0] = {} }, create = function() local c = view_get_camera(0)\n"
                   "  camera_destroy(c) assert(camera_create() == c) end, step = function() room_goto(1) end }\n"
                   "room_add{}"),
              "");
    EXPECT_NE(g_CM.GetCamera(1), nullptr);
}

TEST_F(RoomsTest, EndingARoomLeavesNoRoomAndAnEmptyRoomList)
{
    ASSERT_EQ(Play("room_add{ views = { [0] = {}, [1] = {} } }"), "");
    EXPECT_NE(g_CM.m_pScriptInstance, nullptr);
    game->EndRoom();
    EXPECT_EQ(Run_Room, nullptr);
    EXPECT_EQ(g_CM.m_pScriptInstance, nullptr);
    for (int i = 0; i < ROOM_CAMERAS; ++i)
        EXPECT_EQ(g_CM.m_roomcameras[i], nullptr) << "entry " << i;
    EXPECT_EQ(CamerasAlive(), 1);
    EXPECT_TRUE(game->StartRoom(0));
    EXPECT_EQ(game->rooms.Running()->index, 0);
}

TEST_F(RoomsTest, ClonesGoWithTheRoomUnlessPersistent)
{
    ASSERT_EQ(Play("room_add{ views = { [0] = {} } }"), "");
    const int passing = g_CM.CloneCamera(0)->GetID();
    g_CM.GetCamera(passing)->SetPersistent(false);
    const int staying = g_CM.CloneCamera(0)->GetID(); // the default camera is persistent, and so are its clones
    game->EndRoom();
    EXPECT_EQ(g_CM.GetCamera(passing), nullptr);
    EXPECT_NE(g_CM.GetCamera(staying), nullptr);
    EXPECT_TRUE(game->StartRoom(0));
}

TEST_F(RoomsTest, AfterAGameTheManagerIsEmpty)
{
    ASSERT_EQ(Play("camera_create() room_add{ views = { [0] = {} } }"), "");
    game.reset();
    EXPECT_EQ(CamerasAlive(), 0);
    EXPECT_EQ(g_DefaultCameraID, -1);
    EXPECT_EQ(Run_Room, nullptr);
    EXPECT_EQ(g_CM.m_InitialLoadHighPoint, 0);
}

struct RoomMistake
{
    const char* statement;
    const char* complaint;
};

class RoomMistakes : public GameTest, public ::testing::WithParamInterface<RoomMistake>
{
};

TEST_P(RoomMistakes, AreClearErrors)
{
    EXPECT_EQ(Play(GetParam().statement), std::string("main.lua:1: ") + GetParam().complaint);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, RoomMistakes,
    ::testing::Values(
        RoomMistake{"room_add{ widht = 3 }", "room_add() - there is no field \"widht\""},
        RoomMistake{"room_add{ width = 0 }", "room_add() - width is 1 to 1000000, got 0"},
        RoomMistake{"room_add{ width = 1.5 }", "room_add() - width is a whole number of 32 bits, got the number 1.5"},
        RoomMistake{"room_add{ create = 5 }", "room_add() - create is a function, got the number 5"},
        RoomMistake{"room_add{ views = { [8] = {} } }", "room_add() - views must be numbered 0 to 7"},
        RoomMistake{"room_add{ views = { [1] = 5 } }", "room_add() - views[1] is a table, got the number 5"},
        RoomMistake{"room_add{ views = { [1] = { w = 'a' } } }",
                    "room_add() - views[1].w is a whole number, got the string \"a\""},
        RoomMistake{"room_add{ views = { [1] = { width = 1 } } }", "room_add() - there is no field \"views[1].width\""},
        RoomMistake{"room_add{ instances = { {3, 0, 0} } }",
                    "room_add() - instances[1] names object 3, which does not exist"},
        RoomMistake{"room_add{ instances = { {} } }", "room_add() - instances[1] must be {object, x, y}"},
        RoomMistake{"room_add(5)", "room_add: argument 1 (fields) is a table, got the number 5"},
        RoomMistake{"room_goto(0)", "room_goto() - there is no room 0"},
        RoomMistake{"room_width()", "room_width() - no room is running"},
        RoomMistake{"object_add{ parent = 0 }", "object_add() - parent must be an object, there is no object 0"},
        RoomMistake{"object_add{ bbox = {1, 2, 3} }",
                    "object_add() - bbox must be four numbers: {left, top, right, bottom}"}));

TEST_F(RoomsTest, AGameWithoutRoomsIsAnError)
{
    EXPECT_EQ(Play("object_add{}"), "the game has no room: add one with room_add");
}
} // namespace
