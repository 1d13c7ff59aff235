// Working memory, value storage, arrays, strings, the value lock.

#include "Tests/Support/Recording_Host_State.h"

#include <cstdlib>
#include <cstring>

namespace Recording
{
namespace
{
constexpr int FILLER = 0xCD;

Memory& Mem() { return TheState().memory; }

bool IsRefused(size_t size)
{
    Memory& memory = Mem();
    ++memory.requestCount;
    const bool counted = memory.refuseIn > 0 && --memory.refuseIn == 0;
    return counted || size > memory.refuseAbove;
}

bool NotesRefusal(const Request& request)
{
    if (Hears(Topic_Memory))
        Mem().requests.push_back(request);
    return request.refused;
}

void* NewBlock(size_t size, bool clear, bool isText)
{
    void* block = std::malloc(size > 0 ? size : 1);
    if (block == nullptr)
        return nullptr;
    std::memset(block, clear ? 0 : FILLER, size);
    Mem().blocks[block] = {size, isText};
    return block;
}

// Null when it is no block of that sort; noted as a fault.
const Block* Owns(const void* block, bool isText, const char* call)
{
    const auto found = Mem().blocks.find(block);
    if (found != Mem().blocks.end() && found->second.isText == isText)
        return &found->second;
    Fault(std::string(call) + " of a block that is not its own");
    return nullptr;
}

void DropBlock(const void* block, bool isText, const char* call)
{
    if (block == nullptr || Owns(block, isText, call) == nullptr)
        return;
    Mem().blocks.erase(block);
    std::free(const_cast<void*>(block));
}

void* MoveBlock(void* old, size_t size, bool isText, const char* call)
{
    const Block* block = Owns(old, isText, call);
    if (block == nullptr)
        return nullptr;
    const size_t kept = block->size < size ? block->size : size;
    void* moved = NewBlock(size, false, isText);
    if (moved == nullptr)
        return nullptr;
    std::memcpy(moved, old, kept);
    DropBlock(old, isText, call);
    return moved;
}

size_t CountBlocks(bool texts)
{
    size_t count = 0;
    for (const auto& entry : Mem().blocks)
        count += entry.second.isText == texts ? 1 : 0;
    return count;
}

RValue OfKind(uint32_t kind)
{
    RValue value = {};
    value.kind = kind;
    return value;
}
} // namespace

void ResetMemory()
{
    Memory& memory = Mem();
    memory.requests.clear();
    memory.requestCount = 0;
    memory.refuseIn = 0;
    memory.refuseAbove = SIZE_MAX;
    memory.refuseValues = false;
    memory.lockDepth = 0;
}

std::vector<Request>& Requests() { return Mem().requests; }
int RequestCount() { return Mem().requestCount; }
void RefuseRequest(int nth) { Mem().refuseIn = nth; }
void RefuseAbove(size_t bytes) { Mem().refuseAbove = bytes; }
void RefuseValueMemory(bool refuse) { Mem().refuseValues = refuse; }
size_t LiveBlocks() { return CountBlocks(false); }
int LockDepth() { return Mem().lockDepth; }
size_t LiveArrays() { return Mem().arrays.size(); }

size_t LiveBytes()
{
    size_t bytes = 0;
    for (const auto& entry : Mem().blocks)
        bytes += entry.second.isText ? 0 : entry.second.size;
    return bytes;
}

size_t LiveTexts()
{
    const size_t tables =
        (g_slotObjects.m_ppEntries != nullptr ? 1u : 0u) + (g_slotObjects.m_freeSlotStack != nullptr ? 1u : 0u);
    return CountBlocks(true) - tables;
}

// ---- values ----
RValue Real(double number)
{
    RValue value = OfKind(VALUE_REAL);
    value.val = number;
    return value;
}

RValue Int32(int32_t number)
{
    RValue value = OfKind(VALUE_INT32);
    value.v32 = number;
    return value;
}

RValue Int64(int64_t number)
{
    RValue value = OfKind(VALUE_INT64);
    value.v64 = number;
    return value;
}

RValue Bool(bool truth)
{
    RValue value = OfKind(VALUE_BOOL);
    value.val = truth ? 1.0 : 0.0;
    return value;
}

RValue OfObject(KvObjectBase* object)
{
    RValue value = OfKind(VALUE_OBJECT);
    value.pObj = object;
    return value;
}

RValue OfArray(RefDynamicArrayOfRValue* array)
{
    RValue value = OfKind(VALUE_ARRAY);
    value.pRefArray = array;
    return value;
}

RValue NewString(const char* text)
{
    const size_t size = std::strlen(text);
    char* copy = static_cast<char*>(NewBlock(size + 1, false, true));
    std::memcpy(copy, text, size + 1);
    RefString* record = new RefString;
    record->m_thing = copy;
    record->m_refCount = 1;
    record->m_size = static_cast<int32_t>(size);
    RValue value = OfKind(VALUE_STRING);
    value.pRefString = record;
    return value;
}

RefDynamicArrayOfRValue* NewArray(const std::vector<RValue>& elements)
{
    RefDynamicArrayOfRValue* array = ARRAY_RefAlloc();
    array->m_length = static_cast<int32_t>(elements.size());
    array->m_array = static_cast<RValue*>(
        MemoryManager::Alloc(elements.size() * sizeof(RValue), "Tests/Support/Recording_Host", __LINE__, true));
    for (size_t i = 0; i < elements.size(); ++i)
        array->m_array[i] = elements[i];
    return array;
}

RefDynamicArrayOfRValue* NewArray(const std::vector<double>& elements)
{
    std::vector<RValue> values;
    for (double element : elements)
        values.push_back(Real(element));
    return NewArray(values);
}

int ReferenceCount(const RefDynamicArrayOfRValue* array) { return array->m_refCount; }
} // namespace Recording

using namespace Recording;

void* MemoryManager::Alloc(size_t size, const char* file, int line, bool clear)
{
    RECORD(Topic_Memory, "Alloc(%zu,%s,%s)", size, file, clear ? "clear" : "raw");
    if (NotesRefusal({file, line, size, clear, false, IsRefused(size)}))
        return nullptr;
    return NewBlock(size, clear, false);
}

void* MemoryManager::ReAlloc(void* block, size_t size, const char* file, int line, bool clear)
{
    RECORD(Topic_Memory, "ReAlloc(%zu,%s,%s)", size, file, clear ? "clear" : "raw");
    if (NotesRefusal({file, line, size, clear, block != nullptr, IsRefused(size)}))
        return nullptr;
    return block == nullptr ? NewBlock(size, clear, false) : MoveBlock(block, size, false, "ReAlloc");
}

void MemoryManager::Free(void* block)
{
    RECORD(Topic_Memory, "Free(%s)", block == nullptr ? "null" : "block");
    DropBlock(block, false, "Free");
}

void KvFree(const void* block)
{
    RECORD(Topic_Values, "KvFree(%s)", block == nullptr ? "null" : "block");
    DropBlock(block, true, "KvFree");
}

void* KvRealloc(void* block, int size)
{
    RECORD(Topic_Memory, "KvRealloc(%d)", size);
    if (Mem().refuseValues || size < 0)
        return nullptr;
    const size_t bytes = static_cast<size_t>(size);
    return block == nullptr ? NewBlock(bytes, false, true) : MoveBlock(block, bytes, true, "KvRealloc");
}

void LOCK_RVALUE_MUTEX()
{
    RECORD(Topic_Values, "LOCK_RVALUE_MUTEX()");
    ++Mem().lockDepth;
}

void UNLOCK_RVALUE_MUTEX()
{
    RECORD(Topic_Values, "UNLOCK_RVALUE_MUTEX()");
    if (--Mem().lockDepth < 0)
        Fault("the value lock was released more often than taken");
}

// ---- arrays ----
RefDynamicArrayOfRValue* ARRAY_RefAlloc()
{
    void* block = MemoryManager::Alloc(sizeof(RefDynamicArrayOfRValue), "Tests/Support/Recording_Host", __LINE__, true);
    if (block == nullptr)
        return nullptr;
    RefDynamicArrayOfRValue* array = static_cast<RefDynamicArrayOfRValue*>(block);
    array->m_refCount = 1;
    Mem().arrays.insert(array);
    GiveName(array, 'A');
    RECORD(Topic_Values, "ARRAY_RefAlloc()=%s", Name(array).c_str());
    return array;
}

void Array_IncRef(RefDynamicArrayOfRValue* array)
{
    RECORD(Topic_Values, "Array_IncRef(%s)", Name(array).c_str());
    if (Mem().arrays.count(array) == 0)
        return Fault("Array_IncRef of something that is no array");
    ++array->m_refCount;
}

static void FreeArray(RefDynamicArrayOfRValue* array)
{
    Mem().arrays.erase(array);
    if (array->m_array == nullptr && array->m_length != 0)
        Fault("an array without entries has a length");
    for (int32_t i = 0; i < array->m_length && array->m_array != nullptr; ++i)
        FREE_RValue__Pre(&array->m_array[i]);
    MemoryManager::Free(array->m_array);
    MemoryManager::Free(array);
}

void Array_DecRef(RefDynamicArrayOfRValue* array)
{
    RECORD(Topic_Values, "Array_DecRef(%s)", Name(array).c_str());
    if (Mem().arrays.count(array) == 0)
        return Fault("Array_DecRef of something that is no array");
    if (--array->m_refCount == 0)
        FreeArray(array);
}

// Called after the last reference went, too: the record is not looked at.
void Array_SetOwner(RefDynamicArrayOfRValue* array) { RECORD(Topic_Values, "Array_SetOwner(%s)", Name(array).c_str()); }
