#pragma once
// All floats, in parts, and one hash for what a function answers over a part.
//
// Parts 0 .. BLOCKS - 1   blocks: the BLOCK_SIZE floats whose bits are BLOCK_SIZE * part and up; together all 2^32
// AROUND_EIGHTHS          the floats about each multiple of pi/4 up to 2^16, of either sign: where results are smallest
//                         and the quarter changes
// SAMPLE                  every 4093rd float
//
// A hash steps through 64 bits by operations that can be undone, so one wrong answer always leaves another state. Of
// several the last steps may meet again, and the 32 bits that are kept hide a difference: once in 2^32 for a part, and
// a wrong function differs in more than one. What a NaN looks like is the processor's own: each counts as the same.

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

namespace Trigonometry
{
using Function = float (*)(float);
enum : unsigned
{
    SINE,
    COSINE,
    ARC_COSINE,
    FUNCTIONS
};
constexpr const char* NAMES[FUNCTIONS] = {"sine", "cosine", "arc cosine"};

constexpr uint32_t BLOCK_SIZE = 1u << 20;
constexpr uint32_t BLOCKS = 1u << 12;
constexpr uint32_t AROUND_EIGHTHS = BLOCKS;
constexpr uint32_t SAMPLE = BLOCKS + 1;
constexpr uint32_t PARTS = BLOCKS + 2;

inline float FromBits(uint32_t bits)
{
    float number;
    std::memcpy(&number, &bits, sizeof number);
    return number;
}

inline uint32_t BitsOf(float number)
{
    constexpr uint32_t anyNaN = 0x7FC00000u;
    uint32_t bits;
    std::memcpy(&bits, &number, sizeof bits);
    return number == number ? bits : anyNaN;
}

class Hash
{
public:
    void Add(float number)
    {
        m_state = (m_state ^ BitsOf(number)) * 0x9E3779B97F4A7C15u;
        m_state ^= m_state >> 32;
    }
    uint32_t Value() const { return static_cast<uint32_t>(m_state); }

private:
    uint64_t m_state = 0;
};

inline uint32_t HashBlock(uint32_t block, Function function)
{
    Hash hash;
    const uint32_t first = block * BLOCK_SIZE;
    for (uint32_t i = 0; i < BLOCK_SIZE; ++i)
        hash.Add(function(FromBits(first + i)));
    return hash.Value();
}

// Calls use(float) for the floats about each multiple of pi/4: the nearest one, and eight on either side of it.
template <typename Use> void ForEachAroundEighths(Use use)
{
    constexpr double eighth = 0.78539816339744831;
    for (int multiple = 1; multiple * eighth < 65536.0; ++multiple)
        for (uint32_t i = 0; i < 17; ++i)
        {
            const float number = FromBits(BitsOf(static_cast<float>(multiple * eighth)) - 8 + i);
            use(number);
            use(-number);
        }
}

inline uint32_t HashAroundEighths(Function function)
{
    Hash hash;
    ForEachAroundEighths([&hash, function](float number) { hash.Add(function(number)); });
    return hash.Value();
}

inline uint32_t HashSample(Function function)
{
    constexpr uint32_t step = 4093; // a prime, so that every pattern of low bits comes up
    Hash hash;
    for (uint64_t bits = 0; bits <= UINT32_MAX; bits += step)
        hash.Add(function(FromBits(static_cast<uint32_t>(bits))));
    return hash.Value();
}

inline uint32_t HashPart(uint32_t part, Function function)
{
    if (part == AROUND_EIGHTHS)
        return HashAroundEighths(function);
    return part == SAMPLE ? HashSample(function) : HashBlock(part, function);
}

// ---- the golden file: comments, then a line for each part: its number and the hash of each function, in hexadecimal
// ----

using Row = std::array<uint32_t, FUNCTIONS>;

// By part; what the file has no whole line for stays empty.
inline std::vector<std::optional<Row>> ReadGolden(const std::string& path)
{
    std::vector<std::optional<Row>> golden(PARTS);
    std::FILE* const file = std::fopen(path.c_str(), "r");
    if (file == nullptr)
        return golden;
    char line[256];
    unsigned part, hash[FUNCTIONS];
    while (std::fgets(line, sizeof line, file) != nullptr)
        if (std::sscanf(line, "%x %8x %8x %8x\n", &part, &hash[0], &hash[1], &hash[2]) == 4 && part < PARTS)
            golden[part] = Row{hash[0], hash[1], hash[2]};
    std::fclose(file);
    return golden;
}
} // namespace Trigonometry
