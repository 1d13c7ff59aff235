// One update of a camera: its update callback, or one step after its target.

#include "Tests/Support/Fixture.h"
#include "Tests/Support/Numbers.h"

#include <algorithm>

using namespace Recording;

namespace
{
constexpr float UNLIMITED = -1.0f;
constexpr int TARGET = 100000; // the smallest instance identifier
} // namespace

class CameraFollow : public ModuleTest
{
protected:
    CameraFollow()
    {
        camera.m_viewWidth = 400.0f;
        camera.m_viewHeight = 300.0f;
        camera.m_viewX = camera.m_viewY = 100.0f;
        camera.m_viewSpeedX = camera.m_viewSpeedY = UNLIMITED;
        camera.m_targetInstance = TARGET;
        camera.BuildView();
    }

    // A target far to the right and below, so that a camera that follows it moves.
    CInstance* FarTarget(int id = TARGET, uint32_t flags = 0)
    {
        CInstance* instance = NewInstance(id, 2000.0f, 1500.0f, flags);
        TakeLog();
        return instance;
    }

    void Update()
    {
        TakeLog();
        camera.CameraUpdate();
        log = TakeLog();
    }

    bool Moved() const { return camera.m_viewX != 100.0f || camera.m_viewY != 100.0f; }
    bool Noted(const std::string& line) const { return std::count(log.begin(), log.end(), line) != 0; }

    int Builds() const
    {
        return static_cast<int>(std::count_if(log.begin(), log.end(),
                                              [](const std::string& line) { return line.rfind("LookAt", 0) == 0; }));
    }

    CCamera camera;
    Lines log;
};

TEST_F(CameraFollow, ASlowCameraArrivesAndStays)
{
    Run_Room = NewRoom(4000, 4000);
    FarTarget();
    camera.m_viewSpeedX = 64.0f;
    camera.m_viewSpeedY = 64.0f;
    for (int i = 0; i < 100; ++i)
        camera.CameraUpdate();
    EXPECT_EQ(camera.m_viewX, 1600.0f) << "2000 at the right edge of a view of 400";
    EXPECT_EQ(camera.m_viewY, 1200.0f);
}

// ---- the build at the end of a step ----

TEST_F(CameraFollow, AStepEndsWithABuildAtTheNewCentre)
{
    FarTarget();
    Update();
    EXPECT_EQ(log.front(), "FindInstance(100000)");
    EXPECT_TRUE(Noted("LookAtLH(1800,1350,-16000;1800,1350,0;-0,1,0)"));
    EXPECT_TRUE(Noted("OrthoLH(400,300,0,32000)"));
}

TEST_F(CameraFollow, AStepThatMovesNothingBuildsAllTheSame)
{
    NewInstance(TARGET, 300.0f, 250.0f);
    Update();
    EXPECT_FALSE(Moved());
    EXPECT_EQ(Builds(), 1);
}

TEST_F(CameraFollow, AStepOfADirtyCameraBuildsOnce)
{
    FarTarget();
    camera.SetViewDirty();
    Update();
    EXPECT_EQ(Builds(), 1);
    EXPECT_FALSE(camera.IsViewDirty());
}

TEST_F(CameraFollow, ADeepCameraStaysDeepWhileItFollows)
{
    FarTarget();
    camera.Build3DView(300.0f, 250.0f);
    Update();
    EXPECT_TRUE(Noted("LookAtLH(1800,1350,-400;1800,1350,0;-0,1,0)"));
    EXPECT_TRUE(Noted("PerspectiveLH(1,-0.75,1,32000)"));
}

TEST_F(CameraFollow, APerspectiveElementThatIsNoNumberBuildsDeep)
{
    FarTarget();
    camera.m_projMat._34 = NOT_A_NUMBER;
    Update();
    EXPECT_TRUE(Noted("PerspectiveLH(1,-0.75,1,32000)"));
}

// ---- whom to follow ----

TEST_F(CameraFollow, ANegativeTargetIsNobody)
{
    FarTarget();
    for (int target : {-1, -2, INT32_MIN})
    {
        camera.m_targetInstance = target;
        Update();
        EXPECT_EQ(log, None()) << target;
    }
    EXPECT_FALSE(Moved());
}

TEST_F(CameraFollow, AHundredThousandIsAnInstance)
{
    FarTarget(100000);
    Update();
    EXPECT_EQ(log.front(), "FindInstance(100000)");
    EXPECT_TRUE(Moved());
}

TEST_F(CameraFollow, OneLessIsAnObject)
{
    SetObject(99999, {FarTarget(100007)});
    camera.m_targetInstance = 99999;
    Update();
    EXPECT_EQ(log.front(), "FindObject(99999)");
    EXPECT_TRUE(Moved());
}

TEST_F(CameraFollow, ZeroIsAnObject)
{
    SetObject(0, {FarTarget(100007)});
    camera.m_targetInstance = 0;
    Update();
    EXPECT_TRUE(Moved());
}

TEST_F(CameraFollow, AnInstanceThatDoesNotExistIsNotFollowed)
{
    camera.m_targetInstance = INT32_MAX;
    Update();
    EXPECT_EQ(log, Lines{"FindInstance(2147483647)"});
    EXPECT_FALSE(Moved());
}

TEST_F(CameraFollow, AMarkedOrDeactivatedInstanceIsNotFollowed)
{
    CInstance* target = FarTarget();
    for (uint32_t flags : {1u, 2u, 3u, 1u | 8u, 0xFFFFFFFFu})
    {
        target->m_flags = flags;
        Update();
        EXPECT_EQ(log, Lines{"FindInstance(100000)"}) << "flags " << flags;
        EXPECT_FALSE(Moved());
    }
    target->m_flags = ~(1u | 2u | 8u);
    Update();
    EXPECT_TRUE(Moved()) << "other flags do not matter";
}

TEST_F(CameraFollow, OfAnObjectTheFirstLiveInstanceIsFollowed)
{
    CInstance* marked = NewInstance(100001, 0, 0, eInstanceFlag_Marked | eInstanceFlag_bbox_dirty);
    CInstance* deactivated = NewInstance(100002, 0, 0, eInstanceFlag_Deactivated | eInstanceFlag_bbox_dirty);
    CInstance* third = NewInstance(100003, 1000.0f, 250.0f);
    CInstance* fourth = NewInstance(100004, 3000.0f, 250.0f);
    SetObject(5, {marked, deactivated, third, fourth});
    camera.m_targetInstance = 5;
    Update();
    EXPECT_EQ(camera.m_viewX, 600.0f) << "1000 at the right edge of a view of 400";
    EXPECT_EQ(log[1].rfind("LookAt", 0), 0u) << "nothing is asked of the instances passed over";
}

TEST_F(CameraFollow, AnObjectWithoutALiveInstanceIsNotFollowed)
{
    SetObject(5, {FarTarget(100001, eInstanceFlag_Marked)});
    SetObject(6, {});
    for (int object : {5, 6, 7})
    {
        camera.m_targetInstance = object;
        Update();
        EXPECT_EQ(log.size(), 1u) << object;
        EXPECT_FALSE(Moved()) << object;
    }
}

TEST_F(CameraFollow, AListEntryWithoutAnInstanceEndsTheSearch)
{
    SetObject(5, {nullptr, FarTarget(100001)});
    camera.m_targetInstance = 5;
    Update();
    EXPECT_FALSE(Moved());
}

TEST_F(CameraFollow, BeforeAGameIsLoadedThereAreNoObjectsToFollow)
{
    g_ObjectHash = nullptr;
    camera.m_targetInstance = 5;
    Update();
    EXPECT_EQ(log, None());
    EXPECT_FALSE(Moved());
}

// ---- bounding boxes ----

TEST_F(CameraFollow, AStaleBoundingBoxIsComputedBeforeThePositionIsRead)
{
    FarTarget(TARGET, eInstanceFlag_bbox_dirty);
    OnBoundingBox([](CInstance& instance) { instance.x = 1000.0f; });
    Update();
    EXPECT_EQ(log[1], "Compute_BoundingBox(I100000,true)");
    EXPECT_EQ(camera.m_viewX, 600.0f);
}

TEST_F(CameraFollow, AFreshBoundingBoxIsLeftAlone)
{
    FarTarget();
    Update();
    EXPECT_FALSE(Noted("Compute_BoundingBox(I100000,true)"));
}

TEST_F(CameraFollow, AnObjectsInstanceHasItsStaleBoundingBoxComputedToo)
{
    SetObject(5, {FarTarget(100001, eInstanceFlag_bbox_dirty)});
    camera.m_targetInstance = 5;
    Update();
    EXPECT_EQ(log[1], "Compute_BoundingBox(I100001,true)");
}

// ---- without a step ----

TEST_F(CameraFollow, ADirtyViewIsBuiltAlsoWhenNobodyIsFollowed)
{
    for (int target : {-1, TARGET, 5})
    {
        camera.m_targetInstance = target;
        camera.SetViewDirty();
        Update();
        EXPECT_TRUE(Noted("LookAtLH(300,250,-16000;300,250,0;-0,1,0)")) << target;
        EXPECT_EQ(Builds(), 1) << target;
        EXPECT_FALSE(camera.IsViewDirty()) << target;
    }
}

TEST_F(CameraFollow, ADeactivatedTargetLeavesTheViewButADirtyOneIsStillBuilt)
{
    FarTarget(TARGET, eInstanceFlag_Deactivated);
    camera.SetViewDirty();
    Update();
    EXPECT_FALSE(Moved());
    EXPECT_EQ(Builds(), 1);
}

TEST_F(CameraFollow, ADirtyDeepViewIsBuiltDeepWhenNobodyIsFollowed)
{
    camera.Build3DView(0, 0);
    camera.m_targetInstance = -1;
    camera.SetViewDirty();
    Update();
    EXPECT_TRUE(Noted("LookAtLH(300,250,-400;300,250,0;-0,1,0)"));
}

TEST_F(CameraFollow, ACleanViewIsNotBuiltWhenNobodyIsFollowed)
{
    camera.m_targetInstance = -1;
    Update();
    EXPECT_EQ(log, None());
}

// ---- the update callback ----

TEST_F(CameraFollow, ACameraWithAnUpdateCallbackNeverFollows)
{
    FarTarget();
    g_CM.StartRoom();
    camera.m_updateScript = Real(3.0);
    Update();
    EXPECT_EQ(log, Lines{"Script_Perform(3,I0,I0,0)"});
    EXPECT_FALSE(Moved());
}

TEST_F(CameraFollow, ACallableUpdateCallbackTakesThePlaceOfFollowingToo)
{
    FarTarget();
    camera.m_updateScript = OfObject(NewCallable());
    Update();
    EXPECT_EQ(log, Lines{"Call_RValue(null,F1,0)"});
    EXPECT_FALSE(Moved());
}

TEST_F(CameraFollow, AnUpdateCallbackThatCannotRunStillStopsFollowing)
{
    FarTarget();
    camera.m_updateScript = Real(3.0); // and there is no script instance
    Update();
    EXPECT_EQ(log, None());
    EXPECT_FALSE(Moved());
}

TEST_F(CameraFollow, AnUpdateCallbackOfMinusOneLetsFollowingProceed)
{
    FarTarget();
    g_CM.StartRoom();
    camera.m_updateScript = Int32(-1);
    Update();
    EXPECT_TRUE(Moved());
}

TEST_F(CameraFollow, WhatAnUpdateCallbackChangesIsBuiltInTheSameUpdate)
{
    g_CM.StartRoom();
    SetScript(3,
              [&](ScriptCall&)
              {
                  camera.SetViewX(500.0f);
                  camera.SetViewDirty();
              });
    camera.m_updateScript = Real(3.0);
    Update();
    EXPECT_TRUE(Noted("LookAtLH(700,250,-16000;700,250,0;-0,1,0)"));
    EXPECT_FALSE(camera.IsViewDirty());
}

TEST_F(CameraFollow, TheUpdateCallbackRunsBeforeTheTargetIsLookedFor)
{
    g_CM.StartRoom();
    FarTarget();
    camera.m_updateScript = Real(-1.0);
    camera.m_beginScript = Real(4.0);
    camera.m_endScript = Real(5.0);
    Update();
    EXPECT_EQ(log.front(), "FindInstance(100000)") << "neither begin nor end callback runs in an update";
}
