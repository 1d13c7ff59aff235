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

class AwkwardNumbers
{
public:
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

private:
    std::mt19937 m_engine{417};
};
} // namespace Recording
