// The manager: cameras placed at identifiers that a caller asks for.
#include "Tests/Module/Manager_Fixture.h"

#include <gmock/gmock.h>

using namespace Recording;
using testing::ElementsAre;

namespace
{
class CameraPlacement : public ManagerTest
{
protected:
    // Places a new camera; m_placed points at it.
    void Place(int id)
    {
        m_placed = LooseCamera();
        g_CM.AddCameraToList(m_placed, id);
    }

    // Asks for a place that the registry must refuse; the camera is then still the caller's.
    void ExpectRefused(int id)
    {
        CCamera* camera = LooseCamera();
        const std::vector<int> slots = Slots();
        const int cached = g_CM.m_lastCamPos;
        g_CM.AddCameraToList(camera, id);
        EXPECT_EQ(Slots(), slots) << id;
        EXPECT_EQ(g_CM.m_lastCamPos, cached) << id;
        EXPECT_EQ(camera->m_ID, -1) << id;
        FreeLoose(camera);
    }

    CCamera* m_placed = nullptr;
};

TEST_F(CameraPlacement, OfNoCameraDoesNothing)
{
    CreateCameras(3);
    const int before = RequestCount();
    for (int id : {-1, 0, 3, 40, INT_MAX, INT_MIN})
        g_CM.AddCameraToList(nullptr, id);
    EXPECT_THAT(Slots(), ElementsAre(0, 1, 2, -2));
    EXPECT_EQ(RequestCount(), before);
}

TEST_F(CameraPlacement, AtMinusOneTakesTheFirstFreeSlotAndCachesIt)
{
    CreateCameras(4);
    g_CM.DestroyCamera(2);
    Place(-1);
    EXPECT_EQ(g_CM.m_cameras[2], m_placed);
    EXPECT_EQ(m_placed->m_ID, 2);
    EXPECT_EQ(g_CM.m_lastCamPos, 2);
    Place(-1);
    EXPECT_EQ(m_placed->m_ID, 4);
    EXPECT_EQ(g_CM.m_cameraListSize, 8);
}

TEST_F(CameraPlacement, AtAFreeSlotStoresTheCameraAndLeavesTheCache)
{
    CreateCameras(3);
    g_CM.GetCamera(1);
    Place(3);
    EXPECT_EQ(g_CM.m_cameras[3], m_placed);
    EXPECT_EQ(m_placed->m_ID, 3);
    EXPECT_EQ(g_CM.m_lastCamPos, 1);
    EXPECT_EQ(g_CM.m_cameraListSize, 4);
}

TEST_F(CameraPlacement, BelowTheHighPointIsAllowed)
{
    CreateCameras(4);
    g_CM.DestroyCamera(0);
    g_CM.m_InitialLoadHighPoint = 4;
    Place(0);
    EXPECT_EQ(g_CM.m_cameras[0], m_placed);
}

TEST_F(CameraPlacement, GrowsTheTableToTwiceOrToSixteenBeyond)
{
    struct Case
    {
        int id, size;
    };
    for (const Case& testCase : {Case{4, 8}, Case{5, 8}, Case{7, 8}, Case{8, 24}, Case{40, 56}})
    {
        RenewManager();
        CreateCameras(4);
        Place(testCase.id);
        EXPECT_EQ(g_CM.m_cameraListSize, testCase.size) << testCase.id;
        EXPECT_EQ(g_CM.m_cameras[testCase.id], m_placed) << testCase.id;
        EXPECT_EQ(m_placed->m_ID, testCase.id);
        EXPECT_EQ(g_CM.m_lastCamPos, 3) << "the cache is left alone";
    }
}

TEST_F(CameraPlacement, ClearsWhatAGrowthAdds)
{
    Place(4);
    std::vector<int> expected(20, -2);
    expected[4] = 4;
    EXPECT_EQ(Slots(), expected);
}

TEST_F(CameraPlacement, GrowthIsOneReallocationUnderTheMemoryManagersTag)
{
    CreateCameras(4);
    CCamera* camera = LooseCamera();
    Listen(Topic_Memory);
    g_CM.AddCameraToList(camera, 40);
    ASSERT_EQ(Requests().size(), 1u);
    EXPECT_EQ(Requests()[0].size, 56 * sizeof(CCamera*));
    EXPECT_EQ(Requests()[0].file, "Platform/Memory_Manager.h");
    EXPECT_TRUE(Requests()[0].grows);
    EXPECT_FALSE(Requests()[0].clear);
}

TEST_F(CameraPlacement, DoublesFromTheGrownSizeAfterwards)
{
    Place(4); // twenty entries
    for (int i = 0; i < 20; ++i)
        g_CM.CreateCamera();
    EXPECT_EQ(g_CM.m_cameraListSize, 40);
}

TEST_F(CameraPlacement, AtOtherNegativeIdentifiersRegistersNothing)
{
    CreateCameras(3);
    for (int id : {-2, -7, -1000000, INT_MIN})
        ExpectRefused(id);
}

TEST_F(CameraPlacement, AtATakenSlotDestroysTheOccupant)
{
    CreateCameras(3);
    SetStrings(*g_CM.m_cameras[1], "begin", "end", "update");
    g_CM.SetActiveCamera(1);
    const size_t before = LiveBlocks();
    Place(1);
    EXPECT_EQ(g_CM.m_cameras[1], m_placed);
    EXPECT_EQ(m_placed->m_ID, 1);
    EXPECT_EQ(LiveBlocks(), before);
    EXPECT_EQ(LiveTexts(), 0u);
    EXPECT_EQ(g_CM.GetActiveCamera(), nullptr);
    EXPECT_EQ(g_CM.m_lastCamPos, -1);
}

TEST_F(CameraPlacement, TheListIsRebuiltBeforeTheNewCameraIsStored)
{
    CreateCameras(4);
    RunRoom({1, 2});
    g_CM.BuildRoomCameraList();
    Place(2);
    EXPECT_THAT(RoomList(), ElementsAre(-1, 1, -1, -1, -1, -1, -1, -1, -1));
    EXPECT_EQ(g_CM.m_lastCamPos, 1) << "as the rebuild leaves it";
    g_CM.BuildRoomCameraList();
    EXPECT_EQ(g_CM.m_roomcameras[2], m_placed);
}

TEST_F(CameraPlacement, OfACameraWhereItStandsKeepsItAlive)
{
    CreateCameras(3);
    CCamera* camera = g_CM.m_cameras[1];
    camera->SetViewX(5.0f);
    g_CM.AddCameraToList(camera, 1);
    EXPECT_EQ(g_CM.GetCamera(1), camera);
    EXPECT_EQ(camera->GetViewX(), 5.0f);
    EXPECT_THAT(Slots(), ElementsAre(0, 1, 2, -2));
}

TEST_F(CameraPlacement, FreesAnOccupantWhoseIdentifierIsNotItsSlot)
{
    CreateCameras(3);
    g_CM.m_cameras[1]->SetID(900);
    const size_t before = LiveBlocks();
    Place(1);
    EXPECT_EQ(LiveBlocks(), before) << "one came, one went";
    EXPECT_THAT(Slots(), ElementsAre(0, 1, 2, -2));
    EXPECT_EQ(g_CM.GetCamera(900), nullptr);
}

TEST_F(CameraPlacement, DestroysTheCameraOfTheSameIdentifierInAnotherSlotAsWell)
{
    CreateCameras(4);
    g_CM.m_cameras[1]->SetID(900);
    g_CM.m_cameras[3]->SetID(1);
    const size_t before = LiveBlocks();
    Place(1);
    EXPECT_EQ(LiveBlocks(), before - 1) << "one came, two went";
    EXPECT_THAT(Slots(), ElementsAre(0, 1, 2, -2));
    EXPECT_EQ(g_CM.m_cameras[1], m_placed);
}

TEST_F(CameraPlacement, AtAnIdentifierThatNoTableCanHoldRegistersNothing)
{
    CreateCameras(3);
    RefuseAbove(1024 * 1024);
    for (int id : {INT_MAX, INT_MAX - 1, INT_MAX - 15, INT_MAX - 16, INT_MAX / 2, 1024 * 1024})
        ExpectRefused(id);
}

TEST_F(CameraPlacement, KeepsTheCamerasOwnState)
{
    CCamera* camera = LooseCamera();
    camera->SetViewX(12.0f);
    camera->SetCloned(true);
    SetStrings(*camera, "begin", "end", "update");
    g_CM.AddCameraToList(camera, 0);
    EXPECT_EQ(camera->GetViewX(), 12.0f);
    EXPECT_TRUE(camera->IsCloned());
    EXPECT_STREQ(camera->GetBeginScript()->GetString(), "begin");
}
} // namespace
