#pragma once
// The bytes of a saved game: numbers little-endian without padding, a text after its length (U32).
//
// Writer and reader have the same call operators, so that one list of fields serves both.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace Runner
{
class ByteWriter
{
public:
    void operator()(bool value) { Put(value ? 1 : 0, 1); }
    void operator()(int32_t value) { Put(static_cast<uint32_t>(value), 4); }
    void operator()(uint32_t value) { Put(value, 4); }
    void operator()(int64_t value) { Put(static_cast<uint64_t>(value), 8); }
    void operator()(uint64_t value) { Put(value, 8); }
    void operator()(float value);
    void operator()(double value);
    void operator()(const std::string& text);
    void operator()(const std::vector<uint8_t>& block); // after its length (U32)
    void Count(size_t count);                           // the number of items that follow
    void Varint(uint64_t value); // seven bits a byte, the lowest first; the top bit says that another one follows

    // A signed number for Varint: small ones of either sign become small (0, -1, 1, -2, 2 become 0, 1, 2, 3, 4).
    static uint64_t Folded(int64_t number)
    {
        return static_cast<uint64_t>(number) << 1 ^ (number < 0 ? ~uint64_t{0} : 0);
    }

    const std::vector<uint8_t>& Bytes() const { return m_bytes; }
    bool TooLong() const { return m_tooLong; } // a text, block or list had more than 2^32 - 1 items

private:
    void Put(uint64_t value, int size);
    void Append(const void* data, size_t size);

    std::vector<uint8_t> m_bytes;
    bool m_tooLong = false;
};

// After the first failure every item reads as zero or empty.
class ByteReader
{
public:
    ByteReader(const uint8_t* data, size_t size) : m_data(data), m_left(size) {}

    void operator()(bool& value); // fails when the byte is neither 0 nor 1
    void operator()(int32_t& value) { value = static_cast<int32_t>(Take(4)); }
    void operator()(uint32_t& value) { value = static_cast<uint32_t>(Take(4)); }
    void operator()(int64_t& value) { value = static_cast<int64_t>(Take(8)); }
    void operator()(uint64_t& value) { value = Take(8); }
    void operator()(float& value);
    void operator()(double& value);
    void operator()(std::string& text);
    void operator()(std::vector<uint8_t>& block);
    size_t Count(); // not checked against what is left: reserve no memory for so many items
    uint64_t Varint();

    static int64_t Unfolded(uint64_t folded)
    {
        return static_cast<int64_t>(folded >> 1 ^ ((folded & 1) != 0 ? ~uint64_t{0} : 0));
    }

    size_t Left() const { return m_left; }
    bool Failed() const { return m_failed; } // something was read past the end, or was out of range
    void Fail();

private:
    uint64_t Take(size_t size);
    const uint8_t* TakeBlock(size_t size); // null, and failed, when there are fewer

    const uint8_t* m_data;
    size_t m_left;
    bool m_failed = false;
};
} // namespace Runner
