// Collector objects, their slots and roots, the context stack; instances, objects, rooms and views.

#include "Tests/Support/Recording_Host_State.h"

#include <algorithm>
#include <array>

KvSlot<KvObjectBase> g_slotObjects = {};
CGCGeneration g_GCGens[Recording::GENERATIONS] = {};
int g_GCrangestart = 0;
int g_GCrangeend = 0;
bool g_fGarbageCollection = true;
int KvObjectBase::ms_currentCounter = 0;
KvHash<CInstance> CInstance::ms_ID2Instance;
KvHash<CObject>* g_ObjectHash = nullptr;
int g_DummyObjectIndex = 0;
CRoom* Run_Room = nullptr;
int g_DefaultCameraID = -1;

namespace Recording
{
namespace
{
constexpr int SLOT_CAPACITY = 8;
constexpr int DUMMY_OBJECT = 77;

Collector& Heap() { return TheState().collector; }
World& TheWorld() { return TheState().world; }

const char* Text(bool truth) { return truth ? "true" : "false"; }

template <typename T> T* SlotBlock(int capacity)
{
    return static_cast<T*>(KvRealloc(nullptr, capacity * static_cast<int>(sizeof(T))));
}

void DropSlotTable()
{
    KvFree(g_slotObjects.m_ppEntries);
    KvFree(g_slotObjects.m_freeSlotStack);
    g_slotObjects = {};
}

void LeaveSlot(KvObjectBase* object)
{
    const int slot = object->m_slot;
    if (slot < 0 || slot >= g_slotObjects.m_nCapacity || g_slotObjects.m_ppEntries[slot] != object)
        return;
    g_slotObjects.m_ppEntries[slot] = nullptr;
    --g_slotObjects.m_nCount;
    if (g_slotObjects.m_slotStackSize < g_slotObjects.m_nCapacity)
        g_slotObjects.m_freeSlotStack[g_slotObjects.m_slotStackSize++] = slot;
}
} // namespace

GCContext* SomeContext()
{
    static char context;
    GiveName(&context, std::string("context"));
    return reinterpret_cast<GCContext*>(&context);
}

void ResetCollector()
{
    Collector& heap = Heap();
    heap.roots.clear();
    while (!heap.alive.empty())
        delete *heap.alive.begin();
    heap.contexts.clear();
    heap.marked.clear();
    heap.markResult = true;
    heap.newGeneration = 0;
    g_fGarbageCollection = true;
    g_GCrangestart = g_GCrangeend = 0;
    KvObjectBase::ms_currentCounter = 0;
    for (CGCGeneration& generation : g_GCGens)
        generation = {};
    SetSlotTable(SLOT_CAPACITY);
}

void ResetWorld()
{
    World& world = TheWorld();
    world.instances.clear();
    world.objects.clear();
    world.rooms.clear();
    world.views.clear();
    world.onBoundingBox = {};
    world.viewValues.clear();
    g_ObjectHash = &world.objectHash;
    g_DummyObjectIndex = DUMMY_OBJECT;
    Run_Room = nullptr;
    g_DefaultCameraID = -1;
    g_ViewAreaX = g_ViewAreaY = g_ViewAreaW = g_ViewAreaH = g_ViewAreaA = 0.0f;
    g_RenderTargetActive = -1;
}

// ---- collector ----
bool IsRoot(const KvObjectBase* object) { return Heap().roots.count(const_cast<KvObjectBase*>(object)) != 0; }
size_t RootCount() { return Heap().roots.size(); }
std::vector<RValue*>& MarkedValues() { return Heap().marked; }
void SetMarkResult(bool result) { Heap().markResult = result; }
void SetNewGeneration(int generation) { Heap().newGeneration = generation; }
size_t LiveObjects() { return Heap().alive.size(); }
int ContextDepth() { return static_cast<int>(Heap().contexts.size()); }
void PopSlotStack() { g_slotObjects.m_slotStackSize = 0; }

void SetSlotTable(int capacity)
{
    DropSlotTable();
    if (capacity <= 0)
        return;
    g_slotObjects.m_ppEntries = SlotBlock<KvObjectBase*>(capacity);
    g_slotObjects.m_freeSlotStack = SlotBlock<int>(capacity);
    g_slotObjects.m_nCapacity = capacity;
    g_slotObjects.m_slotStackSize = capacity;
    for (int i = 0; i < capacity; ++i)
    {
        g_slotObjects.m_ppEntries[i] = nullptr;
        g_slotObjects.m_freeSlotStack[i] = capacity - 1 - i;
    }
}

KvObjectBase* NewObject()
{
    KvObjectBase* object = new KvObjectBase(HOST_OBJECT, HOST_OBJECT);
    GiveName(object, 'H');
    return object;
}

KvObjectBase* OccupySlot(int slot)
{
    KvObjectBase* object = NewObject();
    object->m_slot = slot;
    g_slotObjects.m_ppEntries[slot] = object;
    ++g_slotObjects.m_nCount;
    return object;
}

void Collect()
{
    const std::set<KvObjectBase*> alive = Heap().alive;
    for (KvObjectBase* object : alive)
        if (object->m_kind == OBJECT_KIND_CONTAINER && !IsRoot(object))
            object->Free(true);
}

// ---- world ----
CInstance* NewInstance(int id, float x, float y, uint32_t flags)
{
    CInstance* instance = new CInstance(x, y, id, 0, false);
    instance->m_flags = flags;
    TheWorld().instances[id] = instance;
    return instance;
}

void SetObject(int index, const std::vector<CInstance*>& instances)
{
    NamedObject& named = TheWorld().objects[index];
    named.nodes.clear();
    named.object.m_Instances_Recursive.m_first = nullptr;
    for (size_t i = instances.size(); i-- > 0;)
    {
        KvListNode<CInstance>*& first = named.object.m_Instances_Recursive.m_first;
        named.nodes.push_back(std::make_unique<KvListNode<CInstance>>(KvListNode<CInstance>{first, instances[i]}));
        first = named.nodes.back().get();
    }
}

void OnBoundingBox(std::function<void(CInstance&)> action) { TheWorld().onBoundingBox = std::move(action); }

CRoom* NewRoom(int width, int height)
{
    World& world = TheWorld();
    world.rooms.push_back(std::make_unique<CRoom>());
    CRoom* room = world.rooms.back().get();
    room->r_width = width;
    room->r_height = height;
    for (CViewGM*& view : room->r_view)
    {
        world.views.push_back(std::make_unique<CViewGM>(CViewGM{-1}));
        view = world.views.back().get();
    }
    return room;
}

RValue& ViewValue(const char* property, int view)
{
    std::vector<RValue>& values = TheWorld().viewValues[property];
    if (values.empty())
        values.resize(ROOM_VIEWS, Real(0.0));
    return values.at(static_cast<size_t>(view));
}
} // namespace Recording

using namespace Recording;

// ---- the object base ----
KvObjectBase::KvObjectBase(int variableCount, int variableMask) : m_slot(-1), m_gcGen(-1), m_gcCounter(-1), m_kind(0)
{
    Heap().alive.insert(this);
    if (variableCount == HOST_OBJECT)
        return;
    GiveName(this, 'O');
    RECORD(Topic_Collector, "KvObjectBase(%d,%d)=%s", variableCount, variableMask, Name(this).c_str());
}

KvObjectBase::~KvObjectBase()
{
    RECORD(Topic_Collector, "~KvObjectBase(%s)", Name(this).c_str());
    if (Heap().roots.erase(this) != 0)
        Fault("a root was deleted: " + Name(this));
    Heap().alive.erase(this);
    LeaveSlot(this);
}

RValue* KvObjectBase::InternalGetKvVarRef(int) { return nullptr; }
RValue* KvObjectBase::InternalGetKvVarRefL(int) { return nullptr; }

bool KvObjectBase::Mark4GC(uint32_t* marks, int count)
{
    RECORD(Topic_Collector, "Mark4GC(%s,%s,%d)", Name(this).c_str(), marks == nullptr ? "null" : "marks", count);
    return Heap().markResult;
}

bool KvObjectBase::MarkThisOnly4GC(uint32_t*, int) { return Heap().markResult; }
bool KvObjectBase::MarkOnlyChildren4GC(uint32_t*, int) { return Heap().markResult; }
bool KvObjectBase::Free(bool) { return false; }
bool KvObjectBase::ThreadFree(bool, GCContext*) { return false; }
void KvObjectBase::PreFree() {}
void* KvObjectBase::GetDispose() { return nullptr; }

void KvObjectBase::FreeVars(KvObjectBase* object, bool freeVars, GCContext* context)
{
    RECORD(Topic_Collector, "FreeVars(%s,%s,%s)", Name(object).c_str(), Text(freeVars), Name(context).c_str());
}

// ---- collector ----
void CGCGeneration::UpdateRange(int slot)
{
    RECORD(Topic_Collector, "UpdateRange(%d,%d)", static_cast<int>(this - g_GCGens), slot);
    const bool isEmpty = m_rangeStart == m_rangeEnd;
    m_rangeStart = isEmpty ? slot : std::min(m_rangeStart, slot);
    m_rangeEnd = isEmpty ? slot + 1 : std::max(m_rangeEnd, slot + 1);
}

int GetNewObjGCGen()
{
    RECORD(Topic_Collector, "GetNewObjGCGen()");
    return Heap().newGeneration;
}

void AddGlobalObject(KvObjectBase* object)
{
    RECORD(Topic_Collector, "AddGlobalObject(%s)", Name(object).c_str());
    if (!Heap().roots.insert(object).second)
        Fault("a root was added twice: " + Name(object));
}

void RemoveGlobalObject(KvObjectBase* object)
{
    RECORD(Topic_Collector, "RemoveGlobalObject(%s)", Name(object).c_str());
    if (Heap().roots.erase(object) == 0)
        Fault("removed something that is no root: " + Name(object));
}

void AddGCRefRValue(RValue* value)
{
    RECORD(Topic_Collector, "AddGCRefRValue(%s)", Describe(*value).c_str());
    Heap().marked.push_back(value);
}

// ---- contexts ----
KvObjectBase* GetContextStackTop() { return Heap().contexts.empty() ? nullptr : Heap().contexts.back(); }

void PushContextStack(KvObjectBase* owner)
{
    RECORD(Topic_Values, "PushContextStack(%s)", Name(owner).c_str());
    Heap().contexts.push_back(owner);
}

void PopContextStack(int count)
{
    RECORD(Topic_Values, "PopContextStack(%d)", count);
    if (count < 0 || count > ContextDepth())
        return Fault("more contexts popped than pushed");
    Heap().contexts.resize(Heap().contexts.size() - static_cast<size_t>(count));
}

void DeterminePotentialRoot(KvObjectBase* owner, KvObjectBase* object)
{
    RECORD(Topic_Values, "DeterminePotentialRoot(%s,%s)", Name(owner).c_str(), Name(object).c_str());
}

void DeterminePotentialRoot(KvObjectBase* owner, RefDynamicArrayOfRValue* array)
{
    RECORD(Topic_Values, "DeterminePotentialRoot(%s,%s)", Name(owner).c_str(), Name(array).c_str());
}

// ---- instances and objects ----
CInstance::CInstance(float atX, float atY, int id, int objectIndex, bool createEvent)
    : KvObjectBase(HOST_OBJECT, HOST_OBJECT), x(atX), y(atY), m_flags(0), m_id(id), m_objectIndex(objectIndex)
{
    m_kind = OBJECT_KIND_INSTANCE;
    GiveName(this, Format("I%d", id));
    RECORD(Topic_World, "CInstance(%s,%s,%d,%d,%s)", Describe(x).c_str(), Describe(y).c_str(), id, objectIndex,
           Text(createEvent));
}

void CInstance::Compute_BoundingBox(bool force)
{
    RECORD(Topic_World, "Compute_BoundingBox(%s,%s)", Name(this).c_str(), Text(force));
    m_flags &= ~static_cast<uint32_t>(eInstanceFlag_bbox_dirty);
    if (TheWorld().onBoundingBox)
        TheWorld().onBoundingBox(*this);
}

template <> CInstance* KvHash<CInstance>::Find(int key) const
{
    RECORD(Topic_World, "FindInstance(%d)", key);
    const auto found = TheWorld().instances.find(key);
    return found == TheWorld().instances.end() ? nullptr : found->second;
}

template <> CObject* KvHash<CObject>::Find(int key) const
{
    RECORD(Topic_World, "FindObject(%d)", key);
    const auto found = TheWorld().objects.find(key);
    return found == TheWorld().objects.end() ? nullptr : &found->second.object;
}

// ---- view accessors ----
static bool HasView(const char* property, int view)
{
    const bool has = view >= 0 && view < ROOM_VIEWS;
    if (!has)
        TheState().errors.push_back(Format("there is no view %d with a %s", view, property));
    return has;
}

static bool ReadView(const char* property, CInstance* self, int view, RValue* out)
{
    RECORD(Topic_Views, "GV_View%s(%s,%d)", property, Name(self).c_str(), view);
    if (!HasView(property, view))
        return false;
    *out = ViewValue(property, view);
    return true;
}

static bool WriteView(const char* property, CInstance* self, int view, RValue* value)
{
    RECORD(Topic_Views, "SV_View%s(%s,%d,%s)", property, Name(self).c_str(), view, Describe(*value).c_str());
    if (!HasView(property, view))
        return false;
    ViewValue(property, view) = *value;
    return true;
}

bool GV_ViewCamera(CInstance* self, int view, RValue* out) { return ReadView("Camera", self, view, out); }
bool GV_ViewVisible(CInstance* self, int view, RValue* out) { return ReadView("Visible", self, view, out); }
bool GV_ViewXport(CInstance* self, int view, RValue* out) { return ReadView("Xport", self, view, out); }
bool GV_ViewYport(CInstance* self, int view, RValue* out) { return ReadView("Yport", self, view, out); }
bool GV_ViewWport(CInstance* self, int view, RValue* out) { return ReadView("Wport", self, view, out); }
bool GV_ViewHport(CInstance* self, int view, RValue* out) { return ReadView("Hport", self, view, out); }
bool GV_ViewSurfaceID(CInstance* self, int view, RValue* out) { return ReadView("SurfaceID", self, view, out); }
bool SV_ViewCamera(CInstance* self, int view, RValue* value)
{
    if (!WriteView("Camera", self, view, value))
        return false;
    if (Run_Room != nullptr)
        Run_Room->r_view[view]->cameraID = static_cast<int32_t>(value->asInt64());
    return true;
}
bool SV_ViewVisible(CInstance* self, int view, RValue* value) { return WriteView("Visible", self, view, value); }
bool SV_ViewXport(CInstance* self, int view, RValue* value) { return WriteView("Xport", self, view, value); }
bool SV_ViewYport(CInstance* self, int view, RValue* value) { return WriteView("Yport", self, view, value); }
bool SV_ViewWport(CInstance* self, int view, RValue* value) { return WriteView("Wport", self, view, value); }
bool SV_ViewHport(CInstance* self, int view, RValue* value) { return WriteView("Hport", self, view, value); }
bool SV_ViewSurfaceID(CInstance* self, int view, RValue* value) { return WriteView("SurfaceID", self, view, value); }
