#include "Runner/Host/Arrays.h"

#include "Files/LLVM/RValue.h"
#include "Runner/Base/Without_Throwing.h"

namespace
{
constexpr char TAG[] = "Runner/Host/Arrays";

// Never destroyed: cameras release their callbacks after main.
std::vector<KvObjectBase*>& Stack()
{
    static std::vector<KvObjectBase*>& stack = *new std::vector<KvObjectBase*>;
    return stack;
}

Runner::RootSet<RefDynamicArrayOfRValue>& ArraysOfTheGame()
{
    static auto& arrays = *new Runner::RootSet<RefDynamicArrayOfRValue>;
    return arrays;
}

void FreeRecord(RefDynamicArrayOfRValue* array)
{
    ArraysOfTheGame().Remove(array);
    for (int32_t i = 0; i < array->m_length; ++i)
        FREE_RValue__Pre(&array->m_array[i]);
    MemoryManager::Free(array->m_array);
    MemoryManager::Free(array);
}

// Frees a record without references. Its elements may hold the last reference to further records, which come back here;
// these wait in a list instead of recursing. The list is linked through m_owner, which a dead record no longer needs.
void FreeUnreferenced(RefDynamicArrayOfRValue* array)
{
    static RefDynamicArrayOfRValue* s_waiting = nullptr;
    static bool s_busy = false;
    array->m_owner = s_waiting;
    s_waiting = array;
    if (s_busy)
        return;
    s_busy = true;
    while (s_waiting != nullptr)
    {
        RefDynamicArrayOfRValue* next = s_waiting;
        s_waiting = static_cast<RefDynamicArrayOfRValue*>(next->m_owner);
        FreeRecord(next);
    }
    s_busy = false;
}
} // namespace

RefDynamicArrayOfRValue* ARRAY_RefAlloc()
{
    void* block = MemoryManager::Alloc(sizeof(RefDynamicArrayOfRValue), TAG, __LINE__, true);
    RefDynamicArrayOfRValue* array = static_cast<RefDynamicArrayOfRValue*>(block);
    if (array != nullptr)
    {
        array->m_refCount = 1;
        array->m_owner = GetContextStackTop();
    }
    return array;
}

void Array_IncRef(RefDynamicArrayOfRValue* array) { ++array->m_refCount; }

void Array_DecRef(RefDynamicArrayOfRValue* array) { --array->m_refCount; }

void Array_SetOwner(RefDynamicArrayOfRValue* array)
{
    if (array->m_refCount <= 0)
        FreeUnreferenced(array);
    else
        array->m_owner = array->m_refCount == 1 ? GetContextStackTop() : nullptr;
}

KvObjectBase* GetContextStackTop() { return Stack().empty() ? nullptr : Stack().back(); }

void PushContextStack(KvObjectBase* owner)
{
    Runner::WithoutThrowing([owner] { Stack().push_back(owner); });
}

void PopContextStack(int count)
{
    for (; count > 0 && !Stack().empty(); --count)
        Stack().pop_back();
}

namespace Runner
{
const std::vector<KvObjectBase*>& ContextStack() { return Stack(); }

void GiveToGame(RefDynamicArrayOfRValue* array)
{
    WithoutThrowing([array] { ArraysOfTheGame().Add(array); });
}

const RootSet<RefDynamicArrayOfRValue>& GameArrays() { return ArraysOfTheGame(); }
} // namespace Runner
