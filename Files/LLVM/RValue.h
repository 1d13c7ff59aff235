#pragma once
// The script value, and the rules by which values are copied and released.

#include "Files/LLVM/Ref_Thing.h"

#include <cstdint>

class CInstance;
class COwnedObject;
class IBuffer;
class KvObjectBase;
struct RValue;

enum eRValue_Kind : uint32_t
{
    VALUE_REAL = 0,
    VALUE_STRING = 1,
    VALUE_ARRAY = 2,
    VALUE_PTR = 3,
    VALUE_VEC3 = 4,
    VALUE_UNDEFINED = 5,
    VALUE_OBJECT = 6,
    VALUE_INT32 = 7,
    VALUE_VEC4 = 8,
    VALUE_VEC44 = 9,
    VALUE_INT64 = 10,
    VALUE_ACCESSOR = 11,
    VALUE_NULL = 12,
    VALUE_BOOL = 13, // val is 0 or 1
    VALUE_ITERATOR = 14,
    VALUE_REF = 15,
    VALUE_UNSET = 0xFFFFFF, // a result that nobody has written yet
};

constexpr uint32_t VALUE_KIND_MASK = 0xFFFFFF; // the kind; the high 8 bits of the word are not part of it
constexpr uint32_t VALUE_FLAG_OWNS_PTR = 8;    // flags: a VALUE_PTR owns its COwnedObject

// A counted array. The host makes, counts and frees it (Arrays.h); the module reads and fills elements.
struct RefDynamicArrayOfRValue
{
    int32_t m_refCount;
    void* m_owner;   // the object that may write to it without a copy; the host's
    RValue* m_array; // m_length elements from MemoryManager; null when empty
    int32_t m_length;
};

struct RValue
{
    union
    {
        int32_t v32;
        int64_t v64;
        double val;
        RefString* pRefString;
        RefDynamicArrayOfRValue* pRefArray;
        void* pVec4;
        void* pMatrix44;
        void* ptr;
        KvObjectBase* pObj;
    };
    uint32_t flags;
    uint32_t kind;

    // Host. The module calls none of these.
    void Serialise(IBuffer* buffer) const; // DeSerialise reads an equal value back
    void DeSerialise(IBuffer* buffer);
    const char* GetString() const; // the text of a string, else ""
    int64_t asInt64() const;       // of a VALUE_INT64 all 64 bits
    double asReal() const;         // the number of a real, an integer or a bool
    bool asBool() const;           // true above one half
    CInstance* asObject() const;   // null unless the value is an instance
};

struct KvRValue : RValue
{
};

static_assert(sizeof(RValue) == 16, "a value is four words on every target");
static_assert(sizeof(KvRValue) == sizeof(RValue), "no fields of its own");

extern RValue g_undefined; // the one shared VALUE_UNDEFINED. Module, weak.

// Anything that a VALUE_PTR may own. The destructor is inline so that hosts built with run-time type information
// can derive from it although the module is built without.
class COwnedObject
{
public:
    virtual ~COwnedObject() {}
};

#include "Files/LLVM/Value_Ownership.h"
