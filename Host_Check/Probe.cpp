#include "Host_Check/Probe.h"

#include <new>

namespace HostCheck
{

Probe::Probe(Fate& fate) : Camera_GCProxy(nullptr), m_fate(fate), m_held(OfKind(VALUE_UNDEFINED)) { Detach(); }

Probe::~Probe() { m_fate.isDeleted = true; }

Probe* Probe::Make(Fate& fate) { return new (std::nothrow) Probe(fate); }

bool Probe::Mark4GC(uint32_t* marks, int count)
{
    if (!KvObjectBase::Mark4GC(marks, count))
        return false;
    ++m_fate.marked;
    AddGCRefRValue(&m_held);
    return true;
}

void Probe::Hold(const RValue& value)
{
    PushContextStack(this);
    KvAssign(m_held, value);
    PopContextStack(1);
}

void Probe::Drop()
{
    PushContextStack(this);
    KvAssign(m_held, OfKind(VALUE_UNDEFINED));
    PopContextStack(1);
}

void Probe::Discard()
{
    Drop();
    delete this;
}

bool Probe::Free(bool freeVars)
{
    if (m_whenFreed != nullptr)
        m_whenFreed();
    return Camera_GCProxy::Free(freeVars);
}

bool Probe::ThreadFree(bool freeVars, GCContext* context)
{
    if (m_whenFreed != nullptr)
        m_whenFreed();
    return Camera_GCProxy::ThreadFree(freeVars, context);
}

RValue ObjectValue(KvObjectBase* object)
{
    RValue value = OfKind(VALUE_OBJECT);
    value.pObj = object;
    return value;
}

RValue ArrayValue(RefDynamicArrayOfRValue* array)
{
    RValue value = OfKind(VALUE_ARRAY);
    value.pRefArray = array;
    return value;
}

RefDynamicArrayOfRValue* NewArray(int32_t length)
{
    RefDynamicArrayOfRValue* array = ARRAY_RefAlloc();
    if (array == nullptr)
        return nullptr;
    const size_t bytes = static_cast<size_t>(length) * sizeof(RValue);
    array->m_array = static_cast<RValue*>(MemoryManager::Alloc(bytes, "Host_Check", __LINE__, true));
    array->m_length = array->m_array != nullptr ? length : 0;
    return array->m_array != nullptr ? array : nullptr;
}

} // namespace HostCheck
