#pragma once

#include "Files/LLVM/RValue.h"

class KvObjectBase;

bool JS_IsCallable_Object(KvObjectBase* object); // takes null: not callable

// Calls a callable object with argc arguments; it may write the result. The callable stays alive until the call is
// back, whatever the script does to its holder.
void Call_RValue(KvObjectBase* self, RValue* result, RValue* callable, int argc, RValue* args);
