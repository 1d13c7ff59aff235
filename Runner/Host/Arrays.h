#pragma once
// Counted arrays (Files/LLVM/Arrays.h): when a record is freed, and who owns it.
//
// A1 A new record has one reference, its maker's.
// A2 Array_DecRef counts and frees nothing: its callers hand the record to Array_SetOwner next, the last one too.
// A3 Array_SetOwner frees a record without references, with its elements. It must not be used after that.
// A4 Array_SetOwner gives a record with one reference to the object on top of the context stack; a shared one has no
//    owner.
// A5 A record that was stored with a null owner (DeterminePotentialRoot) is referred to by the game as a whole: it is a
//    root of the collector until it is freed, whoever else shares it. A camera without a proxy holds arrays this way.
//    m_owner (A4) cannot tell: it follows the last change of the count, which another holder may have made.
//
// Arrays are freed by reference count alone, so one that contains itself, directly or not, would never be freed. None
// arises: scripts hand over copies, which are trees. Freeing a deeply nested array does not recurse.

#include "Files/LLVM/Arrays.h"
#include "Runner/Base/Root_Set.h"

#include <vector>

namespace Runner
{
const std::vector<KvObjectBase*>& ContextStack(); // bottom first; entries may be null

void GiveToGame(RefDynamicArrayOfRValue* array); // A5; takes null and the game's own
const RootSet<RefDynamicArrayOfRValue>& GameArrays();
} // namespace Runner
