// Callbacks may do anything to the registry that runs them. What they free is never touched again (the sanitizers
// watch), and the host's current object is back right afterwards.
#include "Tests/Module/Callback_Fixture.h"

#include <gmock/gmock.h>

using namespace Recording;
using testing::Each;
using testing::ElementsAre;

namespace
{
TEST_P(CameraCallback, RunsInTheScriptInstanceAsItsCamera)
{
    CreateCameras(2);
    m_camera = g_CM.GetCamera(2);
    RunAs(
        [](ScriptCall& call)
        {
            EXPECT_EQ(Current_Object, 2);
            EXPECT_EQ(call.self, g_CM.GetScriptInstance());
            EXPECT_EQ(call.argc, 0);
            EXPECT_EQ(Describe(*call.result), "unset");
            EXPECT_EQ(call.result->flags, 0u);
        });
}

TEST_P(CameraCallback, MayDestroyItsOwnCamera)
{
    const size_t before = LiveBlocks();
    m_camera->SetViewDirty();
    RunAs([](ScriptCall&) { g_CM.DestroyCamera(0); });
    EXPECT_EQ(g_CM.GetCamera(0), nullptr);
    EXPECT_EQ(LiveBlocks(), before - 1);
    EXPECT_EQ(RootCount(), 0u);
}

TEST_P(CameraCallback, MayDestroyItsOwnCameraThroughTheBuiltin)
{
    g_CM.SetActiveCamera(0);
    RunAs([](ScriptCall&) { Call(F_CameraDestroy, {Real(0.0)}); });
    EXPECT_EQ(g_CM.GetCamera(0), nullptr);
    EXPECT_EQ(g_CM.GetActiveCamera(), nullptr);
}

TEST_P(CameraCallback, MayDestroyItsOwnCameraAndHaveItsProxyCollected)
{
    SetStrings(*m_camera, "a", "b", "c");
    RunAs(
        [](ScriptCall&)
        {
            g_CM.DestroyCamera(0);
            Collect();
        });
    EXPECT_EQ(LiveTexts(), 0u);
}

TEST_P(CameraCallback, MayDestroyItsOwnCameraAndCreateTheNextInItsPlace)
{
    RunAs(
        [](ScriptCall&)
        {
            g_CM.DestroyCamera(0);
            g_CM.CreateCamera()->SetViewDirty();
        });
    ASSERT_NE(g_CM.GetCamera(0), nullptr);
    EXPECT_TRUE(g_CM.GetCamera(0)->IsViewDirty()) << "the update was not this camera's";
}

// The heap may put the next camera where the last one was.
TEST_P(CameraCallback, DoesNotTakeALaterCameraAtTheSameAddressForItsOwn)
{
    RunAs(
        [this](ScriptCall&)
        {
            g_CM.m_cameras[0] = nullptr;
            m_camera->~CCamera();
            new (m_camera) CCamera;
            m_camera->SetViewDirty();
            g_CM.AddCameraToList(m_camera, 0);
        });
    EXPECT_TRUE(m_camera->IsViewDirty());
}

TEST_P(CameraCallback, MayDestroyEveryCamera)
{
    CreateCameras(20);
    RunAs(
        [](ScriptCall&)
        {
            for (int id = 0; id <= 20; ++id)
                g_CM.DestroyCamera(id);
        });
    EXPECT_THAT(Slots(), Each(-2));
}

TEST_P(CameraCallback, MayCleanTheRegistry)
{
    CreateCameras(5);
    m_camera->SetViewDirty();
    const CInstance* instance = g_CM.GetScriptInstance();
    RunAs([](ScriptCall&) { g_CM.Clean(); });
    ForgetStaleEntries();
    delete instance; // Clean drops it, nothing is collected here
    EXPECT_EQ(LiveBlocks(), 2u);
}

TEST_P(CameraCallback, MayReplaceItself)
{
    int later = 0;
    RunAs(
        [this, &later](ScriptCall&)
        {
            Give(
                m_camera, [&later](ScriptCall&) { ++later; }, OTHER_SCRIPT);
        });
    EXPECT_EQ(later, 0);
    RunOf(m_camera);
    EXPECT_EQ(later, 1);
}

TEST_P(CameraCallback, MayReplaceItselfThroughTheBuiltin)
{
    RunAs([](ScriptCall&) { Call(GetParam().setter, {Real(0.0), Real(-1.0)}); });
    EXPECT_EQ(Describe(*GetParam().get(*m_camera)), "real -1");
}

TEST_P(CameraCallback, MayReplaceItselfByACountedValueAndLeave)
{
    RunAs(
        [this](ScriptCall&)
        {
            Owned text(NewString("gone"));
            GetParam().set(*m_camera, &text);
            g_CM.DestroyCamera(0);
        });
    EXPECT_EQ(LiveTexts(), 0u);
}

TEST_P(CameraCallback, MayCloneItsCamera)
{
    CCamera* clone = nullptr;
    RunAs([&clone](ScriptCall&) { clone = g_CM.CloneCamera(0); });
    ASSERT_NE(clone, nullptr);
    EXPECT_EQ(clone->GetID(), 1);
    EXPECT_EQ(Describe(*GetParam().get(*clone)), Describe(*GetParam().get(*m_camera)));
}

TEST_P(CameraCallback, MayCreateAThousandOthers)
{
    m_camera->SetViewDirty();
    RunAs([](ScriptCall&) { CreateCameras(1000); });
    EXPECT_EQ(g_CM.m_cameraListSize, 1024);
    EXPECT_EQ(g_CM.GetCamera(0), m_camera);
    EXPECT_EQ(g_CM.GetCamera(1000)->GetID(), 1000);
    EXPECT_EQ(m_camera->IsViewDirty(), !IsUpdate()) << "its own update goes on";
}

TEST_P(CameraCallback, MayEndTheRoom)
{
    RunAs([](ScriptCall&) { g_CM.EndRoom(); });
    EXPECT_EQ(g_CM.GetScriptInstance(), nullptr);
    EXPECT_THAT(RoomList(), Each(-1));
    EXPECT_EQ(g_CM.GetCamera(0), m_camera);
}

TEST_P(CameraCallback, MayEndTheRoomAndItsCameraWithIt)
{
    m_camera = g_CM.CloneCamera(0);
    m_camera->SetViewDirty();
    RunAs([](ScriptCall&) { g_CM.EndRoom(); });
    EXPECT_THAT(Slots(), ElementsAre(0, -2));
}

TEST_P(CameraCallback, MayGoToAnotherRoom)
{
    RunAs(
        [](ScriptCall&)
        {
            g_CM.EndRoom();
            RunRoom({-1, 0});
            g_CM.StartRoom();
        });
    EXPECT_THAT(RoomList(), ElementsAre(-1, -1, 0, -1, -1, -1, -1, -1, -1));
    EXPECT_NE(g_CM.GetScriptInstance(), nullptr);
}

TEST_P(CameraCallback, MaySwitchTheRenderTarget)
{
    m_camera->SetViewWidth(64.0f);
    m_camera->SetViewHeight(32.0f);
    m_camera->BuildView();
    RunAs([](ScriptCall&) { g_RenderTargetActive = 3; });
    m_camera->ApplyMatrices();
    EXPECT_EQ(LastMatrix(eM_Projection)._22, -m_camera->GetProjMat()._22);
    RunAs([](ScriptCall&) { g_RenderTargetActive = -1; });
    m_camera->ApplyMatrices();
    EXPECT_EQ(LastMatrix(eM_Projection), m_camera->GetProjMat());
}

TEST_P(CameraCallback, MayApplyItsOwnCamera)
{
    m_camera->SetViewWidth(64.0f);
    m_camera->SetViewHeight(32.0f);
    m_camera->SetViewDirty();
    RunAs([](ScriptCall&) { Call(F_CameraApply, {Real(0.0)}); });
    EXPECT_EQ(LastMatrix(eM_View), m_camera->GetViewMat());
    EXPECT_FALSE(m_camera->IsViewDirty());
}

TEST_P(CameraCallback, MayChangeItsCamerasIdentifier)
{
    m_keepsTheRules = false;
    m_camera->SetViewDirty();
    RunAs([this](ScriptCall&) { m_camera->SetID(50); });
    EXPECT_EQ(g_CM.GetCamera(50), m_camera);
    EXPECT_EQ(m_camera->IsViewDirty(), !IsUpdate()) << "it is still registered: its update goes on";
}

TEST_P(CameraCallback, MayLoadAState)
{
    CreateCameras(3);
    Buffer saved;
    g_CM.Serialize(&saved);
    m_camera->SetViewDirty();
    RunAs([&saved](ScriptCall&) { g_CM.DeSerialize(&saved); });
    EXPECT_THAT(Slots(), ElementsAre(0, 1, 2, 3));
}

TEST_P(CameraCallback, MayReportErrors)
{
    RunAs([](ScriptCall&) { KvError("the script failed"); });
    EXPECT_THAT(Errors(), ElementsAre("the script failed"));
    RunAs([](ScriptCall&) { Call(F_CameraCreate, {Real(1.0)}); });
    EXPECT_EQ(Errors().size(), 2u);
}

TEST_P(CameraCallback, MayReturnCountedValuesWhichAreReleased)
{
    RunAs([](ScriptCall& call) { *call.result = NewString("returned"); });
    EXPECT_EQ(LiveTexts(), 0u);
    Owned array(OfArray(NewArray(std::vector<double>{})));
    RunAs(
        [&array](ScriptCall& call)
        {
            Array_IncRef(array.pRefArray);
            *call.result = array;
        });
    EXPECT_EQ(ReferenceCount(array.pRefArray), 1);
    RunAs([](ScriptCall& call) { *call.result = OfObject(NewObject()); });
}

TEST_P(CameraCallback, MayReturnACountedValueAndDestroyItsCamera)
{
    RunAs(
        [](ScriptCall& call)
        {
            *call.result = NewString("returned");
            g_CM.DestroyCamera(0);
        });
    EXPECT_EQ(LiveTexts(), 0u);
}

TEST_P(CameraCallback, MayChangeTheCurrentObject)
{
    RunAs([](ScriptCall&) { Current_Object = 999; });
}

TEST_P(CameraCallback, OfACameraThatWasNeverRegisteredRunsAndUpdatesIt)
{
    CCamera loose;
    loose.SetViewDirty();
    int runs = 0;
    Give(&loose,
         [&runs](ScriptCall&)
         {
             ++runs;
             EXPECT_EQ(Current_Object, -1);
             CreateCameras(10);
             g_CM.DestroyCamera(0);
         });
    RunOf(&loose);
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(loose.IsViewDirty(), !IsUpdate());
}

TEST_P(CameraCallback, MayRegisterItsCamera)
{
    CCamera* loose = LooseCamera();
    loose->SetViewDirty();
    Give(loose, [loose](ScriptCall&) { g_CM.AddCameraToList(loose, 5); });
    RunOf(loose);
    EXPECT_EQ(g_CM.GetCamera(5), loose);
    EXPECT_EQ(loose->IsViewDirty(), !IsUpdate());
}

TEST_P(CameraCallback, MayTakeItsCamerasSlotForAnother)
{
    m_camera->SetViewDirty();
    CCamera* next = LooseCamera();
    next->SetViewDirty();
    RunAs([next](ScriptCall&) { g_CM.AddCameraToList(next, 0); });
    EXPECT_EQ(g_CM.GetCamera(0), next);
    EXPECT_TRUE(next->IsViewDirty());
}

INSTANTIATE_TEST_SUITE_P(Moments, CameraCallback, EveryMoment(), MomentName);
} // namespace
