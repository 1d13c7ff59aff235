// A host that does next to nothing, so that a step's own instructions are what is measured: everything that a step
// calls is as cheap as its contract allows, and what no step calls ends the program. The matrix builders are the
// Runner's, from Host_Matrix.cpp.

#include "Benchmarks/Peers.h"
#include "Files/Graphics/Graphics_Support.h"

#include <cstdio>
#include <cstdlib>

int Current_Object = -1;
bool g_fIsJSProject = false;
CInstance* g_pGlobal = nullptr;
CRoom* Run_Room = nullptr;
int g_DefaultCameraID = -1;
KvHash<CObject>* g_ObjectHash = nullptr;
int g_DummyObjectIndex = -1;
KvHash<CInstance> CInstance::ms_ID2Instance;
KvSlot<KvObjectBase> g_slotObjects = {};
CGCGeneration g_GCGens[1] = {};
int g_GCrangestart = 0;
int g_GCrangeend = 0;
bool g_fGarbageCollection = false;
int KvObjectBase::ms_currentCounter = 0;
CDebugConsole* dbg_csol = nullptr;
float g_ViewAreaX, g_ViewAreaY, g_ViewAreaW, g_ViewAreaH, g_ViewAreaA;
int g_RenderTargetActive = -1;

namespace
{
CInstance* s_instances[BENCH_VIEWS]; // by identifier, from the first one on

unsigned IndexOf(int id) { return static_cast<unsigned>(id - INSTANCE_ID_FIRST); }

[[noreturn]] void Unreached(const char* name)
{
    std::fprintf(stderr, "error: the empty host has no %s, because no step calls it\n", name);
    std::abort();
}
} // namespace

// ---- what a step calls ----

void SetViewExtents(float, float, float, float, float) {}
void Graphics::SetMatrix(eMatrix, float*) {}

template <> CInstance* KvHash<CInstance>::Find(int key) const
{
    const unsigned index = IndexOf(key);
    return index < BENCH_VIEWS ? s_instances[index] : nullptr;
}

// ---- what sets a step up ----

void* MemoryManager::Alloc(size_t size, const char*, int, bool clear)
{
    return clear ? std::calloc(1, size) : std::malloc(size);
}
void* MemoryManager::ReAlloc(void* block, size_t size, const char*, int, bool) { return std::realloc(block, size); }
void MemoryManager::Free(void* block) { std::free(block); }

KvObjectBase::KvObjectBase(int, int) : m_slot(-1), m_gcGen(-1), m_gcCounter(0), m_kind(0) {}
KvObjectBase::~KvObjectBase() {}

CInstance::CInstance(float startX, float startY, int id, int objectIndex, bool)
    : KvObjectBase(0, 0), x(startX), y(startY), m_flags(0), m_id(id), m_objectIndex(objectIndex)
{
    if (IndexOf(id) < BENCH_VIEWS)
        s_instances[IndexOf(id)] = this;
}

// ---- what no step calls ----

void CInstance::Compute_BoundingBox(bool) { Unreached(__func__); }
template <> CObject* KvHash<CObject>::Find(int) const { Unreached(__func__); }

RValue* KvObjectBase::InternalGetKvVarRef(int) { Unreached(__func__); }
RValue* KvObjectBase::InternalGetKvVarRefL(int) { Unreached(__func__); }
bool KvObjectBase::Mark4GC(uint32_t*, int) { Unreached(__func__); }
bool KvObjectBase::MarkThisOnly4GC(uint32_t*, int) { Unreached(__func__); }
bool KvObjectBase::MarkOnlyChildren4GC(uint32_t*, int) { Unreached(__func__); }
bool KvObjectBase::Free(bool) { Unreached(__func__); }
bool KvObjectBase::ThreadFree(bool, GCContext*) { Unreached(__func__); }
void KvObjectBase::PreFree() { Unreached(__func__); }
void* KvObjectBase::GetDispose() { Unreached(__func__); }
void KvObjectBase::FreeVars(KvObjectBase*, bool, GCContext*) { Unreached(__func__); }
void CGCGeneration::UpdateRange(int) { Unreached(__func__); }
int GetNewObjGCGen() { Unreached(__func__); }
void AddGlobalObject(KvObjectBase*) { Unreached(__func__); }
void RemoveGlobalObject(KvObjectBase*) { Unreached(__func__); }
void AddGCRefRValue(RValue*) { Unreached(__func__); }

void KvFree(const void*) { Unreached(__func__); }
void* KvRealloc(void*, int) { Unreached(__func__); }
void LOCK_RVALUE_MUTEX() { Unreached(__func__); }
void UNLOCK_RVALUE_MUTEX() { Unreached(__func__); }
RefDynamicArrayOfRValue* ARRAY_RefAlloc() { Unreached(__func__); }
void Array_IncRef(RefDynamicArrayOfRValue*) { Unreached(__func__); }
void Array_DecRef(RefDynamicArrayOfRValue*) { Unreached(__func__); }
void Array_SetOwner(RefDynamicArrayOfRValue*) { Unreached(__func__); }
KvObjectBase* GetContextStackTop() { Unreached(__func__); }
void PushContextStack(KvObjectBase*) { Unreached(__func__); }
void PopContextStack(int) { Unreached(__func__); }
void DeterminePotentialRoot(KvObjectBase*, KvObjectBase*) { Unreached(__func__); }
void DeterminePotentialRoot(KvObjectBase*, RefDynamicArrayOfRValue*) { Unreached(__func__); }

bool Script_Perform(int, CInstance*, CInstance*, int, RValue*, DynamicArrayOfRValue*) { Unreached(__func__); }
bool JS_IsCallable_Object(KvObjectBase*) { Unreached(__func__); }
void Call_RValue(KvObjectBase*, RValue*, RValue*, int, RValue*) { Unreached(__func__); }
void Function_Add(const char*, TFunction, int, bool) { Unreached(__func__); }
void KvError(const char*, ...) { Unreached(__func__); }
int32_t KvGetInt32(const RValue*, int) { Unreached(__func__); }
float KvGetFloat(const RValue*, int) { Unreached(__func__); }
double KvGetReal(const RValue*, int) { Unreached(__func__); }

void IBuffer::Write(int) { Unreached(__func__); }
void IBuffer::Write(float) { Unreached(__func__); }
void IBuffer::Write(bool) { Unreached(__func__); }
int IBuffer::ReadS32() { Unreached(__func__); }
float IBuffer::ReadFloat() { Unreached(__func__); }
bool IBuffer::ReadBool() { Unreached(__func__); }
void LoadSave::_GetSaveFileName(char*, int, const char*) { Unreached(__func__); }
_KvFILE* LoadSave::fopen(const char*, const char*) { Unreached(__func__); }
unsigned LoadSave::fwrite(const void*, unsigned, unsigned, _KvFILE*) { Unreached(__func__); }
int LoadSave::fclose(_KvFILE*) { Unreached(__func__); }
void EnsureDirectoryIsCreated(const char*) { Unreached(__func__); }

bool GV_ViewCamera(CInstance*, int, RValue*) { Unreached(__func__); }
bool GV_ViewVisible(CInstance*, int, RValue*) { Unreached(__func__); }
bool GV_ViewXport(CInstance*, int, RValue*) { Unreached(__func__); }
bool GV_ViewYport(CInstance*, int, RValue*) { Unreached(__func__); }
bool GV_ViewWport(CInstance*, int, RValue*) { Unreached(__func__); }
bool GV_ViewHport(CInstance*, int, RValue*) { Unreached(__func__); }
bool GV_ViewSurfaceID(CInstance*, int, RValue*) { Unreached(__func__); }
bool SV_ViewCamera(CInstance*, int, RValue*) { Unreached(__func__); }
bool SV_ViewVisible(CInstance*, int, RValue*) { Unreached(__func__); }
bool SV_ViewXport(CInstance*, int, RValue*) { Unreached(__func__); }
bool SV_ViewYport(CInstance*, int, RValue*) { Unreached(__func__); }
bool SV_ViewWport(CInstance*, int, RValue*) { Unreached(__func__); }
bool SV_ViewHport(CInstance*, int, RValue*) { Unreached(__func__); }
bool SV_ViewSurfaceID(CInstance*, int, RValue*) { Unreached(__func__); }
