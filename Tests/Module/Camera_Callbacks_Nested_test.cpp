// Callbacks that run callbacks, and what an update callback means for its camera's update.
#include "Tests/Module/Callback_Fixture.h"

#include <gmock/gmock.h>

using namespace Recording;
using testing::ElementsAre;

namespace
{
class CameraNestedCallback : public CameraCallback
{
};

TEST_P(CameraNestedCallback, MayRunAnotherCamerasCallback)
{
    CCamera* other = g_CM.CreateCamera();
    std::vector<int> current;
    Give(
        other, [&current](ScriptCall&) { current.push_back(Current_Object); }, OTHER_SCRIPT);
    RunAs(
        [&current, other](ScriptCall&)
        {
            current.push_back(Current_Object);
            GetParam().run(*other);
            current.push_back(Current_Object);
        });
    EXPECT_THAT(current, ElementsAre(0, 1, 0));
}

TEST_P(CameraNestedCallback, MayRunItself)
{
    int depth = 0;
    Give(m_camera,
         [this, &depth](ScriptCall&)
         {
             if (++depth < 5)
                 GetParam().run(*m_camera);
             EXPECT_EQ(Current_Object, 0);
         });
    RunOf(m_camera);
    EXPECT_EQ(depth, 5);
}

TEST_P(CameraNestedCallback, MayRunItselfAndDestroyItsCameraAtTheBottom)
{
    int depth = 0;
    m_camera->SetViewDirty();
    Give(m_camera,
         [this, &depth](ScriptCall&)
         {
             if (++depth < 5)
                 GetParam().run(*m_camera);
             else
                 g_CM.DestroyCamera(0);
             EXPECT_EQ(Current_Object, 0);
         });
    RunOf(m_camera);
    EXPECT_THAT(Slots(), ElementsAre(-2));
}

TEST_P(CameraNestedCallback, MayRunAnotherThatDestroysItsCamera)
{
    CCamera* other = g_CM.CreateCamera();
    Give(
        other, [](ScriptCall&) { g_CM.DestroyCamera(0); }, OTHER_SCRIPT);
    m_camera->SetViewDirty();
    other->SetViewDirty();
    RunAs([other](ScriptCall&) { GetParam().run(*other); });
    EXPECT_THAT(Slots(), ElementsAre(-2, 1));
    EXPECT_EQ(other->IsViewDirty(), !IsUpdate());
}

INSTANTIATE_TEST_SUITE_P(Moments, CameraNestedCallback, EveryMoment(), MomentName);

// ---- what an update callback means for the update ----
class CameraUpdateCallback : public ManagerTest
{
protected:
    CameraUpdateCallback()
    {
        RunRoom({0});
        g_CM.StartRoom();
        m_camera = g_CM.CreateCamera();
        m_camera->SetViewWidth(100.0f);
        m_camera->SetViewHeight(100.0f);
        m_camera->SetViewSpeedX(-1.0f);
        m_camera->SetViewSpeedY(-1.0f);
        NewInstance(100001, 500.0f, 500.0f);
        m_camera->SetTargetInstance(100001);
        SetUpdate(*m_camera, Int32(SCRIPT));
    }
    CCamera* m_camera;
};

TEST_F(CameraUpdateCallback, ItsMoveIsBuiltInTheSameUpdate)
{
    SetScript(SCRIPT, [](ScriptCall&) { Call(F_CameraSetViewPos, {Real(0.0), Real(30.0), Real(40.0)}); });
    m_camera->CameraUpdate();
    EXPECT_EQ(m_camera->GetViewX(), 30.0f) << "the target is not followed";
    EXPECT_FALSE(m_camera->IsViewDirty());
    EXPECT_EQ(m_camera->GetViewMat()._41, -80.0f);
    EXPECT_EQ(m_camera->GetViewMat()._42, -90.0f);
}

TEST_F(CameraUpdateCallback, RemovingItselfLetsTheNextUpdateFollow)
{
    SetScript(SCRIPT, [this](ScriptCall&) { SetUpdate(*m_camera, Real(-1.0)); });
    m_camera->CameraUpdate();
    EXPECT_EQ(m_camera->GetViewX(), 0.0f);
    m_camera->CameraUpdate();
    EXPECT_EQ(m_camera->GetViewX(), 400.0f) << "the target stands at the right edge";
}

TEST_F(CameraUpdateCallback, EndingTheRoomStillCountsAsHandled)
{
    g_fGarbageCollection = false;
    SetScript(SCRIPT, [](ScriptCall&) { g_CM.EndRoom(); });
    m_camera->CameraUpdate();
    EXPECT_EQ(m_camera->GetViewX(), 0.0f);
    m_camera->CameraUpdate();
    EXPECT_EQ(m_camera->GetViewX(), 0.0f) << "without a script instance nothing runs, and nothing is followed";
}
} // namespace
