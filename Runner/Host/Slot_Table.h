#pragma once
// Taking and giving back places in g_slotObjects.

#include "Files/Object/Object_Base.h"

#include <string>

namespace Runner
{
// A free slot for the object, outside the slots being swept; the table grows as needed. False without memory.
bool TakeSlot(KvObjectBase* object);

void GiveSlotBack(KvObjectBase* object); // nothing for an object without a slot

void FreeEmptyTable(); // nothing while an object stands in it

bool CheckTable(std::string& why); // every entry knows its slot, the counts are right; false, and why
} // namespace Runner
