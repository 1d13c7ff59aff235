#include "Files/Buffer/Buffer.h"
#include "Runner/Host/Value.h"

#include <string>
#include <vector>

// A saved value: its kind (S32), then
//   real, bool   D64
//   int32        S32
//   int64        U64, its bits
//   string       S32 length, that many U8
//   array        S32 count, that many values
// and nothing for undefined. All other kinds refer to the running game and are saved as undefined; so is a value that
// exceeds a limit. Reading allocates in proportion to what it has read, so that a false length costs nothing.

namespace
{
using namespace Runner;

void WriteValue(IBuffer* buffer, const RValue& value, int depth);

void WriteItem(IBuffer* buffer, eBuffer_Type type, RValue item) { buffer->WriteTyped(type, item); }

void WriteText(IBuffer* buffer, const RefString& text)
{
    buffer->Write(text.m_size);
    for (int32_t i = 0; i < text.m_size; ++i)
        WriteItem(buffer, eBuffer_U8, MakeReal(static_cast<unsigned char>(text.m_thing[i])));
}

void WriteArray(IBuffer* buffer, const RefDynamicArrayOfRValue& array, int depth)
{
    buffer->Write(array.m_length);
    for (int32_t i = 0; i < array.m_length; ++i)
        WriteValue(buffer, array.m_array[i], depth + 1);
}

// The kind under which a value is saved.
eRValue_Kind SavedKind(const RValue& value, int depth)
{
    switch (const uint32_t kind = KvKind(value))
    {
    case VALUE_REAL:
    case VALUE_BOOL:
    case VALUE_INT32:
    case VALUE_INT64: return static_cast<eRValue_Kind>(kind);
    case VALUE_STRING:
        return value.pRefString != nullptr && value.pRefString->m_size <= SAVED_TEXT_MAX ? VALUE_STRING
                                                                                         : VALUE_UNDEFINED;
    case VALUE_ARRAY:
        return value.pRefArray != nullptr && value.pRefArray->m_length <= SAVED_ARRAY_MAX && depth < VALUE_DEPTH_MAX
                   ? VALUE_ARRAY
                   : VALUE_UNDEFINED;
    default: return VALUE_UNDEFINED;
    }
}

void WriteValue(IBuffer* buffer, const RValue& value, int depth)
{
    const eRValue_Kind kind = SavedKind(value, depth);
    buffer->Write(static_cast<int>(kind));
    switch (kind)
    {
    case VALUE_REAL:
    case VALUE_BOOL: WriteItem(buffer, eBuffer_D64, MakeReal(value.val)); break;
    case VALUE_INT32: buffer->Write(value.v32); break;
    case VALUE_INT64: WriteItem(buffer, eBuffer_U64, value); break;
    case VALUE_STRING: WriteText(buffer, *value.pRefString); break;
    case VALUE_ARRAY: WriteArray(buffer, *value.pRefArray, depth); break;
    default: break;
    }
}

bool ReadValue(IBuffer* buffer, RValue& value, int depth);

bool ReadItem(IBuffer* buffer, eBuffer_Type type, RValue& item)
{
    item = MakeReal(0.0);
    return buffer->ReadTyped(type, item) == 0;
}

bool ReadInteger(IBuffer* buffer, int32_t lowest, int32_t highest, int32_t& number)
{
    RValue item;
    if (!ReadItem(buffer, eBuffer_S32, item) || item.val < lowest || item.val > highest)
        return false;
    number = static_cast<int32_t>(item.val);
    return true;
}

bool ReadText(IBuffer* buffer, RValue& value)
{
    int32_t length = 0;
    if (!ReadInteger(buffer, 0, SAVED_TEXT_MAX, length))
        return false;
    std::string text;
    for (int32_t i = 0; i < length; ++i)
    {
        RValue item;
        if (!ReadItem(buffer, eBuffer_U8, item))
            return false;
        text.push_back(static_cast<char>(static_cast<unsigned char>(item.val)));
    }
    value = MakeString(text);
    return true;
}

// Moves the elements into a new array. Releases them when memory is refused.
bool GiveToArray(std::vector<RValue>& elements, RValue& value)
{
    value = MakeArray(static_cast<int>(elements.size()));
    const bool made = KvKind(value) == VALUE_ARRAY;
    for (size_t i = 0; i < elements.size(); ++i)
        if (made)
            value.pRefArray->m_array[i] = elements[i];
        else
            Release(elements[i]);
    return made;
}

bool ReadArray(IBuffer* buffer, RValue& value, int depth)
{
    int32_t count = 0;
    if (depth >= VALUE_DEPTH_MAX || !ReadInteger(buffer, 0, SAVED_ARRAY_MAX, count))
        return false;
    std::vector<RValue> elements;
    for (int32_t i = 0; i < count; ++i)
    {
        RValue element;
        if (!ReadValue(buffer, element, depth + 1))
        {
            for (RValue& read : elements)
                Release(read);
            return false;
        }
        elements.push_back(element);
    }
    return GiveToArray(elements, value);
}

bool ReadInt32(IBuffer* buffer, RValue& value)
{
    int32_t number = 0;
    const bool read = ReadInteger(buffer, INT32_MIN, INT32_MAX, number);
    value = MakeReal(0.0);
    value.kind = VALUE_INT32;
    value.v32 = number;
    return read;
}

bool ReadReal(IBuffer* buffer, RValue& value, eRValue_Kind kind)
{
    const bool read = ReadItem(buffer, eBuffer_D64, value);
    value.kind = kind;
    return read;
}

// False when the stream ends early or is malformed; the value is then undefined.
bool ReadValue(IBuffer* buffer, RValue& value, int depth)
{
    value = MakeUndefined();
    int32_t kind = 0;
    if (!ReadInteger(buffer, 0, INT32_MAX, kind))
        return false;
    bool read = false;
    switch (kind)
    {
    case VALUE_REAL: read = ReadReal(buffer, value, VALUE_REAL); break;
    case VALUE_BOOL: read = ReadReal(buffer, value, VALUE_BOOL); break;
    case VALUE_INT32: read = ReadInt32(buffer, value); break;
    case VALUE_INT64: read = ReadItem(buffer, eBuffer_U64, value); break;
    case VALUE_STRING: read = ReadText(buffer, value); break;
    case VALUE_ARRAY: read = ReadArray(buffer, value, depth); break;
    case VALUE_UNDEFINED: read = true; break;
    default: break;
    }
    if (!read)
        value = MakeUndefined();
    return read;
}
} // namespace

void RValue::Serialise(IBuffer* buffer) const { WriteValue(buffer, *this, 0); }

void RValue::DeSerialise(IBuffer* buffer)
{
    Release(*this);
    ReadValue(buffer, *this, 0);
}
