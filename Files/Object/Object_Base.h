#pragma once
// Objects of the host's collector.

#include "Files/LLVM/RValue.h"
#include "Files/LLVM/Slot_Table.h"

#include <cstdint>

class GCContext; // the state of a collector thread; opaque here

enum eObjectKind : int
{
    OBJECT_KIND_SCRIPT_FUNCTION = 3, // callable
    OBJECT_KIND_INSTANCE = 5,
    OBJECT_KIND_CONTAINER = 7, // holds values, is not seen by scripts: the cameras' proxies
};

constexpr int OBJECT_VARIABLE_MASK = 0xFFFFFF; // what objects pass to their base: all 24 bits of a variable's number

// The base of everything that the collector owns. All operations are the host's; their order is that of the table.
class KvObjectBase
{
public:
    KvObjectBase(int variableCount, int variableMask); // unplaced: m_slot -1

    virtual ~KvObjectBase();                            // gives its slot back
    virtual RValue* InternalGetKvVarRef(int variable);  // for reading; null when the object has no such variable
    virtual RValue* InternalGetKvVarRefL(int variable); // for writing
    // Marks this object in the mark bits, one bit a slot, and what it refers to. False: already marked, or outside.
    // The marks are count words of 32 slots each, the lowest slot in the lowest bit. An object without a slot is
    // outside.
    virtual bool Mark4GC(uint32_t* marks, int count);
    virtual bool MarkThisOnly4GC(uint32_t* marks, int count);
    virtual bool MarkOnlyChildren4GC(uint32_t* marks, int count);
    // The collector gives the object back; true when it has been deleted.
    virtual bool Free(bool freeVars);
    virtual bool ThreadFree(bool freeVars, GCContext* context);
    virtual void PreFree();
    virtual void* GetDispose();

    static void FreeVars(KvObjectBase* object, bool freeVars, GCContext* context);
    static int ms_currentCounter; // the creation stamp of objects made now

    int m_slot;      // index in g_slotObjects, -1 until placed
    int m_gcGen;     // generation, index in g_GCGens
    int m_gcCounter; // creation stamp
    int m_kind;      // eObjectKind
};

// One generation of the collector: the span of slots that its objects take.
struct CGCGeneration
{
    int m_rangeStart; // first slot
    int m_rangeEnd;   // one past the last; equal to the start when empty

    void UpdateRange(int slot); // widens the span to take in the slot
};

extern KvSlot<KvObjectBase> g_slotObjects;
extern CGCGeneration g_GCGens[];
extern int g_GCrangestart; // slots [start, end) are being swept now: nothing may be placed there
extern int g_GCrangeend;
extern bool g_fGarbageCollection; // false: objects are freed by hand

int GetNewObjGCGen();                       // the generation of objects made now
void AddGlobalObject(KvObjectBase* object); // a root until removed
void RemoveGlobalObject(KvObjectBase* object);
void AddGCRefRValue(RValue* value); // while marking: what the value refers to is alive
