#include "Files/Object/Object_Base.h"

#include "Runner/Host/Slot_Table.h"

// The two numbers describe variables kept in the base class. The objects of this runner keep none there.
KvObjectBase::KvObjectBase(int, int) : m_slot(-1), m_gcGen(-1), m_gcCounter(0), m_kind(0) {}

KvObjectBase::~KvObjectBase()
{
    RemoveGlobalObject(this);
    Runner::GiveSlotBack(this);
}

RValue* KvObjectBase::InternalGetKvVarRef(int) { return nullptr; }

RValue* KvObjectBase::InternalGetKvVarRefL(int) { return nullptr; }

bool KvObjectBase::Mark4GC(uint32_t* marks, int count)
{
    if (!MarkThisOnly4GC(marks, count))
        return false;
    MarkOnlyChildren4GC(marks, count);
    return true;
}

bool KvObjectBase::MarkThisOnly4GC(uint32_t* marks, int count)
{
    if (m_slot < 0 || m_slot / 32 >= count)
        return false;
    uint32_t& word = marks[m_slot / 32];
    const uint32_t bit = uint32_t{1} << (m_slot % 32);
    const bool isNew = (word & bit) == 0;
    word |= bit;
    return isNew;
}

// Marks what the object's variables refer to.
bool KvObjectBase::MarkOnlyChildren4GC(uint32_t*, int)
{
    for (int variable = 0; RValue* value = InternalGetKvVarRef(variable); ++variable)
        AddGCRefRValue(value);
    return true;
}

bool KvObjectBase::Free(bool freeVars)
{
    FreeVars(this, freeVars, nullptr);
    delete this;
    return true;
}

bool KvObjectBase::ThreadFree(bool freeVars, GCContext* context)
{
    FreeVars(this, freeVars, context);
    delete this;
    return true;
}

void KvObjectBase::PreFree() {}

void* KvObjectBase::GetDispose() { return nullptr; }

// Releases every variable. Variables are numbered from 0 without gaps.
void KvObjectBase::FreeVars(KvObjectBase* object, bool freeVars, GCContext*)
{
    if (!freeVars)
        return;
    for (int variable = 0; RValue* value = object->InternalGetKvVarRef(variable); ++variable)
    {
        FREE_RValue__Pre(value);
        value->kind = VALUE_UNDEFINED;
    }
}
