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
    return value.asReal(); // reports what is no number
}

template <typename Int> uint64_t IntegerBits(const RValue& value)
{
    return static_cast<uint64_t>(NearestInteger<Int>(Number(value)));
}

// The bytes that an item of a number type takes; 0 for the text types and for what is no type.
size_t SizeOfNumber(eBuffer_Type type)
{
    switch (type)
    {
    case eBuffer_U8:
    case eBuffer_S8:
    case eBuffer_Bool: return 1;
    case eBuffer_U16:
    case eBuffer_S16:
    case eBuffer_F16: return 2;
    case eBuffer_U32:
    case eBuffer_S32:
    case eBuffer_F32: return 4;
    case eBuffer_D64:
    case eBuffer_U64: return 8;
    default: return 0;
    }
}

// The item's bits, in the lowest bytes.
uint64_t Encode(eBuffer_Type type, const RValue& value)
{
    switch (type)
    {
    case eBuffer_U8: return IntegerBits<uint8_t>(value);
    case eBuffer_S8: return IntegerBits<int8_t>(value);
    case eBuffer_U16: return IntegerBits<uint16_t>(value);
    case eBuffer_S16: return IntegerBits<int16_t>(value);
    case eBuffer_U32: return IntegerBits<uint32_t>(value);
    case eBuffer_S32: return IntegerBits<int32_t>(value);
    case eBuffer_U64:
        return KvKind(value) == VALUE_INT64 ? static_cast<uint64_t>(value.v64) : IntegerBits<uint64_t>(value);
    case eBuffer_F16: return HalfFromReal(Number(value));
    case eBuffer_F32: return BitsOf<uint32_t>(NearestFloat(Number(value)));
    case eBuffer_D64: return BitsOf<uint64_t>(Number(value));
    case eBuffer_Bool: return Number(value) > 0.5 ? 1 : 0;
    default: return 0;
    }
}

template <typename Int, typename Bits> double SignedFrom(uint64_t bits) { return BitsOf<Int>(static_cast<Bits>(bits)); }

double Decode(eBuffer_Type type, uint64_t bits)
{
    switch (type)
    {
    case eBuffer_S8: return SignedFrom<int8_t, uint8_t>(bits);
    case eBuffer_S16: return SignedFrom<int16_t, uint16_t>(bits);
    case eBuffer_S32: return SignedFrom<int32_t, uint32_t>(bits);
    case eBuffer_F16: return RealFromHalf(static_cast<uint16_t>(bits));
    case eBuffer_F32: return static_cast<double>(BitsOf<float>(static_cast<uint32_t>(bits)));
    case eBuffer_D64: return BitsOf<double>(bits);
    case eBuffer_Bool: return bits != 0 ? 1.0 : 0.0;
    default: return static_cast<double>(bits);
    }
}

inline void StoreLittleEndian(uint8_t* to, uint64_t bits, size_t size)
{
    for (size_t i = 0; i < size; ++i, bits >>= 8)
        to[i] = static_cast<uint8_t>(bits & 0xFF);
}

inline uint64_t LoadLittleEndian(const uint8_t* from, size_t size)
{
    uint64_t bits = 0;
    for (size_t i = 0; i < size; ++i)
        bits |= static_cast<uint64_t>(from[i]) << (8 * i);
    return bits;
}

inline uint32_t LittleEndian(uint32_t word)
{
    return __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__ ? word : __builtin_bswap32(word);
}

inline void StoreWord(uint8_t* to, uint32_t bits)
{
    const uint32_t word = LittleEndian(bits);
    std::memcpy(to, &word, sizeof(word));
}

inline uint32_t LoadWord(const uint8_t* from)
{
    uint32_t word;
    std::memcpy(&word, from, sizeof(word));
    return LittleEndian(word);
}

// The value releases what it held and becomes the item.
void Become(RValue& value, eBuffer_Type type, uint64_t bits)
{
    if (value.kind != VALUE_REAL)
        FREE_RValue__Pre(&value);
    value.flags = 0;
    if (type == eBuffer_U64)
    {
        value.kind = VALUE_INT64;
        value.v64 = BitsOf<int64_t>(bits);
        return;
    }
    value.kind = type == eBuffer_Bool ? VALUE_BOOL : VALUE_REAL;
    value.val = Decode(type, bits);
}

bool IsText(eBuffer_Type type) { return type == eBuffer_String || type == eBuffer_Text; }
} // namespace

TypedBuffer::~TypedBuffer()
{
    FREE_RValue__Pre(&m_scratch);
    MemoryManager::Free(m_data);
}

// The rare half of Put, kept apart: the common half is then a few instructions.
bool TypedBuffer::MakeRoom(size_t size) { return size <= BUFFER_SIZE_MAX - Tell() && Reserve(Tell() + size); }

inline uint8_t* TypedBuffer::Put(size_t size)
{
    if (size > static_cast<size_t>(m_memoryEnd - m_position) && !MakeRoom(size))
        return nullptr;
    uint8_t* const to = m_position;
    m_position += size;
    return to;
}

inline const uint8_t* TypedBuffer::Take(size_t size)
{
    if (size > Left())
    {
        m_position = End();
        return nullptr;
    }
    const uint8_t* const from = m_position;
    m_position += size;
    return from;
}

// Nearly all of a saved game are reals as items of four bytes: they go a short way. Both operations are kept out of the
// wrappers, which have a shorter one that must not share their stack frame.

inline bool TypedBuffer::IsPlainWord(eBuffer_Type type, const RValue& value)
{
    return (type == eBuffer_F32 || type == eBuffer_S32) && value.kind == VALUE_REAL;
}

[[gnu::noinline]] int TypedBuffer::WriteTyped(eBuffer_Type type, RValue& value)
{
    if (!IsPlainWord(type, value))
        return WriteItem(type, value);
    uint8_t* to = Put(4);
    if (to == nullptr)
        return Fail(BUFFER_NO_MEMORY);
    StoreWord(to, type == eBuffer_F32 ? BitsOf<uint32_t>(NearestFloat(value.val))
                                      : BitsOf<uint32_t>(NearestInteger<int32_t>(value.val)));
    return BUFFER_DONE;
}

[[gnu::noinline]] int TypedBuffer::ReadTyped(eBuffer_Type type, RValue& value)
{
    if (!IsPlainWord(type, value) || value.flags != 0 || Left() < 4) // flags are to be cleared, or are the signature
        return ReadItem(type, value);
    const uint32_t bits = LoadWord(Take(4));
    value.val = type == eBuffer_F32 ? static_cast<double>(BitsOf<float>(bits)) : BitsOf<int32_t>(bits);
    return BUFFER_DONE;
}

int TypedBuffer::WriteItem(eBuffer_Type type, RValue& value)
{
    if (IsText(type))
        return PutText(value, type == eBuffer_String);
    const size_t size = SizeOfNumber(type);
    if (size == 0)
        return Fail(BUFFER_BAD_TYPE);
    uint8_t* to = Put(size);
    if (to == nullptr)
        return Fail(BUFFER_NO_MEMORY);
    StoreLittleEndian(to, Encode(type, value), size);
    return BUFFER_DONE;
}

int TypedBuffer::ReadItem(eBuffer_Type type, RValue& value)
{
    if (IsText(type))
        return TakeText(value, type == eBuffer_String);
    const size_t size = SizeOfNumber(type);
    if (size == 0)
        return Fail(BUFFER_BAD_TYPE);
    const uint8_t* from = Take(size);
    Become(value, type, from != nullptr ? LoadLittleEndian(from, size) : 0);
    m_scratch.flags = SIGNATURE; // which the value may have been
    return from != nullptr ? BUFFER_DONE : Fail(BUFFER_PAST_END);
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
    const char* text = reinterpret_cast<const char*>(m_position);
    const size_t left = Left();
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
    if (position > Size())
        return false;
    m_written = End();
    m_position = m_data + position;
    return true;
}

void TypedBuffer::Clear()
{
    m_written = m_data;
    m_position = m_data;
    m_error = BUFFER_DONE;
}

int TypedBuffer::Fail(BufferError error)
{
    if (m_error == BUFFER_DONE)
        m_error = error;
    return error;
}

bool TypedBuffer::Reserve(size_t size)
{
    const size_t capacity = static_cast<size_t>(m_memoryEnd - m_data);
    if (size <= capacity)
        return true;
    const size_t doubled = capacity < CAPACITY_FIRST ? CAPACITY_FIRST : capacity * 2;
    const size_t larger = std::min(std::max(doubled, size), BUFFER_SIZE_MAX);
    const size_t position = Tell();
    const size_t written = Size();
    uint8_t* const grown = KvGrowTable(m_data, larger);
    if (grown == nullptr)
        return false;
    m_data = grown;
    m_position = grown + position;
    m_written = grown + written;
    m_memoryEnd = grown + larger;
    return true;
}

// ---- the short way of the wrappers ----
//
// A word that becomes a double and then a word again is what it was, except a NaN, which may change: NaNs go the long
// way.

namespace
{
inline bool IsNumber(float item) { return item == item; }
inline bool IsNumber(int32_t) { return true; }
} // namespace

template <typename Item> inline bool TypedBuffer::PutWord(Item item)
{
    uint8_t* const to = m_position;
    if (!IsNumber(item) || m_memoryEnd - to < 4)
        return false;
    m_position = to + 4;
    StoreWord(to, BitsOf<uint32_t>(item));
    return true;
}

template <typename Item> inline bool TypedBuffer::TakeWord(Item& item)
{
    const uint8_t* const from = m_position;
    if (m_written - from < 4)
        return false;
    item = BitsOf<Item>(LoadWord(from));
    if (!IsNumber(item))
        return false;
    m_position += 4;
    return true;
}

inline bool TypedBuffer::IsOurs(const RValue& scratch) { return __builtin_expect(scratch.flags == SIGNATURE, true); }

template <typename Item> inline bool TypedBuffer::PutIfOurs(IBuffer* buffer, RValue& scratch, Item item)
{
    scratch.val = static_cast<double>(item);
    if (IsOurs(scratch) && static_cast<TypedBuffer*>(buffer)->PutWord(item))
        return true; // ours is a real always
    scratch.kind = VALUE_REAL;
    return false;
}

template <typename Item> inline bool TypedBuffer::TakeIfOurs(IBuffer* buffer, RValue& scratch, Item& item)
{
    if (!IsOurs(scratch) || !static_cast<TypedBuffer*>(buffer)->TakeWord(item))
        return false;
    scratch.val = static_cast<double>(item);
    return true;
}
} // namespace Runner

// ---- the wrappers of every buffer ----
//
// Aligned so that a float's whole way lies in one line of the instruction cache: across two, a save takes a fifth
// longer.

using Runner::TypedBuffer;

namespace
{
// A saved matrix may hold NaN, which must come back as it was; as an argument it would be 0. Kept out of the wrapper as
// the operations are.
[[gnu::noinline]] float FloatOf(const RValue& scratch)
{
    if (KvKind(scratch) == VALUE_REAL)
        return Runner::NearestFloat(scratch.val);
    return KvGetFloat(&scratch, 0);
}
} // namespace

[[gnu::aligned(64)]] void IBuffer::Write(int value)
{
    if (!TypedBuffer::PutIfOurs(this, m_scratch, value))
        WriteTyped(eBuffer_S32, m_scratch);
}

[[gnu::aligned(64)]] void IBuffer::Write(float value)
{
    if (!TypedBuffer::PutIfOurs(this, m_scratch, value))
        WriteTyped(eBuffer_F32, m_scratch);
}

void IBuffer::Write(bool value) { Write(value ? 1 : 0); }

[[gnu::aligned(64)]] int IBuffer::ReadS32()
{
    int item;
    if (TypedBuffer::TakeIfOurs(this, m_scratch, item))
        return item;
    ReadTyped(eBuffer_S32, m_scratch);
    return KvGetInt32(&m_scratch, 0);
}

[[gnu::aligned(64)]] float IBuffer::ReadFloat()
{
    float item;
    if (TypedBuffer::TakeIfOurs(this, m_scratch, item))
        return item;
    ReadTyped(eBuffer_F32, m_scratch);
    return FloatOf(m_scratch);
}

bool IBuffer::ReadBool()
{
    int item;
    if (TypedBuffer::TakeIfOurs(this, m_scratch, item))
        return item > 0; // KvGetBool: above one half
    ReadTyped(eBuffer_S32, m_scratch);
    return KvGetBool(&m_scratch, 0);
}
