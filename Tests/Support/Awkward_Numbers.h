#pragma once
// Numbers and matrices that make rounding, overflow, underflow and NaN show, by a fixed seed.

#include "Platform/Matrix.h"
#include "Tests/Support/Numbers.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <random>

namespace Recording
{
constexpr float FLAT_LIMIT = 1099511627776.0f;       // 2^40: the largest entry of a matrix that counts as flat
constexpr int FLAT_ZEROS[] = {2, 3, 6, 7, 8, 9, 11}; // what is zero in the matrices of a camera that looks along z

inline bool SameButForNaN(float a, float b)
{
    return std::memcmp(&a, &b, sizeof a) == 0 || (std::isnan(a) && std::isnan(b));
}

// What matrices are made to go wrong by, one shape after the other.
enum class MatrixShape : uint32_t
{
    Flat,           // of a camera that looks straight along z
    AlmostFlat,     // with one entry that no such camera has
    AnyBits,        // NaN of any payload, infinities, subnormals
    Affine,         // its last column is 0, 0, 0, 1, with zeros of either sign
    PowersOfTwo,    // products and quotients are exact, overflow or underflow
    NearlySingular, // two rows or columns are multiples of each other but for the last bit of an entry
    Small,          // subnormals and zeros of either sign
    NotNumbers,     // a NaN of any payload among ordinary entries
    Count
};

class AwkwardNumbers
{
public:
    explicit AwkwardNumbers(uint32_t seed = 417) : m_engine(seed) {}

    uint32_t Word() { return static_cast<uint32_t>(m_engine()); }
    uint32_t Below(uint32_t end) { return Word() % end; }
    float Between(float low, float high) { return low + (high - low) * static_cast<float>(Word() >> 8) / 16777216.0f; }
    float Zero() { return Word() % 2 == 0 ? 0.0f : -0.0f; }

    float AnyBits()
    {
        const uint32_t bits = Word();
        float number;
        std::memcpy(&number, &bits, sizeof number);
        return number;
    }

    // A number at which rounding, underflow or overflow shows.
    float Awkward()
    {
        static const float values[] = {0.0f,        -0.0f,      1.0f,     -1.0f,     1e-20f,      -3e-30f,
                                       1e-42f,      -1e-45f,    0.5f,     3.0f,      -7.0f,       1e12f,
                                       -FLAT_LIMIT, FLAT_LIMIT, 1e20f,    -3e38f,    1.0f / 3.0f, -2.0f / 3.0f,
                                       INFINITY,    -INFINITY,  16000.0f, -32000.0f, NOT_A_NUMBER};
        const float value = values[Below(sizeof values / sizeof values[0])];
        return Below(8) == 0 ? std::nextafter(value, 0.0f) : value;
    }

    // A number of a flavour: of a camera, small whole, any magnitude, awkward.
    float Entry(uint32_t flavour)
    {
        switch (flavour)
        {
        case 0: return Between(-2.0f, 2.0f);
        case 1: return static_cast<float>(static_cast<int>(Below(7)) - 3);
        case 2: return std::ldexp(Between(-2.0f, 2.0f), static_cast<int>(Below(160)) - 110); // up to 2^50
        default: return Awkward();
        }
    }

    kvMatrix Flat()
    {
        const uint32_t flavour = Below(4);
        kvMatrix matrix;
        for (float& entry : matrix.m)
            entry = Entry(flavour);
        for (int zero : FLAT_ZEROS)
            matrix.m[zero] = Zero();
        matrix._44 = 1.0f;
        if (Below(3) == 0) // without rotation
            matrix._12 = matrix._21 = Zero();
        return matrix;
    }

    kvMatrix Shaped(MatrixShape shape)
    {
        kvMatrix matrix = Flat();
        switch (shape)
        {
        case MatrixShape::AlmostFlat: matrix.m[Below(16)] = Entry(Below(4)); break;
        case MatrixShape::AnyBits: FillWith(matrix, [this] { return AnyBits(); }); break;
        case MatrixShape::Affine: MakeAffine(matrix); break;
        case MatrixShape::PowersOfTwo: FillWith(matrix, [this] { return PowerOfTwo(); }); break;
        case MatrixShape::NearlySingular: MakeNearlySingular(matrix); break;
        case MatrixShape::Small: FillWith(matrix, [this] { return Below(3) == 0 ? Zero() : Subnormal(); }); break;
        case MatrixShape::NotNumbers: MakeNotANumber(matrix); break;
        default: break;
        }
        return matrix;
    }

private:
    template <typename Make> static void FillWith(kvMatrix& matrix, const Make& make)
    {
        for (float& entry : matrix.m)
            entry = make();
    }

    static float FromBits(uint32_t bits)
    {
        float number;
        std::memcpy(&number, &bits, sizeof number);
        return number;
    }

    float PowerOfTwo() { return FromBits((Word() & 0x80000000u) | (64 + Below(128)) << 23); } // 2^-63 to 2^64
    float Subnormal() { return FromBits(Word() & 0x807FFFFFu); }

    void MakeAffine(kvMatrix& matrix)
    {
        const uint32_t flavour = Below(4);
        FillWith(matrix, [this, flavour] { return Entry(flavour); });
        for (const int entry : {3, 7, 11})
            matrix.m[entry] = Zero();
        matrix._44 = 1.0f;
    }

    void MakeNearlySingular(kvMatrix& matrix)
    {
        const uint32_t flavour = Below(2);
        FillWith(matrix, [this, flavour] { return Entry(flavour); });
        const uint32_t from = Below(4), to = (from + 1 + Below(3)) % 4;
        const bool ofRows = Below(2) == 0;
        const float factor = Entry(flavour);
        for (uint32_t i = 0; i < 4; ++i)
        {
            const float entry = matrix.m[ofRows ? 4 * from + i : 4 * i + from] * factor;
            matrix.m[ofRows ? 4 * to + i : 4 * i + to] = Below(8) == 0 ? std::nextafter(entry, 100.0f) : entry;
        }
    }

    void MakeNotANumber(kvMatrix& matrix)
    {
        for (uint32_t i = Below(3); i < 3; ++i)
            matrix.m[Below(16)] = FromBits(0x7F800000u | Word());
    }

    std::mt19937 m_engine;
};
} // namespace Recording
