#include "Runner/Host/Value.h"

#include "Files/Instance/Instance.h"
#include "Files/Object/Object_Base.h"
#include "Runner/Base/Printable.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <new>

namespace
{
constexpr char TAG[] = "Runner/Host/Value";

// Never destroyed: strings are released after main, too.
std::recursive_mutex& ValueLock()
{
    static std::recursive_mutex& lock = *new std::recursive_mutex;
    return lock;
}
} // namespace

void LOCK_RVALUE_MUTEX() { ValueLock().lock(); }

void UNLOCK_RVALUE_MUTEX() { ValueLock().unlock(); }

// ---- texts ----

template <> void _RefThing<const char*>::inc()
{
    LOCK_RVALUE_MUTEX();
    ++m_refCount;
    UNLOCK_RVALUE_MUTEX();
}

template <> const char* _RefThing<const char*>::get() const { return m_thing; }

template <> int32_t _RefThing<const char*>::size() const { return m_size; }

template <> void _RefThing<const char*>::assign(const char* thing, int32_t size)
{
    if (thing != m_thing)
        KvFree(m_thing);
    m_thing = thing;
    m_size = size;
}

template <> void _RefThing<const char*>::remove() { assign(nullptr, 0); }

// ---- making and releasing ----

namespace Runner
{
namespace
{
RValue MakeKind(eRValue_Kind kind)
{
    RValue value = {};
    value.kind = kind;
    return value;
}

// A record with one reference; null when memory is refused.
RefString* NewText(std::string_view text)
{
    if (text.size() >= INT_MAX)
        return nullptr;
    char* copy = static_cast<char*>(KvRealloc(nullptr, static_cast<int>(text.size()) + 1));
    if (copy == nullptr)
        return nullptr;
    RefString* record = new (std::nothrow) RefString;
    if (record == nullptr)
    {
        KvFree(copy);
        return nullptr;
    }
    if (!text.empty())
        std::memcpy(copy, text.data(), text.size());
    copy[text.size()] = '\0';
    record->m_thing = copy;
    record->m_size = static_cast<int32_t>(text.size());
    record->m_refCount = 1;
    return record;
}
} // namespace

RValue MakeReal(double number)
{
    RValue value = MakeKind(VALUE_REAL);
    value.val = number;
    return value;
}

RValue MakeString(std::string_view text)
{
    RValue value = MakeKind(VALUE_STRING);
    value.pRefString = NewText(text);
    return value;
}

RValue MakeBool(bool truth)
{
    RValue value = MakeKind(VALUE_BOOL);
    value.val = truth ? 1.0 : 0.0;
    return value;
}

RValue MakeUndefined() { return MakeKind(VALUE_UNDEFINED); }

RValue MakeObject(KvObjectBase* object)
{
    RValue value = MakeKind(VALUE_OBJECT);
    value.pObj = object;
    return value;
}

RValue MakeArray(int length)
{
    RValue value = MakeKind(VALUE_ARRAY);
    const size_t count = length > 0 ? static_cast<size_t>(length) : 0;
    value.pRefArray = length >= 0 && count <= SIZE_MAX / sizeof(RValue) ? ARRAY_RefAlloc() : nullptr;
    if (value.pRefArray == nullptr)
        return MakeUndefined();
    if (count == 0)
        return value;
    void* elements = MemoryManager::Alloc(count * sizeof(RValue), TAG, __LINE__, true);
    if (elements == nullptr)
    {
        Release(value);
        return value;
    }
    value.pRefArray->m_array = static_cast<RValue*>(elements);
    value.pRefArray->m_length = length;
    for (size_t i = 0; i < count; ++i)
        value.pRefArray->m_array[i] = MakeUndefined();
    return value;
}

void Release(RValue& value)
{
    FREE_RValue__Pre(&value);
    value = MakeUndefined();
}

// ---- describing ----

namespace
{
std::string DescribeNumber(double number)
{
    char text[40];
    std::snprintf(text, sizeof(text), "%.15g", number);
    if (number == number && std::strtod(text, nullptr) != number)
        std::snprintf(text, sizeof(text), "%.17g", number);
    return std::string("the number ") + (number == number ? text : "nan"); // some machines print NaN with a sign
}

std::string DescribeText(const RefString* text)
{
    if (text == nullptr || text->m_thing == nullptr)
        return "an empty string";
    return "the string \"" + Printable({text->m_thing, static_cast<size_t>(text->m_size)}) + "\"";
}

const char* DescribeObject(const KvObjectBase* object)
{
    if (object == nullptr)
        return "an object that is not there";
    switch (object->m_kind)
    {
    case OBJECT_KIND_SCRIPT_FUNCTION: return "a function";
    case OBJECT_KIND_INSTANCE: return "an instance";
    default: return "an object";
    }
}
} // namespace

std::string Describe(const RValue& value)
{
    switch (KvKind(value))
    {
    case VALUE_REAL: return DescribeNumber(value.val);
    case VALUE_INT32: return "the number " + std::to_string(value.v32);
    case VALUE_INT64: return "the number " + std::to_string(value.v64);
    case VALUE_BOOL: return value.val > 0.5 ? "true" : "false";
    case VALUE_STRING: return DescribeText(value.pRefString);
    case VALUE_ARRAY: return "a table";
    case VALUE_OBJECT: return DescribeObject(value.pObj);
    case VALUE_UNDEFINED: return "nil";
    case VALUE_NULL: return "null";
    case VALUE_UNSET: return "nothing";
    case VALUE_PTR: return "a pointer";
    default: return "a value of kind " + std::to_string(KvKind(value));
    }
}
} // namespace Runner

const char* RValue::GetString() const
{
    const bool isText = KvKind(*this) == VALUE_STRING && pRefString != nullptr && pRefString->m_thing != nullptr;
    return isText ? pRefString->m_thing : "";
}

CInstance* RValue::asObject() const
{
    const bool isInstance = KvKind(*this) == VALUE_OBJECT && pObj != nullptr && pObj->m_kind == OBJECT_KIND_INSTANCE;
    return isInstance ? static_cast<CInstance*>(pObj) : nullptr;
}
