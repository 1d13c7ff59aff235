// What the module asks of its host. First what this game uses; then what only other games need, as stubs.
#include "host.h"

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <vector>

// ---- matrices: the module's cameras become sf::View and sf::Transform here ----

static kvMatrix s_view, s_projection;
static Shown s_shown;

static float Length(sf::Vector2f v) { return std::sqrt(v.x * v.x + v.y * v.y); }

// The largest distance of a corner of the view from the corner of the clip square where it belongs. SFML's own clip y
// grows upwards.
static float DifferenceOf(const sf::View& view, const sf::Transform& clipToRoom)
{
    float largest = 0.0f;
    for (sf::Vector2f corner : {sf::Vector2f(-1, -1), sf::Vector2f(1, -1), sf::Vector2f(-1, 1), sf::Vector2f(1, 1)})
    {
        const sf::Vector2f there = view.getTransform().transformPoint(clipToRoom.transformPoint(corner));
        largest = std::max(largest, Length({there.x - corner.x, -there.y - corner.y}));
    }
    return largest;
}

static Shown ShownBy(const kvMatrix& view, const kvMatrix& projection)
{
    Shown shown;
    shown.isFlat = projection._34 == 0.0f;
    if (!shown.isFlat)
    {
        fputs("a perspective camera needs its 4x4 matrix in an sf::Shader: SFML's own views are flat\n", stderr);
        return shown;
    }
    // A flat camera maps x and y of the room to clip x and y alone, which is what a 3 x 3 transform does.
    kvMatrix m;
    kvMatrix::Multiply(m, view, projection);
    shown.roomToClip = {m._11, m._21, m._41, m._12, m._22, m._42, 0.0f, 0.0f, 1.0f};

    const sf::Transform clipToRoom = shown.roomToClip.getInverse();
    const sf::Vector2f centre = clipToRoom.transformPoint(0.0f, 0.0f);
    const sf::Vector2f right = clipToRoom.transformPoint(1.0f, 0.0f) - centre;
    const sf::Vector2f down = clipToRoom.transformPoint(0.0f, 1.0f) - centre;
    shown.view.setCenter(centre);
    shown.view.setSize(2.0f * Length(right), 2.0f * Length(down));
    shown.view.setRotation(std::atan2(right.y, right.x) * 57.29578f);
    shown.difference = DifferenceOf(shown.view, clipToRoom);
    return shown;
}

const Shown& LastShown() { return s_shown; }

// The module sets the view first, then the projection.
void Graphics::SetMatrix(eMatrix slot, float* matrix)
{
    kvMatrix& to = slot == eM_View ? s_view : s_projection;
    std::copy(matrix, matrix + 16, to.m);
    if (slot == eM_Projection)
        s_shown = ShownBy(s_view, s_projection);
}

float g_ViewAreaX, g_ViewAreaY, g_ViewAreaW, g_ViewAreaH, g_ViewAreaA;
int g_RenderTargetActive = -1;
void SetViewExtents(float, float, float, float, float) {} // for hosts that cull

// ---- matrix builders, as Platform/Matrix.h defines them ----

static float Dot(const kvVector3& a, const kvVector3& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
static kvVector3 Cross(const kvVector3& a, const kvVector3& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

static kvVector3 Unit(const kvVector3& v)
{
    const float scale = 1.0f / std::sqrt(Dot(v, v));
    return {v.x * scale, v.y * scale, v.z * scale};
}

void kvMatrix::Multiply(kvMatrix& out, const kvMatrix& a, const kvMatrix& b)
{
    kvMatrix product = {};
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            for (int k = 0; k < 4; ++k)
                product.m[4 * row + column] += a.m[4 * row + k] * b.m[4 * k + column];
    out = product;
}

void kvMatrix::LookAtLH(kvMatrix& out, const kvVector3& eye, const kvVector3& at, const kvVector3& up)
{
    const kvVector3 z = Unit({at.x - eye.x, at.y - eye.y, at.z - eye.z});
    const kvVector3 x = Unit(Cross(up, z));
    const kvVector3 y = Cross(z, x);
    out = {{{x.x, y.x, z.x, 0.0f, //
             x.y, y.y, z.y, 0.0f, //
             x.z, y.z, z.z, 0.0f, //
             -Dot(x, eye), -Dot(y, eye), -Dot(z, eye), 1.0f}}};
}

void kvMatrix::OrthoLH(kvMatrix& out, float w, float h, float n, float f)
{
    out = {{{2 / w, 0, 0, 0, 0, 2 / h, 0, 0, 0, 0, 1 / (f - n), 0, 0, 0, n / (n - f), 1}}};
}

void kvMatrix::PerspectiveLH(kvMatrix& out, float w, float h, float n, float f)
{
    out = {{{2 * n / w, 0, 0, 0, 0, 2 * n / h, 0, 0, 0, 0, f / (f - n), 1, 0, 0, n * f / (n - f), 0}}};
}

// ---- memory: malloc is alive before main and after it ----

void* MemoryManager::Alloc(size_t size, const char*, int, bool clear) { return clear ? calloc(size, 1) : malloc(size); }
void* MemoryManager::ReAlloc(void* block, size_t size, const char*, int, bool) { return std::realloc(block, size); }
void MemoryManager::Free(void* block) { std::free(block); }
void KvFree(const void* block) { std::free(const_cast<void*>(block)); }
void* KvRealloc(void* block, int size) { return std::realloc(block, static_cast<size_t>(size)); }

// ---- instances and rooms ----

CRoom* Run_Room;
int g_DefaultCameraID = -1;
int g_DummyObjectIndex = -1;
CInstance* g_pGlobal;
int Current_Object;
bool g_fIsJSProject;
KvHash<CInstance> CInstance::ms_ID2Instance;
KvHash<CObject>* g_ObjectHash; // null: cameras here follow instances, not all of one kind

// An instance's identifier is its place in this list, after the first identifier. Those that are gone leave a null.
static std::vector<CInstance*> s_instances;

int NextInstanceId() { return INSTANCE_ID_FIRST + static_cast<int>(s_instances.size()); }

CInstance::CInstance(float startX, float startY, int id, int objectIndex, bool)
    : KvObjectBase(0, OBJECT_VARIABLE_MASK), x(startX), y(startY), m_flags(0), m_id(id), m_objectIndex(objectIndex)
{
    if (id >= INSTANCE_ID_FIRST) // the module's own helper instance is none of the game's
        s_instances.push_back(this);
}

KvObjectBase::~KvObjectBase()
{
    for (CInstance*& instance : s_instances)
        if (instance == this)
            instance = nullptr;
}

void CInstance::Compute_BoundingBox(bool) { m_flags &= ~uint32_t{eInstanceFlag_bbox_dirty}; }

template <> CInstance* KvHash<CInstance>::Find(int id) const
{
    return id < NextInstanceId() ? s_instances[static_cast<size_t>(id - INSTANCE_ID_FIRST)] : nullptr;
}
template <> CObject* KvHash<CObject>::Find(int) const { return nullptr; }

// ---- scripts and errors ----

static std::vector<std::function<void()>> s_scripts;

RValue NewScript(std::function<void()> body)
{
    RValue value = {};
    value.val = static_cast<double>(s_scripts.size());
    value.kind = VALUE_REAL;
    s_scripts.push_back(std::move(body));
    return value;
}

bool Script_Perform(int index, CInstance*, CInstance*, int, RValue*, DynamicArrayOfRValue*)
{
    if (index < 0 || index >= static_cast<int>(s_scripts.size()))
        return false;
    s_scripts[static_cast<size_t>(index)]();
    return true;
}

int32_t KvGetInt32(const RValue* args, int index)
{
    const RValue& value = args[index];
    const double number = KvKind(value) == VALUE_INT32 ? value.v32 : KvKind(value) == VALUE_REAL ? value.val : 0.0;
    return std::isnan(number) ? 0 : static_cast<int32_t>(std::clamp(number, -2147483648.0, 2147483647.0));
}

void KvError(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    vfprintf(stderr, format, arguments);
    va_end(arguments);
    fputc('\n', stderr);
}

// ---- stubs: this game has no collector, no arrays, no callable objects, no other threads ----

bool JS_IsCallable_Object(KvObjectBase*) { return false; } // so that no proxy is ever made
void Call_RValue(KvObjectBase*, RValue*, RValue*, int, RValue*) {}
void Array_IncRef(RefDynamicArrayOfRValue*) {}
void Array_DecRef(RefDynamicArrayOfRValue*) {}
void Array_SetOwner(RefDynamicArrayOfRValue*) {}
KvObjectBase* GetContextStackTop() { return nullptr; }
void PushContextStack(KvObjectBase*) {}
void PopContextStack(int) {}
void DeterminePotentialRoot(KvObjectBase*, KvObjectBase*) {}
void DeterminePotentialRoot(KvObjectBase*, RefDynamicArrayOfRValue*) {}
void LOCK_RVALUE_MUTEX() {}
void UNLOCK_RVALUE_MUTEX() {}

bool g_fGarbageCollection; // false: the module deletes its helper instance itself
KvSlot<KvObjectBase> g_slotObjects;
CGCGeneration g_GCGens[1];
int g_GCrangestart, g_GCrangeend;
int GetNewObjGCGen() { return 0; }
void AddGlobalObject(KvObjectBase*) {}
void RemoveGlobalObject(KvObjectBase*) {}
void AddGCRefRValue(RValue*) {}
void CGCGeneration::UpdateRange(int) {}

int KvObjectBase::ms_currentCounter;
KvObjectBase::KvObjectBase(int, int) : m_slot(-1), m_gcGen(0), m_gcCounter(0), m_kind(OBJECT_KIND_INSTANCE) {}
RValue* KvObjectBase::InternalGetKvVarRef(int) { return nullptr; }
RValue* KvObjectBase::InternalGetKvVarRefL(int) { return nullptr; }
bool KvObjectBase::Mark4GC(uint32_t*, int) { return true; }
bool KvObjectBase::MarkThisOnly4GC(uint32_t*, int) { return true; }
bool KvObjectBase::MarkOnlyChildren4GC(uint32_t*, int) { return true; }
bool KvObjectBase::Free(bool) { return true; }
bool KvObjectBase::ThreadFree(bool, GCContext*) { return true; }
void KvObjectBase::PreFree() {}
void* KvObjectBase::GetDispose() { return nullptr; }
void KvObjectBase::FreeVars(KvObjectBase*, bool, GCContext*) {}
