#pragma once
// The collector: a mark and sweep over the slot table, in two generations.
//
// C1 A placed object stands in g_slotObjects at its m_slot, and nowhere else. Its destructor takes it out.
// C2 Roots: global objects, the context stack, the game's arrays (Arrays.h), temporary roots. What no root leads to may
//    be freed.
// C3 Generation 0 is young, generation 1 old. A young collection sweeps the young objects alone, and every other object
//    is a root for it: nothing that stays is left with a reference to something freed.
// C4 While a sweep runs, g_GCrangestart and g_GCrangeend hold its slots, and new objects go elsewhere. Else both are 0.
// C5 A generation's span takes in the slots of all its objects.
// C6 Objects that are not placed (m_slot -1), such as instances, are their owner's: never marked, never swept.
//
// An object to be freed hears PreFree first, while all others still exist. Should it store a doomed object somewhere
// (DeterminePotentialRoot), that object and all that it refers to stay alive.
//
// All of it works before main and after it. Game thread only.

#include "Files/Object/Object_Base.h"

#include <string>

namespace Runner
{
class Collector
{
public:
    struct Stats
    {
        int live;        // objects placed
        int young;       // of these
        int old;         // of these; one placed while collection was off is neither until a full collection
        int collections; // so far
        int freed;       // so far
    };

    // Frees what no root leads to: young objects, or all. Survivors are old afterwards.
    // Does nothing while g_fGarbageCollection is false or another collection runs.
    static void Collect(bool full);

    // Called where a collection may happen, that is, where every object in use is reachable from a root. Collects once
    // enough objects were made, now and then all of them.
    static void Safepoint();
    static void SetStress(bool on); // every safepoint collects everything

    // Values in flight, such as arguments, are roots between the two calls, whatever is written to them meanwhile.
    // Calls nest.
    static void PushTemporaryRoots(const RValue* values, int count);
    static void PopTemporaryRoots();

    // Gives a new object its slot and, while collection is on, its generation and stamp. The object is no root by that.
    // False when memory is refused; the object is then still the caller's.
    [[nodiscard]] static bool Place(KvObjectBase* object);

    // Lets go of a global object. The collector frees it in time; one that was refused a slot, which the collector does
    // not know, goes at once. Null is allowed.
    static void LetGo(KvObjectBase* object);

    // At exit: frees every object but the global ones, which somebody still holds, and the empty table.
    static void FreeEverything();

    static Stats GetStats();
    static bool Check(std::string& why); // C1, C4, C5 and the roots; false, and why
};
} // namespace Runner
