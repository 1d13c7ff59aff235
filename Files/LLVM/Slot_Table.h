#pragma once

// A table of objects by slot, shared by the host and by whoever puts objects into it (Camera_GCProxy).
// A free entry is null. The free list is a stack of slots; it may hold stale slots, which were taken meanwhile.
// Both vectors have m_nCapacity entries and come from KvRealloc.
template <typename T> struct KvSlot
{
    T** m_ppEntries;
    int m_nCapacity;
    int m_nCount;    // entries in use
    int m_lastFreed; // where the search for a free entry starts when the free list is empty
    int* m_freeSlotStack;
    int m_slotStackSize; // length of the free list
};
