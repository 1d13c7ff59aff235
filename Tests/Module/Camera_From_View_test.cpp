// Cameras made from the view records of the game data.
#include "Tests/Module/Manager_Fixture.h"

#include <gmock/gmock.h>

using namespace Recording;
using testing::Each;

namespace
{
using CameraFromView = ManagerTest;

KvRoomView SomeView()
{
    KvRoomView view = {};
    view.visible = 1;
    view.xview = 10;
    view.yview = 20;
    view.wview = 101;
    view.hview = 51;
    view.hborder = 32;
    view.vborder = 33;
    view.hspeed = -1;
    view.vspeed = 4;
    view.index = 100007;
    return view;
}

TEST_F(CameraFromView, OfNoViewIsNull)
{
    const int before = RequestCount();
    EXPECT_EQ(g_CM.CreateCameraFromView(nullptr), nullptr);
    EXPECT_EQ(RequestCount(), before);
    EXPECT_EQ(g_CM.m_cameras[0], nullptr);
}

TEST_F(CameraFromView, StoresTheViewsWordsAsFloats)
{
    KvRoomView view = SomeView();
    const CCamera* camera = g_CM.CreateCameraFromView(&view);
    EXPECT_EQ(camera->m_viewX, 10.0f);
    EXPECT_EQ(camera->m_viewY, 20.0f);
    EXPECT_EQ(camera->m_viewWidth, 101.0f);
    EXPECT_EQ(camera->m_viewHeight, 51.0f);
    EXPECT_EQ(camera->m_viewBorderX, 32.0f);
    EXPECT_EQ(camera->m_viewBorderY, 33.0f);
    EXPECT_EQ(camera->m_viewSpeedX, -1.0f);
    EXPECT_EQ(camera->m_viewSpeedY, 4.0f);
    EXPECT_EQ(camera->m_viewAngle, 0.0f);
    EXPECT_EQ(camera->m_targetInstance, 100007);
}

TEST_F(CameraFromView, BuildsAFlatViewAboutTheRectanglesCentre)
{
    KvRoomView view = SomeView();
    TakeLog();
    const CCamera* camera = g_CM.CreateCameraFromView(&view);
    const Lines log = TakeLog();
    ASSERT_GE(log.size(), 2u);
    EXPECT_EQ(log[0], "LookAtLH(60.5,45.5,-16000;60.5,45.5,0;-0,1,0)");
    EXPECT_EQ(log[1], "OrthoLH(101,51,0,32000)");
    EXPECT_EQ(camera->m_viewMat._41, -60.5f); // the axes are those of the room, so only the eye shows
    EXPECT_EQ(camera->m_viewMat._42, -45.5f);
    EXPECT_TRUE(camera->Is2D());
    EXPECT_FALSE(camera->IsViewDirty());
}

TEST_F(CameraFromView, ComputesTheCentreInFloats)
{
    KvRoomView view = SomeView();
    view.xview = 16777216; // halves are lost above 2^23, odd numbers above 2^24
    view.yview = 8388608;
    view.wview = 1;
    view.hview = 1;
    const CCamera* camera = g_CM.CreateCameraFromView(&view);
    EXPECT_EQ(camera->m_viewMat._41, -16777216.0f);
    EXPECT_EQ(camera->m_viewMat._42, -8388608.0f);
}

TEST_F(CameraFromView, TakesEveryInteger)
{
    for (int word : {INT_MIN, -1, 0, 16777217, INT_MAX})
    {
        KvRoomView view = {word, word, word, word, word, word, word, word, word, word, word, word, word, word};
        const CCamera* camera = g_CM.CreateCameraFromView(&view);
        const float number = static_cast<float>(word);
        for (float field : {camera->m_viewX, camera->m_viewY, camera->m_viewWidth, camera->m_viewHeight,
                            camera->m_viewSpeedX, camera->m_viewSpeedY, camera->m_viewBorderX, camera->m_viewBorderY})
            EXPECT_EQ(field, number) << word;
        EXPECT_EQ(camera->m_targetInstance, word);
    }
}

TEST_F(CameraFromView, DoesNotReadVisibilityOrPort)
{
    KvRoomView view = SomeView();
    const CCamera* plain = g_CM.CreateCameraFromView(&view);
    view.visible = 0;
    view.xport = view.yport = view.wport = view.hport = 1234;
    const CCamera* other = g_CM.CreateCameraFromView(&view);
    EXPECT_EQ(other->m_viewX, plain->m_viewX);
    EXPECT_EQ(other->m_viewY, plain->m_viewY);
    EXPECT_EQ(other->m_viewWidth, plain->m_viewWidth);
    EXPECT_EQ(other->m_viewHeight, plain->m_viewHeight);
    EXPECT_EQ(other->GetViewProjMat(), plain->GetViewProjMat());
    EXPECT_EQ(other->m_targetInstance, plain->m_targetInstance);
}

TEST_F(CameraFromView, LeavesTheViewAsItWas)
{
    KvRoomView view = SomeView();
    const KvRoomView before = view;
    g_CM.CreateCameraFromView(&view);
    EXPECT_EQ(std::memcmp(&view, &before, sizeof view), 0);
}

TEST_F(CameraFromView, TakesTheFirstFreeSlotFromTheHighPointUpAndCachesIt)
{
    CreateCameras(4);
    g_CM.DestroyCamera(0);
    g_CM.DestroyCamera(2);
    g_CM.m_InitialLoadHighPoint = 1;
    KvRoomView view = SomeView();
    EXPECT_EQ(g_CM.CreateCameraFromView(&view)->m_ID, 2);
    EXPECT_EQ(g_CM.m_lastCamPos, 2);
}

TEST_F(CameraFromView, IsNeitherCloneNorPersistentNorActiveNorListed)
{
    RunRoom({0});
    g_DefaultCameraID = 0;
    KvRoomView view = SomeView();
    const CCamera* camera = g_CM.CreateCameraFromView(&view);
    EXPECT_FALSE(camera->IsCloned() || camera->isPersistent());
    EXPECT_EQ(g_CM.GetActiveCamera(), nullptr);
    EXPECT_THAT(RoomList(), Each(-1));
}
} // namespace
