// Platform/Memory_Manager.h and Platform/Lock.h.

#include "Host_Check/Check.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace HostCheck
{
namespace
{

constexpr char HEADER[] = "Platform/Memory_Manager.h";
constexpr char TAG[] = "Host_Check";
constexpr size_t SIZES[] = {1, 2, 7, 8, 24, 33, 1000, 65536};

unsigned char* Alloc(size_t size, bool clear)
{
    return static_cast<unsigned char*>(MemoryManager::Alloc(size, TAG, __LINE__, clear));
}

unsigned char* ReAlloc(void* block, size_t size, bool clear)
{
    return static_cast<unsigned char*>(MemoryManager::ReAlloc(block, size, TAG, __LINE__, clear));
}

bool IsAligned(const void* block) { return reinterpret_cast<uintptr_t>(block) % 8 == 0; }

// A new block, expected to be there.
unsigned char* Given(Trial& trial, size_t size)
{
    unsigned char* block = Alloc(size, false);
    trial.Expect(block != nullptr, "%zu bytes were refused", size);
    return block;
}

// The bytes 1, 2, 3... by which a block is known again.
void Number(unsigned char* block, size_t size)
{
    for (size_t i = 0; i < size; ++i)
        block[i] = static_cast<unsigned char>(i + 1);
}

void ExpectNumbered(Trial& trial, const unsigned char* block, size_t size, const char* what)
{
    for (size_t i = 0; i < size; ++i)
        if (!trial.Expect(block[i] == static_cast<unsigned char>(i + 1), "byte %zu of %s is 0x%02x, not 0x%02x", i,
                          what, static_cast<unsigned>(block[i]), static_cast<unsigned>((i + 1) & 0xFF)))
            return;
}

void ExpectZeros(Trial& trial, const unsigned char* block, size_t size)
{
    for (size_t i = 0; i < size; ++i)
        if (!trial.Expect(block[i] == 0, "byte %zu of a new block of %zu bytes is 0x%02x", i, size,
                          static_cast<unsigned>(block[i])))
            return;
}

void BlocksAreAligned(Trial& trial)
{
    constexpr size_t COUNT = sizeof SIZES / sizeof SIZES[0];
    unsigned char* blocks[COUNT];
    for (size_t i = 0; i < COUNT; ++i)
    {
        blocks[i] = Alloc(SIZES[i], false);
        trial.Expect(blocks[i] != nullptr, "%zu bytes were refused", SIZES[i]);
        trial.Expect(IsAligned(blocks[i]), "a block of %zu bytes lies at %p", SIZES[i], static_cast<void*>(blocks[i]));
    }
    for (unsigned char*& block : blocks)
    {
        block = ReAlloc(block, 40, false);
        trial.Expect(IsAligned(block), "a moved block of 40 bytes lies at %p", static_cast<void*>(block));
        MemoryManager::Free(block);
    }
}

// Blocks come back used: a host that never clears would pass on fresh pages.
void NewBlocksAreCleared(Trial& trial)
{
    for (const size_t size : SIZES)
        for (int round = 0; round < 3; ++round)
        {
            unsigned char* block = Alloc(size, true);
            if (!trial.Expect(block != nullptr, "%zu bytes were refused", size))
                return;
            ExpectZeros(trial, block, size);
            std::memset(block, 0xA5, size);
            MemoryManager::Free(block);
        }
}

void GrowthKeepsTheBytes(Trial& trial)
{
    unsigned char* block = Given(trial, 24);
    if (block == nullptr)
        return;
    Number(block, 24);
    block = ReAlloc(block, 4000, false);
    if (!trial.Expect(block != nullptr, "a growth from 24 to 4000 bytes was refused"))
        return;
    ExpectNumbered(trial, block, 24, "a block grown from 24 to 4000");
    block = ReAlloc(block, 10, false);
    if (!trial.Expect(block != nullptr, "a shrinking from 4000 to 10 bytes was refused"))
        return;
    ExpectNumbered(trial, block, 10, "a block shrunk to 10");
    MemoryManager::Free(block);
}

void ReAllocOfNullIsAlloc(Trial& trial)
{
    unsigned char* used = Given(trial, 64);
    if (used == nullptr)
        return;
    std::memset(used, 0xA5, 64);
    MemoryManager::Free(used);
    unsigned char* block = ReAlloc(nullptr, 64, true);
    if (!trial.Expect(block != nullptr, "ReAlloc(null, 64) answered null"))
        return;
    ExpectZeros(trial, block, 64);
    Number(block, 64);
    MemoryManager::Free(block);
}

void RefusedAllocIsNull(Trial& trial)
{
    trial.hooks.refuseMemory(true);
    void* const block = Alloc(32, true);
    trial.hooks.refuseMemory(false);
    trial.hooks.refuseMemory(true);
    void* const moved = ReAlloc(nullptr, 32, false);
    trial.hooks.refuseMemory(false);
    trial.Expect(block == nullptr, "Alloc answered %p while memory was refused", block);
    trial.Expect(moved == nullptr, "ReAlloc of null answered %p while memory was refused", moved);
    MemoryManager::Free(block);
    MemoryManager::Free(moved);
    void* const after = Alloc(32, true);
    trial.Expect(after != nullptr, "the request after a refusal was refused, too");
    MemoryManager::Free(after);
}

void RefusedGrowthKeepsTheBlock(Trial& trial)
{
    unsigned char* block = Given(trial, 24);
    if (block == nullptr)
        return;
    Number(block, 24);
    trial.hooks.refuseMemory(true);
    unsigned char* const moved = ReAlloc(block, 100000, false);
    trial.hooks.refuseMemory(false);
    if (!trial.Expect(moved == nullptr, "ReAlloc answered %p while memory was refused", static_cast<void*>(moved)))
        return;
    ExpectNumbered(trial, block, 24, "the block whose growth was refused");
    MemoryManager::Free(block);
}

void FreeTakesNull(Trial&) { MemoryManager::Free(nullptr); }
void KvFreeTakesNull(Trial&) { KvFree(nullptr); }

void ValueStorageKeepsTheBytes(Trial& trial)
{
    unsigned char* block = static_cast<unsigned char*>(KvRealloc(nullptr, 24));
    if (!trial.Expect(block != nullptr, "KvRealloc(null, 24) answered null"))
        return;
    Number(block, 24);
    block = static_cast<unsigned char*>(KvRealloc(block, 3000));
    if (!trial.Expect(block != nullptr, "KvRealloc of 24 bytes to 3000 answered null"))
        return;
    ExpectNumbered(trial, block, 24, "value storage grown from 24 to 3000");
    KvFree(block);
}

void RefusedValueStorageKeepsTheBlock(Trial& trial)
{
    unsigned char* block = static_cast<unsigned char*>(KvRealloc(nullptr, 24));
    if (!trial.Expect(block != nullptr, "KvRealloc(null, 24) answered null"))
        return;
    Number(block, 24);
    trial.hooks.refuseMemory(true);
    void* const moved = KvRealloc(block, 100000);
    trial.hooks.refuseMemory(false);
    if (!trial.Expect(moved == nullptr, "KvRealloc answered %p while memory was refused", moved))
        return;
    ExpectNumbered(trial, block, 24, "the value storage whose growth was refused");
    KvFree(block);
}

void TablesGrow(Trial& trial)
{
    unsigned char* table = KvGrowTable<unsigned char>(nullptr, 8);
    if (!trial.Expect(table != nullptr, "a table of 8 entries was refused"))
        return;
    Number(table, 8);
    table = KvGrowTable(table, 500);
    if (trial.Expect(table != nullptr, "a table of 500 entries was refused"))
        ExpectNumbered(trial, table, 8, "a table grown from 8 to 500");
    MemoryManager::Free(table);
}

// What the memory manager answered before main. Its destructor asks it again after main, when all checks are told: the
// exit status is all that is left to say it with.
struct Witness
{
    Witness() : block(MemoryManager::Alloc(48, TAG, __LINE__, true)) {}
    ~Witness()
    {
        MemoryManager::Free(block);
        void* const late = MemoryManager::Alloc(48, TAG, __LINE__, true);
        if (late == nullptr)
        {
            std::fputs("Bail out! memory.alive: the memory manager answers null after main\n", stderr);
            std::_Exit(1);
        }
        MemoryManager::Free(late);
    }
    void* block;
};
const Witness s_witness;

void AliveBeforeMain(Trial& trial) { trial.Expect(s_witness.block != nullptr, "a request before main answered null"); }

void LockIsReEntrant(Trial&)
{
    LOCK_RVALUE_MUTEX();
    LOCK_RVALUE_MUTEX();
    UNLOCK_RVALUE_MUTEX();
    UNLOCK_RVALUE_MUTEX();
    LOCK_RVALUE_MUTEX();
    UNLOCK_RVALUE_MUTEX();
}

constexpr Check CHECKS[] = {
    {"memory.aligned", Level::Follow, HEADER,
     "Every block is 8-byte aligned and carries the source tag of its caller, for the host's allocation tracking.",
     Need_Nothing, BlocksAreAligned},
    {"memory.refused", Level::Follow, HEADER, "A refused request answers null; the caller goes on without the block.",
     Need_Refusal, RefusedAllocIsNull},
    {"memory.alive", Level::Follow, HEADER,
     "Alive before main and after it: the camera manager's constructor and destructor allocate and free.", Need_Nothing,
     AliveBeforeMain},
    {"memory.cleared", Level::Follow, HEADER, "clear: true for a new block, which then comes zero-filled.",
     Need_Nothing, NewBlocksAreCleared},
    {"memory.resized_keeps_bytes", Level::Follow, HEADER,
     "Moves a block to a new size and keeps its bytes up to the smaller of both sizes.", Need_Nothing,
     GrowthKeepsTheBytes},
    {"memory.realloc_of_null", Level::Follow, HEADER, "A null block is an Alloc.", Need_Nothing, ReAllocOfNullIsAlloc},
    {"memory.refused_growth", Level::Follow, HEADER, "On refusal the old block stays as it was.", Need_Refusal,
     RefusedGrowthKeepsTheBlock},
    {"memory.free_null", Level::Follow, HEADER, "Takes null.", Need_Nothing, FreeTakesNull},
    {"memory.table_grows", Level::Follow, HEADER,
     "Grows a table to count entries; null when refused, the table is then as before.", Need_Nothing, TablesGrow},
    {"memory.kvfree_null", Level::BuiltIns, HEADER, "KvFree takes null.", Need_Nothing, KvFreeTakesNull},
    {"memory.kvrealloc", Level::BuiltIns, HEADER,
     "KvRealloc takes null for a new block and keeps the bytes of an old one; a refused request answers null and "
     "leaves "
     "the old block as it was.",
     Need_Nothing, ValueStorageKeepsTheBytes},
    {"memory.kvrealloc_refused", Level::BuiltIns, HEADER,
     "KvRealloc takes null for a new block and keeps the bytes of an old one; a refused request answers null and "
     "leaves "
     "the old block as it was.",
     Need_Refusal, RefusedValueStorageKeepsTheBlock},
    {"lock.reentrant", Level::BuiltIns, "Platform/Lock.h",
     "Re-entrant on one thread: freeing a string's record takes it twice.", Need_Nothing, LockIsReEntrant},
};

} // namespace

Checks MemoryChecks() { return Table(CHECKS); }

} // namespace HostCheck
