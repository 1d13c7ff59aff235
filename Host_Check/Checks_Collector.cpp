// Files/Object/Object_Base.h and Files/LLVM/Arrays.h: what a collection frees and what it keeps.

#include "Host_Check/Check.h"
#include "Host_Check/Probe.h"

namespace HostCheck
{
namespace
{

constexpr char HEADER[] = "Files/Object/Object_Base.h";
constexpr char ARRAYS[] = "Files/LLVM/Arrays.h";
constexpr char ROOT[] = "a root until removed";
constexpr char ALIVE[] = "while marking: what the value refers to is alive";
constexpr char SWEPT[] = "slots [start, end) are being swept now: nothing may be placed there";
constexpr char OF_THE_GAME[] =
    "A null owner is the game as a whole: an array that it holds stays alive, with what is in "
    "it, as long as it has a reference.";

void NoBody(KvObjectBase*, RValue*, int, RValue*) {}

// A probe that is no root, and one more that is and may hold it.
struct Pair
{
    Pair() : kept(Probe::Make(keptFate)), root(Probe::Make(rootFate))
    {
        if (root != nullptr)
            AddGlobalObject(root);
    }
    // What the collections of the check have left.
    ~Pair()
    {
        if (root != nullptr && !rootFate.isDeleted)
        {
            RemoveGlobalObject(root);
            root->Discard();
        }
        if (kept != nullptr && !keptFate.isDeleted)
            kept->Discard();
    }
    Pair(const Pair&) = delete;
    Pair& operator=(const Pair&) = delete;

    Probe::Fate keptFate, rootFate;
    Probe *kept, *root;
};

bool CanCollect(Trial& trial, const Pair& pair)
{
    if (!g_fGarbageCollection)
        trial.NotTested("g_fGarbageCollection is false");
    return g_fGarbageCollection && pair.kept != nullptr && pair.root != nullptr;
}

// Twice: what is freed wrongly may be found in its slot until the next one.
void CollectTwice(Trial& trial)
{
    trial.hooks.collect();
    trial.hooks.collect();
}

void UnreachableIsFreed(Trial& trial)
{
    const Pair pair;
    if (!CanCollect(trial, pair))
        return;
    CollectTwice(trial);
    trial.Expect(pair.keptFate.isDeleted, "an object that no root leads to is still there after a collection");
}

void RootsStay(Trial& trial)
{
    const Pair pair;
    if (!CanCollect(trial, pair))
        return;
    CollectTwice(trial);
    trial.Expect(!pair.rootFate.isDeleted, "a root was freed");
}

void RemovedRootsAreFreed(Trial& trial)
{
    Pair pair;
    if (!CanCollect(trial, pair))
        return;
    RemoveGlobalObject(pair.root);
    CollectTwice(trial);
    const bool isFreed = pair.rootFate.isDeleted;
    pair.root = isFreed ? nullptr : pair.root;
    trial.Expect(isFreed, "an object is still there after RemoveGlobalObject and a collection");
    if (!isFreed)
        AddGlobalObject(pair.root);
}

void HeldObjectsStay(Trial& trial)
{
    const Pair pair;
    if (!CanCollect(trial, pair))
        return;
    pair.root->Hold(ObjectValue(pair.kept));
    CollectTwice(trial);
    if (!trial.Expect(!pair.keptFate.isDeleted, "an object that a root refers to was freed"))
        return;
    pair.root->Drop();
    CollectTwice(trial);
    trial.Expect(pair.keptFate.isDeleted, "an object is still there although the root has dropped it");
}

// The root holds an array, in it an array, in it the object.
void HeldArraysKeepTheirObjects(Trial& trial)
{
    const Pair pair;
    RefDynamicArrayOfRValue *outer = NewArray(2), *inner = NewArray(3);
    if (!CanCollect(trial, pair) || outer == nullptr || inner == nullptr)
        return;
    inner->m_array[1] = ObjectValue(pair.kept);
    outer->m_array[1] = ArrayValue(inner);
    RValue value = ArrayValue(outer);
    pair.root->Hold(value);
    FREE_RValue__Pre(&value);
    CollectTwice(trial);
    trial.Expect(!pair.keptFate.isDeleted, "an object in an array in an array that a root holds was freed");
    if (!pair.keptFate.isDeleted)
        pair.root->Drop();
}

void ObjectsAreMarkedOnce(Trial& trial)
{
    const Pair pair;
    if (!CanCollect(trial, pair))
        return;
    AddGlobalObject(pair.kept);
    pair.root->Hold(ObjectValue(pair.kept));
    trial.hooks.collect();
    const int marked = pair.keptFate.marked;
    RemoveGlobalObject(pair.kept);
    trial.Expect(marked == 1, "an object that two references lead to was marked %d times in one collection", marked);
}

// Outside of a collection the call says nothing that could be kept in mind.
void MarksOutsideAreForgotten(Trial& trial)
{
    const Pair pair;
    if (!CanCollect(trial, pair))
        return;
    RValue value = ObjectValue(pair.kept);
    AddGCRefRValue(&value);
    CollectTwice(trial);
    trial.Expect(pair.keptFate.isDeleted, "AddGCRefRValue outside of a collection has kept an object alive");
}

bool MakeCallable(Trial& trial, RValue& out)
{
    out = OfKind(VALUE_UNDEFINED);
    return trial.Expect(trial.hooks.makeScript(NoBody, true, &out), "the hook makeScript could make no callable");
}

bool IsInItsSlot(const KvObjectBase* object, int slot)
{
    return slot >= 0 && slot < g_slotObjects.m_nCapacity && g_slotObjects.m_ppEntries[slot] == object;
}

void CamerasKeepTheirCallables(Trial& trial)
{
    RValue callable;
    CCamera* camera = g_CM.CreateCamera();
    if (camera == nullptr || !MakeCallable(trial, callable))
        return;
    const int slot = callable.pObj->m_slot;
    camera->SetBeginScript(&callable);
    CollectTwice(trial);
    trial.Expect(IsInItsSlot(callable.pObj, slot), "a collection has taken the callable that a camera holds");
    g_CM.DestroyCamera(camera->GetID());
}

void DestroyedCamerasLetGo(Trial& trial)
{
    RValue callable;
    CCamera* camera = g_CM.CreateCamera();
    if (camera == nullptr || !MakeCallable(trial, callable))
        return;
    if (!g_fGarbageCollection)
        return trial.NotTested("g_fGarbageCollection is false");
    const int slot = callable.pObj->m_slot;
    camera->SetBeginScript(&callable);
    g_CM.DestroyCamera(camera->GetID());
    CollectTwice(trial);
    trial.Expect(!IsInItsSlot(callable.pObj, slot), "the callable of a destroyed camera outlives a collection");
}

// An array that holds the object, stored in the name of nobody, as a camera without a proxy stores its callback. made
// is the reference of who made the array, held the one that was stored.
struct ArrayWithoutOwner
{
    RValue made, held = OfKind(VALUE_UNDEFINED);

    ArrayWithoutOwner(RefDynamicArrayOfRValue* array, KvObjectBase* object) : made(ArrayValue(array))
    {
        array->m_array[0] = ObjectValue(object);
        PushContextStack(nullptr);
        KvAssign(held, made);
        PopContextStack(1);
    }
};

void ArraysOfTheGameStay(Trial& trial)
{
    const Pair pair;
    RefDynamicArrayOfRValue* array = NewArray(1);
    if (!CanCollect(trial, pair) || array == nullptr)
        return;
    ArrayWithoutOwner values(array, pair.kept);
    FREE_RValue__Pre(&values.made);
    CollectTwice(trial);
    if (!trial.Expect(!pair.keptFate.isDeleted, "an object in an array that was stored without an owner was freed"))
        return;
    FREE_RValue__Pre(&values.held);
    CollectTwice(trial);
    trial.Expect(pair.keptFate.isDeleted, "an object is still there after the array without an owner was freed");
}

// The last change of the count is another holder's: the game's reference must not be forgotten with it.
void SharedArraysOfTheGameStay(Trial& trial)
{
    const Pair pair;
    RefDynamicArrayOfRValue* array = NewArray(1);
    if (!CanCollect(trial, pair) || array == nullptr)
        return;
    ArrayWithoutOwner values(array, pair.kept);
    pair.root->Hold(values.made);
    FREE_RValue__Pre(&values.made);
    pair.root->Drop();
    CollectTwice(trial);
    trial.Expect(!pair.keptFate.isDeleted,
                 "an object in an array that was stored without an owner was freed after an owner had shared it");
    if (!pair.keptFate.isDeleted)
        FREE_RValue__Pre(&values.held);
}

void SwitchedOffNothingIsFreed(Trial& trial)
{
    const Pair pair;
    if (!CanCollect(trial, pair))
        return;
    g_fGarbageCollection = false;
    CollectTwice(trial);
    g_fGarbageCollection = true;
    trial.Expect(!pair.keptFate.isDeleted, "a collection frees although g_fGarbageCollection is false");
}

void OutsideNothingIsSwept(Trial& trial)
{
    trial.hooks.collect();
    trial.Expect(g_GCrangestart >= g_GCrangeend, "slots [%d, %d) are being swept although no collection runs",
                 g_GCrangestart, g_GCrangeend);
}

// What a freed object makes while the sweep runs.
Probe::Fate s_newcomerFate;
Probe* s_newcomer = nullptr;
bool s_isAmongTheSwept = false;

void MakeNewcomer()
{
    if (s_newcomer != nullptr)
        return;
    s_newcomer = Probe::Make(s_newcomerFate);
    if (s_newcomer == nullptr)
        return;
    AddGlobalObject(s_newcomer);
    s_isAmongTheSwept = s_newcomer->m_slot >= g_GCrangestart && s_newcomer->m_slot < g_GCrangeend;
}

void NewcomersSurviveTheSweep(Trial& trial)
{
    const Pair pair;
    if (!CanCollect(trial, pair))
        return;
    s_newcomer = nullptr;
    s_newcomerFate = {};
    pair.kept->CallWhenFreed(MakeNewcomer);
    trial.hooks.collect();
    if (!trial.Expect(s_newcomer != nullptr, "no object was freed, so none was made meanwhile"))
        return;
    trial.Expect(!s_isAmongTheSwept, "an object that was made during a sweep was placed among the swept slots");
    const bool lives = trial.Expect(!s_newcomerFate.isDeleted, "the sweep has freed an object that was made during it");
    if (!lives)
        return;
    RemoveGlobalObject(s_newcomer);
    s_newcomer->Discard();
}

constexpr unsigned NEEDS_CALLABLE = Need_Collect | Need_Script;

constexpr Check CHECKS[] = {
    {"collector.frees", Level::Callbacks, HEADER, ROOT, Need_Collect, UnreachableIsFreed},
    {"collector.root_stays", Level::Callbacks, HEADER, ROOT, Need_Collect, RootsStay},
    {"collector.root_removed", Level::Callbacks, HEADER, ROOT, Need_Collect, RemovedRootsAreFreed},
    {"collector.held_object", Level::Callbacks, ARRAYS,
     "Tells the collector that owner now refers to the object or array.", Need_Collect, HeldObjectsStay},
    {"collector.held_array", Level::Callbacks, HEADER, ALIVE, Need_Collect, HeldArraysKeepTheirObjects},
    {"collector.marked_once", Level::Callbacks, HEADER, "False: already marked, or outside.", Need_Collect,
     ObjectsAreMarkedOnce},
    {"collector.marks_outside", Level::Callbacks, HEADER, ALIVE, Need_Collect, MarksOutsideAreForgotten},
    {"collector.camera_callable", Level::Callbacks, HEADER, ROOT, NEEDS_CALLABLE, CamerasKeepTheirCallables},
    {"collector.camera_destroyed", Level::Callbacks, HEADER, ROOT, NEEDS_CALLABLE, DestroyedCamerasLetGo},
    {"collector.array_of_game", Level::Callbacks, ARRAYS, OF_THE_GAME, Need_Collect, ArraysOfTheGameStay},
    {"collector.shared_array_of_game", Level::Callbacks, ARRAYS, OF_THE_GAME, Need_Collect, SharedArraysOfTheGameStay},
    {"collector.switched_off", Level::Callbacks, HEADER, "false: objects are freed by hand", Need_Collect,
     SwitchedOffNothingIsFreed},
    {"collector.range_outside", Level::Callbacks, HEADER, SWEPT, Need_Collect, OutsideNothingIsSwept},
    {"collector.made_during_sweep", Level::Callbacks, HEADER, SWEPT, Need_Collect, NewcomersSurviveTheSweep},
};

} // namespace

Checks CollectorChecks() { return Table(CHECKS); }

} // namespace HostCheck
