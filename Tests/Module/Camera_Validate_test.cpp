// The walker over the registry's rules: each rule is broken by hand, named by the walker, and mended again.
#include "Tests/Module/Manager_Fixture.h"

using namespace Recording;

namespace
{
// Four slots, of which three hold cameras.
class CameraValidate : public ManagerTest
{
protected:
    void SetUp() override
    {
        ManagerTest::SetUp();
        CreateCameras(3);
        ASSERT_EQ(g_CM.m_cameraListSize, 4);
    }

    static CCamera& WithCallback()
    {
        CCamera& camera = *g_CM.m_cameras[1];
        SetUpdate(camera, OfObject(NewCallable()));
        return camera;
    }
};

TEST_F(CameraValidate, HasNothingToReportOfARegistryThatUsesEverything)
{
    WithCallback();
    RunRoom({2, 0});
    g_CM.StartRoom();
    g_CM.SetActiveCamera(2);
    g_CM.m_cameras[3] = LooseCamera(); // the last slot, too
    g_CM.m_cameras[3]->m_ID = 3;
    EXPECT_EQ(Broken(), "");
    g_CM.EndRoom();
}

TEST_F(CameraValidate, ReportsACameraInTwoSlots)
{
    g_CM.m_cameras[3] = g_CM.m_cameras[0];
    EXPECT_EQ(Broken(), "R2: a camera stands in two slots");
    g_CM.m_cameras[3] = nullptr;
}

TEST_F(CameraValidate, ReportsACameraInTwoSlotsOfWhichNeitherIsItsOwn)
{
    CCamera* const moved = g_CM.m_cameras[0];
    g_CM.m_cameras[0] = nullptr;
    CCamera* const other = g_CM.m_cameras[1];
    g_CM.m_cameras[1] = g_CM.m_cameras[3] = moved;
    EXPECT_EQ(Broken(), "R2: a camera stands in two slots");
    g_CM.m_cameras[0] = moved;
    g_CM.m_cameras[1] = other;
    g_CM.m_cameras[3] = nullptr;
}

TEST_F(CameraValidate, ReportsACameraInItsOwnSlotAndTheFirst)
{
    CCamera* const first = g_CM.m_cameras[0];
    g_CM.m_cameras[0] = g_CM.m_cameras[2];
    EXPECT_EQ(Broken(), "R2: a camera stands in two slots");
    g_CM.m_cameras[0] = first;
}

TEST_F(CameraValidate, ReportsAnIdentifierThatIsNotTheSlot)
{
    for (int slot : {0, 2})
    {
        g_CM.m_cameras[slot]->m_ID = 3;
        EXPECT_EQ(Broken(), "R1: a camera's identifier is not its slot") << slot;
        g_CM.m_cameras[slot]->m_ID = slot;
    }
}

TEST_F(CameraValidate, ReportsAnActiveCameraThatIsGone)
{
    CCamera* const outside = LooseCamera();
    outside->m_ID = 0; // the number of a camera that is there
    g_CM.m_activeCamera = outside;
    EXPECT_EQ(Broken(), "R3: the active camera is not in the table");
    g_CM.m_activeCamera = nullptr;
    FreeLoose(outside);
}

TEST_F(CameraValidate, ReportsARoomsCameraThatIsGoneInWhateverEntry)
{
    CCamera* const outside = LooseCamera();
    for (int entry : {0, ROOM_CAMERAS - 1})
    {
        g_CM.m_roomcameras[entry] = outside;
        EXPECT_EQ(Broken(), "R3: a room's camera is not in the table") << entry;
        g_CM.m_roomcameras[entry] = nullptr;
    }
    FreeLoose(outside);
}

TEST_F(CameraValidate, ReportsAProxyThatPointsElsewhere)
{
    CCamera& camera = WithCallback();
    for (CCamera* elsewhere : {static_cast<CCamera*>(nullptr), g_CM.m_cameras[0]})
    {
        camera.pGCProxy->pCamObj = elsewhere;
        EXPECT_EQ(Broken(), "R4: a proxy does not point back at its camera");
    }
    camera.pGCProxy->pCamObj = &camera;
}

TEST_F(CameraValidate, ReportsACallableWithoutAProxyInEachOfTheThreeFields)
{
    Callable* const callable = NewCallable();
    CCamera& camera = *g_CM.m_cameras[2];
    for (RValue* field : {&camera.m_beginScript, &camera.m_endScript, &camera.m_updateScript})
    {
        *field = OfObject(callable); // stored around the setter
        EXPECT_EQ(Broken(), "R4: a camera holds a callable object but has no proxy");
        *field = Real(-1);
    }
}

TEST_F(CameraValidate, ReportsACachedSlotOutsideOfTheTableOnEitherSide)
{
    for (int slot : {-2, 4, INT_MAX, INT_MIN})
    {
        g_CM.m_lastCamPos = slot;
        EXPECT_EQ(Broken(), "R5: the cached slot lies outside the table") << slot;
    }
    for (int slot : {-1, 0, 3})
    {
        g_CM.m_lastCamPos = slot;
        EXPECT_EQ(Broken(), "") << slot;
    }
}
} // namespace
