// Memory that is refused: creations answer null, built-ins -1, the registry stays as it was, nothing is lost.
#include "Tests/Module/Manager_Fixture.h"

#include <gmock/gmock.h>

using namespace Recording;
using testing::ElementsAre;

namespace
{
// Everything that can be seen of the registry.
struct Picture
{
    std::vector<int> slots, room;
    int cached;
    size_t blocks;
    friend bool operator==(const Picture& a, const Picture& b)
    {
        return a.slots == b.slots && a.room == b.room && a.cached == b.cached && a.blocks == b.blocks;
    }
    friend void PrintTo(const Picture& picture, std::ostream* out)
    {
        *out << testing::PrintToString(picture.slots) << ", room " << testing::PrintToString(picture.room)
             << ", cached " << picture.cached << ", " << picture.blocks << " blocks";
    }
};

class CameraRefusal : public ManagerTest
{
protected:
    static Picture Look() { return {Slots(), RoomList(), g_CM.m_lastCamPos, LiveBlocks()}; }

    // A full table of two; camera 0 in the running room, 1 cached.
    CameraRefusal()
    {
        CreateCameras(2);
        RunRoom({0});
        g_CM.BuildRoomCameraList();
        g_CM.GetCamera(1);
        g_CM.SetActiveCamera(1);
    }
};

struct Creation
{
    const char* name;
    CCamera* (*create)();
};
void PrintTo(const Creation& creation, std::ostream* out) { *out << creation.name; }

class CameraCreationRefusal : public CameraRefusal, public testing::WithParamInterface<Creation>
{
};

TEST_P(CameraCreationRefusal, OfTheRecordIsNullAndChangesNothing)
{
    const Picture before = Look();
    RefuseRequest(1);
    EXPECT_EQ(GetParam().create(), nullptr);
    EXPECT_EQ(Look(), before);
    EXPECT_EQ(g_CM.GetActiveCamera(), g_CM.m_cameras[1]);
}

TEST_P(CameraCreationRefusal, OfTheTableIsNullAndFreesTheRecord)
{
    const Picture before = Look();
    CCamera** const table = g_CM.m_cameras;
    RefuseRequest(2);
    EXPECT_EQ(GetParam().create(), nullptr);
    EXPECT_EQ(Look(), before);
    EXPECT_EQ(g_CM.m_cameras, table);
}

TEST_P(CameraCreationRefusal, IsForgottenByTheNextCreation)
{
    for (int nth : {1, 2})
    {
        RefuseRequest(nth);
        GetParam().create();
    }
    const CCamera* camera = GetParam().create();
    ASSERT_NE(camera, nullptr);
    EXPECT_EQ(camera->m_ID, 2);
    EXPECT_THAT(Slots(), ElementsAre(0, 1, 2, -2));
}

CCamera* CreateFromView()
{
    KvRoomView view = {1, 0, 0, 640, 480, 0, 0, 640, 480, 32, 32, -1, -1, -1};
    return g_CM.CreateCameraFromView(&view);
}

INSTANTIATE_TEST_SUITE_P(Creations, CameraCreationRefusal,
                         testing::Values(Creation{"Create", [] { return g_CM.CreateCamera(); }},
                                         Creation{"Clone", [] { return g_CM.CloneCamera(1); }},
                                         Creation{"View", CreateFromView}),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_F(CameraRefusal, OfATableLeavesAPlacedCameraToItsCaller)
{
    CCamera* camera = LooseCamera();
    const Picture before = Look();
    for (int id : {-1, 2, 3, 4, 40})
    {
        RefuseRequest(1);
        g_CM.AddCameraToList(camera, id);
        EXPECT_EQ(Look(), before) << id;
        EXPECT_EQ(camera->m_ID, -1) << id;
    }
    RefuseRequest(0);
    FreeLoose(camera);
}

TEST_F(CameraRefusal, OfACloneKeepsItsSourcesReferences)
{
    Owned array(OfArray(NewArray(std::vector<double>{})));
    SetBegin(*g_CM.m_cameras[1], array);
    SetEnd(*g_CM.m_cameras[1], OfObject(NewCallable()));
    for (int nth : {1, 2})
    {
        RefuseRequest(nth);
        EXPECT_EQ(g_CM.CloneCamera(1), nullptr) << nth;
        EXPECT_EQ(ReferenceCount(array.pRefArray), 2) << nth;
        EXPECT_EQ(RootCount(), 1u) << nth;
    }
}

TEST_F(CameraRefusal, OfACreationIsMinusOneForScripts)
{
    const Picture before = Look();
    for (int nth : {1, 2})
    {
        RefuseRequest(nth);
        EXPECT_EQ(Describe(Call(F_CameraCreate, {})), "real -1") << nth;
        RefuseRequest(nth);
        EXPECT_EQ(Describe(Call(F_CameraCreateView, {Real(0.0), Real(0.0), Real(640.0), Real(480.0)})), "real -1")
            << nth;
    }
    EXPECT_EQ(Look(), before);
    EXPECT_EQ(Errors(), None());
}

TEST_F(CameraRefusal, OfAMatrixArrayIsMinusOneForScripts)
{
    for (TFunction getter : {F_CameraGetViewMat, F_CameraGetProjMat})
        for (int nth : {1, 2}) // the array record, then its elements
        {
            const size_t before = LiveBlocks();
            RefuseRequest(nth);
            const Owned result(Call(getter, {Real(0.0)}));
            EXPECT_EQ(Describe(result), "real -1") << nth;
            EXPECT_EQ(LiveBlocks(), before) << nth;
        }
    EXPECT_EQ(LiveArrays(), 0u);
}

// A registry whose table a host took away starts again from one entry.
TEST_F(CameraRefusal, OfNothingLetsAnEmptyTableGrowToOne)
{
    RenewManager();
    Run_Room = nullptr;
    MemoryManager::Free(g_CM.m_cameras);
    g_CM.m_cameras = nullptr;
    g_CM.m_cameraListSize = 0;
    EXPECT_EQ(g_CM.GetCamera(0), nullptr);
    EXPECT_EQ(g_CM.FindCameraInList(0), -1);
    EXPECT_EQ(Broken(), "");
    RefuseRequest(2);
    EXPECT_EQ(g_CM.CreateCamera(), nullptr);
    EXPECT_EQ(g_CM.m_cameraListSize, 0);
    const CCamera* camera = g_CM.CreateCamera();
    ASSERT_NE(camera, nullptr);
    EXPECT_EQ(camera->m_ID, 0);
    EXPECT_EQ(g_CM.m_cameraListSize, 1);
}

using CameraRefusalDeathTest = CameraRefusal;

TEST_F(CameraRefusalDeathTest, OfTheManagersOwnTablesEndsTheProgramWithAMessage)
{
    for (int nth : {1, 2})
        EXPECT_EXIT(
            {
                RefuseRequest(nth);
                CCameraManager manager;
            },
            testing::ExitedWithCode(EXIT_FAILURE), "camera: out of memory for the camera table")
            << nth;
}

// ---- every request of a whole scenario ----
class CameraScenarioRefusal : public ManagerTest
{
protected:
    static void PlaceLoose(int id)
    {
        void* block = MemoryManager::Alloc(sizeof(CCamera), "Tests/Module", __LINE__, true);
        if (block == nullptr)
            return;
        CCamera* camera = new (block) CCamera;
        g_CM.AddCameraToList(camera, id);
        if (camera->m_ID == -1)
            FreeLoose(camera);
    }

    static void Play()
    {
        Callable* callable = NewCallable();
        for (int i = 0; i < 5; ++i)
            if (CCamera* camera = g_CM.CreateCamera())
                SetBegin(*camera, OfObject(callable));
        RunRoom({0, 1, 2});
        g_CM.StartRoom();
        for (int id = 0; id < 5; ++id)
            g_CM.CloneCamera(id);
        CreateFromView();
        for (int id : {-1, 3, 11, 40, 200})
            PlaceLoose(id);
        g_CM.SetActiveCamera(40);
        Handlers();
        g_CM.DestroyCamera(2);
        g_CM.EndRoom();
        CreateFromView();
    }

    static void Handlers()
    {
        for (int i = 0; i < 3; ++i)
        {
            Call(F_CameraCreate, {});
            Call(F_CameraCreateView, {Real(0.0), Real(0.0), Real(640.0), Real(480.0), Real(30.0)});
        }
        for (int id = -1; id < 6; ++id)
        {
            const Owned view(Call(F_CameraGetViewMat, {Real(id)})), projection(Call(F_CameraGetProjMat, {Real(id)}));
        }
        Call(F_CameraApply, {Real(0.0)});
        Call(F_CameraDestroy, {Real(1.0)});
    }

    static size_t Cameras()
    {
        size_t count = 0;
        for (int slot : Slots())
            count += slot != -2 ? 1u : 0u;
        return count;
    }
};

TEST_F(CameraScenarioRefusal, OfAnyOneRequestLosesNothing)
{
    Play();
    const int requests = RequestCount();
    ASSERT_GT(requests, 40);
    for (int nth = 1; nth <= requests; ++nth)
    {
        StartAgain();
        RefuseRequest(nth);
        Play();
        RefuseRequest(0);
        EXPECT_EQ(Broken(), "") << "request " << nth;
        EXPECT_EQ(LiveBlocks(), 2 + Cameras()) << "request " << nth;
        EXPECT_EQ(LiveArrays(), 0u) << "request " << nth;
        EXPECT_EQ(Faults(), None()) << "request " << nth;
        EXPECT_NE(g_CM.CreateCamera(), nullptr) << "request " << nth;
    }
}

TEST_F(CameraScenarioRefusal, OfEveryRequestFromSomePointOnLosesNothing)
{
    for (size_t limit : {size_t(0), sizeof(CCamera*), 2 * sizeof(CCamera*), 8 * sizeof(CCamera*), sizeof(CCamera) - 1,
                         sizeof(CCamera), 56 * sizeof(CCamera*)})
    {
        StartAgain();
        RefuseAbove(limit);
        Play();
        RefuseAbove(SIZE_MAX);
        EXPECT_EQ(Broken(), "") << "limit " << limit;
        EXPECT_EQ(LiveBlocks(), 2 + Cameras()) << "limit " << limit;
        EXPECT_EQ(Faults(), None()) << "limit " << limit;
    }
}
} // namespace
