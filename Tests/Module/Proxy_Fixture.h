#pragma once
// Proxies of a test's own, and a slot table as full and as swept as the test likes.

#include "Tests/Module/Manager_Fixture.h"

#include <vector>

namespace Recording
{
class CameraProxy : public ManagerTest
{
protected:
    ~CameraProxy() override
    {
        if (m_proxy != nullptr)
            delete m_proxy;
    }

    // The test's own proxy, for a camera that does not know of it.
    Camera_GCProxy* NewProxy()
    {
        m_proxy = new Camera_GCProxy(&m_camera);
        return m_proxy;
    }
    int NextSlot()
    {
        const int slot = NewProxy()->m_slot;
        EXPECT_TRUE(slot >= 0 && slot < g_slotObjects.m_nCapacity && g_slotObjects.m_ppEntries[slot] == m_proxy);
        return slot;
    }
    void TearDown() override
    {
        if (m_proxy != nullptr && IsRoot(m_proxy))
            m_proxy->Detach();
        ManagerTest::TearDown();
        m_proxy = nullptr; // collected with everything that is no root
    }

    static std::vector<int> Stack()
    {
        return {g_slotObjects.m_freeSlotStack, g_slotObjects.m_freeSlotStack + g_slotObjects.m_slotStackSize};
    }
    static void Occupy(const std::vector<int>& slots)
    {
        for (int slot : slots)
            OccupySlot(slot);
    }
    static void Sweep(int start, int end)
    {
        g_GCrangestart = start;
        g_GCrangeend = end;
    }

    CCamera m_camera;
    Camera_GCProxy* m_proxy = nullptr;
};
} // namespace Recording
