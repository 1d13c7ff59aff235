// The manager and rooms: room start and end, the room list, the slot of an identifier.
#include "Tests/Module/Manager_Fixture.h"

#include <gmock/gmock.h>

using namespace Recording;
using testing::Each;
using testing::ElementsAre;

namespace
{
using RoomStart = ManagerTest;
using RoomEnd = ManagerTest;
using RoomCameraList = ManagerTest;
using FindCameraInList = ManagerTest;

// ---- room start ----
TEST_F(RoomStart, MakesTheScriptInstanceFromTheDummyObject)
{
    g_DummyObjectIndex = 4711;
    TakeLog();
    g_CM.StartRoom();
    EXPECT_THAT(TakeLog(), ElementsAre("CInstance(0,0,0,4711,false)"));
    ASSERT_NE(g_CM.GetScriptInstance(), nullptr);
    EXPECT_EQ(g_CM.GetScriptInstance()->m_objectIndex, 4711);
}

TEST_F(RoomStart, KeepsAnExistingScriptInstance)
{
    g_CM.StartRoom();
    const CInstance* instance = g_CM.GetScriptInstance();
    TakeLog();
    g_CM.StartRoom();
    EXPECT_EQ(g_CM.GetScriptInstance(), instance);
    EXPECT_EQ(TakeLog(), None());
}

TEST_F(RoomStart, BuildsTheListOfARunningRoom)
{
    CreateCameras(3);
    RunRoom({2, -1, 1});
    g_DefaultCameraID = 0;
    g_CM.StartRoom();
    EXPECT_THAT(RoomList(), ElementsAre(0, 2, -1, 1, -1, -1, -1, -1, -1));
}

TEST_F(RoomStart, WithoutARoomLeavesTheList)
{
    CreateCameras(2);
    g_CM.m_roomcameras[3] = g_CM.m_cameras[1];
    g_CM.StartRoom();
    EXPECT_THAT(RoomList(), ElementsAre(-1, -1, -1, 1, -1, -1, -1, -1, -1));
}

// ---- room end ----
// Camera 0, then clones of it: 1, 2 persistent, 3, 4 persistent, 5.
void CreateClones()
{
    g_CM.CreateCamera();
    for (int id = 1; id <= 5; ++id)
        g_CM.CloneCamera(0)->SetPersistent(id % 2 == 0);
}

TEST_F(RoomEnd, DestroysClonesThatAreNotPersistent)
{
    CreateClones();
    g_CM.EndRoom();
    EXPECT_THAT(Slots(), ElementsAre(0, -2, 2, -2, 4, -2, -2, -2));
}

TEST_F(RoomEnd, KeepsWhatIsBelowTheHighPoint)
{
    CreateClones();
    g_CM.m_InitialLoadHighPoint = 3;
    g_CM.EndRoom();
    EXPECT_THAT(Slots(), ElementsAre(0, 1, 2, -2, 4, -2, -2, -2));
}

TEST_F(RoomEnd, SweepsFromTheFirstSlotForANegativeHighPoint)
{
    CreateClones();
    g_CM.m_InitialLoadHighPoint = INT_MIN;
    g_CM.EndRoom();
    EXPECT_THAT(Slots(), ElementsAre(0, -2, 2, -2, 4, -2, -2, -2));
}

TEST_F(RoomEnd, SweepsNothingForAHighPointBeyondTheTable)
{
    CreateClones();
    for (int highPoint : {8, 9, INT_MAX})
    {
        g_CM.m_InitialLoadHighPoint = highPoint;
        g_CM.EndRoom();
    }
    EXPECT_THAT(Slots(), ElementsAre(0, 1, 2, 3, 4, 5, -2, -2));
}

TEST_F(RoomEnd, KeepsCamerasOfScriptsAndViews)
{
    KvRoomView view = {1, 0, 0, 320, 240, 0, 0, 320, 240, 0, 0, -1, -1, -1};
    g_CM.CreateCamera();
    g_CM.CreateCameraFromView(&view);
    g_CM.m_cameras[0]->SetPersistent(true);
    g_CM.EndRoom();
    EXPECT_THAT(Slots(), ElementsAre(0, 1));
}

TEST_F(RoomEnd, EmptiesTheList)
{
    CreateClones();
    RunRoom({0, 2, 4});
    g_DefaultCameraID = 0;
    g_CM.StartRoom();
    g_CM.EndRoom();
    EXPECT_THAT(RoomList(), Each(-1));
}

TEST_F(RoomEnd, EmptiesTheListAfterTheRoomIsGone)
{
    CreateClones();
    RunRoom({1, 3});
    g_CM.StartRoom();
    Run_Room = nullptr;
    g_CM.EndRoom();
    for (int i = 0; i < ROOM_CAMERAS; ++i)
        EXPECT_EQ(g_CM.m_roomcameras[i], nullptr) << i;
}

TEST_F(RoomEnd, ChangesTheActiveCameraOnlyWithIt)
{
    CreateClones();
    g_CM.SetActiveCamera(2);
    g_CM.EndRoom();
    EXPECT_EQ(g_CM.GetActiveCamera(), g_CM.m_cameras[2]);
    g_CM.m_cameras[2]->SetPersistent(false);
    g_CM.EndRoom();
    EXPECT_EQ(g_CM.GetActiveCamera(), nullptr);
}

TEST_F(RoomEnd, DeletesTheScriptInstanceWhenNothingIsCollected)
{
    g_fGarbageCollection = false;
    g_CM.StartRoom();
    TakeLog();
    g_CM.EndRoom();
    EXPECT_THAT(TakeLog(), ElementsAre("~KvObjectBase(I0)"));
    EXPECT_EQ(g_CM.GetScriptInstance(), nullptr);
}

TEST_F(RoomEnd, LeavesTheScriptInstanceToTheCollector)
{
    g_CM.StartRoom();
    const size_t objects = LiveObjects();
    TakeLog();
    g_CM.EndRoom();
    EXPECT_EQ(TakeLog(), None());
    EXPECT_EQ(LiveObjects(), objects);
    EXPECT_EQ(g_CM.GetScriptInstance(), nullptr);
}

TEST_F(RoomEnd, DropsTheScriptInstanceBeforeItSweeps)
{
    g_fGarbageCollection = false;
    g_CM.StartRoom();
    CreateCameras(1);
    SetBegin(*g_CM.m_cameras[0], OfObject(NewCallable()));
    g_CM.CloneCamera(0);
    Listen(Topic_Collector);
    TakeLog();
    g_CM.EndRoom();
    EXPECT_THAT(TakeLog(), ElementsAre("~KvObjectBase(I0)", "RemoveGlobalObject(O2)"));
}

TEST_F(RoomEnd, WithoutAScriptInstanceStillSweeps)
{
    CreateClones();
    g_fGarbageCollection = false;
    g_CM.EndRoom();
    EXPECT_THAT(Slots(), ElementsAre(0, -2, 2, -2, 4, -2, -2, -2));
}

TEST_F(RoomEnd, TheNextStartMakesANewScriptInstance)
{
    g_CM.StartRoom();
    g_CM.EndRoom();
    TakeLog();
    g_CM.StartRoom();
    EXPECT_THAT(TakeLog(), ElementsAre("CInstance(0,0,0,77,false)"));
}

// ---- the room list ----
TEST_F(RoomCameraList, HoldsTheDefaultCameraThenTheEightViews)
{
    CreateCameras(9);
    RunRoom({0, 1, 2, 3, 4, 5, 6, 7});
    g_DefaultCameraID = 8;
    g_CM.BuildRoomCameraList();
    EXPECT_THAT(RoomList(), ElementsAre(8, 0, 1, 2, 3, 4, 5, 6, 7));
}

TEST_F(RoomCameraList, MayNameACameraManyTimes)
{
    CreateCameras(2);
    RunRoom({1, 1, 1, 1, 1, 1, 1, 1});
    g_DefaultCameraID = 1;
    g_CM.BuildRoomCameraList();
    EXPECT_THAT(RoomList(), Each(1));
}

TEST_F(RoomCameraList, HasNoEntryForMinusOneAndUnknownIdentifiers)
{
    CreateCameras(2);
    for (int id : UnknownIdentifiers())
    {
        RunRoom({id, -1, 1});
        g_DefaultCameraID = id;
        g_CM.BuildRoomCameraList();
        EXPECT_THAT(RoomList(), ElementsAre(-1, -1, -1, 1, -1, -1, -1, -1, -1)) << id;
    }
}

TEST_F(RoomCameraList, HasNoEntryForMinusOneEvenIfACameraCarriesIt)
{
    m_keepsTheRules = false;
    CreateCameras(2);
    g_CM.m_cameras[1]->SetID(-1);
    g_CM.m_lastCamPos = 1;
    RunRoom({-1});
    g_CM.BuildRoomCameraList();
    for (int i = 0; i < ROOM_CAMERAS; ++i)
        EXPECT_EQ(g_CM.m_roomcameras[i], nullptr) << i;
}

TEST_F(RoomCameraList, IsRewrittenWhole)
{
    CreateCameras(2);
    for (int i = 0; i < ROOM_CAMERAS; ++i)
        g_CM.m_roomcameras[i] = g_CM.m_cameras[1];
    RunRoom({-1, 0});
    g_CM.BuildRoomCameraList();
    EXPECT_THAT(RoomList(), ElementsAre(-1, -1, 0, -1, -1, -1, -1, -1, -1));
}

TEST_F(RoomCameraList, StaysWithoutARoom)
{
    CreateCameras(2);
    g_CM.m_roomcameras[7] = g_CM.m_cameras[0];
    g_DefaultCameraID = 1;
    g_CM.BuildRoomCameraList();
    EXPECT_THAT(RoomList(), ElementsAre(-1, -1, -1, -1, -1, -1, -1, 0, -1));
}

TEST_F(RoomCameraList, CachesWhatItHadToSearch)
{
    CreateCameras(5);
    RunRoom({3, 1});
    g_CM.GetCamera(4);
    g_CM.BuildRoomCameraList();
    EXPECT_EQ(g_CM.m_lastCamPos, 1);
    Run_Room->r_view[2]->cameraID = 999;
    g_CM.BuildRoomCameraList();
    EXPECT_EQ(g_CM.m_lastCamPos, 1) << "a search without success leaves the cache";
}

TEST_F(RoomCameraList, IsNotConsultedForItsOwnEntries)
{
    m_keepsTheRules = false;
    CreateCameras(3);
    g_CM.m_cameras[2]->SetID(0);
    g_CM.m_roomcameras[0] = g_CM.m_cameras[2];
    g_CM.m_lastCamPos = -1;
    RunRoom({0});
    g_CM.BuildRoomCameraList();
    EXPECT_EQ(g_CM.m_roomcameras[1], g_CM.m_cameras[0]);
    g_CM.m_lastCamPos = 2;
    g_CM.BuildRoomCameraList();
    EXPECT_EQ(g_CM.m_roomcameras[1], g_CM.m_cameras[2]) << "the cached slot comes first";
}

TEST_F(RoomCameraList, FollowsANewDefaultCameraAtTheNextRebuild)
{
    CreateCameras(2);
    RunRoom({});
    g_DefaultCameraID = 0;
    g_CM.StartRoom();
    Call(F_CameraSetDefault, {Real(1.0)});
    EXPECT_EQ(g_DefaultCameraID, 1);
    EXPECT_EQ(RoomList()[0], 0);
    g_CM.BuildRoomCameraList();
    EXPECT_EQ(RoomList()[0], 1);
}

// ---- the slot of an identifier ----
TEST_F(FindCameraInList, AnswersTheSlotAndCachesIt)
{
    CreateCameras(4);
    EXPECT_EQ(g_CM.FindCameraInList(1), 1);
    EXPECT_EQ(g_CM.m_lastCamPos, 1);
    EXPECT_EQ(g_CM.FindCameraInList(1), 1);
}

TEST_F(FindCameraInList, AnswersMinusOneAndLeavesTheCacheForUnknownIdentifiers)
{
    CreateCameras(3);
    for (int id : UnknownIdentifiers())
        EXPECT_EQ(g_CM.FindCameraInList(id), -1) << id;
    EXPECT_EQ(g_CM.FindCameraInList(3), -1);
    EXPECT_EQ(g_CM.m_lastCamPos, 2);
}

TEST_F(FindCameraInList, RefusesMinusOneBeforeItAsksTheCache)
{
    m_keepsTheRules = false;
    CreateCameras(2);
    g_CM.m_cameras[1]->SetID(-1);
    g_CM.m_lastCamPos = 1;
    EXPECT_EQ(g_CM.FindCameraInList(-1), -1);
}

TEST_F(FindCameraInList, SearchesTheTableForACameraOfTheRoomList)
{
    CreateCameras(3);
    RunRoom({0});
    g_CM.BuildRoomCameraList();
    g_CM.GetCamera(2);
    EXPECT_EQ(g_CM.FindCameraInList(0), 0);
    EXPECT_EQ(g_CM.m_lastCamPos, 0) << "a hit in the room list would have left the cache";
}

TEST_F(FindCameraInList, AnswersTheSlotNotTheIdentifier)
{
    m_keepsTheRules = false;
    CreateCameras(3);
    g_CM.m_cameras[1]->SetID(500);
    EXPECT_EQ(g_CM.FindCameraInList(500), 1);
    g_CM.m_cameras[2]->SetID(0);
    g_CM.m_lastCamPos = 2;
    EXPECT_EQ(g_CM.FindCameraInList(0), 2);
}
} // namespace
