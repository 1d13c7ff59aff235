// Look-ups by identifier: the cached slot, the room's list, the slot of that number, the scan.
#include "Tests/Module/Manager_Fixture.h"

#include <cstdlib>
#include <gmock/gmock.h>
#include <sys/mman.h>
#include <unistd.h>

using namespace Recording;
using testing::ElementsAre;

namespace
{
using CameraLookup = ManagerTest;

// ---- look-up ----
TEST_F(CameraLookup, ScanHitMovesTheCache)
{
    CreateCameras(5);
    EXPECT_EQ(g_CM.GetCamera(1), g_CM.m_cameras[1]);
    EXPECT_EQ(g_CM.m_lastCamPos, 1);
    EXPECT_EQ(g_CM.GetCamera(4), g_CM.m_cameras[4]);
    EXPECT_EQ(g_CM.m_lastCamPos, 4);
}

TEST_F(CameraLookup, EveryCameraIsFoundWithNothingCached)
{
    CreateCameras(9);
    for (int id = 0; id < 9; ++id)
    {
        g_CM.m_lastCamPos = -1;
        EXPECT_EQ(g_CM.GetCamera(id), g_CM.m_cameras[id]) << id;
    }
}

TEST_F(CameraLookup, RoomListHitLeavesTheCache)
{
    CreateCameras(4);
    RunRoom({2});
    g_CM.BuildRoomCameraList();
    g_CM.GetCamera(0);
    EXPECT_EQ(g_CM.GetCamera(2), g_CM.m_cameras[2]);
    EXPECT_EQ(g_CM.m_lastCamPos, 0);
}

TEST_F(CameraLookup, ARoomCameraFromOutsideTheTableIsFoundBeforeTheTablesWhateverWasLookedUpBefore)
{
    CreateCameras(3);
    g_CM.m_cameras[2]->SetID(7);
    g_CM.m_cameras[2]->SetID(2); // nothing is known of the table now
    CCamera outside;
    outside.SetID(1);
    g_CM.m_roomcameras[0] = &outside;
    g_CM.m_lastCamPos = -1;
    EXPECT_EQ(g_CM.GetCamera(0), g_CM.m_cameras[0]); // searches the table
    EXPECT_EQ(g_CM.GetCamera(1), &outside);
    g_CM.m_roomcameras[0] = nullptr;
    EXPECT_EQ(g_CM.GetCamera(1), g_CM.m_cameras[1]);
}

TEST_F(CameraLookup, MinusOneIsNoCamera)
{
    EXPECT_EQ(g_CM.GetCamera(-1), nullptr);
    CreateCameras(3);
    EXPECT_EQ(g_CM.GetCamera(-1), nullptr);
    EXPECT_EQ(g_CM.m_lastCamPos, 2);
}

TEST_F(CameraLookup, UnknownIdentifiersAreNoCameraAndLeaveTheCache)
{
    CreateCameras(3);
    g_CM.GetCamera(1);
    for (int id : UnknownIdentifiers())
        EXPECT_EQ(g_CM.GetCamera(id), nullptr) << id;
    EXPECT_EQ(g_CM.GetCamera(3), nullptr) << "the free slot";
    EXPECT_EQ(g_CM.GetCamera(4), nullptr) << "one past the table";
    EXPECT_EQ(g_CM.m_lastCamPos, 1);
}

TEST_F(CameraLookup, CachedSlotOutsideTheTableIsNotRead)
{
    CreateCameras(3);
    for (int slot : {4, 5, INT_MAX, -2, INT_MIN})
    {
        g_CM.m_lastCamPos = slot;
        EXPECT_EQ(g_CM.GetCamera(1), g_CM.m_cameras[1]) << slot;
        EXPECT_EQ(g_CM.m_lastCamPos, 1) << slot;
        g_CM.m_lastCamPos = slot;
        EXPECT_EQ(g_CM.GetCamera(77), nullptr) << slot;
        g_CM.m_lastCamPos = slot;
        EXPECT_EQ(g_CM.FindCameraInList(2), 2) << slot;
    }
    g_CM.m_lastCamPos = INT_MAX;
    g_CM.DestroyCamera(0);
    EXPECT_THAT(Slots(), ElementsAre(-2, 1, 2, -2));
}

TEST_F(CameraLookup, CachedFreeSlotIsPassedOver)
{
    CreateCameras(3);
    g_CM.m_lastCamPos = 3;
    EXPECT_EQ(g_CM.GetCamera(2), g_CM.m_cameras[2]);
    EXPECT_EQ(g_CM.m_lastCamPos, 2);
}

// ---- look-up where identifiers are not slots ----
class CameraLookupOfForeignIdentifiers : public ManagerTest
{
protected:
    CameraLookupOfForeignIdentifiers()
    {
        m_keepsTheRules = false;
        CreateCameras(6);
    }
    static CCamera* At(int slot) { return g_CM.m_cameras[slot]; }
    static CCamera* Look(int id, int cached)
    {
        g_CM.m_lastCamPos = cached;
        return g_CM.GetCamera(id);
    }
};

TEST_F(CameraLookupOfForeignIdentifiers, TheLowestSlotOfAnIdentifierWins)
{
    At(4)->SetID(2);
    EXPECT_EQ(Look(2, -1), At(2));
    At(1)->SetID(2);
    EXPECT_EQ(Look(2, -1), At(1));
    EXPECT_EQ(g_CM.m_lastCamPos, 1);
}

TEST_F(CameraLookupOfForeignIdentifiers, TheCachedSlotWinsOverALowerOne)
{
    At(4)->SetID(2);
    EXPECT_EQ(Look(2, 4), At(4));
    EXPECT_EQ(g_CM.m_lastCamPos, 4);
}

TEST_F(CameraLookupOfForeignIdentifiers, ACameraIsNotFoundUnderItsSlotAnyMore)
{
    At(3)->SetID(700);
    EXPECT_EQ(Look(3, 3), nullptr);
    EXPECT_EQ(g_CM.m_lastCamPos, 3);
    EXPECT_EQ(Look(700, -1), At(3));
    EXPECT_EQ(g_CM.m_lastCamPos, 3);
}

TEST_F(CameraLookupOfForeignIdentifiers, NegativeIdentifiersAreFoundButMinusOneIsNotScanned)
{
    At(3)->SetID(-5);
    EXPECT_EQ(Look(-5, -1), At(3));
    At(3)->SetID(-1);
    EXPECT_EQ(Look(-1, -1), nullptr);
    EXPECT_EQ(Look(-1, 3), At(3)) << "the cached slot is asked before -1 is refused";
}

TEST_F(CameraLookupOfForeignIdentifiers, TheRoomListIsAskedBeforeTheTableInItsOrder)
{
    for (int slot : {3, 4, 5})
        At(slot)->SetID(1);
    g_CM.m_roomcameras[8] = At(3);
    EXPECT_EQ(Look(1, -1), At(3));
    g_CM.m_roomcameras[5] = At(4);
    EXPECT_EQ(Look(1, -1), At(4));
    g_CM.m_roomcameras[0] = At(5);
    EXPECT_EQ(Look(1, -1), At(5));
    EXPECT_EQ(Look(1, 1), At(1)) << "the cached slot comes first";
    EXPECT_EQ(g_CM.m_lastCamPos, 1);
}

TEST_F(CameraLookupOfForeignIdentifiers, RestoredIdentifiersAreFoundAsBefore)
{
    At(4)->SetID(2);
    EXPECT_EQ(Look(2, -1), At(2));
    At(4)->SetID(4);
    for (int id = 0; id < 6; ++id)
        EXPECT_EQ(Look(id, -1), At(id)) << id;
    EXPECT_EQ(Broken(), "");
}

TEST_F(CameraLookupOfForeignIdentifiers, ReadingARecordIntoARegisteredCameraIsNoticed)
{
    EXPECT_EQ(Look(2, -1), At(2));
    CCamera loaded;
    loaded.SetID(2);
    Buffer record;
    loaded.Serialize(&record);
    At(1)->DeSerialize(&record);
    EXPECT_EQ(Look(2, -1), At(1));
}

TEST_F(CameraLookupOfForeignIdentifiers, EverySearchTakesTheLowestSlot)
{
    At(4)->SetID(2);
    g_CM.m_lastCamPos = -1;
    EXPECT_EQ(g_CM.FindCameraInList(2), 2);
    g_CM.m_lastCamPos = -1;
    g_CM.SetActiveCamera(2);
    EXPECT_EQ(g_CM.GetActiveCamera(), At(2));
    g_CM.m_lastCamPos = -1;
    g_CM.DestroyCamera(2);
    EXPECT_EQ(At(2), nullptr);
    EXPECT_EQ(Look(2, -1), At(4));
}

TEST_F(CameraLookupOfForeignIdentifiers, ValidateNamesTheBrokenRule)
{
    EXPECT_EQ(Broken(), "");
    At(4)->SetID(2);
    EXPECT_THAT(Broken(), testing::HasSubstr("R1"));
}

// ---- members that a host wrote by hand ----
TEST_F(CameraLookupOfForeignIdentifiers, AWrittenIdentifierIsFoundAndTheOldOneIsNot)
{
    EXPECT_EQ(Look(1, -1), At(1));
    At(1)->m_ID = 77;
    for (int cached : {-1, 1, 4})
    {
        EXPECT_EQ(Look(1, cached), nullptr) << cached;
        EXPECT_EQ(g_CM.m_lastCamPos, cached);
        EXPECT_EQ(Look(77, cached), At(1)) << cached;
        EXPECT_EQ(g_CM.m_lastCamPos, 1);
    }
}

TEST_F(CameraLookupOfForeignIdentifiers, EveryOperationGoesByAWrittenIdentifier)
{
    CCamera* const camera = At(1);
    Look(1, -1);
    camera->m_ID = 77;
    g_CM.m_lastCamPos = -1;
    EXPECT_EQ(g_CM.FindCameraInList(1), -1);
    EXPECT_EQ(g_CM.FindCameraInList(77), 1);
    EXPECT_EQ(g_CM.CloneCamera(1), nullptr);
    g_CM.SetActiveCamera(1);
    EXPECT_EQ(g_CM.GetActiveCamera(), nullptr);
    g_CM.SetActiveCamera(77);
    EXPECT_EQ(g_CM.GetActiveCamera(), camera);
    g_CM.DestroyCamera(1);
    EXPECT_EQ(At(1), camera);
    g_CM.DestroyCamera(77);
    EXPECT_EQ(At(1), nullptr);
}

TEST_F(CameraLookupOfForeignIdentifiers, ARoomsListGoesByAWrittenIdentifier)
{
    Look(1, -1);
    At(1)->m_ID = 77;
    RunRoom({1, 77});
    g_CM.BuildRoomCameraList();
    EXPECT_THAT(RoomList(), ElementsAre(-1, -1, 77, -1, -1, -1, -1, -1, -1));
}

TEST_F(CameraLookupOfForeignIdentifiers, ATableThatAHostReorderedIsAnsweredByIdentifier)
{
    Look(1, -1);
    std::swap(g_CM.m_cameras[1], g_CM.m_cameras[4]);
    EXPECT_EQ(Look(1, -1), At(4));
    EXPECT_EQ(Look(4, -1), At(1));
}

TEST_F(CameraLookupOfForeignIdentifiers, OfTwoCamerasThatWereWrittenTheSameNumberTheOneInItsSlotWins)
{
    At(1)->m_ID = 3;
    EXPECT_EQ(Look(3, -1), At(3));
    EXPECT_EQ(Look(3, 1), At(1)) << "the cached slot comes first";
    g_CM.m_roomcameras[4] = At(1);
    EXPECT_EQ(Look(3, -1), At(1)) << "the room's list comes first";
}

TEST_F(CameraLookupOfForeignIdentifiers, AnUnregisteredCamerasNumberChangesNothingForTheTable)
{
    CCamera loose;
    loose.SetID(3);
    CCamera read;
    Buffer record;
    loose.Serialize(&record);
    read.DeSerialize(&record);
    At(1)->m_ID = 3;
    EXPECT_EQ(Look(3, -1), At(3)) << "not the lowest slot: no registered camera was renumbered";
}

TEST_F(CameraLookupOfForeignIdentifiers, CleaningForgetsThatCamerasWereRenumbered)
{
    At(1)->SetID(3);
    g_CM.Clean();
    ForgetStaleEntries();
    CreateCameras(4);
    At(1)->m_ID = 3;
    EXPECT_EQ(Look(3, -1), At(3));
}

// ---- what a look-up reads ----

// A table of three pages of memory, of which only the middle one may be touched: a walk along the table ends the
// process. The first camera of the test stands in the middle.
class GuardedTable
{
public:
    explicit GuardedTable(CCamera* camera) : m_cameras(g_CM.m_cameras), m_size(g_CM.m_cameraListSize)
    {
        const size_t page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
        const size_t entries = page / sizeof(CCamera*);
        m_bytes = 3 * page;
        m_pages = mmap(nullptr, m_bytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        CCamera** const table = static_cast<CCamera**>(m_pages);
        if (m_pages == MAP_FAILED || mprotect(table + entries, page, PROT_READ | PROT_WRITE) != 0)
            std::abort();
        slot = static_cast<int>(entries + entries / 2);
        table[slot] = camera;
        camera->m_ID = slot;
        g_CM.m_cameras = table;
        g_CM.m_cameraListSize = static_cast<int>(3 * entries);
        g_CM.m_lastCamPos = -1;
    }
    GuardedTable(const GuardedTable&) = delete;
    GuardedTable& operator=(const GuardedTable&) = delete;
    ~GuardedTable()
    {
        g_CM.m_cameras = m_cameras;
        g_CM.m_cameraListSize = m_size;
        munmap(m_pages, m_bytes);
    }

    int slot;

private:
    CCamera** m_cameras;
    int32_t m_size;
    void* m_pages;
    size_t m_bytes;
};

class CameraLookupOfATable : public ManagerTest
{
protected:
    // What is done with a camera of a guarded table, in a process of its own.
    template <typename Use> static void ExpectNoWalk(Use use)
    {
        const auto run = [use]
        {
            CCamera* const camera = LooseCamera();
            const GuardedTable table(camera);
            use(camera, table.slot);
            std::_Exit(EXIT_SUCCESS);
        };
        EXPECT_EXIT(run(), testing::ExitedWithCode(EXIT_SUCCESS), "") << "the whole table was read";
    }
};

TEST_F(CameraLookupOfATable, IsNotWalkedForACameraThatIsFound)
{
    ExpectNoWalk([](CCamera*, int slot) { std::_Exit(g_CM.GetCamera(slot) != nullptr ? EXIT_SUCCESS : 5); });
    ExpectNoWalk([](CCamera*, int slot) { std::_Exit(g_CM.FindCameraInList(slot) == slot ? EXIT_SUCCESS : 5); });
    ExpectNoWalk([](CCamera*, int slot) { g_CM.SetActiveCamera(slot); });
    ExpectNoWalk([](CCamera*, int slot) { g_CM.DestroyCamera(slot); });
}

TEST_F(CameraLookupOfATable, IsNotWalkedByTheUpdateOfACameraWithAnUpdateScript)
{
    ExpectNoWalk(
        [](CCamera* camera, int)
        {
            g_CM.m_pScriptInstance = NewInstance(100001, 0.0f, 0.0f);
            SetUpdate(*camera, Real(7.0));
            camera->SetViewDirty();
            camera->CameraUpdate();
            std::_Exit(camera->IsViewDirty() ? 5 : EXIT_SUCCESS);
        });
}
} // namespace
