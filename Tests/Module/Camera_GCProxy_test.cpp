// A camera's stand-in among the collector's objects: roots, marking, release.
#include "Tests/Module/Proxy_Fixture.h"

#include <gmock/gmock.h>
#include <type_traits>

using namespace Recording;
using testing::ElementsAre;

namespace
{
// ---- construction ----
TEST_F(CameraProxy, IsBuiltPlacedStampedAndRootedInThisOrder)
{
    SetNewGeneration(2);
    KvObjectBase::ms_currentCounter = 31;
    Listen(Topic_Collector);
    TakeLog();
    NewProxy();
    EXPECT_THAT(TakeLog(), ElementsAre("KvObjectBase(0,16777215)=O1", "GetNewObjGCGen()", "UpdateRange(2,0)",
                                       "AddGlobalObject(O1)"));
    EXPECT_EQ(m_proxy->pCamObj, &m_camera);
    EXPECT_EQ(m_proxy->m_kind, OBJECT_KIND_CONTAINER);
    EXPECT_EQ(m_proxy->m_kind, 7);
    EXPECT_EQ(m_proxy->m_gcGen, 2);
    EXPECT_EQ(m_proxy->m_gcCounter, 31);
    EXPECT_TRUE(IsRoot(m_proxy));
}

TEST_F(CameraProxy, HasNoGenerationOrStampWhileNothingIsCollected)
{
    g_fGarbageCollection = false;
    KvObjectBase::ms_currentCounter = 31;
    Listen(Topic_Collector);
    TakeLog();
    NewProxy();
    EXPECT_THAT(TakeLog(), ElementsAre("KvObjectBase(0,16777215)=O1", "AddGlobalObject(O1)"));
    EXPECT_EQ(m_proxy->m_gcGen, -1);
    EXPECT_EQ(m_proxy->m_gcCounter, -1);
    EXPECT_EQ(m_proxy->m_slot, 0);
    EXPECT_EQ(m_proxy->m_kind, OBJECT_KIND_CONTAINER);
}

TEST_F(CameraProxy, DoesNotEnterItselfIntoItsCamera)
{
    NewProxy();
    EXPECT_EQ(m_camera.pGCProxy, nullptr);
}

TEST_F(CameraProxy, OverridesMarkingAndReleaseOnly)
{
    using Base = KvObjectBase;
    EXPECT_TRUE((std::is_same_v<decltype(&Camera_GCProxy::Mark4GC), bool (Camera_GCProxy::*)(uint32_t*, int)>));
    EXPECT_TRUE((std::is_same_v<decltype(&Camera_GCProxy::Free), bool (Camera_GCProxy::*)(bool)>));
    EXPECT_TRUE((std::is_same_v<decltype(&Camera_GCProxy::ThreadFree), bool (Camera_GCProxy::*)(bool, GCContext*)>));
    EXPECT_TRUE((std::is_same_v<decltype(&Camera_GCProxy::InternalGetKvVarRef), RValue* (Base::*)(int)>));
    EXPECT_TRUE((std::is_same_v<decltype(&Camera_GCProxy::InternalGetKvVarRefL), RValue* (Base::*)(int)>));
    EXPECT_TRUE((std::is_same_v<decltype(&Camera_GCProxy::MarkThisOnly4GC), bool (Base::*)(uint32_t*, int)>));
    EXPECT_TRUE((std::is_same_v<decltype(&Camera_GCProxy::MarkOnlyChildren4GC), bool (Base::*)(uint32_t*, int)>));
    EXPECT_TRUE((std::is_same_v<decltype(&Camera_GCProxy::PreFree), void (Base::*)()>));
    EXPECT_TRUE((std::is_same_v<decltype(&Camera_GCProxy::GetDispose), void* (Base::*)()>));
}

// ---- detaching ----
TEST_F(CameraProxy, DetachingClearsTheBackPointerAndTheRoot)
{
    NewProxy();
    Listen(Topic_Collector);
    TakeLog();
    m_proxy->Detach();
    EXPECT_EQ(m_proxy->pCamObj, nullptr);
    EXPECT_THAT(TakeLog(), ElementsAre("RemoveGlobalObject(O1)"));
}

TEST_F(CameraProxy, DetachingLeavesTheCamerasPointerToTheCamera)
{
    m_camera.pGCProxy = NewProxy();
    m_proxy->Detach();
    EXPECT_EQ(m_camera.pGCProxy, m_proxy);
    m_camera.pGCProxy = nullptr;
}

TEST_F(CameraProxy, EndsWithItsCameraAndIsThenCollected)
{
    CreateCameras(1);
    SetBegin(*g_CM.m_cameras[0], OfObject(NewCallable()));
    const Camera_GCProxy* proxy = g_CM.m_cameras[0]->pGCProxy;
    Collect();
    ASSERT_EQ(g_CM.m_cameras[0]->pGCProxy, proxy) << "a root stays";
    g_CM.DestroyCamera(0);
    const size_t objects = LiveObjects();
    Collect();
    EXPECT_EQ(LiveObjects(), objects - 1);
}

TEST_F(CameraProxy, StaysRootedWhenTheCallbacksAreNumbersAgain)
{
    CreateCameras(1);
    CCamera* camera = g_CM.m_cameras[0];
    SetBegin(*camera, OfObject(NewCallable()));
    const Camera_GCProxy* proxy = camera->pGCProxy;
    SetBegin(*camera, Real(-1.0));
    EXPECT_EQ(camera->pGCProxy, proxy);
    EXPECT_TRUE(IsRoot(proxy));
    EXPECT_EQ(proxy->pCamObj, camera);
}

// ---- marking ----
TEST_F(CameraProxy, MarksItselfThenTheThreeCallbacksInOrder)
{
    SetBegin(m_camera, Real(1.0));
    SetEnd(m_camera, Real(2.0));
    SetUpdate(m_camera, Real(3.0));
    NewProxy();
    uint32_t marks[4] = {};
    Listen(Topic_Collector);
    TakeLog();
    EXPECT_TRUE(m_proxy->Mark4GC(marks, 4));
    EXPECT_THAT(TakeLog(), ElementsAre("Mark4GC(O1,marks,4)", "AddGCRefRValue(real 1)", "AddGCRefRValue(real 2)",
                                       "AddGCRefRValue(real 3)"));
    EXPECT_THAT(MarkedValues(), ElementsAre(&m_camera.m_beginScript, &m_camera.m_endScript, &m_camera.m_updateScript));
}

TEST_F(CameraProxy, MarksThroughTheCollectorsTable)
{
    KvObjectBase* object = NewProxy();
    EXPECT_TRUE(object->Mark4GC(nullptr, 0));
    EXPECT_EQ(MarkedValues().size(), 3u);
}

TEST_F(CameraProxy, MarksNoCallbackWhenItIsMarkedAlready)
{
    NewProxy();
    SetMarkResult(false);
    EXPECT_FALSE(m_proxy->Mark4GC(nullptr, 9));
    EXPECT_TRUE(MarkedValues().empty());
}

TEST_F(CameraProxy, MarksNoCameraOnceDetached)
{
    NewProxy();
    m_proxy->Detach();
    EXPECT_TRUE(m_proxy->Mark4GC(nullptr, 0));
    EXPECT_TRUE(MarkedValues().empty());
}

TEST_F(CameraProxy, OfADestroyedCameraMarksNothing)
{
    CreateCameras(1);
    SetBegin(*g_CM.m_cameras[0], OfObject(NewCallable()));
    Camera_GCProxy* proxy = g_CM.m_cameras[0]->pGCProxy;
    g_CM.DestroyCamera(0);
    EXPECT_TRUE(proxy->Mark4GC(nullptr, 0));
    EXPECT_TRUE(MarkedValues().empty());
}

TEST_F(CameraProxy, ACameraMarksItsCallbacksWithoutLookingAtTheArguments)
{
    uint32_t marks[1] = {};
    m_camera.Mark4GC(nullptr, -1);
    m_camera.Mark4GC(marks, 1);
    EXPECT_THAT(MarkedValues(), ElementsAre(&m_camera.m_beginScript, &m_camera.m_endScript, &m_camera.m_updateScript,
                                            &m_camera.m_beginScript, &m_camera.m_endScript, &m_camera.m_updateScript));
    EXPECT_EQ(marks[0], 0u);
}

// ---- release ----
TEST_F(CameraProxy, FreeReleasesItsVariablesAndDeletesIt)
{
    for (bool freeVars : {false, true})
    {
        NewProxy()->Detach();
        const std::string name = Name(m_proxy);
        Listen(Topic_Collector);
        TakeLog();
        EXPECT_TRUE(static_cast<KvObjectBase*>(m_proxy)->Free(freeVars));
        m_proxy = nullptr;
        EXPECT_THAT(TakeLog(), ElementsAre("FreeVars(" + name + (freeVars ? ",true,null)" : ",false,null)"),
                                           "~KvObjectBase(" + name + ")"));
    }
}

TEST_F(CameraProxy, ThreadFreePassesItsContextOn)
{
    for (bool freeVars : {false, true})
    {
        NewProxy()->Detach();
        const std::string name = Name(m_proxy);
        GCContext* context = SomeContext();
        Listen(Topic_Collector);
        TakeLog();
        EXPECT_TRUE(static_cast<KvObjectBase*>(m_proxy)->ThreadFree(freeVars, context));
        m_proxy = nullptr;
        EXPECT_THAT(TakeLog(), ElementsAre("FreeVars(" + name + (freeVars ? ",true,context)" : ",false,context)"),
                                           "~KvObjectBase(" + name + ")"));
    }
}

TEST_F(CameraProxy, ReleaseTouchesNoCamera)
{
    CCamera* camera = LooseCamera();
    Camera_GCProxy* proxy = new Camera_GCProxy(camera);
    proxy->Detach();
    FreeLoose(camera); // a sanitizer sees whoever still looks at it
    EXPECT_TRUE(proxy->Free(true));
}

TEST_F(CameraProxy, DestructionTakesNoRootAndNoSlotItself)
{
    NewProxy()->Detach();
    Listen(Topic_Collector);
    TakeLog();
    delete m_proxy;
    m_proxy = nullptr;
    EXPECT_THAT(TakeLog(), ElementsAre("~KvObjectBase(O1)"));
}
} // namespace
