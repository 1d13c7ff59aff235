// The registry: construction, identifiers and slots, look-ups, the active camera.
#include "Tests/Module/Manager_Fixture.h"

#include <gmock/gmock.h>

using namespace Recording;
using testing::ElementsAre;

namespace
{
using CameraManager = ManagerTest;

// A manager of the test's own, in storage that starts as zeroes like that of a global.
class LocalManager
{
public:
    LocalManager() : m_manager(new (ZeroedStorage()) CCameraManager) {}
    LocalManager(const LocalManager&) = delete;
    LocalManager& operator=(const LocalManager&) = delete;
    ~LocalManager() { m_manager->~CCameraManager(); }
    CCameraManager* operator->() const { return m_manager; }

private:
    static void* ZeroedStorage()
    {
        alignas(CCameraManager) static unsigned char storage[sizeof(CCameraManager)];
        std::memset(storage, 0, sizeof storage);
        return storage;
    }
    CCameraManager* m_manager;
};

// ---- construction and destruction ----
TEST_F(CameraManager, StartsWithOneFreeSlotAndNothingElse)
{
    const LocalManager manager;
    EXPECT_EQ(manager->m_activeCamera, nullptr);
    EXPECT_EQ(manager->m_pScriptInstance, nullptr);
    EXPECT_EQ(manager->m_cameraListSize, 1);
    EXPECT_EQ(manager->m_cameras[0], nullptr);
    EXPECT_EQ(manager->m_lastCamPos, -1);
    for (int i = 0; i < ROOM_CAMERAS; ++i)
        EXPECT_EQ(manager->m_roomcameras[i], nullptr) << i;
    EXPECT_EQ(manager->Validate(), nullptr);
}

TEST_F(CameraManager, ConstructionAsksForTwoClearedTablesUnderTheModulesTag)
{
    Listen(Topic_Memory);
    const LocalManager manager;
    ASSERT_EQ(Requests().size(), 2u);
    EXPECT_EQ(Requests()[0].size, sizeof(CCamera*));
    EXPECT_EQ(Requests()[1].size, 9 * sizeof(CCamera*));
    for (const Request& request : Requests())
    {
        EXPECT_EQ(request.file, MODULE_TAG);
        EXPECT_TRUE(request.clear);
        EXPECT_FALSE(request.grows);
    }
}

TEST_F(CameraManager, DestructionFreesEveryCameraItsValuesAndBothTables)
{
    const size_t before = LiveBlocks();
    {
        const LocalManager manager;
        for (int i = 0; i < 5; ++i)
            SetStrings(*manager->CreateCamera(), "begin", "end", "update");
        EXPECT_EQ(LiveTexts(), 15u);
    }
    EXPECT_EQ(LiveBlocks(), before);
    EXPECT_EQ(LiveTexts(), 0u);
}

TEST_F(CameraManager, DestructionLeavesProxiesDetachedToTheCollector)
{
    Camera_GCProxy* proxy = nullptr;
    {
        const LocalManager manager;
        CCamera* camera = manager->CreateCamera();
        SetBegin(*camera, OfObject(NewCallable()));
        proxy = camera->pGCProxy;
        ASSERT_TRUE(IsRoot(proxy));
    }
    EXPECT_EQ(proxy->pCamObj, nullptr);
    EXPECT_FALSE(IsRoot(proxy));
}

// ---- creation and slots ----
TEST_F(CameraManager, FirstFourCamerasDoubleTheTableTwice)
{
    struct Step
    {
        int id, size;
    };
    for (const Step& step : {Step{0, 1}, Step{1, 2}, Step{2, 4}, Step{3, 4}})
    {
        EXPECT_EQ(g_CM.CreateCamera()->GetID(), step.id);
        EXPECT_EQ(g_CM.m_cameraListSize, step.size) << "after camera " << step.id;
    }
}

TEST_F(CameraManager, FreedIdentifierIsHandedOutAgain)
{
    CreateCameras(4);
    g_CM.DestroyCamera(1);
    EXPECT_EQ(g_CM.CreateCamera()->GetID(), 1);
    EXPECT_THAT(Slots(), ElementsAre(0, 1, 2, 3));
}

TEST_F(CameraManager, LowestFreeSlotIsTakenFirst)
{
    CreateCameras(8);
    for (int id : {6, 2, 4})
        g_CM.DestroyCamera(id);
    EXPECT_EQ(g_CM.CreateCamera()->GetID(), 2);
    EXPECT_EQ(g_CM.CreateCamera()->GetID(), 4);
    EXPECT_EQ(g_CM.CreateCamera()->GetID(), 6);
    EXPECT_EQ(g_CM.m_cameraListSize, 8);
}

TEST_F(CameraManager, SlotsAddedByAGrowthReadAsNull)
{
    CreateCameras(5); // the host fills what a reallocation adds with rubbish
    EXPECT_THAT(Slots(), ElementsAre(0, 1, 2, 3, 4, -2, -2, -2));
}

TEST_F(CameraManager, NewCameraHasTheDefaultStateAndItsSlot)
{
    CreateCameras(2);
    const CCamera* camera = g_CM.CreateCamera();
    EXPECT_EQ(g_CM.m_cameras[2], camera);
    EXPECT_EQ(camera->m_ID, 2);
    EXPECT_EQ(camera->pGCProxy, nullptr);
    EXPECT_EQ(camera->m_targetInstance, -1);
    EXPECT_EQ(camera->m_viewWidth, 0.0f);
    EXPECT_EQ(camera->m_projMat, Identity());
    EXPECT_EQ(Describe(camera->m_updateScript), "real -1");
    EXPECT_TRUE(camera->m_is2D);
    EXPECT_FALSE(camera->m_isViewDirty || camera->m_isClone || camera->m_isPersistent);
}

TEST_F(CameraManager, CreationCachesTheNewSlotAndActivatesNothing)
{
    CCamera* first = g_CM.CreateCamera();
    g_CM.SetActiveCamera(0);
    CreateCameras(2);
    EXPECT_EQ(g_CM.m_lastCamPos, 2);
    EXPECT_EQ(g_CM.GetActiveCamera(), first);
}

TEST_F(CameraManager, CreationAsksForOneClearedRecordUnderTheModulesTag)
{
    Listen(Topic_Memory);
    g_CM.CreateCamera();
    ASSERT_EQ(Requests().size(), 1u);
    EXPECT_EQ(Requests()[0].size, sizeof(CCamera));
    EXPECT_EQ(Requests()[0].file, MODULE_TAG);
    EXPECT_TRUE(Requests()[0].clear);
}

TEST_F(CameraManager, GrowthReallocatesTheTableUnderTheMemoryManagersTag)
{
    CreateCameras(2);
    Listen(Topic_Memory);
    g_CM.CreateCamera();
    ASSERT_EQ(Requests().size(), 2u);
    EXPECT_EQ(Requests()[1].size, 4 * sizeof(CCamera*));
    EXPECT_EQ(Requests()[1].file, "Platform/Memory_Manager.h");
    EXPECT_FALSE(Requests()[1].clear);
    EXPECT_TRUE(Requests()[1].grows);
}

TEST_F(CameraManager, SlotsBelowTheHighPointAreNotHandedOut)
{
    CreateCameras(3); // a table of four
    g_CM.m_InitialLoadHighPoint = 3;
    EXPECT_EQ(g_CM.CreateCamera()->GetID(), 3);
    g_CM.DestroyCamera(1);
    EXPECT_EQ(g_CM.CreateCamera()->GetID(), 4);
    EXPECT_EQ(g_CM.m_cameraListSize, 8);
    EXPECT_THAT(Slots(), ElementsAre(0, -2, 2, 3, 4, -2, -2, -2));
}

TEST_F(CameraManager, HighPointBeyondTheTablePutsACameraAtTheOldSize)
{
    CreateCameras(3);
    g_CM.m_InitialLoadHighPoint = 100;
    EXPECT_EQ(g_CM.CreateCamera()->GetID(), 4) << "slot 3 is free, but below the high point";
    EXPECT_EQ(g_CM.m_cameraListSize, 8);
    EXPECT_EQ(g_CM.CreateCamera()->GetID(), 8);
    EXPECT_EQ(g_CM.m_cameraListSize, 16);
}

TEST_F(CameraManager, HighPointEqualToTheTableSizeGrowsToo)
{
    CreateCameras(2);
    g_CM.DestroyCamera(0);
    g_CM.m_InitialLoadHighPoint = 2;
    EXPECT_EQ(g_CM.CreateCamera()->GetID(), 2);
    EXPECT_EQ(g_CM.m_cameraListSize, 4);
}

TEST_F(CameraManager, NegativeHighPointScansFromTheFirstSlot)
{
    for (int highPoint : {-1, -100, INT_MIN})
    {
        g_CM.m_InitialLoadHighPoint = highPoint;
        EXPECT_EQ(g_CM.CreateCamera()->GetID(), 0) << highPoint;
        g_CM.DestroyCamera(0);
    }
}

TEST_F(CameraManager, InitialLoadHighPointBecomesTheNumberOfSlotsInUse)
{
    CreateCameras(3);
    g_CM.SetInitialLoadHighPoint();
    EXPECT_EQ(g_CM.m_InitialLoadHighPoint, 3);
}

TEST_F(CameraManager, ScriptInstanceIsTheStoredOne)
{
    EXPECT_EQ(g_CM.GetScriptInstance(), nullptr);
    g_CM.m_pScriptInstance = NewInstance(100001, 0.0f, 0.0f);
    EXPECT_EQ(g_CM.GetScriptInstance(), g_CM.m_pScriptInstance);
}

// ---- the active camera ----
TEST_F(CameraManager, ActiveCameraIsNoneAtFirst) { EXPECT_EQ(g_CM.GetActiveCamera(), nullptr); }

TEST_F(CameraManager, SettingTheActiveCameraFindsItThroughTheTableAndCachesIt)
{
    CreateCameras(3);
    g_CM.SetActiveCamera(1);
    EXPECT_EQ(g_CM.GetActiveCamera(), g_CM.m_cameras[1]);
    EXPECT_EQ(g_CM.m_lastCamPos, 1);
}

TEST_F(CameraManager, SettingTheActiveCameraFromTheRoomListLeavesTheCache)
{
    CreateCameras(3);
    RunRoom({1});
    g_CM.BuildRoomCameraList();
    g_CM.GetCamera(2);
    g_CM.SetActiveCamera(1);
    EXPECT_EQ(g_CM.GetActiveCamera(), g_CM.m_cameras[1]);
    EXPECT_EQ(g_CM.m_lastCamPos, 2);
}

TEST_F(CameraManager, SettingAnUnknownActiveCameraLeavesNone)
{
    CreateCameras(3);
    std::vector<int> unknown = UnknownIdentifiers();
    unknown.push_back(-1);
    unknown.push_back(3);
    for (int id : unknown)
    {
        g_CM.SetActiveCamera(0);
        g_CM.SetActiveCamera(id);
        EXPECT_EQ(g_CM.GetActiveCamera(), nullptr) << id;
    }
}
} // namespace
