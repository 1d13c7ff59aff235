#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace Runner
{
// FNV-1a, 64 bits: a fingerprint for traces and checksums. It detects accidents; whoever wants to can forge it.
class Hash
{
public:
    void Bytes(const void* data, size_t size)
    {
        const unsigned char* bytes = static_cast<const unsigned char*>(data);
        for (size_t i = 0; i < size; ++i)
            m_value = (m_value ^ bytes[i]) * UINT64_C(0x100000001B3);
    }

    void U32(uint32_t word) // little-endian on every machine
    {
        const unsigned char bytes[4] = {
            static_cast<unsigned char>(word & 0xFF), static_cast<unsigned char>((word >> 8) & 0xFF),
            static_cast<unsigned char>((word >> 16) & 0xFF), static_cast<unsigned char>((word >> 24) & 0xFF)};
        Bytes(bytes, sizeof(bytes));
    }

    void Float(float number) // its bits; every NaN counts as one, because the bits of NaN differ between machines
    {
        uint32_t bits = 0x7FC00000u;
        if (number == number)
            std::memcpy(&bits, &number, sizeof(bits));
        U32(bits);
    }

    uint64_t Value() const { return m_value; }

private:
    uint64_t m_value = UINT64_C(0xCBF29CE484222325);
};

inline uint64_t HashBytes(const void* data, size_t size)
{
    Hash hash;
    hash.Bytes(data, size);
    return hash.Value();
}
} // namespace Runner
