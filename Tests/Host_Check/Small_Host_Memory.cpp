// Memory, value storage, arrays and strings of the small host.

#include "Tests/Host_Check/Small_Host.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace SmallHost
{
Breakage g_broken = Breakage::None;
bool g_refuses = false;

namespace
{

// In front of every block, copied to and fro: a block may lie at an odd place.
struct Header
{
    void* base;
    size_t size;
};
constexpr size_t ROOM = 32;

Header HeaderOf(const void* block)
{
    Header header;
    std::memcpy(&header, static_cast<const char*>(block) - sizeof header, sizeof header);
    return header;
}

void* NewBlock(size_t size, bool clear)
{
    char* base = static_cast<char*>(std::malloc(size + ROOM));
    if (base == nullptr)
        return nullptr;
    char* block = base + 16 + (Breaks(Breakage::BlocksLieAtOddPlaces) ? 4 : 0);
    const Header header = {base, size};
    std::memcpy(block - sizeof header, &header, sizeof header);
    std::memset(block, clear ? 0 : 0xCD, size);
    return block;
}

void* Resized(void* block, size_t size, bool losesBytes)
{
    if (block == nullptr)
        return NewBlock(size, false);
    void* moved = NewBlock(size, false);
    if (moved != nullptr && !losesBytes)
        std::memcpy(moved, block, std::min(size, HeaderOf(block).size));
    if (moved != nullptr)
        std::free(HeaderOf(block).base);
    return moved;
}

void ClearIfBroken(void* block, Breakage breakage)
{
    if (Breaks(breakage) && block != nullptr)
        std::memset(block, 0, HeaderOf(block).size);
}

bool Refuses() { return g_refuses && !Breaks(Breakage::RefusalsAreServed); }

int s_lockDepth = 0;

} // namespace
} // namespace SmallHost

using namespace SmallHost;

void* MemoryManager::Alloc(size_t size, const char*, int, bool clear)
{
    return Refuses() ? nullptr : NewBlock(size, clear && !Breaks(Breakage::NewBlocksAreUsed));
}

void* MemoryManager::ReAlloc(void* block, size_t size, const char*, int, bool clear)
{
    if (Refuses())
    {
        ClearIfBroken(block, Breakage::RefusedGrowthClearsTheBlock);
        return nullptr;
    }
    if (block == nullptr)
        return NewBlock(size, clear && !Breaks(Breakage::ReAllocOfNullIsUsed));
    return Resized(block, size, Breaks(Breakage::GrowthLosesBytes));
}

void MemoryManager::Free(void* block)
{
    if (block == nullptr && Breaks(Breakage::FreeOfNullCrashes))
        std::abort();
    if (block != nullptr)
        std::free(HeaderOf(block).base);
}

void KvFree(const void* block)
{
    if (block == nullptr && Breaks(Breakage::KvFreeOfNullCrashes))
        std::abort();
    if (block != nullptr)
        std::free(HeaderOf(block).base);
}

void* KvRealloc(void* block, int size)
{
    if (Refuses())
    {
        ClearIfBroken(block, Breakage::KvReallocRefusedClearsTheBlock);
        return nullptr;
    }
    return size < 0 ? nullptr : Resized(block, static_cast<size_t>(size), Breaks(Breakage::KvReallocLosesBytes));
}

void LOCK_RVALUE_MUTEX()
{
    volatile bool waits = s_lockDepth > 0 && Breaks(Breakage::TheLockBlocksItsOwner);
    while (waits)
        continue;
    ++s_lockDepth;
}

void UNLOCK_RVALUE_MUTEX() { --s_lockDepth; }

// ---- arrays: a record is freed by Array_SetOwner ----
RefDynamicArrayOfRValue* ARRAY_RefAlloc()
{
    static RefDynamicArrayOfRValue s_shared = {1000, nullptr, nullptr, 0};
    void* block = MemoryManager::Alloc(sizeof(RefDynamicArrayOfRValue), "small host", __LINE__, true);
    if (block == nullptr)
        return Breaks(Breakage::RefusedArraysAreShared) ? &s_shared : nullptr;
    auto* array = static_cast<RefDynamicArrayOfRValue*>(block);
    *array = {Breaks(Breakage::ArraysStartWithoutReference) ? 0 : 1, nullptr, nullptr, 0};
    return array;
}

void Array_IncRef(RefDynamicArrayOfRValue* array) { array->m_refCount += Breaks(Breakage::CountsGoUpByTwo) ? 2 : 1; }

void Array_DecRef(RefDynamicArrayOfRValue* array) { --array->m_refCount; }

void Array_SetOwner(RefDynamicArrayOfRValue* array)
{
    if (Breaks(Breakage::OwnersTakeArraysFromTheGame) && GetContextStackTop() != nullptr)
        GameForgets(array);
    const int least = Breaks(Breakage::SharedArraysAreFreed) ? 1 : 0;
    if (array->m_refCount > least || Breaks(Breakage::ArraysAreNeverFreed))
        return;
    GameForgets(array);
    for (int32_t i = 0; i < array->m_length; ++i)
        if (KvKind(array->m_array[i]) != VALUE_ARRAY || !Breaks(Breakage::ArraysInArraysAreLost))
            FREE_RValue__Pre(&array->m_array[i]);
    if (Breaks(Breakage::SharedArraysAreFreed)) // the record stays, so that its other holders only find it empty
    {
        array->m_length = 0;
        return;
    }
    MemoryManager::Free(array->m_array);
    MemoryManager::Free(array);
}

// ---- strings ----
template <> void _RefThing<const char*>::inc() { ++m_refCount; }
template <> const char* _RefThing<const char*>::get() const { return m_thing; }
template <> int32_t _RefThing<const char*>::size() const { return m_size; }

const char* RValue::GetString() const
{
    if (KvKind(*this) == VALUE_STRING && pRefString != nullptr)
        return pRefString->m_thing;
    return Breaks(Breakage::GetStringOfOthersIsNull) ? nullptr : "";
}

CInstance* RValue::asObject() const
{
    if (KvKind(*this) != VALUE_OBJECT || pObj == nullptr)
        return nullptr;
    const bool isInstance = pObj->m_kind == OBJECT_KIND_INSTANCE || Breaks(Breakage::EveryObjectIsAnInstance);
    return isInstance ? static_cast<CInstance*>(pObj) : nullptr;
}
