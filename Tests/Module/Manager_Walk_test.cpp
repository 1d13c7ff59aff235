// A long random walk over the manager's operations, compared with a simple model after every step.
#include "Tests/Module/Manager_Fixture.h"
#include "Tests/Module/Manager_Model.h"

#include <iostream>
#include <random>

using namespace Recording;

namespace
{
constexpr int LARGEST_TABLE = 200; // a walk begins anew above it

class Walk
{
public:
    Walk(uint32_t seed, bool changesIdentifiers) : m_random(seed), m_changesIdentifiers(changesIdentifiers)
    {
        m_callable = NewCallable();
        m_room = NewRoom(1024, 768);
    }

    // One operation on both; empty, or what differs afterwards.
    std::string Step()
    {
        const Operation& operation = OPERATIONS[Pick(std::size(OPERATIONS))];
        m_what = operation.name;
        (this->*operation.run)();
        return Difference();
    }

    const std::string& What() const { return m_what; }
    bool IsTooLarge() const { return m_model.Size() > LARGEST_TABLE; }
    // For a fresh g_CM.
    void BeginAnew()
    {
        m_model = {};
        Run_Room = nullptr;
        g_DefaultCameraID = -1;
        for (CViewGM* view : m_room->r_view)
            view->cameraID = -1;
    }

private:
    struct Operation
    {
        const char* name;
        void (Walk::*run)();
    };
    static const Operation OPERATIONS[21];

    uint32_t Pick(size_t count) { return static_cast<uint32_t>(m_random() % count); }
    bool OneIn(size_t count) { return Pick(count) == 0; }

    // Mostly a slot of the table, sometimes just outside it or far away.
    int AnyIdentifier()
    {
        static const int STRANGE[] = {INT_MIN, -7, -2, -1, 100000, INT_MAX};
        const int id = OneIn(16) ? STRANGE[Pick(std::size(STRANGE))]
                                 : static_cast<int>(Pick(static_cast<size_t>(m_model.Size()) + 2));
        m_what += " " + std::to_string(id);
        return id;
    }
    // A camera of the table, on both sides; false when there is none in the slot that came up.
    bool AnyCamera(ModelCamera*& camera)
    {
        const int slot = static_cast<int>(Pick(static_cast<size_t>(m_model.Size())));
        m_what += " at " + std::to_string(slot);
        camera = m_model.At(slot);
        return camera != nullptr;
    }
    static void Pair(ModelCamera* camera, CCamera* real)
    {
        ASSERT_EQ(camera == nullptr, real == nullptr);
        if (camera != nullptr)
            camera->real = real;
    }
    static CCamera* RealOf(const ModelCamera* camera) { return camera != nullptr ? camera->real : nullptr; }

    // ---- the operations ----
    void Create() { Pair(m_model.Create(), g_CM.CreateCamera()); }
    void CreateFromView()
    {
        KvRoomView view = {1, 0, 0, 320, 240, 0, 0, 320, 240, 0, 0, -1, -1, -1};
        Pair(m_model.Create(), g_CM.CreateCameraFromView(&view));
    }
    void Clone()
    {
        const int id = AnyIdentifier();
        Pair(m_model.Clone(id), g_CM.CloneCamera(id));
    }
    void Destroy()
    {
        const int id = AnyIdentifier();
        m_model.Destroy(id);
        g_CM.DestroyCamera(id);
    }
    void Get()
    {
        const int id = AnyIdentifier();
        EXPECT_EQ(g_CM.GetCamera(id), RealOf(m_model.Find(id)));
    }
    void FindSlot()
    {
        const int id = AnyIdentifier();
        EXPECT_EQ(g_CM.FindCameraInList(id), m_model.FindSlot(id));
    }
    void SetActive()
    {
        const int id = AnyIdentifier();
        m_model.SetActive(id);
        g_CM.SetActiveCamera(id);
    }
    void SetView()
    {
        const size_t view = Pick(ROOM_VIEWS);
        m_model.views[view] = m_room->r_view[view]->cameraID = AnyIdentifier();
    }
    void SetDefault() { m_model.defaultCamera = g_DefaultCameraID = AnyIdentifier(); }
    void StartRoom()
    {
        m_model.roomRuns = true;
        Run_Room = m_room;
        m_model.StartRoom();
        g_CM.StartRoom();
    }
    void EndRoom()
    {
        m_model.EndRoom();
        g_CM.EndRoom();
    }
    // The list is empty when no room runs: the host ends a room, before or after it lets go of it.
    void LeaveRoom()
    {
        const bool endsFirst = OneIn(2);
        if (endsFirst)
            EndRoom();
        m_model.roomRuns = false;
        Run_Room = nullptr;
        if (!endsFirst)
            EndRoom();
    }
    void BuildList()
    {
        m_model.BuildRoomList();
        g_CM.BuildRoomCameraList();
    }
    void SetHighPoint()
    {
        static const int STRANGE[] = {-1, INT_MIN, INT_MAX};
        const int limit = m_model.Size() < 32 ? m_model.Size() + 2 : 4;
        m_model.highPoint =
            OneIn(40) ? STRANGE[Pick(std::size(STRANGE))] : static_cast<int>(Pick(static_cast<size_t>(limit)));
        m_what += " " + std::to_string(m_model.highPoint);
        g_CM.m_InitialLoadHighPoint = m_model.highPoint;
    }
    void SetPersistent()
    {
        ModelCamera* camera;
        if (!AnyCamera(camera))
            return;
        camera->isPersistent = OneIn(2);
        camera->real->SetPersistent(camera->isPersistent);
    }
    void SetCallback()
    {
        ModelCamera* camera;
        if (!AnyCamera(camera))
            return;
        camera->holdsCallable = OneIn(2);
        camera->hasProxy = camera->hasProxy || camera->holdsCallable;
        RValue value = camera->holdsCallable ? OfObject(m_callable) : Int32(7);
        camera->real->SetBeginScript(&value);
    }
    void ForgetCache() { m_model.cached = g_CM.m_lastCamPos = -1; }
    void Place()
    {
        const int id = OneIn(8) ? -1 : static_cast<int>(Pick(static_cast<size_t>(m_model.Size()) + 8)) - 2;
        m_what += " " + std::to_string(id);
        if (!OccupantIsFoundByItsSlot(id))
            return;
        CCamera* camera =
            new (MemoryManager::Alloc(sizeof(CCamera), "Tests/Module/Manager_Walk_test", __LINE__, true)) CCamera;
        g_CM.AddCameraToList(camera, id);
        if (m_model.AddAt(camera, id))
            return;
        camera->~CCamera();
        MemoryManager::Free(camera);
    }
    void ChangeIdentifier()
    {
        ModelCamera* camera;
        if (!m_changesIdentifiers || !AnyCamera(camera))
            return;
        camera->id = AnyIdentifier();
        camera->real->SetID(camera->id);
    }

    // What a placement does to an occupant under a wrong identifier has tests of its own.
    bool OccupantIsFoundByItsSlot(int id)
    {
        if (m_model.At(id) == nullptr)
            return true;
        const int cached = m_model.cached;
        const bool isFound = m_model.FindSlot(id) == id;
        m_model.cached = cached;
        return isFound;
    }

    // ---- the comparison ----
    std::string Difference()
    {
        if (g_CM.m_cameraListSize != m_model.Size())
            return "table of " + std::to_string(g_CM.m_cameraListSize) + ", not " + std::to_string(m_model.Size());
        if (g_CM.m_lastCamPos != m_model.cached)
            return "cached " + std::to_string(g_CM.m_lastCamPos) + ", not " + std::to_string(m_model.cached);
        if (g_CM.m_activeCamera != RealOf(m_model.active))
            return "active camera";
        if ((g_CM.m_pScriptInstance != nullptr) != m_model.hasScriptInstance)
            return "script instance";
        const std::string slots = SlotDifference();
        return slots.empty() ? RuleDifference() : slots;
    }

    std::string SlotDifference()
    {
        for (int slot = 0; slot < m_model.Size(); ++slot)
        {
            const ModelCamera* camera = m_model.At(slot);
            const CCamera* real = g_CM.m_cameras[slot];
            if (real != RealOf(camera))
                return "slot " + std::to_string(slot);
            if (real != nullptr && (real->m_ID != camera->id || real->m_isClone != camera->isClone ||
                                    real->m_isPersistent != camera->isPersistent))
                return "camera in slot " + std::to_string(slot);
        }
        for (int i = 0; i < ROOM_CAMERAS; ++i)
            if (g_CM.m_roomcameras[i] != RealOf(m_model.room[static_cast<size_t>(i)]))
                return "room list entry " + std::to_string(i);
        return "";
    }

    std::string RuleDifference()
    {
        if (RootCount() != m_model.Proxies())
            return std::to_string(RootCount()) + " proxies, not " + std::to_string(m_model.Proxies());
        const char* rule = g_CM.Validate();
        if ((rule == nullptr) != m_model.IdentifiersAreSlots())
            return rule != nullptr ? rule : "a camera under a wrong identifier passes validation";
        return "";
    }

    std::mt19937 m_random;
    bool m_changesIdentifiers;
    std::string m_what;
    ManagerModel m_model;
    Callable* m_callable;
    CRoom* m_room;
};

const Walk::Operation Walk::OPERATIONS[21] = {{"Create", &Walk::Create},
                                              {"CreateFromView", &Walk::CreateFromView},
                                              {"Clone", &Walk::Clone},
                                              {"Destroy", &Walk::Destroy},
                                              {"Destroy", &Walk::Destroy},
                                              {"Destroy", &Walk::Destroy},
                                              {"Get", &Walk::Get},
                                              {"FindSlot", &Walk::FindSlot},
                                              {"SetActive", &Walk::SetActive},
                                              {"SetView", &Walk::SetView},
                                              {"SetDefault", &Walk::SetDefault},
                                              {"StartRoom", &Walk::StartRoom},
                                              {"LeaveRoom", &Walk::LeaveRoom},
                                              {"EndRoom", &Walk::EndRoom},
                                              {"BuildList", &Walk::BuildList},
                                              {"SetHighPoint", &Walk::SetHighPoint},
                                              {"SetPersistent", &Walk::SetPersistent},
                                              {"SetCallback", &Walk::SetCallback},
                                              {"ForgetCache", &Walk::ForgetCache},
                                              {"Place", &Walk::Place},
                                              {"ChangeIdentifier", &Walk::ChangeIdentifier}};

class ManagerWalk : public ManagerTest
{
protected:
    // Walks and answers how often it had to begin anew.
    int Go(uint32_t seed, bool changesIdentifiers, int steps)
    {
        std::cout << "seed " << seed << ", " << steps << " steps\n";
        g_fGarbageCollection = false; // script instances go at once
        Listen(0);
        Walk walk(seed, changesIdentifiers);
        int beginnings = 0;
        for (int step = 0; step < steps && !HasFailure(); ++step)
        {
            if (step % 64 == 0)
                Collect();
            if (walk.IsTooLarge())
            {
                RenewManager();
                walk.BeginAnew();
                ++beginnings;
            }
            EXPECT_EQ(walk.Step(), "") << "step " << step << ": " << walk.What();
        }
        return beginnings;
    }
};

TEST_F(ManagerWalk, AgreesWithTheModelAtEveryStep) { EXPECT_GT(Go(20260501u, false, 200000), 10); }

TEST_F(ManagerWalk, AgreesWithTheModelWhereIdentifiersAreNotSlots)
{
    m_keepsTheRules = false;
    EXPECT_GT(Go(777u, true, 100000), 10);
}

TEST_F(ManagerWalk, FindsEveryCameraOfALargeTable)
{
    constexpr int COUNT = 100000; // a scan for each would take minutes
    for (int id = 0; id < COUNT; ++id)
        g_CM.AddCameraToList(LooseCamera(), id);
    EXPECT_EQ(g_CM.m_cameraListSize, 131072);
    for (int id = COUNT - 1; id >= 0; --id)
        ASSERT_EQ(g_CM.GetCamera(id), g_CM.m_cameras[id]) << id;
    for (int id : {COUNT, COUNT + 1, 131071, 131072, 2 * COUNT}) // few: a camera that is not found costs a scan
        EXPECT_EQ(g_CM.GetCamera(id), nullptr) << id;
}
} // namespace
