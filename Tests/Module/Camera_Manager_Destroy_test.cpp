// The registry: how cameras end, one by one and all at once.
#include "Tests/Module/Manager_Fixture.h"

#include <gmock/gmock.h>

using namespace Recording;
using testing::ElementsAre;

namespace
{
using CameraManagerDestroy = ManagerTest;
using CameraManagerClean = ManagerTest;

TEST_F(CameraManagerDestroy, FreesTheCameraAndItsSlot)
{
    CreateCameras(3);
    const size_t before = LiveBlocks();
    g_CM.DestroyCamera(1);
    EXPECT_THAT(Slots(), ElementsAre(0, -2, 2, -2));
    EXPECT_EQ(LiveBlocks(), before - 1);
    EXPECT_EQ(g_CM.GetCamera(1), nullptr);
}

TEST_F(CameraManagerDestroy, ForgetsTheCachedSlot)
{
    CreateCameras(3);
    g_CM.GetCamera(0);
    g_CM.DestroyCamera(2);
    EXPECT_EQ(g_CM.m_lastCamPos, -1) << "found by the scan";
    g_CM.GetCamera(1);
    g_CM.DestroyCamera(1);
    EXPECT_EQ(g_CM.m_lastCamPos, -1) << "found in the cache";
}

TEST_F(CameraManagerDestroy, UnknownIdentifiersChangeNothing)
{
    CreateCameras(3);
    RunRoom({0, 1});
    g_CM.GetCamera(1);
    std::vector<int> unknown = UnknownIdentifiers();
    unknown.push_back(-1);
    unknown.push_back(3);
    for (int id : unknown)
        g_CM.DestroyCamera(id);
    EXPECT_EQ(g_CM.m_lastCamPos, 1);
    EXPECT_THAT(Slots(), ElementsAre(0, 1, 2, -2));
    EXPECT_THAT(RoomList(), testing::Each(-1)) << "no rebuild either";
}

TEST_F(CameraManagerDestroy, MinusOneIsRefusedBeforeTheCacheIsAsked)
{
    m_keepsTheRules = false;
    CreateCameras(2);
    g_CM.m_cameras[1]->SetID(-1);
    g_CM.m_lastCamPos = 1;
    g_CM.DestroyCamera(-1);
    EXPECT_THAT(Slots(), ElementsAre(0, -1));
    EXPECT_EQ(g_CM.m_lastCamPos, 1);
}

TEST_F(CameraManagerDestroy, TheActiveCameraLeavesNoneActive)
{
    CreateCameras(3);
    g_CM.SetActiveCamera(1);
    g_CM.DestroyCamera(1);
    EXPECT_EQ(g_CM.GetActiveCamera(), nullptr);
}

TEST_F(CameraManagerDestroy, AnotherCameraLeavesTheActiveOne)
{
    CreateCameras(3);
    g_CM.SetActiveCamera(1);
    g_CM.DestroyCamera(0);
    g_CM.DestroyCamera(2);
    EXPECT_EQ(g_CM.GetActiveCamera(), g_CM.m_cameras[1]);
}

TEST_F(CameraManagerDestroy, TheCachedSlotIsFoundBeforeALowerOne)
{
    m_keepsTheRules = false;
    CreateCameras(3);
    g_CM.m_cameras[2]->SetID(0);
    g_CM.m_lastCamPos = 2;
    g_CM.DestroyCamera(0);
    EXPECT_THAT(Slots(), ElementsAre(0, 1, -2, -2));
}

TEST_F(CameraManagerDestroy, TheRoomListIsNotConsulted)
{
    m_keepsTheRules = false;
    CreateCameras(3);
    g_CM.m_cameras[2]->SetID(0);
    g_CM.m_roomcameras[0] = g_CM.m_cameras[2];
    g_CM.m_lastCamPos = -1;
    g_CM.DestroyCamera(0);
    EXPECT_THAT(Slots(), ElementsAre(-2, 1, 0, -2));
}

TEST_F(CameraManagerDestroy, DetachesTheProxyThenReleasesTheValuesInOrderThenFreesTheBlock)
{
    CreateCameras(1);
    CCamera* camera = g_CM.m_cameras[0];
    SetBegin(*camera, OfObject(NewCallable()));
    const Camera_GCProxy* proxy = camera->pGCProxy;
    Owned begin(OfArray(NewArray(std::vector<double>{}))), end(OfArray(NewArray(std::vector<double>{}))),
        update(OfArray(NewArray(std::vector<double>{})));
    SetUpdate(*camera, update);
    SetBegin(*camera, begin);
    SetEnd(*camera, end);
    Listen(Topic_Collector | Topic_Values | Topic_Memory);
    TakeLog();
    g_CM.DestroyCamera(0);
    EXPECT_THAT(TakeLog(),
                ElementsAre("RemoveGlobalObject(O1)", "Array_DecRef(A1)", "Array_SetOwner(A1)", "Array_DecRef(A2)",
                            "Array_SetOwner(A2)", "Array_DecRef(A3)", "Array_SetOwner(A3)", "Free(block)"));
    EXPECT_EQ(proxy->pCamObj, nullptr);
    EXPECT_FALSE(IsRoot(proxy));
    EXPECT_EQ(ReferenceCount(begin.pRefArray), 1);
    EXPECT_EQ(ReferenceCount(end.pRefArray), 1);
    EXPECT_EQ(ReferenceCount(update.pRefArray), 1);
    Errors().clear();
}

TEST_F(CameraManagerDestroy, ReleasesStrings)
{
    CreateCameras(1);
    SetStrings(*g_CM.m_cameras[0], "begin", "end", "update");
    EXPECT_EQ(LiveTexts(), 3u);
    g_CM.DestroyCamera(0);
    EXPECT_EQ(LiveTexts(), 0u);
}

TEST_F(CameraManagerDestroy, EmptiesTheRoomListEntryAtOnceWhileARoomRuns)
{
    CreateCameras(5);
    RunRoom({0, 1, 2, 3});
    g_CM.BuildRoomCameraList();
    g_CM.DestroyCamera(3);
    EXPECT_THAT(RoomList(), ElementsAre(-1, 0, 1, 2, -1, -1, -1, -1, -1));
}

TEST_F(CameraManagerDestroy, TheRebuildMayFillTheCacheAgain)
{
    CreateCameras(5);
    RunRoom({1, 4});
    g_CM.BuildRoomCameraList();
    g_CM.DestroyCamera(0);
    EXPECT_EQ(g_CM.m_lastCamPos, 4) << "the last entry that the rebuild had to search";
}

TEST_F(CameraManagerDestroy, TheListIsNotTouchedWithoutARoom)
{
    CreateCameras(3);
    g_CM.m_roomcameras[2] = g_CM.m_cameras[2];
    g_DefaultCameraID = 0;
    g_CM.DestroyCamera(1);
    EXPECT_THAT(RoomList(), ElementsAre(-1, -1, 2, -1, -1, -1, -1, -1, -1));
}

TEST_F(CameraManagerDestroy, ADestroyedCamerasNumberIsFreshForTheNext)
{
    CreateCameras(2);
    CCamera* old = g_CM.m_cameras[1];
    old->SetViewX(77.0f);
    old->SetCloned(true);
    SetStrings(*old, "begin", "end", "update");
    g_CM.DestroyCamera(1);
    CCamera* next = g_CM.CreateCamera();
    EXPECT_EQ(next->GetID(), 1);
    EXPECT_EQ(next->GetViewX(), 0.0f);
    EXPECT_FALSE(next->IsCloned());
    EXPECT_EQ(Describe(*next->GetBeginScript()), "real -1");
}

// ---- all at once ----
TEST_F(CameraManagerClean, FreesEveryCameraWithItsValuesAndDetachesProxies)
{
    CreateCameras(3);
    const size_t before = LiveBlocks();
    SetStrings(*g_CM.m_cameras[0], "begin", "end", "update");
    SetBegin(*g_CM.m_cameras[2], OfObject(NewCallable()));
    const Camera_GCProxy* proxy = g_CM.m_cameras[2]->pGCProxy;
    g_CM.Clean();
    EXPECT_EQ(LiveBlocks(), before - 3);
    EXPECT_EQ(LiveTexts(), 0u);
    EXPECT_EQ(proxy->pCamObj, nullptr);
    EXPECT_FALSE(IsRoot(proxy));
    ForgetStaleEntries();
}

TEST_F(CameraManagerClean, ForgetsTheActiveCameraTheScriptInstanceAndTheCache)
{
    CreateCameras(2);
    g_CM.SetActiveCamera(1);
    g_CM.StartRoom();
    const size_t objects = LiveObjects();
    g_CM.Clean();
    EXPECT_EQ(g_CM.m_activeCamera, nullptr);
    EXPECT_EQ(g_CM.m_pScriptInstance, nullptr);
    EXPECT_EQ(g_CM.m_lastCamPos, -1);
    EXPECT_EQ(LiveObjects(), objects) << "the script instance is dropped, not deleted";
    ForgetStaleEntries();
}

TEST_F(CameraManagerClean, KeepsTheTableTheRoomListAndTheirEntries)
{
    CreateCameras(3);
    RunRoom({1});
    g_DefaultCameraID = 0;
    g_CM.BuildRoomCameraList();
    g_CM.m_InitialLoadHighPoint = 2;
    CCamera** const table = g_CM.m_cameras;
    CCamera** const list = g_CM.m_roomcameras;
    const std::vector<CCamera*> slots(table, table + 4), entries(list, list + ROOM_CAMERAS);
    g_CM.Clean();
    EXPECT_EQ(g_CM.m_cameras, table);
    EXPECT_EQ(g_CM.m_roomcameras, list);
    EXPECT_EQ(g_CM.m_cameraListSize, 4);
    EXPECT_EQ(g_CM.m_InitialLoadHighPoint, 2);
    EXPECT_EQ(std::vector<CCamera*>(table, table + 4), slots);
    EXPECT_EQ(std::vector<CCamera*>(list, list + ROOM_CAMERAS), entries);
    ForgetStaleEntries();
}

TEST_F(CameraManagerClean, TheRefilledTableWorksAsBefore)
{
    CreateCameras(3);
    g_CM.Clean();
    ForgetStaleEntries();
    EXPECT_EQ(g_CM.CreateCamera()->GetID(), 0);
    EXPECT_EQ(g_CM.m_cameraListSize, 4);
    EXPECT_EQ(g_CM.GetCamera(0), g_CM.m_cameras[0]);
    EXPECT_EQ(g_CM.GetCamera(1), nullptr);
}

TEST_F(CameraManagerClean, OfAnEmptyRegistryDoesNothing)
{
    g_CM.Clean();
    g_CM.Clean();
    EXPECT_EQ(g_CM.m_cameraListSize, 1);
    EXPECT_EQ(Broken(), "");
}
} // namespace
