#include "Files/Graphics/Camera_GCProxy.h"

#include "Files/Graphics/Camera.h"
#include "Files/Graphics/Fatal.h"
#include "Platform/Memory_Manager.h"

#include <algorithm>
#include <climits>
#include <cstdint>

using namespace CameraModule;

namespace
{

constexpr int NO_SLOT = -1; // sentinel: nothing was found

using SlotTable = KvSlot<KvObjectBase>;

// The number of slots that the collector is sweeping: nothing may be placed among them.
int64_t SweptWidth() { return std::max<int64_t>(int64_t{g_GCrangeend} - g_GCrangestart, 0); }

bool IsSwept(int slot) { return slot >= g_GCrangestart && slot < g_GCrangeend; }

bool IsFree(const SlotTable& table, int slot)
{
    return slot >= 0 && slot < table.m_nCapacity && table.m_ppEntries[slot] == nullptr;
}

template <typename T> T* Resize(T* vector, int64_t count)
{
    const int64_t bytes = count * static_cast<int64_t>(sizeof(T));
    T* const resized = bytes <= INT_MAX ? static_cast<T*>(KvRealloc(vector, static_cast<int>(bytes))) : nullptr;
    if (resized == nullptr)
        Fatal("out of memory for the collector's slot table");
    return resized;
}

// Growth is by half, and by one slot at least. The new slots go onto the free list from the highest down: the lowest is
// taken first.
void Grow(SlotTable& table)
{
    const int64_t old = table.m_nCapacity;
    const int64_t capacity = std::max((old + SweptWidth()) * 3 / 2, old + 1);
    table.m_ppEntries = Resize(table.m_ppEntries, capacity);
    table.m_freeSlotStack = Resize(table.m_freeSlotStack, capacity);
    std::fill(table.m_ppEntries + old, table.m_ppEntries + capacity, nullptr);
    table.m_nCapacity = static_cast<int>(capacity);
    for (int64_t slot = capacity - 1; slot >= old && table.m_slotStackSize < capacity; --slot)
        table.m_freeSlotStack[table.m_slotStackSize++] = static_cast<int>(slot);
}

// The top of the free list. Slots that were taken meanwhile or are being swept are dropped from the list.
int PopFreeSlot(SlotTable& table)
{
    while (table.m_slotStackSize > 0)
    {
        const int slot = table.m_freeSlotStack[--table.m_slotStackSize];
        if (!IsSwept(slot) && IsFree(table, slot))
            return slot;
    }
    return NO_SLOT;
}

// Linear search, for an empty free list: from where the last search ended up to the swept slots, then from behind them,
// wrapping around the table's end.
int ScanForFreeSlot(SlotTable& table)
{
    const int64_t capacity = table.m_nCapacity;
    for (int slot = std::max(table.m_lastFreed, 0); slot < std::min(g_GCrangestart, table.m_nCapacity); ++slot)
    {
        if (IsFree(table, slot))
            return slot;
    }
    const int64_t start = std::max(g_GCrangeend, table.m_lastFreed);
    int64_t slot = start;
    for (int64_t left = capacity - SweptWidth() - (start - g_GCrangeend); left > 0; --left, ++slot)
    {
        if (slot >= capacity)
            slot = 0;
        if (IsFree(table, static_cast<int>(slot)))
            return static_cast<int>(slot);
    }
    return NO_SLOT;
}

int FindFreeSlot(SlotTable& table)
{
    const int popped = PopFreeSlot(table);
    if (popped != NO_SLOT)
        return popped;
    const int scanned = ScanForFreeSlot(table);
    if (scanned != NO_SLOT)
        table.m_lastFreed = scanned + 1;
    return scanned;
}

int TakeSlot(SlotTable& table, KvObjectBase* object)
{
    if (table.m_nCount >= table.m_nCapacity - SweptWidth())
        Grow(table);
    int slot = FindFreeSlot(table);
    if (slot == NO_SLOT)
    {
        Grow(table);
        slot = PopFreeSlot(table);
    }
    if (slot == NO_SLOT)
        Fatal("the collector's slot table is full after growing");
    table.m_ppEntries[slot] = object;
    ++table.m_nCount;
    return slot;
}

} // namespace

Camera_GCProxy::Camera_GCProxy(CCamera* camera) : KvObjectBase(0, OBJECT_VARIABLE_MASK), pCamObj(camera)
{
    m_slot = TakeSlot(g_slotObjects, this);
    if (g_fGarbageCollection)
    {
        m_gcGen = GetNewObjGCGen();
        m_gcCounter = ms_currentCounter;
        g_GCGens[m_gcGen].UpdateRange(m_slot);
    }
    m_kind = OBJECT_KIND_CONTAINER;
    AddGlobalObject(this);
}

Camera_GCProxy::~Camera_GCProxy() = default;

void Camera_GCProxy::Detach()
{
    pCamObj = nullptr;
    RemoveGlobalObject(this);
}

bool Camera_GCProxy::Mark4GC(uint32_t* marks, int count)
{
    const bool marked = KvObjectBase::Mark4GC(marks, count);
    if (marked && pCamObj != nullptr)
        pCamObj->Mark4GC(marks, count);
    return marked;
}

bool Camera_GCProxy::Free(bool freeVars)
{
    FreeVars(this, freeVars, nullptr);
    delete this;
    return true;
}

bool Camera_GCProxy::ThreadFree(bool freeVars, GCContext* context)
{
    FreeVars(this, freeVars, context);
    delete this;
    return true;
}
