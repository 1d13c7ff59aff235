#pragma once
// API settled
// A host that does little and notes everything: it defines every name that the module needs, and writes each call that
// the module makes into one list of readable lines, in order. It knows nothing of any real runner and of no test
// framework, so that any program can link it.
//
// Lines      the call with its arguments: "SetViewExtents(0,0,640,480,0)". Floats print with nine digits, -0 as "-0".
// Names      instances "I100001" by identifier, callables "F1", arrays "A1", other collector objects (the cameras'
//            proxies) "O1", each kind numbered from 1 since the last Reset; "null"; "?" for anything else.
// Values     "real 3", "int32 3", "int64 3", "bool 1", "string abc", "object F1", "array A1", "undefined", "unset",
//            "kind N".
// Lifetime   usable before main and after it. The host owns what its New... functions return, until the next Reset.
//            Reset also deletes each collector object that is still alive: make proxies with new, never on the stack.

#include "Files/Graphics/Graphics_Support.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

template <> CInstance* KvHash<CInstance>::Find(int key) const;
template <> CObject* KvHash<CObject>::Find(int key) const;

namespace Recording
{
using Lines = std::vector<std::string>;

// Back to the start: empty log, default switches and globals, no room, instances, scripts or files. Cameras are the
// manager's: destroy them first.
void Reset();

// ---- the log ----
enum Topic : unsigned
{
    Topic_Memory = 1,      // Alloc, ReAlloc, Free, KvRealloc
    Topic_Conversions = 2, // KvGetInt32(index) and its like
    Topic_Buffer = 4,      // WriteTyped(S32,3), ReadTyped(F32)
    Topic_Values = 8,      // the value lock, KvFree, arrays, context stack, DeterminePotentialRoot
    Topic_Matrices = 16,   // Multiply(), LookAtLH(eye;at;up), OrthoLH(w,h,n,f), PerspectiveLH(w,h,n,f)
    Topic_Graphics = 32,   // SetMatrix(view), SetMatrix(projection), SetViewExtents
    Topic_Scripts = 64,    // Script_Perform(index,self,other,argc), Call_RValue(self,callable,argc)
    Topic_Collector = 128, // roots, generations, marks, construction and deletion of collector objects
    Topic_World = 256,     // FindInstance(id), FindObject(index), Compute_BoundingBox(I100001,true)
    Topic_Views = 512,     // GV_ViewXport(self,view), SV_ViewXport(self,view,real 32)
    Topic_Files = 1024,    // the save area ("<save>/a.png") and the debug console
    Topic_Registry = 2048, // Function_Add(name,argc,flag)
    Topic_Errors = 4096,   // KvError(text)
    Topic_All = 8191,
    Topic_Default = Topic_All & ~(Topic_Memory | Topic_Conversions | Topic_Buffer),
};
void Listen(unsigned topics); // what is noted from now on; Topic_Default after a Reset
Lines& Log();
Lines TakeLog();                    // the log, which is empty afterwards
void Note(const std::string& line); // a line of the test's own, to see where a host call falls
Lines& Errors();                    // the texts of KvError, also when nobody listens
Lines& Faults();                    // what a correct module never does: foreign or double frees, unbalanced locks or
                                    // contexts, a deleted root. Each is noted here; the host survives it

std::string Name(const void* thing);
std::string Describe(const RValue& value);
std::string Describe(float number);

// ---- memory ----
// Blocks lie at the exact size in the general heap, so that a sanitizer sees each wrong access. Whatever is not asked
// to be clear is filled with 0xCD, and ReAlloc always moves.
struct Request
{
    std::string file;
    int line;
    size_t size;
    bool clear;
    bool grows; // ReAlloc of an existing block
    bool refused;
};
std::vector<Request>& Requests(); // since the last Reset; only while Topic_Memory is listened to
int RequestCount();               // Alloc and ReAlloc calls since the last Reset, always counted
void RefuseRequest(int nth);      // the nth request from now answers null; 1 is the next, 0 cancels
void RefuseAbove(size_t bytes);   // each request above this size is refused; SIZE_MAX after a Reset
size_t LiveBlocks();              // MemoryManager blocks not freed yet
size_t LiveBytes();
size_t LiveTexts();                  // KvRealloc blocks not freed yet, without the slot table's two
void RefuseValueMemory(bool refuse); // KvRealloc answers null

// ---- values ----
RValue Real(double number);
RValue Int32(int32_t number);
RValue Int64(int64_t number);
RValue Bool(bool truth);
RValue OfObject(KvObjectBase* object);
RValue OfArray(RefDynamicArrayOfRValue* array); // does not count: the value borrows the caller's reference
RValue NewString(const char* text);             // the caller's one reference: FREE_RValue__Pre drops it
RefDynamicArrayOfRValue* NewArray(const std::vector<RValue>& elements); // one reference, dropped by Array_DecRef
RefDynamicArrayOfRValue* NewArray(const std::vector<double>& elements);
int ReferenceCount(const RefDynamicArrayOfRValue* array);
size_t LiveArrays();
int LockDepth();
int ContextDepth();

// Whether KvGetFloat and KvGetReal hand a NaN on, which a host's contract forbids; true after a Reset.
void PassNan(bool passes);

// ---- scripts ----
struct ScriptCall
{
    int index; // -1 for a callable
    KvObjectBase* self;
    CInstance* other; // null for a callable
    int argc;
    RValue* result;                      // as the module hands it over
    RValue* args;                        // of a callable
    DynamicArrayOfRValue* argumentArray; // of a script
};
using Script = std::function<void(ScriptCall&)>;
void SetScript(int index, Script body); // an index without a body answers false

class Callable : public KvObjectBase
{
public:
    explicit Callable(Script callBody);
    Script body;
};
Callable* NewCallable(Script body = {});
KvObjectBase* NewObject(); // not callable

// ---- collector ----
bool IsRoot(const KvObjectBase* object);
size_t RootCount();
std::vector<RValue*>& MarkedValues();  // arguments of AddGCRefRValue
void SetMarkResult(bool result);       // what KvObjectBase::Mark4GC answers; true after a Reset
void SetNewGeneration(int generation); // what GetNewObjGCGen answers; 0 after a Reset
constexpr int GENERATIONS = 4;         // entries of g_GCGens
void SetSlotTable(int capacity);       // empty, all indices on the stack, the lowest on top; 8 after a Reset
void PopSlotStack();                   // leaves the stack dry: the next object has to be searched a place for
KvObjectBase* OccupySlot(int slot);    // puts an object of the host there; the index stays on the stack
void Collect();                        // frees each container object that is no root, as a collection would
GCContext* SomeContext();              // a context for ThreadFree; its name is "context"
size_t LiveObjects();                  // collector objects, instances and callables too

// ---- world ----
CInstance* NewInstance(int id, float x, float y, uint32_t flags = 0);
void SetObject(int index, const std::vector<CInstance*>& instances); // a null makes a list entry without an instance
void OnBoundingBox(std::function<void(CInstance&)> action);          // runs inside Compute_BoundingBox

CRoom* NewRoom(int width, int height); // eight views without a camera; runs once Run_Room points at it

// ---- views ----
RValue& ViewValue(const char* property, int view); // "Xport", "Camera"...; views 0 to 7; what the getter writes

// ---- registry ----
struct Builtin
{
    std::string name;
    TFunction handler;
    int argc;
    bool flag;
};
std::vector<Builtin>& Builtins();
const Builtin* FindBuiltin(const std::string& name); // null when missing

// ---- graphics ----
kvMatrix LastMatrix(eMatrix slot);
void OnProjection(std::function<void(kvMatrix&)> change); // changes each matrix that OrthoLH has built
void OnView(std::function<void(kvMatrix&)> change);       // the same of LookAtLH

// ---- buffer ----
class Buffer : public IBuffer
{
public:
    int WriteTyped(eBuffer_Type type, RValue& value) override;
    int ReadTyped(eBuffer_Type type, RValue& value) override;

    std::vector<uint8_t> bytes;
    size_t position = 0; // of the next read
    size_t reads = 0;    // items asked for, past the end too
};

// ---- files ----
std::string SaveArea();                           // a directory of this process, made when first asked for
void RefuseOpen(bool refuse);                     // LoadSave::fopen answers null
void OnWrite(std::function<bool(unsigned)> hook); // gets the size of each fwrite; false writes nothing and answers 0
void FailClose(bool fail);                        // LoadSave::fclose answers -1; the file is closed all the same
int OpenFiles();
Lines& ConsoleTexts();
} // namespace Recording
