#pragma once
// A byte buffer of typed items.
//
// Items follow each other without padding or tags, little-endian on every machine. One position serves reading and
// writing; writing at the end appends, elsewhere it overwrites.

#include "Files/Buffer/Buffer.h"

#include <cstddef>
#include <cstdint>

namespace Runner
{
// The results of WriteTyped and ReadTyped.
enum BufferError : int
{
    BUFFER_DONE = 0,
    BUFFER_PAST_END =
        1, // fewer bytes left than the item has: it reads as zero or an empty string, the position is at the end
    BUFFER_NO_MEMORY = 2, // memory was refused: nothing was written
    BUFFER_BAD_TYPE = 3,  // no such type of item: nothing was read or written
    BUFFER_BAD_VALUE = 4, // a text type with a value that is no string, or a text beyond BUFFER_TEXT_MAX
};

constexpr size_t BUFFER_SIZE_MAX = 0x7FFFFFFF;
constexpr size_t BUFFER_TEXT_MAX = 16 << 20;

// How values are written and read:
//   integers   truncated towards zero and clamped to the range, NaN as 0; read as reals.
//              U64 alone writes the 64 bits of an int64 as they are, and reads an int64
//   F16, F32   rounded to nearest, beyond the range infinite; NaN stays NaN
//   Bool       one byte, 1 for a number above one half, else 0; read as a bool
//   String     the bytes before the first zero byte, then a zero byte
//   Text       all bytes of the string, without a terminator; reading takes the rest, up to a zero byte
// A string that is a number is written as that number.
class TypedBuffer final : public IBuffer
{
public:
    TypedBuffer() = default;
    ~TypedBuffer();
    TypedBuffer(const TypedBuffer&) = delete;
    TypedBuffer& operator=(const TypedBuffer&) = delete;

    int WriteTyped(eBuffer_Type type, RValue& value) override;
    int ReadTyped(eBuffer_Type type, RValue& value) override; // releases what value held

    int WriteBytes(const void* data, size_t size);
    int ReadBytes(void* data, size_t size); // zeros when fewer are left

    bool Seek(size_t position); // false beyond the end: nothing changes
    size_t Tell() const { return m_position; }
    size_t Size() const { return m_size; }
    const uint8_t* Data() const { return m_data; } // null while nothing was ever written; valid until the next write
    void Clear();                                  // empty, without error; keeps its memory

    BufferError Error() const { return m_error; } // the first since the last Clear or ClearError; stays
    void ClearError() { m_error = BUFFER_DONE; }

private:
    BufferError Fail(BufferError error); // notes the first, answers this one
    bool Reserve(size_t size);           // at most BUFFER_SIZE_MAX
    uint8_t* Put(size_t size);           // room at the position, which moves on; null: refused
    const uint8_t* Take(size_t size);    // the bytes at the position, which moves on; null: past the end
    template <typename Item> int PutItem(Item item);
    template <typename Item> int TakeReal(RValue& value);
    template <typename Item> BufferError TakeItem(Item& item); // zero past the end
    int PutText(const RValue& value, bool ended);
    int TakeText(RValue& value, bool ended);
    int TakeU64(RValue& value);
    int TakeHalf(RValue& value);
    int TakeBool(RValue& value);

    uint8_t* m_data = nullptr;
    size_t m_position = 0; // at most m_size
    size_t m_size = 0;
    size_t m_capacity = 0; // at most BUFFER_SIZE_MAX
    BufferError m_error = BUFFER_DONE;
};
} // namespace Runner
