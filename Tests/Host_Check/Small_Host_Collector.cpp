// Collector objects, slots, marking and sweeping of the small host; scripts and callables.

#include "Tests/Host_Check/Small_Host.h"

#include <algorithm>
#include <set>

KvSlot<KvObjectBase> g_slotObjects = {nullptr, 0, 0, 0, nullptr, 0};
CGCGeneration g_GCGens[1] = {{0, 0}};
int g_GCrangestart = 0;
int g_GCrangeend = 0;
bool g_fGarbageCollection = true;
int KvObjectBase::ms_currentCounter = 0;
int Current_Object = -1;
bool g_fIsJSProject = false;
CInstance* g_pGlobal = nullptr;

namespace SmallHost
{
namespace
{

// Made on first use and never destroyed: cameras let go of their proxies after main.
struct Heap
{
    std::set<KvObjectBase*> roots, everRoots;
    std::set<RefDynamicArrayOfRValue*> gameArrays;
    std::vector<KvObjectBase*> contexts, running;
    std::vector<uint32_t> marks;
    std::vector<ScriptBody> scripts;
    bool isMarking = false;
    KvObjectBase* keptFromOutside = nullptr;
};

Heap& TheHeap()
{
    static Heap& heap = *new Heap;
    return heap;
}

void Mark(KvObjectBase* object)
{
    Heap& heap = TheHeap();
    if (object != nullptr && heap.isMarking)
        object->Mark4GC(heap.marks.data(), static_cast<int>(heap.marks.size()));
}

void MarkValue(const RValue& value);

void MarkArray(const RefDynamicArrayOfRValue* array)
{
    for (int32_t i = 0; array != nullptr && i < array->m_length; ++i)
        MarkValue(array->m_array[i]);
}

void MarkValue(const RValue& value)
{
    if (KvKind(value) == VALUE_OBJECT && !Breaks(Breakage::HeldObjectsAreForgotten))
        Mark(value.pObj);
    if (KvKind(value) == VALUE_ARRAY && !Breaks(Breakage::HeldArraysAreForgotten))
        MarkArray(value.pRefArray);
}

void MarkRoots()
{
    Heap& heap = TheHeap();
    heap.marks.assign(static_cast<size_t>(g_slotObjects.m_nCapacity) / 32 + 1, 0);
    heap.isMarking = true;
    if (!Breaks(Breakage::RootsAreFreed))
        for (KvObjectBase* root : Breaks(Breakage::RemovedRootsStay) ? heap.everRoots : heap.roots)
            Mark(root);
    for (KvObjectBase* object : heap.contexts)
        Mark(object);
    if (!Breaks(Breakage::RunningCallablesAreFreed))
        for (KvObjectBase* object : heap.running)
            Mark(object);
    if (!Breaks(Breakage::ArraysWithoutOwnerAreForgotten))
        for (const RefDynamicArrayOfRValue* array : heap.gameArrays)
            MarkArray(array);
    Mark(heap.keptFromOutside);
    heap.isMarking = false;
}

bool IsMarked(int slot)
{
    const size_t word = static_cast<size_t>(slot) / 32;
    const Heap& heap = TheHeap();
    return word < heap.marks.size() && (heap.marks[word] >> (slot % 32) & 1u) != 0;
}

void Sweep(int end)
{
    for (int slot = 0; slot < end; ++slot)
        if (KvObjectBase* object = g_slotObjects.m_ppEntries[slot])
            if (!IsMarked(slot))
                object->Free(true);
}

void GrowTable()
{
    KvSlot<KvObjectBase>& table = g_slotObjects;
    const int old = table.m_nCapacity, capacity = old * 2 + 8;
    table.m_ppEntries =
        static_cast<KvObjectBase**>(KvRealloc(table.m_ppEntries, capacity * static_cast<int>(sizeof(KvObjectBase*))));
    table.m_freeSlotStack =
        static_cast<int*>(KvRealloc(table.m_freeSlotStack, capacity * static_cast<int>(sizeof(int))));
    std::fill(table.m_ppEntries + old, table.m_ppEntries + capacity, nullptr);
    table.m_nCapacity = capacity;
}

void GiveSlotBack(KvObjectBase* object)
{
    KvSlot<KvObjectBase>& table = g_slotObjects;
    const int slot = object->m_slot;
    if (slot < 0 || slot >= table.m_nCapacity || table.m_ppEntries[slot] != object)
        return;
    if (Breaks(Breakage::SlotsAreNotGivenBack))
        return;
    table.m_ppEntries[slot] = nullptr;
    table.m_nCount -= Breaks(Breakage::FreedEntriesAreCounted) ? 0 : 1;
    table.m_lastFreed = Breaks(Breakage::TheSearchStartsOutside) ? -7 : std::min(table.m_lastFreed, slot);
}

} // namespace

Callable::Callable(ScriptBody theBody) : KvObjectBase(0, OBJECT_VARIABLE_MASK), body(theBody)
{
    m_kind = Breaks(Breakage::CallablesHaveAnotherKind) ? 9 : static_cast<int>(OBJECT_KIND_SCRIPT_FUNCTION);
}

// The first free entry: the module's search finds what is missing from the free list, and so does this one.
bool Place(KvObjectBase* object)
{
    KvSlot<KvObjectBase>& table = g_slotObjects;
    int slot = 0;
    while (slot < table.m_nCapacity &&
           (table.m_ppEntries[slot] != nullptr || (slot >= g_GCrangestart && slot < g_GCrangeend)))
        ++slot;
    if (slot == table.m_nCapacity)
        GrowTable();
    table.m_ppEntries[slot] = object;
    ++table.m_nCount;
    object->m_slot = slot;
    object->m_gcGen = GetNewObjGCGen();
    g_GCGens[0].UpdateRange(slot);
    return true;
}

void Collect()
{
    if ((!g_fGarbageCollection && !Breaks(Breakage::CollectionsRunWhenSwitchedOff)) || Breaks(Breakage::NothingIsFreed))
        return;
    MarkRoots();
    const int end = g_slotObjects.m_nCapacity;
    g_GCrangeend = Breaks(Breakage::SweepsTakeWhatIsMadeMeanwhile) ? 0 : end;
    Sweep(end);
    if (Breaks(Breakage::SweepsTakeWhatIsMadeMeanwhile))
        Sweep(g_slotObjects.m_nCapacity); // what was made meanwhile has no mark
    g_GCrangeend = Breaks(Breakage::TheSweptRangeStays) ? end : 0;
    KvObjectBase::ms_currentCounter += Breaks(Breakage::StampsFall) ? -1 : 1;
    if (Breaks(Breakage::SurvivorsLeaveTheirSpan))
        g_GCGens[0] = {0, 0};
}

void KeepWhileRunning(KvObjectBase* object) { TheHeap().running.push_back(object); }
void LetGo() { TheHeap().running.pop_back(); }
void GameHolds(RefDynamicArrayOfRValue* array) { TheHeap().gameArrays.insert(array); }
void GameForgets(RefDynamicArrayOfRValue* array) { TheHeap().gameArrays.erase(array); }

int AddScript(ScriptBody body)
{
    TheHeap().scripts.push_back(body);
    return static_cast<int>(TheHeap().scripts.size()) - 1;
}

} // namespace SmallHost

using namespace SmallHost;

// ---- the object base ----
KvObjectBase::KvObjectBase(int, int)
    : m_slot(Breaks(Breakage::NewObjectsAreInSlotZero) ? 0 : -1), m_gcGen(-1), m_gcCounter(0), m_kind(0)
{
}

KvObjectBase::~KvObjectBase()
{
    TheHeap().roots.erase(this);
    TheHeap().everRoots.erase(this);
    if (TheHeap().keptFromOutside == this)
        TheHeap().keptFromOutside = nullptr;
    GiveSlotBack(this);
}

RValue* KvObjectBase::InternalGetKvVarRef(int) { return nullptr; }
RValue* KvObjectBase::InternalGetKvVarRefL(int) { return nullptr; }
bool KvObjectBase::Mark4GC(uint32_t* marks, int count) { return MarkThisOnly4GC(marks, count); }

bool KvObjectBase::MarkThisOnly4GC(uint32_t* marks, int count)
{
    if (m_slot < 0)
        return Breaks(Breakage::UnplacedObjectsAreMarked);
    if (m_slot / 32 >= count && !Breaks(Breakage::MarksAreSetOutside))
        return false;
    const int bitsAWord = Breaks(Breakage::MarksAreBytes) ? 8 : 32;
    uint32_t& word = marks[m_slot / bitsAWord];
    const uint32_t bit = uint32_t{1} << (m_slot % bitsAWord);
    const bool isNew = (word & bit) == 0;
    word |= bit;
    return isNew || Breaks(Breakage::MarkedObjectsAreMarkedAgain);
}

bool KvObjectBase::MarkOnlyChildren4GC(uint32_t*, int) { return true; }

bool KvObjectBase::Free(bool)
{
    if (!Breaks(Breakage::FreeSaysDeleted))
        delete this;
    return true;
}

bool KvObjectBase::ThreadFree(bool freeVars, GCContext*) { return Free(freeVars); }
void KvObjectBase::PreFree() {}
void* KvObjectBase::GetDispose() { return nullptr; }
void KvObjectBase::FreeVars(KvObjectBase*, bool, GCContext*) {}

// ---- the collector ----
void CGCGeneration::UpdateRange(int slot)
{
    const bool isEmpty = m_rangeStart == m_rangeEnd;
    if (isEmpty || Breaks(Breakage::SpansOnlyMove))
        *this = {isEmpty && Breaks(Breakage::EmptySpansStartAtZero) ? 0 : slot, slot + 1};
    m_rangeStart = std::min(m_rangeStart, slot);
    m_rangeEnd = std::max(m_rangeEnd, slot + 1);
}

int GetNewObjGCGen() { return 0; }

void AddGlobalObject(KvObjectBase* object)
{
    TheHeap().roots.insert(object);
    TheHeap().everRoots.insert(object);
}

void RemoveGlobalObject(KvObjectBase* object) { TheHeap().roots.erase(object); }

void AddGCRefRValue(RValue* value)
{
    if (Breaks(Breakage::MarksOutsideAreKept) && KvKind(*value) == VALUE_OBJECT && !TheHeap().isMarking)
        TheHeap().keptFromOutside = value->pObj;
    MarkValue(*value);
}

KvObjectBase* GetContextStackTop() { return TheHeap().contexts.empty() ? nullptr : TheHeap().contexts.back(); }

void PushContextStack(KvObjectBase* owner)
{
    if (owner != nullptr || !Breaks(Breakage::NullContextsAreLeftOut))
        TheHeap().contexts.push_back(owner);
}

void PopContextStack(int count)
{
    std::vector<KvObjectBase*>& contexts = TheHeap().contexts;
    const size_t popped = Breaks(Breakage::OneContextIsPopped) ? 1 : static_cast<size_t>(count);
    contexts.resize(contexts.size() - std::min(popped, contexts.size()));
}

void DeterminePotentialRoot(KvObjectBase*, KvObjectBase*) {}

void DeterminePotentialRoot(KvObjectBase* owner, RefDynamicArrayOfRValue* array)
{
    if (owner == nullptr)
        GameHolds(array);
}

// ---- scripts ----
bool Script_Perform(int index, CInstance* self, CInstance*, int argc, RValue* result, DynamicArrayOfRValue*)
{
    const std::vector<ScriptBody>& scripts = TheHeap().scripts;
    if (index < 0 || static_cast<size_t>(index) >= scripts.size())
        return Breaks(Breakage::MissingScriptsAreTrue);
    for (int runs = Breaks(Breakage::ScriptsRunTwice) ? 2 : 1; runs > 0; --runs)
        scripts[static_cast<size_t>(index)](self, result, argc, nullptr);
    return true;
}

bool JS_IsCallable_Object(KvObjectBase* object)
{
    if (object == nullptr)
        return Breaks(Breakage::NullIsCallable);
    return object->m_kind == OBJECT_KIND_SCRIPT_FUNCTION || Breaks(Breakage::EveryObjectIsCallable) ||
           Breaks(Breakage::CallablesHaveAnotherKind);
}

void Call_RValue(KvObjectBase* self, RValue* result, RValue* callable, int argc, RValue* args)
{
    if (KvKind(*callable) != VALUE_OBJECT || !JS_IsCallable_Object(callable->pObj))
        return;
    const bool drops = Breaks(Breakage::ArgumentsAreDropped);
    const ScriptBody body = static_cast<Callable*>(callable->pObj)->body;
    KeepWhileRunning(callable->pObj);
    body(self, result, drops ? 0 : argc, drops ? nullptr : args);
    LetGo();
}
