#include "Runner/Host/Slot_Table.h"

#include "Platform/Memory_Manager.h"

#include <algorithm>
#include <climits>

KvSlot<KvObjectBase> g_slotObjects = {nullptr, 0, 0, 0, nullptr, 0};

namespace Runner
{
namespace
{
constexpr int NO_SLOT = -1;
using Table = KvSlot<KvObjectBase>;

int64_t SweptWidth() { return std::max<int64_t>(0, int64_t{g_GCrangeend} - g_GCrangestart); }

bool Placeable(const Table& table, int slot)
{
    return (slot < g_GCrangestart || slot >= g_GCrangeend) && table.m_ppEntries[slot] == nullptr;
}

template <typename T> bool Resize(T*& vector, int64_t count)
{
    const int64_t bytes = count * static_cast<int64_t>(sizeof(T));
    T* resized = bytes <= INT_MAX ? static_cast<T*>(KvRealloc(vector, static_cast<int>(bytes))) : nullptr;
    if (resized != nullptr)
        vector = resized;
    return resized != nullptr;
}

// Grows by half, and by the slots that a sweep blocks. New slots are pushed from the highest down, so that the lowest
// is taken first.
bool Grow(Table& table)
{
    const int64_t old = table.m_nCapacity;
    const int64_t capacity = std::max((old + SweptWidth()) * 3 / 2, old + 1);
    if (!Resize(table.m_ppEntries, capacity) || !Resize(table.m_freeSlotStack, capacity))
        return false;
    std::fill(table.m_ppEntries + old, table.m_ppEntries + capacity, nullptr);
    table.m_nCapacity = static_cast<int>(capacity);
    for (int slot = table.m_nCapacity - 1; slot >= old && table.m_slotStackSize < table.m_nCapacity; --slot)
        table.m_freeSlotStack[table.m_slotStackSize++] = slot;
    return true;
}

int PopSlot(Table& table)
{
    while (table.m_slotStackSize > 0)
    {
        const int slot = table.m_freeSlotStack[--table.m_slotStackSize];
        if (Placeable(table, slot))
            return slot;
    }
    return NO_SLOT;
}

int SearchSlot(Table& table)
{
    int slot = table.m_lastFreed;
    for (int left = table.m_nCapacity; left > 0; --left, ++slot)
    {
        if (slot >= table.m_nCapacity)
            slot = 0;
        if (Placeable(table, slot))
        {
            table.m_lastFreed = slot + 1;
            return slot;
        }
    }
    return NO_SLOT;
}
} // namespace

bool TakeSlot(KvObjectBase* object)
{
    Table& table = g_slotObjects;
    if (table.m_nCount >= table.m_nCapacity - SweptWidth() && !Grow(table))
        return false;
    int slot = PopSlot(table);
    if (slot == NO_SLOT) // PopSlot drops indices that are being swept, so a free slot may be missing from the stack
        slot = SearchSlot(table);
    if (slot == NO_SLOT)
        return false;
    table.m_ppEntries[slot] = object;
    ++table.m_nCount;
    object->m_slot = slot;
    return true;
}

void GiveSlotBack(KvObjectBase* object)
{
    Table& table = g_slotObjects;
    const int slot = object->m_slot;
    if (slot < 0 || slot >= table.m_nCapacity || table.m_ppEntries[slot] != object)
        return;
    table.m_ppEntries[slot] = nullptr;
    --table.m_nCount;
    object->m_slot = NO_SLOT;
    // Stale indices may fill the stack. A slot that finds no room on it is found by SearchSlot.
    if (table.m_slotStackSize < table.m_nCapacity)
        table.m_freeSlotStack[table.m_slotStackSize++] = slot;
    table.m_lastFreed = std::min(table.m_lastFreed, slot);
}

void FreeEmptyTable()
{
    if (g_slotObjects.m_nCount > 0)
        return;
    KvFree(g_slotObjects.m_ppEntries);
    KvFree(g_slotObjects.m_freeSlotStack);
    g_slotObjects = {nullptr, 0, 0, 0, nullptr, 0};
}

bool CheckTable(std::string& why)
{
    const Table& table = g_slotObjects;
    int count = 0;
    for (int slot = 0; slot < table.m_nCapacity; ++slot)
    {
        const KvObjectBase* object = table.m_ppEntries[slot];
        if (object != nullptr && object->m_slot != slot)
        {
            why = "slot table: slot " + std::to_string(slot) + " holds an object whose m_slot is " +
                  std::to_string(object->m_slot);
            return false;
        }
        count += object != nullptr ? 1 : 0;
    }
    if (count != table.m_nCount)
        why = "slot table: " + std::to_string(count) + " slots are in use, " + std::to_string(table.m_nCount) +
              " were counted";
    else if (table.m_slotStackSize < 0 || table.m_slotStackSize > table.m_nCapacity)
        why = "slot table: the stack of free slots has " + std::to_string(table.m_slotStackSize) + " entries";
    else
        return true;
    return false;
}
} // namespace Runner
