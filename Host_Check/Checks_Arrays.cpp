// Files/LLVM/Arrays.h: counted arrays and the context stack. Files/LLVM/RValue.h: the array's record.

#include "Host_Check/Check.h"
#include "Host_Check/Probe.h"

#include <new>

namespace HostCheck
{
namespace
{

constexpr char HEADER[] = "Files/LLVM/Arrays.h";
constexpr char RECORD[] = "Files/LLVM/RValue.h";
constexpr char NEW_AND_EMPTY[] = "new and empty, one reference; null when memory is refused";
constexpr char FREED[] = "A record whose last reference went is freed with its elements once Array_SetOwner is back.";

// Says in its destructor that it was deleted.
class Owned : public COwnedObject
{
public:
    explicit Owned(int& count) : m_deleted(count) {}
    ~Owned() override { ++m_deleted; }

private:
    int& m_deleted;
};

RValue OwnedValue(int& deleted)
{
    RValue value = OfKind(VALUE_PTR);
    value.flags = VALUE_FLAG_OWNS_PTR;
    value.ptr = static_cast<COwnedObject*>(new (std::nothrow) Owned(deleted));
    return value;
}

void Release(RefDynamicArrayOfRValue* array)
{
    RValue value = ArrayValue(array);
    FREE_RValue__Pre(&value);
}

void NewArraysAreEmpty(Trial& trial)
{
    RefDynamicArrayOfRValue* array = ARRAY_RefAlloc();
    if (!trial.Expect(array != nullptr, "ARRAY_RefAlloc answers null"))
        return;
    trial.Expect(array->m_length == 0, "a new array has %d elements", static_cast<int>(array->m_length));
    trial.Expect(array->m_refCount == 1, "a new array has %d references", static_cast<int>(array->m_refCount));
    Release(array);
}

void EmptyArraysHaveNoElements(Trial& trial)
{
    RefDynamicArrayOfRValue* array = ARRAY_RefAlloc();
    if (array == nullptr)
        return;
    trial.Expect(array->m_array == nullptr, "m_array of a new array is not null");
    Release(array);
}

void RefusedArraysAreNull(Trial& trial)
{
    trial.hooks.refuseMemory(true);
    RefDynamicArrayOfRValue* array = ARRAY_RefAlloc();
    trial.hooks.refuseMemory(false);
    if (!trial.Expect(array == nullptr, "ARRAY_RefAlloc answers an array while memory is refused"))
        Release(array);
}

void CountsGoUpAndDown(Trial& trial)
{
    RefDynamicArrayOfRValue* array = ARRAY_RefAlloc();
    if (array == nullptr)
        return;
    Array_IncRef(array);
    Array_SetOwner(array);
    trial.Expect(array->m_refCount == 2, "after Array_IncRef an array has %d references",
                 static_cast<int>(array->m_refCount));
    Array_DecRef(array);
    Array_SetOwner(array);
    trial.Expect(array->m_refCount == 1, "after Array_DecRef an array has %d references",
                 static_cast<int>(array->m_refCount));
    Release(array);
}

void TheLastReferenceFrees(Trial& trial)
{
    int deleted = 0;
    RefDynamicArrayOfRValue* array = NewArray(2);
    if (!trial.Expect(array != nullptr, "no memory for an array of 2"))
        return;
    array->m_array[0] = OwnedValue(deleted);
    array->m_array[1] = OwnedValue(deleted);
    Release(array);
    trial.Expect(deleted == 2, "of 2 objects that an array owned, %d were deleted with it", deleted);
}

void SharedArraysStay(Trial& trial)
{
    int deleted = 0;
    RefDynamicArrayOfRValue* array = NewArray(1);
    if (array == nullptr)
        return;
    array->m_array[0] = OwnedValue(deleted);
    RValue first = OfKind(VALUE_UNDEFINED), second = OfKind(VALUE_UNDEFINED);
    const RValue borrowed = ArrayValue(array);
    KvAssign(first, borrowed);
    KvAssign(second, first);
    Release(array);
    FREE_RValue__Pre(&first);
    const bool lives = trial.Expect(deleted == 0, "an array that a value still refers to has lost its elements");
    if (!lives)
        return;
    FREE_RValue__Pre(&second);
    trial.Expect(deleted == 1, "an array whose three references went has kept its elements");
}

void NestedArraysAreFreed(Trial& trial)
{
    int deleted = 0;
    RefDynamicArrayOfRValue* outer = NewArray(1);
    RefDynamicArrayOfRValue* inner = NewArray(1);
    if (outer == nullptr || inner == nullptr)
        return;
    inner->m_array[0] = OwnedValue(deleted);
    outer->m_array[0] = ArrayValue(inner); // the outer one takes the reference over
    Release(outer);
    trial.Expect(deleted == 1, "an array in a freed array has kept its elements");
}

// A matrix that is handed to a script is a value in a context of its own: the owner may be any object, or none.
void OwnersChange(Trial& trial)
{
    Probe::Fate fate;
    Probe* owner = Probe::Make(fate);
    RefDynamicArrayOfRValue* array = NewArray(1);
    if (owner == nullptr || array == nullptr)
        return;
    PushContextStack(owner);
    Array_IncRef(array);
    Array_SetOwner(array);
    PopContextStack(1);
    Array_DecRef(array);
    Array_SetOwner(array);
    trial.Expect(array->m_refCount == 1 && array->m_length == 1 && array->m_array != nullptr,
                 "an array whose owner was evaluated twice has %d references and %d elements",
                 static_cast<int>(array->m_refCount), static_cast<int>(array->m_length));
    Release(array);
    owner->Discard();
}

void ContextsAreAStack(Trial& trial)
{
    Probe::Fate fates[2];
    Probe *first = Probe::Make(fates[0]), *second = Probe::Make(fates[1]);
    if (first == nullptr || second == nullptr)
        return;
    KvObjectBase* const before = GetContextStackTop();
    PushContextStack(first);
    PushContextStack(second);
    trial.Expect(GetContextStackTop() == second, "the top is not the object that was pushed last");
    PopContextStack(1);
    trial.Expect(GetContextStackTop() == first, "after a pop the top is not the object that was pushed before");
    PushContextStack(second);
    PopContextStack(2);
    trial.Expect(GetContextStackTop() == before, "PopContextStack(2) after two pushes leaves another top");
    first->Discard();
    second->Discard();
}

void ContextsMayBeNull(Trial& trial)
{
    Probe::Fate fate;
    Probe* probe = Probe::Make(fate);
    if (probe == nullptr)
        return;
    PushContextStack(probe);
    PushContextStack(nullptr);
    trial.Expect(GetContextStackTop() == nullptr, "after PushContextStack(null) the top is not null");
    PopContextStack(1);
    trial.Expect(GetContextStackTop() == probe, "a null entry that was popped has taken another one with it");
    PopContextStack(1);
    probe->Discard();
}

void NoContextIsNull(Trial& trial)
{
    trial.Expect(GetContextStackTop() == nullptr, "GetContextStackTop is not null although nothing was pushed");
}

constexpr char STACK[] =
    "The stack of objects in whose name values are being stored; entries may be null, an empty stack "
    "answers null.";

constexpr Check CHECKS[] = {
    {"array.new", Level::BuiltIns, HEADER, NEW_AND_EMPTY, Need_Nothing, NewArraysAreEmpty},
    {"array.refused", Level::BuiltIns, HEADER, NEW_AND_EMPTY, Need_Refusal, RefusedArraysAreNull},
    {"array.count", Level::BuiltIns, HEADER, "Array_IncRef and Array_DecRef change m_refCount by one.", Need_Nothing,
     CountsGoUpAndDown},
    {"array.freed", Level::BuiltIns, HEADER, FREED, Need_Nothing, TheLastReferenceFrees},
    {"array.shared", Level::BuiltIns, HEADER, FREED, Need_Nothing, SharedArraysStay},
    {"array.nested", Level::BuiltIns, RECORD,
     "The host makes, counts and frees it (Arrays.h); the module reads and fills elements.", Need_Nothing,
     NestedArraysAreFreed},
    {"array.empty", Level::BuiltIns, RECORD, "m_length elements from MemoryManager; null when empty", Need_Nothing,
     EmptyArraysHaveNoElements},
    {"array.owner", Level::Callbacks, HEADER, "re-evaluates the owner; called after every change of the count",
     Need_Nothing, OwnersChange},
    {"context.stack", Level::Callbacks, HEADER, STACK, Need_Nothing, ContextsAreAStack},
    {"context.null_entry", Level::Callbacks, HEADER, STACK, Need_Nothing, ContextsMayBeNull},
    {"context.empty", Level::Callbacks, HEADER, STACK, Need_Nothing, NoContextIsNull},
};

} // namespace

Checks ArrayChecks() { return Table(CHECKS); }

} // namespace HostCheck
