#include "Runner/Save/Byte_Stream.h"

#include "Runner/Base/Bits.h"

namespace Runner
{
// ---- writing ----

void ByteWriter::Put(uint64_t value, int size)
{
    for (int i = 0; i < size; ++i)
        m_bytes.push_back(static_cast<uint8_t>((value >> (8 * i)) & 0xFF));
}

void ByteWriter::Append(const void* data, size_t size)
{
    const auto* bytes = static_cast<const uint8_t*>(data);
    m_bytes.insert(m_bytes.end(), bytes, bytes + size);
}

void ByteWriter::Count(size_t count)
{
    m_tooLong = m_tooLong || count > UINT32_MAX;
    Put(count, 4);
}

void ByteWriter::operator()(float value) { Put(BitsOf<uint32_t>(value), 4); }
void ByteWriter::operator()(double value) { Put(BitsOf<uint64_t>(value), 8); }

void ByteWriter::operator()(const std::string& text)
{
    Count(text.size());
    Append(text.data(), text.size());
}

void ByteWriter::operator()(const std::vector<uint8_t>& block)
{
    Count(block.size());
    Append(block.data(), block.size());
}

void ByteWriter::Varint(uint64_t value)
{
    for (; value >= 0x80; value >>= 7)
        m_bytes.push_back(static_cast<uint8_t>(value | 0x80));
    m_bytes.push_back(static_cast<uint8_t>(value));
}

// ---- reading ----

void ByteReader::Fail()
{
    m_failed = true;
    m_left = 0;
}

const uint8_t* ByteReader::TakeBlock(size_t size)
{
    if (size > m_left)
    {
        Fail();
        return nullptr;
    }
    const uint8_t* block = m_data;
    m_data += size;
    m_left -= size;
    return block;
}

uint64_t ByteReader::Take(size_t size)
{
    const uint8_t* bytes = TakeBlock(size);
    uint64_t value = 0;
    for (size_t i = 0; bytes != nullptr && i < size; ++i)
        value |= static_cast<uint64_t>(bytes[i]) << (8 * i);
    return value;
}

size_t ByteReader::Count() { return static_cast<size_t>(Take(4)); }

uint64_t ByteReader::Varint()
{
    uint64_t value = 0;
    for (int shift = 0; shift < 64; shift += 7)
    {
        const uint64_t byte = Take(1);
        value |= (byte & 0x7F) << shift;
        if (byte < 0x80)
            return value;
    }
    Fail();
    return 0;
}

void ByteReader::operator()(bool& value)
{
    const uint64_t byte = Take(1);
    if (byte > 1)
        Fail();
    value = byte == 1;
}

void ByteReader::operator()(float& value) { value = BitsOf<float>(static_cast<uint32_t>(Take(4))); }
void ByteReader::operator()(double& value) { value = BitsOf<double>(Take(8)); }

void ByteReader::operator()(std::string& text)
{
    const size_t size = Count();
    const uint8_t* bytes = TakeBlock(size);
    text.assign(reinterpret_cast<const char*>(bytes), bytes == nullptr ? 0 : size);
}

void ByteReader::operator()(std::vector<uint8_t>& block)
{
    const size_t size = Count();
    const uint8_t* bytes = TakeBlock(size);
    block.assign(bytes, bytes == nullptr ? nullptr : bytes + size);
}
} // namespace Runner
