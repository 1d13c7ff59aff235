#pragma once
// The host's allocator, as the module sees it.

#include <cstddef>

// Every block is 8-byte aligned and carries the source tag of its caller, for the host's allocation tracking.
// A refused request answers null; the caller goes on without the block.
// Alive before main and after it: the camera manager's constructor and destructor allocate and free.
class MemoryManager
{
public:
    // clear: true for a new block, which then comes zero-filled.
    static void* Alloc(size_t size, const char* file, int line, bool clear);

    // Moves a block to a new size and keeps its bytes up to the smaller of both sizes. A null block is an Alloc.
    // On refusal the old block stays as it was. What the bytes added hold is not promised.
    static void* ReAlloc(void* block, size_t size, const char* file, int line, bool clear);

    // Takes null.
    static void Free(void* block);
};

// The allocator of value storage: string texts and the collector's slot tables. KvFree takes null. KvRealloc takes null
// for a new block and keeps the bytes of an old one; a refused request answers null and leaves the old block as it was.
void KvFree(const void* block);
void* KvRealloc(void* block, int size);

// Grows a table to count entries; null when refused, the table is then as before. The added entries are not cleared.
// Growth is tagged with this header, so that a host's report tells tables from single blocks.
template <typename T> inline T* KvGrowTable(T* table, size_t count)
{
    return static_cast<T*>(
        MemoryManager::ReAlloc(table, count * sizeof(T), "Platform/Memory_Manager.h", __LINE__, false));
}
