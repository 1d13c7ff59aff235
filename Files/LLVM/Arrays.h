#pragma once
// The host's counted arrays, and the context stack that tells it who owns a value being stored.

class KvObjectBase;
struct RefDynamicArrayOfRValue;
struct DynamicArrayOfRValue; // the argument array of a script; opaque here

// Array_IncRef and Array_DecRef change m_refCount by one. A record whose last reference went is freed with its elements
// once Array_SetOwner is back.
RefDynamicArrayOfRValue* ARRAY_RefAlloc(); // new and empty, one reference; null when memory is refused
void Array_IncRef(RefDynamicArrayOfRValue* array);
void Array_DecRef(RefDynamicArrayOfRValue* array);
void Array_SetOwner(RefDynamicArrayOfRValue* array); // re-evaluates the owner; called after every change of the count

// The stack of objects in whose name values are being stored; entries may be null, an empty stack answers null.
KvObjectBase* GetContextStackTop();
void PushContextStack(KvObjectBase* owner);
void PopContextStack(int count);

// Tells the collector that owner now refers to the object or array. A null owner is the game as a whole: an
// array that it holds stays alive, with what is in it, as long as it has a reference.
void DeterminePotentialRoot(KvObjectBase* owner, KvObjectBase* object);
void DeterminePotentialRoot(KvObjectBase* owner, RefDynamicArrayOfRValue* array);
