#pragma once
// Taking slots of g_slotObjects and giving them back.

#include "Files/Object/Object_Base.h"

#include <string>

namespace Runner
{
// Puts the object into a free slot outside the range being swept. The table grows when it is full; false when memory is
// refused.
bool TakeSlot(KvObjectBase* object);

void GiveSlotBack(KvObjectBase* object); // does nothing for an object without a slot

void FreeEmptyTable(); // does nothing while it holds an object

bool CheckTable(std::string& why); // every object's m_slot and the counts are right; else false, and why
} // namespace Runner
