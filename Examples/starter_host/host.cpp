// What every host must really do, in the order in which a camera needs it: values, memory, errors, matrices, graphics,
// instances, a room with views, saves. What can wait stands in stubs.cpp.
#include <Platform/Strict_Float.h> // first: the matrices below have the same bits on every machine

#include "host.h"

#include <cfloat>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <map>

// ---- values: any value becomes a number; NaN becomes 0, a number out of range the nearest in range ----

double RValue::asReal() const
{
    switch (KvKind(*this))
    {
    case VALUE_REAL:
    case VALUE_BOOL: return val;
    case VALUE_INT32: return v32;
    case VALUE_INT64: return static_cast<double>(v64);
    case VALUE_STRING: return std::strtod(GetString(), nullptr);
    default: return 0.0; // undefined, arrays, objects
    }
}

template <typename Integer> static Integer Nearest(double number)
{
    constexpr Integer lowest = std::numeric_limits<Integer>::min(), highest = std::numeric_limits<Integer>::max();
    if (std::isnan(number))
        return 0;
    if (number <= static_cast<double>(lowest))
        return lowest;
    return number >= static_cast<double>(highest) ? highest : static_cast<Integer>(number);
}

int64_t RValue::asInt64() const { return KvKind(*this) == VALUE_INT64 ? v64 : Nearest<int64_t>(asReal()); }
bool RValue::asBool() const { return asReal() > 0.5; }

double KvGetReal(const RValue* args, int index)
{
    const double number = args[index].asReal();
    return std::isnan(number) ? 0.0 : number;
}

int32_t KvGetInt32(const RValue* args, int index) { return Nearest<int32_t>(KvGetReal(args, index)); }
bool KvGetBool(const RValue* args, int index) { return args[index].asBool(); }

float KvGetFloat(const RValue* args, int index)
{
    const double number = KvGetReal(args, index), highest = static_cast<double>(FLT_MAX);
    const bool isOutside = std::isfinite(number) && std::fabs(number) > highest;
    return static_cast<float>(isOutside ? std::copysign(highest, number) : number);
}

// ---- memory: alive before main and after it, because the registry of cameras allocates and frees there ----

static size_t AtLeastOne(size_t size) { return size > 0 ? size : 1; } // a block of no bytes is no refusal

void* MemoryManager::Alloc(size_t size, const char*, int, bool clear)
{
    return clear ? std::calloc(AtLeastOne(size), 1) : std::malloc(AtLeastOne(size));
}

void* MemoryManager::ReAlloc(void* block, size_t size, const char* file, int line, bool clear)
{
    return block == nullptr ? Alloc(size, file, line, clear) : std::realloc(block, AtLeastOne(size));
}

void MemoryManager::Free(void* block) { std::free(block); }
void KvFree(const void* block) { std::free(const_cast<void*>(block)); }

void* KvRealloc(void* block, int size)
{
    return size < 0 ? nullptr : std::realloc(block, AtLeastOne(static_cast<size_t>(size)));
}

// ---- errors: printed, and the module goes on. A host with scripts raises the error once the built-in is back ----

void KvError(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    std::vfprintf(stderr, format, arguments);
    va_end(arguments);
    std::fputc('\n', stderr);
}

// ---- matrices: the conventions stand in Platform/Matrix.h ----

void kvMatrix::Multiply(kvMatrix& out, const kvMatrix& a, const kvMatrix& b)
{
    kvMatrix product;
    for (int row = 0; row < 16; row += 4)
        for (int column = 0; column < 4; ++column)
            product.m[row + column] = a.m[row] * b.m[column] + a.m[row + 1] * b.m[column + 4] +
                                      a.m[row + 2] * b.m[column + 8] + a.m[row + 3] * b.m[column + 12];
    out = product; // at the end: out may be a or b
}

static float Dot(const kvVector3& a, const kvVector3& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }

static kvVector3 Cross(const kvVector3& a, const kvVector3& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

static kvVector3 Unit(const kvVector3& v)
{
    const float length = sqrtf(Dot(v, v));
    return {v.x / length, v.y / length, v.z / length};
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

void kvMatrix::OrthoLH(kvMatrix& out, float width, float height, float zNear, float zFar)
{
    out = {};
    out._11 = 2.0f / width;
    out._22 = 2.0f / height;
    out._33 = 1.0f / (zFar - zNear);
    out._43 = zNear / (zNear - zFar);
    out._44 = 1.0f;
}

void kvMatrix::PerspectiveLH(kvMatrix& out, float width, float height, float zNear, float zFar)
{
    out = {};
    out._11 = 2.0f * zNear / width;
    out._22 = 2.0f * zNear / height;
    out._33 = zFar / (zFar - zNear);
    out._34 = 1.0f;
    out._43 = zNear * zFar / (zNear - zFar);
}

// ---- graphics: where a camera's matrices arrive. Hand them to your renderer ----

float g_ViewAreaX, g_ViewAreaY, g_ViewAreaW, g_ViewAreaH, g_ViewAreaA; // the camera writes them: what the view shows
int g_RenderTargetActive = -1; // set it to anything else while you draw into a texture: y is then flipped
static kvMatrix s_matrices[3];

void Graphics::SetMatrix(eMatrix slot, float* matrix) { std::memcpy(s_matrices[slot].m, matrix, sizeof(kvMatrix)); }
const kvMatrix& MatrixOf(eMatrix slot) { return s_matrices[slot]; }
void SetViewExtents(float, float, float, float, float) {} // the same five numbers, for a host that culls by them

// ---- instances: found by identifier, or as the first of their object ----

static std::map<int, CInstance*> s_instances; // by identifier
static std::map<int, CObject> s_objects;      // by index
static KvHash<CObject> s_objectHash;          // has no fields: Find, below, knows where the objects are

KvHash<CInstance> CInstance::ms_ID2Instance;
KvHash<CObject>* g_ObjectHash = &s_objectHash;
int g_DummyObjectIndex = -1; // of the instance in which camera scripts run: no object of the game

template <> CInstance* KvHash<CInstance>::Find(int key) const
{
    const auto found = s_instances.find(key);
    return found != s_instances.end() ? found->second : nullptr;
}

template <> CObject* KvHash<CObject>::Find(int key) const
{
    const auto found = s_objects.find(key);
    return found != s_objects.end() ? &found->second : nullptr;
}

CInstance::CInstance(float atX, float atY, int id, int objectIndex, bool)
    : KvObjectBase(0, OBJECT_VARIABLE_MASK), x(atX), y(atY), m_flags(0), m_id(id), m_objectIndex(objectIndex)
{
    m_kind = OBJECT_KIND_INSTANCE;
}

CInstance* RValue::asObject() const
{
    const bool isInstance = KvKind(*this) == VALUE_OBJECT && pObj != nullptr && pObj->m_kind == OBJECT_KIND_INSTANCE;
    return isInstance ? static_cast<CInstance*>(pObj) : nullptr;
}

// Called before a camera reads x and y of an instance that moved. This host's instances have no boxes.
void CInstance::Compute_BoundingBox(bool) { m_flags &= ~eInstanceFlag_bbox_dirty; }

// An object lists its instances, and those of its children, in the order of their making: the first active one is what
// a camera follows.
static std::map<int, int> s_parents; // by the child's index

static int ParentOf(int objectIndex)
{
    const auto found = s_parents.find(objectIndex);
    return found != s_parents.end() ? found->second : -1;
}

static void Append(KvList<CInstance>& list, CInstance* instance)
{
    KvListNode<CInstance>** link = &list.m_first;
    while (*link != nullptr)
        link = &(*link)->m_next;
    *link = new KvListNode<CInstance>{nullptr, instance};
}

static void Remove(KvList<CInstance>& list, const CInstance* instance)
{
    KvListNode<CInstance>** link = &list.m_first;
    while (*link != nullptr && (*link)->m_obj != instance)
        link = &(*link)->m_next;
    KvListNode<CInstance>* const node = *link;
    if (node != nullptr)
        *link = node->m_next;
    delete node;
}

void DeriveObject(int objectIndex, int parent)
{
    s_parents[objectIndex] = parent;
    s_objects[objectIndex]; // both are there from now on, without an instance, too
    s_objects[parent];
}

CInstance* NewInstance(float x, float y, int objectIndex)
{
    static int s_nextId = INSTANCE_ID_FIRST;
    CInstance* const instance = new CInstance(x, y, s_nextId++, objectIndex, false);
    s_instances[instance->m_id] = instance;
    for (int object = objectIndex; object != -1; object = ParentOf(object))
        Append(s_objects[object].m_Instances_Recursive, instance);
    return instance;
}

void DestroyInstance(CInstance* instance)
{
    if (instance == nullptr)
        return;
    for (int object = instance->m_objectIndex; object != -1; object = ParentOf(object))
        Remove(s_objects[object].m_Instances_Recursive, instance);
    s_instances.erase(instance->m_id);
    delete instance;
}

// ---- a room with eight views ----

CRoom* Run_Room = nullptr;
int g_DefaultCameraID = -1;     // the camera of rooms that use no views
int Current_Object = -1;        // a camera's identifier while its callbacks run
bool g_fIsJSProject = false;    // callbacks run in the cameras' own instance
CInstance* g_pGlobal = nullptr; // otherwise in this one
static CRoom s_room;
static CViewGM s_views[ROOM_VIEWS];

void OpenRoom(int width, int height)
{
    s_room.r_width = width;
    s_room.r_height = height;
    for (int view = 0; view < ROOM_VIEWS; ++view)
    {
        s_views[view].cameraID = -1;
        s_room.r_view[view] = &s_views[view];
    }
    Run_Room = &s_room;
}

void CloseRoom()
{
    Run_Room = nullptr;
    while (!s_instances.empty())
        DestroyInstance(s_instances.begin()->second);
}

// ---- saves ----

static uint32_t WordOf(float number)
{
    uint32_t word;
    std::memcpy(&word, &number, sizeof word);
    return word;
}

static float FloatOf(uint32_t word)
{
    float number;
    std::memcpy(&number, &word, sizeof number);
    return number;
}

// A NaN stays one here, unlike in an argument: saved matrices may hold it.
static float FloatIn(const RValue& value)
{
    return std::isnan(value.asReal()) ? static_cast<float>(value.asReal()) : KvGetFloat(&value, 0);
}

int SaveBuffer::WriteTyped(eBuffer_Type type, RValue& value)
{
    if (type != eBuffer_S32 && type != eBuffer_F32)
        return 1;
    const uint32_t word = type == eBuffer_F32 ? WordOf(FloatIn(value)) : static_cast<uint32_t>(KvGetInt32(&value, 0));
    for (unsigned shift = 0; shift < 32; shift += 8)
        bytes.push_back(static_cast<uint8_t>(word >> shift));
    return 0;
}

int SaveBuffer::ReadTyped(eBuffer_Type type, RValue& value)
{
    const bool isThere = bytes.size() - m_position >= 4 && (type == eBuffer_S32 || type == eBuffer_F32);
    uint32_t word = 0;
    for (unsigned byte = 0; isThere && byte < 4; ++byte)
        word |= static_cast<uint32_t>(bytes[m_position++]) << (8 * byte);
    value = {};
    value.val = type == eBuffer_F32 ? static_cast<double>(FloatOf(word)) : static_cast<int32_t>(word);
    return isThere ? 0 : 1;
}

// The wrappers around the two, of every buffer. Every number travels as a real.
static RValue RealOf(double number)
{
    RValue value = {};
    value.val = number;
    return value;
}

void IBuffer::Write(int value) { WriteTyped(eBuffer_S32, m_scratch = RealOf(value)); }
void IBuffer::Write(float value) { WriteTyped(eBuffer_F32, m_scratch = RealOf(static_cast<double>(value))); }
void IBuffer::Write(bool value) { Write(value ? 1 : 0); }

int IBuffer::ReadS32()
{
    ReadTyped(eBuffer_S32, m_scratch);
    return KvGetInt32(&m_scratch, 0);
}

float IBuffer::ReadFloat()
{
    ReadTyped(eBuffer_F32, m_scratch);
    return FloatIn(m_scratch);
}

bool IBuffer::ReadBool()
{
    ReadTyped(eBuffer_S32, m_scratch);
    return KvGetBool(&m_scratch, 0);
}
