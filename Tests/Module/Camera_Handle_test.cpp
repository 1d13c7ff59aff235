// A camera remembered while anything may happen to it.
#include "Tests/Module/Manager_Fixture.h"

using namespace Recording;

namespace
{
using CameraHandle = ManagerTest;

TEST_F(CameraHandle, IsOfNoCameraUnlessMadeForARegisteredOne)
{
    CreateCameras(1);
    const CCamera loose;
    EXPECT_TRUE(CCameraHandle().IsOfNoCamera());
    EXPECT_TRUE(CCameraHandle(nullptr).IsOfNoCamera());
    EXPECT_TRUE(CCameraHandle(&loose).IsOfNoCamera());
    EXPECT_EQ(CCameraHandle().Get(), nullptr);
    EXPECT_EQ(CCameraHandle(nullptr).Get(), nullptr);
    EXPECT_EQ(CCameraHandle(&loose).Get(), nullptr);
    EXPECT_FALSE(CCameraHandle(g_CM.m_cameras[0]).IsOfNoCamera());
}

TEST_F(CameraHandle, GivesItsCameraWhileItIsRegistered)
{
    CreateCameras(5);
    const CCameraHandle handle(g_CM.m_cameras[3]);
    EXPECT_EQ(handle.Get(), g_CM.m_cameras[3]);
    CreateCameras(100); // the table moves
    EXPECT_EQ(handle.Get(), g_CM.m_cameras[3]);
    g_CM.DestroyCamera(3);
    EXPECT_EQ(handle.Get(), nullptr);
    EXPECT_FALSE(handle.IsOfNoCamera());
}

TEST_F(CameraHandle, DoesNotGiveALaterCameraOfTheSameIdentifier)
{
    CreateCameras(2);
    const CCameraHandle handle(g_CM.m_cameras[1]);
    g_CM.DestroyCamera(1);
    ASSERT_EQ(g_CM.CreateCamera()->GetID(), 1);
    EXPECT_EQ(handle.Get(), nullptr);
}

TEST_F(CameraHandle, DoesNotGiveALaterCameraAtTheSameAddress)
{
    CreateCameras(2);
    CCamera* const camera = g_CM.m_cameras[1];
    const CCameraHandle handle(camera);
    camera->~CCamera();
    (new (camera) CCamera)->m_ID = 1;
    EXPECT_EQ(handle.Get(), nullptr);
}

TEST_F(CameraHandle, GivesItsCameraUnderAnotherIdentifier)
{
    m_keepsTheRules = false;
    CreateCameras(3);
    const CCameraHandle before(g_CM.m_cameras[1]);
    g_CM.m_cameras[1]->SetID(50);
    EXPECT_EQ(before.Get(), g_CM.m_cameras[1]);
    EXPECT_EQ(CCameraHandle(g_CM.m_cameras[1]).Get(), g_CM.m_cameras[1]);
    g_CM.m_cameras[1]->m_ID = 2;
    EXPECT_EQ(CCameraHandle(g_CM.m_cameras[1]).Get(), g_CM.m_cameras[1]);
}

TEST_F(CameraHandle, FollowsNoEntryThatACleaningLeft)
{
    CreateCameras(3);
    const CCameraHandle handle(g_CM.m_cameras[1]);
    g_CM.Clean();
    EXPECT_EQ(handle.Get(), nullptr) << "the entry still points at the freed camera";
    ForgetStaleEntries();
    CreateCameras(2);
    EXPECT_EQ(handle.Get(), nullptr);
    EXPECT_EQ(CCameraHandle(g_CM.m_cameras[1]).Get(), g_CM.m_cameras[1]);
}

TEST_F(CameraHandle, LeavesTheCachedSlot)
{
    CreateCameras(4);
    g_CM.m_lastCamPos = 2;
    EXPECT_NE(CCameraHandle(g_CM.m_cameras[0]).Get(), nullptr);
    EXPECT_EQ(g_CM.m_lastCamPos, 2);
}

TEST_F(CameraHandle, OfASlotThatTheTableHasNoMoreGivesNothing)
{
    CreateCameras(4);
    const CCameraHandle handle(g_CM.m_cameras[3]);
    const int size = g_CM.m_cameraListSize;
    for (int shorter : {2, 3}) // the slot is the first that is no more, or one behind it
    {
        g_CM.m_cameraListSize = shorter;
        EXPECT_EQ(handle.Get(), nullptr) << shorter;
    }
    g_CM.m_cameraListSize = size;
}

// Births are counted in 32 bits, and 0 follows the last: that camera is like any other.
TEST_F(CameraHandle, TellsCamerasApartWhereTheCountOfBirthsWraps)
{
    CreateCameras(2);
    g_CM.m_cameras[1]->m_birth = UINT32_MAX;
    const CCameraHandle last(g_CM.m_cameras[1]);
    EXPECT_EQ(last.Get(), g_CM.m_cameras[1]);
    g_CM.DestroyCamera(1);
    CCamera* const next = g_CM.CreateCamera();
    ASSERT_EQ(next->GetID(), 1);
    next->m_birth = UINT32_MAX + 1u;
    ASSERT_EQ(next->m_birth, 0u);
    EXPECT_EQ(last.Get(), nullptr);
    EXPECT_EQ(CCameraHandle(next).Get(), next);
    EXPECT_EQ(CCameraHandle().Get(), nullptr); // of no camera, though its number of birth is 0, too
    EXPECT_EQ(CCameraHandle(nullptr).Get(), nullptr);
}
} // namespace
