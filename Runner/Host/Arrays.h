#pragma once
// Counted arrays (Files/LLVM/Arrays.h): when a record is freed, and who owns it.
//
// A1 A new record has one reference, its maker's.
// A2 Array_DecRef counts and frees nothing: its callers hand the record to Array_SetOwner next, the last one too.
// A3 Array_SetOwner frees a record without references, with its elements. It must not be used after that.
// A4 A record with one reference belongs to the object in whose name values are stored; a shared one to nobody.
// A5 A record that was stored in nobody's name (DeterminePotentialRoot with a null owner) is the game's until it is
// freed,
//    whoever else comes to share it: a root of the collector. A camera without a proxy holds its callbacks so. The
//    owner of A4 cannot tell: it follows the last change of the count, which may be another holder's.
//
// Arrays are freed by count alone. One that contains itself, directly or not, is never freed: scripts hand over fresh
// trees, so none arises. Freeing a deeply nested array takes no stack.

#include "Files/LLVM/Arrays.h"
#include "Runner/Base/Root_Set.h"

#include <vector>

namespace Runner
{
const std::vector<KvObjectBase*>& ContextStack(); // bottom first; entries may be null

void GiveToGame(RefDynamicArrayOfRValue* array); // A5; takes null and the game's own
const RootSet<RefDynamicArrayOfRValue>& GameArrays();
} // namespace Runner
