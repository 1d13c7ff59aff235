#pragma once
// The collector: a mark and sweep over the slot table, in two generations.
//
// C1 A placed object is in g_slotObjects at index m_slot, and nowhere else. Its destructor removes it.
// C2 Roots: global objects, the context stack, the game's arrays (Arrays.h), temporary roots. An object that cannot be
//    reached from a root may be freed.
// C3 Generation 0 is young, generation 1 old. A young collection sweeps only the young objects and treats every other
//    object as a root, so no object that stays refers to a freed one.
// C4 While a sweep runs, its slots are [g_GCrangestart, g_GCrangeend), and new objects are placed outside of them.
//    Otherwise both are 0.
// C5 A generation's span includes the slots of all its objects.
// C6 Objects that are not placed (m_slot -1), such as instances, belong to their owner: never marked, never swept.
//
// PreFree is called on each object to be freed while all of them still exist. If it stores another object that was to
// be freed (DeterminePotentialRoot), that object and everything it refers to stay alive.
//
// Everything here works before main and after it. Game thread only.

#include "Files/Object/Object_Base.h"

#include <cstdint>
#include <string>

namespace Runner
{
class Collector
{
public:
    struct Stats
    {
        int live;  // objects placed
        int young; // of these
        int old;   // of these; an object placed while collection was off is in neither until a full collection
        int64_t collections; // so far
        int64_t freed;       // so far
    };

    // Frees the objects that no root leads to, among the young ones or among all (full). Survivors are old afterwards.
    // Does nothing while g_fGarbageCollection is false or another collection runs.
    static void Collect(bool full);

    // Called where every object in use is reachable from a root, so that a collection may happen. Collects when enough
    // objects have been made since the last one; every eighth such collection is a full one.
    static void Safepoint();
    static void SetStress(bool on); // every safepoint collects everything

    // Makes values in flight, such as arguments, roots between the two calls, including what is written to them
    // meanwhile. Calls nest.
    static void PushTemporaryRoots(const RValue* values, int count);
    static void PopTemporaryRoots();

    // Gives a new object its slot and, while collection is on, its generation and stamp. This does not make it a root.
    // False when memory is refused; the caller then still owns the object.
    [[nodiscard]] static bool Place(KvObjectBase* object);

    // Ends a global object's being a root: the collector frees it later. An object that was refused a slot is unknown
    // to the collector and is freed at once. Null is allowed.
    static void LetGo(KvObjectBase* object);

    // At exit: frees every object except the global ones, which somebody still holds; then the table, if it is empty.
    static void FreeEverything();

    static Stats GetStats();
    static bool Check(std::string& why); // C1, C4, C5 and the roots; false, and why
};
} // namespace Runner
