#include "Runner/Host/Collector.h"

#include "Runner/Base/Root_Set.h"
#include "Runner/Base/Without_Throwing.h"
#include "Runner/Host/Arrays.h"
#include "Runner/Host/Slot_Table.h"

#include <algorithm>
#include <climits>
#include <new>
#include <unordered_set>

CGCGeneration g_GCGens[2] = {{0, 0}, {0, 0}};
int g_GCrangestart = 0;
int g_GCrangeend = 0;
bool g_fGarbageCollection = true;
int KvObjectBase::ms_currentCounter = 0;

namespace Runner
{
namespace
{
constexpr int YOUNG = 0;
constexpr int OLD = 1;
constexpr int SAFEPOINT_OBJECTS =
    256; // so many new objects cause a collection, or half as many as are alive if that is more
constexpr int SAFEPOINT_FULL = 8; // one in so many collections at safepoints is full

struct TemporaryRoots
{
    const RValue* values;
    int count;
};

struct Heap
{
    RootSet<KvObjectBase> globals;
    std::vector<TemporaryRoots> temporaries;

    // While marking: the mark bits, what was reached and is still to be marked, and all arrays reached so far.
    std::vector<uint32_t> marks;
    std::vector<KvObjectBase*> objects;
    std::vector<const RefDynamicArrayOfRValue*> arrays;
    std::unordered_set<const RefDynamicArrayOfRValue*> arraysSeen;
    bool hasRunOut = false;       // of memory while marking: nothing is freed this time
    bool takesReferences = false; // from the first root until PreFree has been called on all objects to be freed

    bool busy = false;
    bool stress = false;
    int made = 0;           // objects since the last collection
    int fromSafepoints = 0; // collections
    int64_t collections = 0;
    int64_t freed = 0;
};

// Made on first use and never destroyed: cameras detach their proxies after main.
Heap& TheHeap()
{
    static Heap& heap = *new Heap;
    return heap;
}

// ---- marking ----

// Objects of the module call these, and no exception may pass them: a refusal is noted instead.
void Reach(Heap& heap, KvObjectBase* object)
try
{
    if (object != nullptr && heap.takesReferences)
        heap.objects.push_back(object);
}
catch (const std::bad_alloc&)
{
    heap.hasRunOut = true;
}

void Reach(Heap& heap, const RefDynamicArrayOfRValue* array)
try
{
    if (array != nullptr && heap.takesReferences && heap.arraysSeen.insert(array).second)
        heap.arrays.push_back(array);
}
catch (const std::bad_alloc&)
{
    heap.hasRunOut = true;
}

void Reach(Heap& heap, const RValue& value)
{
    if (KvKind(value) == VALUE_OBJECT)
        Reach(heap, value.pObj);
    else if (KvKind(value) == VALUE_ARRAY)
        Reach(heap, value.pRefArray);
}

// Marks everything reachable from the two work lists, without recursion.
void MarkReached(Heap& heap)
{
    while (!heap.objects.empty() || !heap.arrays.empty())
    {
        if (!heap.objects.empty())
        {
            KvObjectBase* object = heap.objects.back();
            heap.objects.pop_back();
            object->Mark4GC(heap.marks.data(), static_cast<int>(heap.marks.size()));
            continue;
        }
        const RefDynamicArrayOfRValue* array = heap.arrays.back();
        heap.arrays.pop_back();
        for (int32_t i = 0; i < array->m_length; ++i)
            Reach(heap, array->m_array[i]);
    }
}

void ReachRoots(Heap& heap)
{
    for (KvObjectBase* object : heap.globals.Entries())
        Reach(heap, object);
    for (KvObjectBase* object : ContextStack())
        Reach(heap, object);
    for (const RefDynamicArrayOfRValue* array : GameArrays().Entries())
        Reach(heap, array);
    for (const TemporaryRoots& roots : heap.temporaries)
        for (int i = 0; i < roots.count; ++i)
            Reach(heap, roots.values[i]);
}

// A young collection treats all objects that it does not sweep as roots.
void ReachAllButYoung(Heap& heap)
{
    for (int slot = 0; slot < g_slotObjects.m_nCapacity; ++slot)
        if (KvObjectBase* object = g_slotObjects.m_ppEntries[slot])
            if (object->m_gcGen != YOUNG)
                Reach(heap, object);
}

// False: there is no memory for it.
bool Mark(Heap& heap, bool full)
try
{
    heap.hasRunOut = false;
    heap.marks.assign((static_cast<size_t>(g_slotObjects.m_nCapacity) + 31) / 32, 0);
    heap.arraysSeen.clear();
    heap.takesReferences = true;
    ReachRoots(heap);
    if (!full)
        ReachAllButYoung(heap);
    MarkReached(heap);
    return !heap.hasRunOut;
}
catch (const std::bad_alloc&)
{
    return false;
}

// ---- sweeping ----

int SlotsInUse() // one past the highest
{
    int end = g_slotObjects.m_nCapacity;
    while (end > 0 && g_slotObjects.m_ppEntries[end - 1] == nullptr)
        --end;
    return end;
}

bool IsMarked(const Heap& heap, int slot)
{
    return ((heap.marks[static_cast<size_t>(slot) / 32] >> (slot % 32)) & 1u) != 0;
}

// The object in that slot if it is to be freed, else null.
KvObjectBase* DoomedAt(const Heap& heap, int slot, bool full)
{
    KvObjectBase* object = g_slotObjects.m_ppEntries[slot];
    const bool doomed = object != nullptr && !IsMarked(heap, slot) && (full || object->m_gcGen == YOUNG);
    return doomed ? object : nullptr;
}

// Reads the table anew for each object: PreFree and Free may free other objects and place new ones, and the table may
// be reallocated.
void FreeDoomed(Heap& heap, bool full)
{
    for (int slot = g_GCrangestart; slot < g_GCrangeend; ++slot)
        if (KvObjectBase* object = DoomedAt(heap, slot, full))
        {
            object->PreFree();
            MarkReached(heap); // what PreFree has stored stays alive
        }
    heap.takesReferences = false;
    for (int slot = g_GCrangestart; slot < g_GCrangeend && !heap.hasRunOut; ++slot)
        if (KvObjectBase* object = DoomedAt(heap, slot, full))
            heap.freed += object->Free(true) ? 1 : 0;
}

void PromoteSurvivors(int start, int end)
{
    for (int slot = start; slot < end; ++slot)
        if (KvObjectBase* object = g_slotObjects.m_ppEntries[slot])
        {
            object->m_gcGen = OLD;
            g_GCGens[OLD].UpdateRange(slot);
        }
}

void Sweep(Heap& heap, bool full)
{
    const CGCGeneration span = full ? CGCGeneration{0, SlotsInUse()} : g_GCGens[YOUNG];
    g_GCGens[YOUNG] = {0, 0};
    if (full)
        g_GCGens[OLD] = {0, 0};
    g_GCrangestart = span.m_rangeStart;
    g_GCrangeend = span.m_rangeEnd;
    FreeDoomed(heap, full);
    g_GCrangestart = 0;
    g_GCrangeend = 0;
    PromoteSurvivors(span.m_rangeStart, span.m_rangeEnd);
}

// One shutdown pass over all non-global objects. True if it freed at least one.
bool FreeAllButGlobals(Heap& heap)
{
    const auto mayGo = [&heap](KvObjectBase* object) { return object != nullptr && !heap.globals.Has(object); };
    for (int slot = 0; slot < g_slotObjects.m_nCapacity; ++slot)
        if (mayGo(g_slotObjects.m_ppEntries[slot]))
            g_slotObjects.m_ppEntries[slot]->PreFree();
    const int64_t before = heap.freed;
    for (int slot = 0; slot < g_slotObjects.m_nCapacity; ++slot)
        if (mayGo(g_slotObjects.m_ppEntries[slot]))
            heap.freed += g_slotObjects.m_ppEntries[slot]->Free(true) ? 1 : 0;
    return heap.freed != before;
}
} // namespace

void Collector::Collect(bool full)
{
    Heap& heap = TheHeap();
    if (!g_fGarbageCollection || heap.busy)
        return;
    heap.busy = true;
    heap.made = 0;
    if (Mark(heap, full))
        Sweep(heap, full);
    heap.takesReferences = false;
    heap.objects.clear();
    heap.arrays.clear();
    ++heap.collections;
    if (KvObjectBase::ms_currentCounter < INT_MAX)
        ++KvObjectBase::ms_currentCounter;
    heap.busy = false;
}

void Collector::Safepoint()
{
    Heap& heap = TheHeap();
    if (heap.stress)
        return Collect(true);
    // The limit grows with the live objects: a fixed one would mark all of them ever more often per new object.
    if (heap.made < std::max(SAFEPOINT_OBJECTS, g_slotObjects.m_nCount / 2))
        return;
    heap.fromSafepoints = (heap.fromSafepoints + 1) % SAFEPOINT_FULL;
    Collect(heap.fromSafepoints == 0);
}

void Collector::SetStress(bool on) { TheHeap().stress = on; }

void Collector::PushTemporaryRoots(const RValue* values, int count)
{
    TheHeap().temporaries.push_back({values, values != nullptr ? count : 0});
}

void Collector::PopTemporaryRoots()
{
    if (!TheHeap().temporaries.empty())
        TheHeap().temporaries.pop_back();
}

bool Collector::Place(KvObjectBase* object)
{
    if (!TakeSlot(object))
        return false;
    if (g_fGarbageCollection)
    {
        object->m_gcGen = GetNewObjGCGen();
        object->m_gcCounter = KvObjectBase::ms_currentCounter;
        g_GCGens[object->m_gcGen].UpdateRange(object->m_slot);
    }
    return true;
}

void Collector::LetGo(KvObjectBase* object)
{
    RemoveGlobalObject(object);
    if (object != nullptr && object->m_slot < 0)
        object->Free(true);
}

void Collector::FreeEverything()
{
    constexpr int PASSES = 100; // a destructor may make new objects, but not for ever
    Heap& heap = TheHeap();
    if (heap.busy)
        return;
    heap.busy = true;
    for (int pass = 0; pass < PASSES && FreeAllButGlobals(heap); ++pass)
        continue;
    heap.busy = false;
    heap.made = 0;
    if (g_slotObjects.m_nCount > 0)
        return;
    FreeEmptyTable();
    g_GCGens[YOUNG] = {0, 0};
    g_GCGens[OLD] = {0, 0};
}

Collector::Stats Collector::GetStats()
{
    const Heap& heap = TheHeap();
    Stats stats = {g_slotObjects.m_nCount, 0, 0, heap.collections, heap.freed};
    for (int slot = 0; slot < g_slotObjects.m_nCapacity; ++slot)
        if (const KvObjectBase* object = g_slotObjects.m_ppEntries[slot])
        {
            stats.young += object->m_gcGen == YOUNG ? 1 : 0;
            stats.old += object->m_gcGen == OLD ? 1 : 0;
        }
    return stats;
}

namespace
{
bool CheckGenerations(std::string& why)
{
    for (int slot = 0; slot < g_slotObjects.m_nCapacity; ++slot)
    {
        const KvObjectBase* object = g_slotObjects.m_ppEntries[slot];
        if (object == nullptr || object->m_gcGen < YOUNG)
            continue;
        const bool known = object->m_gcGen <= OLD;
        if (known && slot >= g_GCGens[object->m_gcGen].m_rangeStart && slot < g_GCGens[object->m_gcGen].m_rangeEnd)
            continue;
        why = "slot " + std::to_string(slot) + " lies outside the span of its generation " +
              std::to_string(object->m_gcGen);
        return false;
    }
    return true;
}

bool CheckGlobals(const Heap& heap, std::string& why)
{
    for (const KvObjectBase* object : heap.globals.Entries())
    {
        if (object == nullptr || object->m_slot < 0)
            continue;
        if (object->m_slot < g_slotObjects.m_nCapacity && g_slotObjects.m_ppEntries[object->m_slot] == object)
            continue;
        why = "a global object is not in its slot " + std::to_string(object->m_slot);
        return false;
    }
    return true;
}

bool CheckGameArrays(std::string& why)
{
    for (const RefDynamicArrayOfRValue* array : GameArrays().Entries())
    {
        if (array == nullptr || array->m_refCount > 0)
            continue;
        why = "collector: an array that the game holds has no reference left";
        return false;
    }
    return true;
}
} // namespace

bool Collector::Check(std::string& why)
{
    const Heap& heap = TheHeap();
    if (!heap.busy && (g_GCrangestart != 0 || g_GCrangeend != 0))
    {
        why = "slots are marked as being swept, but no sweep runs";
        return false;
    }
    return CheckTable(why) && CheckGenerations(why) && CheckGlobals(heap, why) && CheckGameArrays(why);
}
} // namespace Runner

// ---- what the interface declares ----

void CGCGeneration::UpdateRange(int slot)
{
    const bool empty = m_rangeStart == m_rangeEnd;
    m_rangeStart = empty ? slot : std::min(m_rangeStart, slot);
    m_rangeEnd = empty ? slot + 1 : std::max(m_rangeEnd, slot + 1);
}

int GetNewObjGCGen()
{
    int& made = Runner::TheHeap().made;
    made = made < INT_MAX ? made + 1 : made;
    return Runner::YOUNG;
}

void AddGlobalObject(KvObjectBase* object)
{
    Runner::WithoutThrowing([object] { Runner::TheHeap().globals.Add(object); });
}

void RemoveGlobalObject(KvObjectBase* object) { Runner::TheHeap().globals.Remove(object); }

void AddGCRefRValue(RValue* value)
{
    if (value != nullptr)
        Runner::Reach(Runner::TheHeap(), *value);
}

// Every collection marks anew, from the roots and from all objects that it does not sweep, so references between
// objects need not be remembered. Two things need this call: an array that the game as a whole holds becomes a root,
// because no object leads to it; and during a sweep, what a doomed object stores is marked at once.
void DeterminePotentialRoot(KvObjectBase*, KvObjectBase* object) { Runner::Reach(Runner::TheHeap(), object); }

void DeterminePotentialRoot(KvObjectBase* owner, RefDynamicArrayOfRValue* array)
{
    if (owner == nullptr)
        Runner::GiveToGame(array);
    Runner::Reach(Runner::TheHeap(), array);
}
