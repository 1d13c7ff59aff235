// Files/LLVM/Slot_Table.h and the places of objects in it; generations.

#include "Host_Check/Check.h"
#include "Host_Check/Probe.h"

#include <new>

namespace HostCheck
{
namespace
{

constexpr char TABLE[] = "Files/LLVM/Slot_Table.h";
constexpr char BASE[] = "Files/Object/Object_Base.h";

// An object as a host has them: no slot until somebody places it.
class Unplaced : public KvObjectBase
{
public:
    explicit Unplaced(bool& isDeleted) : KvObjectBase(0, OBJECT_VARIABLE_MASK), m_isDeleted(isDeleted) {}
    ~Unplaced() override { m_isDeleted = true; }

private:
    bool& m_isDeleted;
};

void NewObjectsHaveNoSlot(Trial& trial)
{
    bool isDeleted = false;
    Unplaced* object = new (std::nothrow) Unplaced(isDeleted);
    if (object == nullptr)
        return;
    trial.Expect(object->m_slot == -1, "m_slot of a new object is %d", object->m_slot);
    delete object;
}

void NewObjectsHaveNoVariables(Trial& trial)
{
    bool isDeleted = false;
    Unplaced* object = new (std::nothrow) Unplaced(isDeleted);
    if (object == nullptr)
        return;
    for (const int variable : {0, 5, OBJECT_VARIABLE_MASK})
        trial.Expect(object->InternalGetKvVarRef(variable) == nullptr,
                     "an object without variables has the variable %d", variable);
    KvObjectBase::FreeVars(object, true, nullptr);
    trial.Expect(!isDeleted, "FreeVars has deleted the object");
    if (!isDeleted)
        delete object;
}

void FreeTellsTheTruth(Trial& trial)
{
    bool isDeleted = false;
    Unplaced* object = new (std::nothrow) Unplaced(isDeleted);
    if (object == nullptr)
        return;
    const bool answer = object->Free(true);
    trial.Expect(answer == isDeleted, "Free answers %s of an object that was %s", answer ? "true" : "false",
                 isDeleted ? "deleted" : "not deleted");
    if (!isDeleted)
        delete object;
}

KvObjectBase* EntryAt(int slot)
{
    const bool exists = slot >= 0 && slot < g_slotObjects.m_nCapacity;
    return exists ? g_slotObjects.m_ppEntries[slot] : nullptr;
}

void PlacedObjectsAreInTheirSlot(Trial& trial)
{
    RValue callable = OfKind(VALUE_UNDEFINED);
    if (!trial.Expect(trial.hooks.makeScript([](KvObjectBase*, RValue*, int, RValue*) {}, true, &callable),
                      "the hook makeScript could make no callable"))
        return;
    const int slot = callable.pObj->m_slot;
    trial.Expect(slot >= 0, "m_slot of a callable is %d: no collection sees it", slot);
    trial.Expect(EntryAt(slot) == callable.pObj, "the entry of slot %d is not the object whose m_slot says so", slot);
}

void DeletedObjectsLeave(Trial& trial)
{
    Probe::Fate fate;
    Probe* probe = Probe::Make(fate);
    if (probe == nullptr)
        return;
    const int slot = probe->m_slot;
    const int count = g_slotObjects.m_nCount;
    probe->Discard();
    trial.Expect(EntryAt(slot) != probe, "the entry of slot %d still points at its object, which was deleted", slot);
    trial.Expect(g_slotObjects.m_nCount == count - 1, "m_nCount is %d before and %d after an object was deleted", count,
                 g_slotObjects.m_nCount);
}

void FreeEntriesAreNull(Trial& trial)
{
    Probe::Fate fates[2];
    Probe* probes[2] = {Probe::Make(fates[0]), Probe::Make(fates[1])};
    if (probes[0] == nullptr || probes[1] == nullptr)
        return;
    const int slot = probes[0]->m_slot;
    probes[0]->Discard();
    trial.Expect(EntryAt(slot) == nullptr, "the entry of slot %d is not null after its object was deleted", slot);
    probes[1]->Discard();
}

void EntriesAreCounted(Trial& trial)
{
    Probe::Fate fates[3];
    Probe* probes[3];
    for (int i = 0; i < 3; ++i)
        probes[i] = Probe::Make(fates[i]);
    if (probes[1] != nullptr)
        probes[1]->Discard();
    probes[1] = nullptr;
    int inUse = 0;
    for (int slot = 0; slot < g_slotObjects.m_nCapacity; ++slot)
        inUse += g_slotObjects.m_ppEntries[slot] != nullptr ? 1 : 0;
    trial.Expect(g_slotObjects.m_nCount == inUse, "m_nCount is %d, and %d entries are in use", g_slotObjects.m_nCount,
                 inUse);
    for (Probe* probe : probes)
        if (probe != nullptr)
            probe->Discard();
}

void TheFreeListFits(Trial& trial)
{
    Probe::Fate fate;
    Probe* probe = Probe::Make(fate);
    if (probe != nullptr)
        probe->Discard();
    trial.Expect(g_slotObjects.m_slotStackSize >= 0 && g_slotObjects.m_slotStackSize <= g_slotObjects.m_nCapacity,
                 "the free list has %d entries, the table %d", g_slotObjects.m_slotStackSize,
                 g_slotObjects.m_nCapacity);
}

void FreeSlotsExist(Trial& trial)
{
    Probe::Fate fates[4];
    Probe* probes[4];
    for (int i = 0; i < 4; ++i)
        probes[i] = Probe::Make(fates[i]);
    for (Probe* probe : probes)
        if (probe != nullptr)
            probe->Discard();
    for (int i = 0; i < g_slotObjects.m_slotStackSize && i < g_slotObjects.m_nCapacity; ++i)
    {
        const int slot = g_slotObjects.m_freeSlotStack[i];
        trial.Expect(slot >= 0 && slot < g_slotObjects.m_nCapacity, "entry %d of the free list is slot %d of %d", i,
                     slot, g_slotObjects.m_nCapacity);
    }
}

void TheSearchStartsInTheTable(Trial& trial)
{
    Probe::Fate fate;
    Probe* probe = Probe::Make(fate);
    if (probe != nullptr)
        probe->Discard();
    trial.Expect(g_slotObjects.m_lastFreed >= 0 && g_slotObjects.m_lastFreed <= g_slotObjects.m_nCapacity,
                 "m_lastFreed is %d in a table of %d", g_slotObjects.m_lastFreed, g_slotObjects.m_nCapacity);
}

// The cameras' proxies grow the table themselves, with KvRealloc; every object must be where it was afterwards.
void TheTableGrows(Trial& trial)
{
    constexpr int MOST = 5000;
    const int count = g_slotObjects.m_nCapacity + 40 < MOST ? g_slotObjects.m_nCapacity + 40 : MOST;
    static Probe* probes[MOST];
    Probe::Fate fate;
    for (int i = 0; i < count; ++i)
        probes[i] = Probe::Make(fate);
    for (int i = 0; i < count; ++i)
        if (probes[i] != nullptr)
            trial.Expect(EntryAt(probes[i]->m_slot) == probes[i],
                         "after the table grew, the entry of slot %d is not its object", probes[i]->m_slot);
    for (int i = 0; i < count; ++i)
        if (probes[i] != nullptr)
            probes[i]->Discard();
}

// ---- generations ----
void SpansWiden(Trial& trial)
{
    CGCGeneration span = {4, 4};
    struct
    {
        int slot, start, end;
    } const steps[] = {{5, 5, 6}, {8, 5, 9}, {2, 2, 9}, {3, 2, 9}, {8, 2, 9}};
    for (const auto& step : steps)
    {
        span.UpdateRange(step.slot);
        trial.Expect(span.m_rangeStart <= step.start && span.m_rangeEnd >= step.end,
                     "UpdateRange(%d) leaves the span [%d, %d), which leaves out [%d, %d)", step.slot,
                     span.m_rangeStart, span.m_rangeEnd, step.start, step.end);
    }
}

void EmptySpansStartAnywhere(Trial& trial)
{
    CGCGeneration span = {0, 0};
    span.UpdateRange(7);
    trial.Expect(span.m_rangeStart == 7 && span.m_rangeEnd == 8, "UpdateRange(7) of an empty span makes it [%d, %d)",
                 span.m_rangeStart, span.m_rangeEnd);
}

bool IsInItsSpan(const KvObjectBase& object)
{
    const CGCGeneration& generation = g_GCGens[object.m_gcGen];
    return object.m_slot >= generation.m_rangeStart && object.m_slot < generation.m_rangeEnd;
}

void NewObjectsAreInASpan(Trial& trial)
{
    if (!g_fGarbageCollection)
        return trial.NotTested("g_fGarbageCollection is false");
    Probe::Fate fate;
    Probe* probe = Probe::Make(fate);
    if (probe == nullptr)
        return;
    if (trial.Expect(probe->m_gcGen >= 0, "the generation of a new object is %d", probe->m_gcGen))
        trial.Expect(IsInItsSpan(*probe), "slot %d of a new object lies outside the span [%d, %d) of its generation %d",
                     probe->m_slot, g_GCGens[probe->m_gcGen].m_rangeStart, g_GCGens[probe->m_gcGen].m_rangeEnd,
                     probe->m_gcGen);
    probe->Discard();
}

void SurvivorsAreInASpan(Trial& trial)
{
    if (!g_fGarbageCollection)
        return trial.NotTested("g_fGarbageCollection is false");
    Probe::Fate fate;
    Probe* probe = Probe::Make(fate);
    if (probe == nullptr)
        return;
    AddGlobalObject(probe);
    trial.hooks.collect();
    if (trial.Expect(!fate.isDeleted, "a root was freed"))
    {
        if (trial.Expect(probe->m_gcGen >= 0, "the generation of an object that survived is %d", probe->m_gcGen))
            trial.Expect(IsInItsSpan(*probe),
                         "slot %d of an object that survived lies outside the span of its generation %d", probe->m_slot,
                         probe->m_gcGen);
        RemoveGlobalObject(probe);
        probe->Discard();
    }
}

void NewGenerationsExist(Trial& trial)
{
    const int generation = GetNewObjGCGen();
    trial.Expect(generation >= 0 && generation < 64, "GetNewObjGCGen answers %d", generation);
}

void StampsGrow(Trial& trial)
{
    const int before = KvObjectBase::ms_currentCounter;
    trial.hooks.collect();
    trial.Expect(KvObjectBase::ms_currentCounter >= before, "ms_currentCounter falls from %d to %d over a collection",
                 before, KvObjectBase::ms_currentCounter);
}

constexpr Check CHECKS[] = {
    {"slot.unplaced", Level::Callbacks, BASE, "unplaced: m_slot -1", Need_Nothing, NewObjectsHaveNoSlot},
    {"object.no_variables", Level::Callbacks, BASE, "for reading; null when the object has no such variable",
     Need_Nothing, NewObjectsHaveNoVariables},
    {"object.free", Level::Callbacks, BASE, "The collector gives the object back; true when it has been deleted.",
     Need_Nothing, FreeTellsTheTruth},
    {"slot.placed", Level::Callbacks, BASE, "index in g_slotObjects, -1 until placed", Need_Script,
     PlacedObjectsAreInTheirSlot},
    {"slot.given_back", Level::Callbacks, BASE, "gives its slot back", Need_Nothing, DeletedObjectsLeave},
    {"slot.free_is_null", Level::Callbacks, TABLE, "A free entry is null.", Need_Nothing, FreeEntriesAreNull},
    {"slot.count", Level::Callbacks, TABLE, "entries in use", Need_Nothing, EntriesAreCounted},
    {"slot.free_list", Level::Callbacks, TABLE, "length of the free list", Need_Nothing, TheFreeListFits},
    {"slot.free_slots", Level::Callbacks, TABLE,
     "The free list is a stack of slots; it may hold stale slots, which were taken meanwhile.", Need_Nothing,
     FreeSlotsExist},
    {"slot.search_start", Level::Callbacks, TABLE,
     "where the search for a free entry starts when the free list is empty", Need_Nothing, TheSearchStartsInTheTable},
    {"slot.grows", Level::Callbacks, TABLE, "Both vectors have m_nCapacity entries and come from KvRealloc.",
     Need_Nothing, TheTableGrows},
    {"generation.widens", Level::Callbacks, BASE, "widens the span to take in the slot", Need_Nothing, SpansWiden},
    {"generation.empty", Level::Callbacks, BASE, "one past the last; equal to the start when empty", Need_Nothing,
     EmptySpansStartAnywhere},
    {"generation.of_new", Level::Callbacks, BASE, "the generation of objects made now", Need_Nothing,
     NewGenerationsExist},
    {"generation.span", Level::Callbacks, BASE, "generation, index in g_GCGens", Need_Nothing, NewObjectsAreInASpan},
    {"generation.survivors", Level::Callbacks, BASE,
     "One generation of the collector: the span of slots that its objects take.", Need_Collect, SurvivorsAreInASpan},
    {"generation.stamps", Level::Callbacks, BASE, "the creation stamp of objects made now", Need_Collect, StampsGrow},
};

} // namespace

Checks SlotChecks() { return Table(CHECKS); }

} // namespace HostCheck
