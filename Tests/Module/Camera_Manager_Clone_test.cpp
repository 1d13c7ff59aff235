// The registry: what a clone takes over, and the plain copy of a view.
#include "Tests/Module/Manager_Fixture.h"

#include <gmock/gmock.h>

using namespace Recording;
using testing::ElementsAre;

namespace
{
using CameraManagerClone = ManagerTest;
using CameraCopyFrom = ManagerTest;

struct Property
{
    const char* name;
    float CCamera::*field;
};

const Property PROPERTIES[] = {{"x", &CCamera::m_viewX},
                               {"y", &CCamera::m_viewY},
                               {"width", &CCamera::m_viewWidth},
                               {"height", &CCamera::m_viewHeight},
                               {"speed x", &CCamera::m_viewSpeedX},
                               {"speed y", &CCamera::m_viewSpeedY},
                               {"border x", &CCamera::m_viewBorderX},
                               {"border y", &CCamera::m_viewBorderY},
                               {"angle", &CCamera::m_viewAngle}};

struct Matrix
{
    const char* name;
    kvMatrix CCamera::*field;
};

const Matrix MATRICES[] = {
    {"projection", &CCamera::m_projMat},          {"view", &CCamera::m_viewMat},
    {"view projection", &CCamera::m_viewProjMat}, {"inverse projection", &CCamera::m_invProjMat},
    {"inverse view", &CCamera::m_invViewMat},     {"inverse view projection", &CCamera::m_invViewProjMat}};

// first, first + 1, ...: every value of its own
void FillProperties(CCamera& camera, float first)
{
    for (const Property& property : PROPERTIES)
        camera.*property.field = first++;
}

void FillMatrices(CCamera& camera, float first)
{
    for (const Matrix& matrix : MATRICES)
        for (float& element : (camera.*matrix.field).m)
            element = first++;
}

// ---- clones ----
TEST_F(CameraManagerClone, OfAnUnknownCameraIsNullAndAllocatesNothing)
{
    CreateCameras(3);
    g_CM.GetCamera(1);
    const int before = RequestCount();
    std::vector<int> unknown = UnknownIdentifiers();
    unknown.push_back(-1);
    unknown.push_back(3);
    for (int id : unknown)
        EXPECT_EQ(g_CM.CloneCamera(id), nullptr) << id;
    EXPECT_EQ(RequestCount(), before);
    EXPECT_EQ(g_CM.m_lastCamPos, 1);
}

TEST_F(CameraManagerClone, TakesTheFirstFreeSlotAndCachesIt)
{
    CreateCameras(4);
    g_CM.DestroyCamera(1);
    const CCamera* clone = g_CM.CloneCamera(3);
    EXPECT_EQ(clone->m_ID, 1);
    EXPECT_EQ(g_CM.m_cameras[1], clone);
    EXPECT_EQ(g_CM.m_lastCamPos, 1);
}

TEST_F(CameraManagerClone, SurvivesTheGrowthThatItCauses)
{
    CCamera* source = g_CM.CreateCamera();
    FillProperties(*source, 10.0f);
    const CCamera* clone = g_CM.CloneCamera(0);
    EXPECT_EQ(clone->m_ID, 1);
    EXPECT_EQ(clone->m_viewX, 10.0f);
    EXPECT_EQ(g_CM.m_cameraListSize, 2);
}

TEST_F(CameraManagerClone, CopiesTheTenViewWords)
{
    CCamera* source = g_CM.CreateCamera();
    FillProperties(*source, 1.5f);
    source->SetTargetInstance(100123);
    const CCamera* clone = g_CM.CloneCamera(0);
    for (const Property& property : PROPERTIES)
        EXPECT_EQ(clone->*property.field, source->*property.field) << property.name;
    EXPECT_EQ(clone->m_targetInstance, 100123);
}

TEST_F(CameraManagerClone, IsACloneAndAsPersistentAsItsSource)
{
    CreateCameras(1);
    EXPECT_TRUE(g_CM.CloneCamera(0)->IsCloned());
    EXPECT_FALSE(g_CM.m_cameras[1]->isPersistent());
    g_CM.m_cameras[0]->SetPersistent(true);
    EXPECT_TRUE(g_CM.CloneCamera(0)->isPersistent());
    EXPECT_FALSE(g_CM.m_cameras[0]->IsCloned());
    const CCamera* second = g_CM.CloneCamera(2);
    EXPECT_TRUE(second->IsCloned() && second->isPersistent()) << "a clone of a clone";
}

TEST_F(CameraManagerClone, LeavesTheActiveCamera)
{
    CreateCameras(1);
    g_CM.CloneCamera(0);
    EXPECT_EQ(g_CM.GetActiveCamera(), nullptr);
    g_CM.SetActiveCamera(0);
    g_CM.CloneCamera(0);
    EXPECT_EQ(g_CM.GetActiveCamera(), g_CM.m_cameras[0]);
}

TEST_F(CameraManagerClone, TakesBothMatricesAndDerivesTheRestAnew)
{
    CCamera* source = g_CM.CreateCamera();
    FillProperties(*source, 3.0f);
    source->BuildView();
    const kvMatrix view = source->GetViewMat(), projection = source->GetProjMat();
    const kvMatrix inverse = source->GetInvViewProjMat();
    FillMatrices(*source, 1000.0f); // what is derived is not looked at
    source->m_viewMat = view;
    source->m_projMat = projection;
    const CCamera* clone = g_CM.CloneCamera(0);
    EXPECT_EQ(clone->GetViewMat(), view);
    EXPECT_EQ(clone->GetProjMat(), projection);
    EXPECT_EQ(clone->GetInvViewProjMat(), inverse);
}

TEST_F(CameraManagerClone, JudgesItsFlatnessForItselfAndIsNotDirty)
{
    CCamera* source = g_CM.CreateCamera();
    source->m_projMat._34 = 1.0f;
    source->m_is2D = true; // wrong, and not copied
    source->SetViewDirty();
    const CCamera* clone = g_CM.CloneCamera(0);
    EXPECT_FALSE(clone->Is2D());
    EXPECT_FALSE(clone->IsViewDirty());
}

TEST_F(CameraManagerClone, HoldsReferencesOfItsOwn)
{
    CreateCameras(1);
    Owned array(OfArray(NewArray(std::vector<double>{1.0})));
    SetStrings(*g_CM.m_cameras[0], "begin", "end", "update");
    SetBegin(*g_CM.m_cameras[0], array);
    EXPECT_EQ(ReferenceCount(array.pRefArray), 2);
    g_CM.CloneCamera(0);
    EXPECT_EQ(ReferenceCount(array.pRefArray), 3);
    g_CM.DestroyCamera(1);
    EXPECT_EQ(ReferenceCount(array.pRefArray), 2);
    EXPECT_STREQ(g_CM.m_cameras[0]->GetEndScript()->GetString(), "end");
}

TEST_F(CameraManagerClone, OutlivesItsSource)
{
    CreateCameras(1);
    SetStrings(*g_CM.m_cameras[0], "begin", "end", "update");
    CCamera* clone = g_CM.CloneCamera(0);
    g_CM.DestroyCamera(0);
    EXPECT_STREQ(clone->GetBeginScript()->GetString(), "begin");
    EXPECT_STREQ(clone->GetEndScript()->GetString(), "end");
    EXPECT_STREQ(clone->GetUpdateScript()->GetString(), "update");
}

TEST_F(CameraManagerClone, AssignsTheCallbacksInOrderAndReportsInvalidOnesAgain)
{
    CreateCameras(1);
    SetStrings(*g_CM.m_cameras[0], "a", "b", "c");
    g_CM.CloneCamera(0);
    EXPECT_THAT(Errors(), ElementsAre("camera_set_begin_script :: invalid script reference",
                                      "camera_set_end_script :: invalid script reference",
                                      "camera_set_update_script :: invalid script reference"));
}

TEST_F(CameraManagerClone, OfACallableHasAProxyOfItsOwn)
{
    CreateCameras(1);
    Callable* callable = NewCallable();
    SetEnd(*g_CM.m_cameras[0], OfObject(callable));
    const CCamera* clone = g_CM.CloneCamera(0);
    ASSERT_NE(clone->pGCProxy, nullptr);
    EXPECT_NE(clone->pGCProxy, g_CM.m_cameras[0]->pGCProxy);
    EXPECT_EQ(clone->pGCProxy->pCamObj, clone);
    EXPECT_EQ(clone->m_endScript.pObj, callable);
    EXPECT_EQ(RootCount(), 2u);
}

TEST_F(CameraManagerClone, OfScriptIndicesHasNoProxy)
{
    CreateCameras(1);
    SetBegin(*g_CM.m_cameras[0], Int32(7));
    SetUpdate(*g_CM.m_cameras[0], Real(9.0));
    const CCamera* clone = g_CM.CloneCamera(0);
    EXPECT_EQ(clone->pGCProxy, nullptr);
    EXPECT_EQ(Describe(clone->m_beginScript), "int32 7");
    EXPECT_EQ(Describe(clone->m_endScript), "real -1");
    EXPECT_EQ(Describe(clone->m_updateScript), "real 9");
}

TEST_F(CameraManagerClone, OfASourceWhoseProxyIsIdleHasNone)
{
    CreateCameras(1);
    SetBegin(*g_CM.m_cameras[0], OfObject(NewCallable()));
    SetBegin(*g_CM.m_cameras[0], Real(-1.0));
    EXPECT_NE(g_CM.m_cameras[0]->pGCProxy, nullptr);
    EXPECT_EQ(g_CM.CloneCamera(0)->pGCProxy, nullptr);
}

TEST_F(CameraManagerClone, FindsItsSourceInTheRoomListBeforeTheTable)
{
    m_keepsTheRules = false;
    CreateCameras(3);
    g_CM.m_cameras[2]->SetID(0);
    g_CM.m_cameras[2]->SetViewX(22.0f);
    g_CM.m_roomcameras[4] = g_CM.m_cameras[2];
    g_CM.m_lastCamPos = -1;
    EXPECT_EQ(g_CM.CloneCamera(0)->GetViewX(), 22.0f);
}

TEST_F(CameraManagerClone, FindsItsSourceInTheCachedSlotFirst)
{
    m_keepsTheRules = false;
    CreateCameras(3);
    for (int slot : {1, 2})
    {
        g_CM.m_cameras[slot]->SetID(0);
        g_CM.m_cameras[slot]->SetViewX(static_cast<float>(slot));
    }
    g_CM.m_roomcameras[0] = g_CM.m_cameras[2];
    g_CM.m_lastCamPos = 1;
    EXPECT_EQ(g_CM.CloneCamera(0)->GetViewX(), 1.0f);
}

// ---- the plain copy ----
TEST_F(CameraCopyFrom, CopiesTheSixMatricesAsTheyStand)
{
    CCamera source, copy;
    FillMatrices(source, 1.0f);
    source.m_invProjMat.u[3] = 0x7FC01234u; // bits of a NaN
    TakeLog();
    copy.CopyFrom(&source);
    for (const Matrix& matrix : MATRICES)
        EXPECT_EQ(copy.*matrix.field, source.*matrix.field) << matrix.name;
    EXPECT_EQ(TakeLog(), None()) << "nothing is computed";
}

TEST_F(CameraCopyFrom, CopiesTheRectangleAndTheAngleButNoSpeedOrBorder)
{
    CCamera source, copy;
    FillProperties(source, 1.0f);
    FillProperties(copy, 101.0f);
    copy.CopyFrom(&source);
    std::vector<float> values;
    for (const Property& property : PROPERTIES)
        values.push_back(copy.*property.field);
    EXPECT_THAT(values, ElementsAre(1.0f, 2.0f, 3.0f, 4.0f, 105.0f, 106.0f, 107.0f, 108.0f, 9.0f));
}

TEST_F(CameraCopyFrom, LeavesTargetIdentifierProxyCallbacksAndFlags)
{
    CreateCameras(2);
    CCamera &source = *g_CM.m_cameras[0], &copy = *g_CM.m_cameras[1];
    source.SetTargetInstance(5);
    SetBegin(source, OfObject(NewCallable()));
    SetEnd(source, Real(3.0));
    SetUpdate(source, Real(4.0));
    source.m_is2D = false;
    source.m_isViewDirty = source.m_isClone = source.m_isPersistent = true;
    copy.CopyFrom(&source);
    EXPECT_EQ(copy.m_targetInstance, -1);
    EXPECT_EQ(copy.m_ID, 1);
    EXPECT_EQ(copy.pGCProxy, nullptr);
    EXPECT_EQ(Describe(copy.m_beginScript), "real -1");
    EXPECT_EQ(Describe(copy.m_endScript), "real -1");
    EXPECT_EQ(Describe(copy.m_updateScript), "real -1");
    EXPECT_TRUE(copy.m_is2D);
    EXPECT_FALSE(copy.m_isViewDirty || copy.m_isClone || copy.m_isPersistent);
}

TEST_F(CameraCopyFrom, TakesItself)
{
    CCamera camera;
    FillProperties(camera, 1.0f);
    FillMatrices(camera, 20.0f);
    const kvMatrix view = camera.m_viewMat;
    camera.CopyFrom(&camera);
    EXPECT_EQ(camera.m_viewMat, view);
    EXPECT_EQ(camera.m_viewAngle, 9.0f);
}
} // namespace
