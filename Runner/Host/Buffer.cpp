#include "Runner/Host/Buffer.h"

#include "Files/Code/Function.h"
#include "Runner/Base/Bits.h"
#include "Runner/Base/Half.h"
#include "Runner/Host/Convert.h"
#include "Runner/Host/Value.h"

#include <algorithm>
#include <cstring>

namespace Runner
{
namespace
{
constexpr size_t CAPACITY_FIRST = 256;

double Number(const RValue& value)
{
    if (value.kind == VALUE_REAL)
        return value.val;
    return value.asReal(); // reports a value that is no number
}

// Items are stored little-endian on every machine.
constexpr bool IS_BIG_ENDIAN = __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__;

template <typename Item> void Store(uint8_t* to, Item item)
{
    std::memcpy(to, &item, sizeof(item));
    if constexpr (IS_BIG_ENDIAN)
        std::reverse(to, to + sizeof(item));
}

template <typename Item> Item Load(const uint8_t* from)
{
    uint8_t bytes[sizeof(Item)];
    std::memcpy(bytes, from, sizeof(bytes));
    if constexpr (IS_BIG_ENDIAN)
        std::reverse(bytes, bytes + sizeof(bytes));
    Item item;
    std::memcpy(&item, bytes, sizeof(bytes));
    return item;
}

uint64_t U64Of(const RValue& value)
{
    return KvKind(value) == VALUE_INT64 ? static_cast<uint64_t>(value.v64) : NearestInteger<uint64_t>(Number(value));
}

// Releases what the value held and sets its kind. The caller sets the number.
void Become(RValue& value, eRValue_Kind kind)
{
    if (value.kind != VALUE_REAL)
        FREE_RValue__Pre(&value);
    value.flags = 0;
    value.kind = kind;
}
} // namespace

TypedBuffer::~TypedBuffer() { MemoryManager::Free(m_data); }

inline uint8_t* TypedBuffer::Put(size_t size)
{
    if (size > m_capacity - m_position && (size > BUFFER_SIZE_MAX - m_position || !Reserve(m_position + size)))
        return nullptr;
    uint8_t* const to = m_data + m_position;
    m_position += size;
    m_size = std::max(m_size, m_position);
    return to;
}

inline const uint8_t* TypedBuffer::Take(size_t size)
{
    if (size > m_size - m_position)
    {
        m_position = m_size;
        return nullptr;
    }
    const uint8_t* const from = m_data + m_position;
    m_position += size;
    return from;
}

template <typename Item> inline int TypedBuffer::PutItem(Item item)
{
    uint8_t* const to = Put(sizeof(item));
    if (to == nullptr)
        return Fail(BUFFER_NO_MEMORY);
    Store(to, item);
    return BUFFER_DONE;
}

template <typename Item> inline BufferError TypedBuffer::TakeItem(Item& item)
{
    const uint8_t* const from = Take(sizeof(item));
    item = from != nullptr ? Load<Item>(from) : Item();
    return from != nullptr ? BUFFER_DONE : Fail(BUFFER_PAST_END);
}

template <typename Item> inline int TypedBuffer::TakeReal(RValue& value)
{
    Item item;
    const BufferError error = TakeItem(item);
    Become(value, VALUE_REAL);
    value.val = static_cast<double>(item);
    return error;
}

int TypedBuffer::WriteTyped(eBuffer_Type type, RValue& value)
{
    switch (type)
    {
    case eBuffer_U8: return PutItem(NearestInteger<uint8_t>(Number(value)));
    case eBuffer_S8: return PutItem(NearestInteger<int8_t>(Number(value)));
    case eBuffer_U16: return PutItem(NearestInteger<uint16_t>(Number(value)));
    case eBuffer_S16: return PutItem(NearestInteger<int16_t>(Number(value)));
    case eBuffer_U32: return PutItem(NearestInteger<uint32_t>(Number(value)));
    case eBuffer_S32: return PutItem(NearestInteger<int32_t>(Number(value)));
    case eBuffer_U64: return PutItem(U64Of(value));
    case eBuffer_F16: return PutItem(HalfFromReal(Number(value)));
    case eBuffer_F32: return PutItem(NearestFloat(Number(value)));
    case eBuffer_D64: return PutItem(Number(value));
    case eBuffer_Bool: return PutItem(static_cast<uint8_t>(Number(value) > 0.5));
    case eBuffer_String: return PutText(value, true);
    case eBuffer_Text: return PutText(value, false);
    default: return Fail(BUFFER_BAD_TYPE);
    }
}

int TypedBuffer::ReadTyped(eBuffer_Type type, RValue& value)
{
    switch (type)
    {
    case eBuffer_U8: return TakeReal<uint8_t>(value);
    case eBuffer_S8: return TakeReal<int8_t>(value);
    case eBuffer_U16: return TakeReal<uint16_t>(value);
    case eBuffer_S16: return TakeReal<int16_t>(value);
    case eBuffer_U32: return TakeReal<uint32_t>(value);
    case eBuffer_S32: return TakeReal<int32_t>(value);
    case eBuffer_U64: return TakeU64(value);
    case eBuffer_F16: return TakeHalf(value);
    case eBuffer_F32: return TakeReal<float>(value);
    case eBuffer_D64: return TakeReal<double>(value);
    case eBuffer_Bool: return TakeBool(value);
    case eBuffer_String: return TakeText(value, true);
    case eBuffer_Text: return TakeText(value, false);
    default: return Fail(BUFFER_BAD_TYPE);
    }
}

int TypedBuffer::TakeU64(RValue& value)
{
    uint64_t item;
    const BufferError error = TakeItem(item);
    Become(value, VALUE_INT64);
    value.v64 = BitsOf<int64_t>(item);
    return error;
}

int TypedBuffer::TakeHalf(RValue& value)
{
    uint16_t item;
    const BufferError error = TakeItem(item);
    Become(value, VALUE_REAL);
    value.val = RealFromHalf(item);
    return error;
}

int TypedBuffer::TakeBool(RValue& value)
{
    const int error = TakeReal<uint8_t>(value);
    value.kind = VALUE_BOOL;
    value.val = value.val != 0.0 ? 1.0 : 0.0;
    return error;
}

int TypedBuffer::PutText(const RValue& value, bool ended)
{
    if (KvKind(value) != VALUE_STRING)
        return Fail(BUFFER_BAD_VALUE);
    const RefString* text = value.pRefString;
    const char* bytes = value.GetString();
    const size_t whole = text != nullptr && text->m_thing != nullptr ? static_cast<size_t>(text->m_size) : 0;
    const size_t length = ended ? std::strlen(bytes) : whole;
    if (length > BUFFER_TEXT_MAX)
        return Fail(BUFFER_BAD_VALUE);
    return WriteBytes(bytes, length + (ended ? 1 : 0));
}

int TypedBuffer::TakeText(RValue& value, bool ended)
{
    const char* text = reinterpret_cast<const char*>(m_data) + m_position;
    const size_t left = m_size - m_position;
    const void* end = left != 0 ? std::memchr(text, 0, left) : nullptr;
    const size_t length = end != nullptr ? static_cast<size_t>(static_cast<const char*>(end) - text) : left;
    BufferError error = BUFFER_DONE;
    if (ended && end == nullptr)
        error = BUFFER_PAST_END;
    else if (length > BUFFER_TEXT_MAX)
        error = BUFFER_BAD_VALUE;
    Release(value);
    value = MakeString(error == BUFFER_DONE ? std::string_view(text, length) : std::string_view());
    m_position += length + (ended && end != nullptr ? 1 : 0);
    return error == BUFFER_DONE ? BUFFER_DONE : Fail(error);
}

int TypedBuffer::WriteBytes(const void* data, size_t size)
{
    if (size == 0)
        return BUFFER_DONE;
    uint8_t* to = Put(size);
    if (to == nullptr)
        return Fail(BUFFER_NO_MEMORY);
    std::memcpy(to, data, size);
    return BUFFER_DONE;
}

int TypedBuffer::ReadBytes(void* data, size_t size)
{
    if (size == 0)
        return BUFFER_DONE;
    const uint8_t* from = Take(size);
    if (from == nullptr)
    {
        std::memset(data, 0, size);
        return Fail(BUFFER_PAST_END);
    }
    std::memcpy(data, from, size);
    return BUFFER_DONE;
}

bool TypedBuffer::Seek(size_t position)
{
    if (position > m_size)
        return false;
    m_position = position;
    return true;
}

void TypedBuffer::Clear()
{
    m_position = 0;
    m_size = 0;
    m_error = BUFFER_DONE;
}

BufferError TypedBuffer::Fail(BufferError error)
{
    if (m_error == BUFFER_DONE)
        m_error = error;
    return error;
}

bool TypedBuffer::Reserve(size_t size)
{
    if (size <= m_capacity)
        return true;
    const size_t doubled = std::max(CAPACITY_FIRST, m_capacity * 2);
    const size_t larger = std::min(std::max(doubled, size), BUFFER_SIZE_MAX);
    uint8_t* const grown = KvGrowTable(m_data, larger);
    if (grown == nullptr)
        return false;
    m_data = grown;
    m_capacity = larger;
    return true;
}
} // namespace Runner

// ---- the wrappers of every buffer ----

namespace
{
// NaN comes back as NaN, because a saved matrix may hold it. KvGetFloat, made for arguments, would give 0.
float FloatOf(const RValue& scratch)
{
    if (KvKind(scratch) == VALUE_REAL)
        return Runner::NearestFloat(scratch.val);
    return KvGetFloat(&scratch, 0);
}
} // namespace

void IBuffer::Write(int value)
{
    m_scratch.kind = VALUE_REAL;
    m_scratch.val = value;
    WriteTyped(eBuffer_S32, m_scratch);
}

void IBuffer::Write(float value)
{
    m_scratch.kind = VALUE_REAL;
    m_scratch.val = static_cast<double>(value);
    WriteTyped(eBuffer_F32, m_scratch);
}

void IBuffer::Write(bool value) { Write(value ? 1 : 0); }

int IBuffer::ReadS32()
{
    ReadTyped(eBuffer_S32, m_scratch);
    return KvGetInt32(&m_scratch, 0);
}

float IBuffer::ReadFloat()
{
    ReadTyped(eBuffer_F32, m_scratch);
    return FloatOf(m_scratch);
}

bool IBuffer::ReadBool()
{
    ReadTyped(eBuffer_S32, m_scratch);
    return KvGetBool(&m_scratch, 0);
}
