// What can wait. Each group says when you need it and what happens until then. To replace a group, write its functions
// in a source of your own and define the group's macro for this one, in CMake:
//
//   target_compile_definitions(my_runner PRIVATE HOST_HAS_ARRAYS)
//
// Until then nothing crashes and nothing leaks: a stub answers that there is no such thing.
#include <Files/Graphics/Graphics_Support.h>

// ---- built-ins: needed when scripts are to call camera_create, view_get_camera and the others ----
// Until then SetupLumFunctions enters nothing, and no script reaches a view. Your own code calls g_CM and CCamera.
#ifndef HOST_HAS_BUILT_INS
void Function_Add(const char*, TFunction, int, bool) {}

bool GV_ViewCamera(CInstance*, int, RValue*) { return false; }
bool GV_ViewVisible(CInstance*, int, RValue*) { return false; }
bool GV_ViewXport(CInstance*, int, RValue*) { return false; }
bool GV_ViewYport(CInstance*, int, RValue*) { return false; }
bool GV_ViewWport(CInstance*, int, RValue*) { return false; }
bool GV_ViewHport(CInstance*, int, RValue*) { return false; }
bool GV_ViewSurfaceID(CInstance*, int, RValue*) { return false; }
bool SV_ViewCamera(CInstance*, int, RValue*) { return false; }
bool SV_ViewVisible(CInstance*, int, RValue*) { return false; }
bool SV_ViewXport(CInstance*, int, RValue*) { return false; }
bool SV_ViewYport(CInstance*, int, RValue*) { return false; }
bool SV_ViewWport(CInstance*, int, RValue*) { return false; }
bool SV_ViewHport(CInstance*, int, RValue*) { return false; }
bool SV_ViewSurfaceID(CInstance*, int, RValue*) { return false; }
#endif

// ---- arrays: needed when scripts are to read and write matrices ----
// Until then camera_get_view_mat and camera_get_proj_mat answer -1. Nobody else makes an array, so that none is
// counted.
#ifndef HOST_HAS_ARRAYS
RefDynamicArrayOfRValue* ARRAY_RefAlloc() { return nullptr; }
void Array_IncRef(RefDynamicArrayOfRValue*) {}
void Array_DecRef(RefDynamicArrayOfRValue*) {}
void Array_SetOwner(RefDynamicArrayOfRValue*) {}
#endif

// ---- strings: needed when your scripts have strings ----
// Until then a string counts as empty. The lock stays empty for as long as one thread alone touches values.
#ifndef HOST_HAS_STRINGS
const char* RValue::GetString() const { return ""; }
void LOCK_RVALUE_MUTEX() {}
void UNLOCK_RVALUE_MUTEX() {}
#endif

// ---- scripts: needed when cameras are to have callbacks ----
// Until then a callback by number does nothing, and a camera with an update callback does not follow. A callback that
// is an object is reported as invalid, and is never called.
#ifndef HOST_HAS_SCRIPTS
bool Script_Perform(int, CInstance*, CInstance*, int, RValue*, DynamicArrayOfRValue*) { return false; }
bool JS_IsCallable_Object(KvObjectBase*) { return false; }
void Call_RValue(KvObjectBase*, RValue*, RValue*, int, RValue*) {}
#endif

// ---- collector: needed when callbacks may be callable objects ----
// Until then nothing is collected. A camera whose callback is an object has a proxy, which is freed when the camera
// lets it go; the callback itself is its maker's to keep alive. Instances are destroyed by hand.
#ifndef HOST_HAS_COLLECTOR
KvSlot<KvObjectBase> g_slotObjects = {};
CGCGeneration g_GCGens[1] = {};
int g_GCrangestart = 0;
int g_GCrangeend = 0;
bool g_fGarbageCollection = false;
int KvObjectBase::ms_currentCounter = 0;

KvObjectBase::KvObjectBase(int, int) : m_slot(-1), m_gcGen(0), m_gcCounter(0), m_kind(0) {}

// Leaves the slot, which the next object may take.
KvObjectBase::~KvObjectBase()
{
    if (m_slot == -1)
        return;
    g_slotObjects.m_ppEntries[m_slot] = nullptr;
    --g_slotObjects.m_nCount;
    if (g_slotObjects.m_slotStackSize < g_slotObjects.m_nCapacity)
        g_slotObjects.m_freeSlotStack[g_slotObjects.m_slotStackSize++] = m_slot;
}

RValue* KvObjectBase::InternalGetKvVarRef(int) { return nullptr; }
RValue* KvObjectBase::InternalGetKvVarRefL(int) { return nullptr; }
bool KvObjectBase::Mark4GC(uint32_t*, int) { return false; }
bool KvObjectBase::MarkThisOnly4GC(uint32_t*, int) { return false; }
bool KvObjectBase::MarkOnlyChildren4GC(uint32_t*, int) { return false; }
bool KvObjectBase::Free(bool) { return false; }
bool KvObjectBase::ThreadFree(bool, GCContext*) { return false; }
void KvObjectBase::PreFree() {}
void* KvObjectBase::GetDispose() { return nullptr; }
void KvObjectBase::FreeVars(KvObjectBase*, bool, GCContext*) {}
void CGCGeneration::UpdateRange(int) {}
int GetNewObjGCGen() { return 0; }
void AddGlobalObject(KvObjectBase*) {}
void RemoveGlobalObject(KvObjectBase* object) { delete object; } // only proxies are roots here
void AddGCRefRValue(RValue*) {}
KvObjectBase* GetContextStackTop() { return nullptr; }
void PushContextStack(KvObjectBase*) {}
void PopContextStack(int) {}
void DeterminePotentialRoot(KvObjectBase*, KvObjectBase*) {}
void DeterminePotentialRoot(KvObjectBase*, RefDynamicArrayOfRValue*) {}
#endif

// ---- images: needed when WritePNG32 is to write files ----
// Until then it answers 0. CreateBMP needs none of these.
#ifndef HOST_HAS_IMAGES
CDebugConsole* dbg_csol = nullptr;
void EnsureDirectoryIsCreated(const char*) {}
_KvFILE* LoadSave::fopen(const char*, const char*) { return nullptr; }
unsigned LoadSave::fwrite(const void*, unsigned, unsigned, _KvFILE*) { return 0; }
int LoadSave::fclose(_KvFILE*) { return 0; }

void LoadSave::_GetSaveFileName(char* out, int size, const char*)
{
    if (size > 0)
        out[0] = '\0';
}
#endif
