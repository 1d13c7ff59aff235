#pragma once

// A table of objects by slot, shared by the host and whoever places objects in it (Camera_GCProxy).
// A free entry is null; free indices wait on a stack, which may hold stale indices of entries taken meanwhile.
// Both vectors have m_nCapacity entries and come from KvRealloc.
template <typename T> struct KvSlot
{
    T** m_ppEntries;
    int m_nCapacity;
    int m_nCount;    // entries in use
    int m_lastFreed; // where the search for a free entry starts once the stack is dry
    int* m_freeSlotStack;
    int m_slotStackSize; // indices on the stack
};
