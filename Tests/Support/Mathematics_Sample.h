#pragma once
// The Runner's inexact functions over samples of their arguments, as hashes: for the tests and for the proof.

#include "Runner/Base/Mathematics.h"

#include <cstdint>
#include <cstring>

namespace MathematicsSample
{
inline float FromBits(uint32_t bits)
{
    float number;
    std::memcpy(&number, &bits, sizeof number);
    return number;
}

// What a NaN looks like is the processor's own: each counts as the same.
inline uint32_t BitsOf(float number)
{
    uint32_t bits;
    std::memcpy(&bits, &number, sizeof bits);
    return number == number ? bits : 0x7FC00000u;
}

inline uint64_t BitsOf(double number)
{
    uint64_t bits;
    std::memcpy(&bits, &number, sizeof bits);
    return number == number ? bits : 0x7FF8000000000000u;
}

class Hash
{
public:
    void Add(uint64_t bits)
    {
        m_state = (m_state ^ bits) * 0x9E3779B97F4A7C15u;
        m_state ^= m_state >> 32;
    }
    uint64_t Value() const { return m_state; }

private:
    uint64_t m_state = 0;
};

struct NamedFunction
{
    const char* name;
    float (*function)(float);
    uint64_t exactResults; // HashOfSample of what MPFR says; "mathematics_proof golden" prints these
};

inline float ArcTangentOfOne(float tangent) { return Runner::ArcTangent(tangent, 1.0f); }

constexpr NamedFunction FUNCTIONS[] = {
    {"tangent", Runner::Tangent, 0xBB8F2D8D8E302478},
    {"arc_sine", Runner::ArcSine, 0x2C65ED0E59A9C600},
    {"arc_tangent", ArcTangentOfOne, 0x81F64A514481C8FA},
    {"exponential", Runner::Exponential, 0xD1A90726CDC577ED},
    {"logarithm", Runner::Logarithm, 0xD06CAFFDCD3645A6},
    {"decimal_logarithm", Runner::DecimalLogarithm, 0x624D5AA902319C95},
    {"hyperbolic_sine", Runner::HyperbolicSine, 0xC039F573F9F10819},
    {"hyperbolic_cosine", Runner::HyperbolicCosine, 0xCE601FBB5B6ABDED},
    {"hyperbolic_tangent", Runner::HyperbolicTangent, 0x02B49256F188A33C},
};

template <typename Function> uint64_t HashOfSample(Function function)
{
    constexpr uint32_t step = 65521; // a prime, so that every pattern of low bits comes up
    Hash hash;
    for (uint64_t bits = 0; bits <= UINT32_MAX; bits += step)
        hash.Add(BitsOf(function(FromBits(static_cast<uint32_t>(bits)))));
    return hash.Value();
}

// ---- two arguments ----

class Bits64
{
public:
    explicit Bits64(uint64_t seed) : m_state(seed * 0x9E3779B97F4A7C15u + 1) {}
    uint64_t Next()
    {
        m_state ^= m_state << 13;
        m_state ^= m_state >> 7;
        return m_state ^= m_state << 17;
    }

    // Any float, or one of moderate size: half of each.
    float NextFloat()
    {
        const uint64_t bits = Next();
        const auto any = static_cast<uint32_t>(bits >> 8);
        return (bits & 1) != 0 ? FromBits(any) : FromBits((any & 0x87FFFFFFu) + 0x3C000000u);
    }

    // Any double above zero, or one of moderate size.
    double NextBase()
    {
        const uint64_t bits = Next() & 0x7FFFFFFFFFFFFFFFu;
        double number;
        std::memcpy(&number, &bits, sizeof number);
        return (bits & 1) != 0 ? number : static_cast<double>(bits >> 11) * 0x1p-47;
    }

    // Of an exponent: up to 40, to either side.
    double NextExponent() { return (static_cast<double>(Next() >> 11) * 0x1p-52 - 1.0) * 40.0; }

private:
    uint64_t m_state;
};

struct PairHashes
{
    uint64_t angle, logarithm, power;
};

// Of a block of pairs: atan(y, x), log(x, base) as scripts get it, base ^ exponent.
inline PairHashes HashesOfPairs(uint32_t block, uint32_t count)
{
    Bits64 bits(block);
    Hash angle, logarithm, power;
    for (uint32_t i = 0; i < count; ++i)
    {
        const float a = bits.NextFloat(), b = bits.NextFloat();
        const float x = FromBits(BitsOf(a) & 0x7FFFFFFFu), base = FromBits(BitsOf(b) & 0x7FFFFFFFu);
        angle.Add(BitsOf(Runner::ArcTangent(a, b)));
        logarithm.Add(BitsOf(Runner::Logarithm(x) / Runner::Logarithm(base)));
        const double number = bits.NextBase(), exponent = bits.NextExponent();
        power.Add(BitsOf(Runner::Power(number, exponent)));
    }
    return {angle.Value(), logarithm.Value(), power.Value()};
}

// Of 100,000 pairs of the block 0, on x86-64; the same on 32-bit and 64-bit ARM.
constexpr PairHashes GOLDEN_PAIRS = {0xC14335107F25E967, 0x7ABB384EC308B7A6, 0x36EB0D585E93CE22};
} // namespace MathematicsSample
