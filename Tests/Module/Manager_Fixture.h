#pragma once
// What the tests around the manager share: tables of cameras, rooms with cameras in their views, loose cameras.

#include "Tests/Support/Fixture.h"

#include <climits>
#include <initializer_list>
#include <string>
#include <vector>

namespace Recording
{
constexpr const char* MODULE_TAG = "Files/Graphics/Graphics_Support";

class ManagerTest : public ModuleTest
{
protected:
    static void CreateCameras(int count)
    {
        for (int i = 0; i < count; ++i)
            g_CM.CreateCamera();
    }

    // Identifiers by slot; -2 for a free slot, so that a camera whose identifier is -1 shows.
    static std::vector<int> Slots()
    {
        std::vector<int> slots;
        for (int i = 0; i < g_CM.m_cameraListSize; ++i)
            slots.push_back(g_CM.m_cameras[i] != nullptr ? g_CM.m_cameras[i]->m_ID : -2);
        return slots;
    }

    // The room list's identifiers; -1 for an empty entry.
    static std::vector<int> RoomList()
    {
        std::vector<int> list;
        for (int i = 0; i < ROOM_CAMERAS; ++i)
            list.push_back(g_CM.m_roomcameras[i] != nullptr ? g_CM.m_roomcameras[i]->m_ID : -1);
        return list;
    }

    // A room whose first views have these cameras; it runs, the room list is not built yet.
    static CRoom* RunRoom(std::initializer_list<int> cameraIDs)
    {
        Run_Room = NewRoom(1024, 768);
        int view = 0;
        for (int id : cameraIDs)
            Run_Room->r_view[view++]->cameraID = id;
        return Run_Room;
    }

    // A camera that no table holds, made as the manager makes its own: the manager can free it once it is placed.
    static CCamera* LooseCamera()
    {
        return new (MemoryManager::Alloc(sizeof(CCamera), "Tests/Module", __LINE__, true)) CCamera;
    }
    static void FreeLoose(CCamera* camera)
    {
        camera->~CCamera();
        MemoryManager::Free(camera);
    }

    static void SetStrings(CCamera& camera, const char* begin, const char* end, const char* update)
    {
        Owned beginValue(NewString(begin)), endValue(NewString(end)), updateValue(NewString(update));
        camera.SetBeginScript(&beginValue);
        camera.SetEndScript(&endValue);
        camera.SetUpdateScript(&updateValue);
        Errors().clear();
    }

    static void SetBegin(CCamera& camera, RValue value) { camera.SetBeginScript(&value); }
    static void SetEnd(CCamera& camera, RValue value) { camera.SetEndScript(&value); }
    static void SetUpdate(CCamera& camera, RValue value) { camera.SetUpdateScript(&value); }

    static std::string Broken()
    {
        const char* rule = g_CM.Validate();
        return rule != nullptr ? rule : "";
    }

    // Each test leaves a registry that keeps its rules; one that breaks them on purpose says so.
    bool m_keepsTheRules = true;

    void TearDown() override
    {
        if (m_keepsTheRules)
        {
            EXPECT_EQ(Broken(), "");
        }
        ModuleTest::TearDown();
    }
};

// Every integer that can name no camera of a small table.
inline std::vector<int> UnknownIdentifiers() { return {INT_MIN, -1000, -2, 99, 100000, 16777216, INT_MAX}; }
} // namespace Recording
