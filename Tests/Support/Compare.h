#pragma once
// Matrices of floats against the double-precision reference.

#include "Tests/Support/Fixture.h"
#include "Tests/Support/Reference.h"

#include <algorithm>
#include <string>

namespace Recording
{
// Each entry within that many float roundings of what was added up to make it, plus the reference's own noise.
inline void ExpectEntries(const kvMatrix& actual, const Reference::Matrix& expected, const Reference::Matrix& size,
                          double roundings, const std::string& what, double noise = 0.0)
{
    for (int i = 0; i < 16; ++i)
        ASSERT_NEAR(static_cast<double>(actual.m[i]), expected.m[i / 4][i % 4],
                    roundings * Reference::EPSILON * size.m[i / 4][i % 4] + noise)
            << what << ", row " << i / 4 + 1 << ", column " << i % 4 + 1;
}

inline double LargestEntry(const Reference::Matrix& a)
{
    double largest = 0.0;
    for (const auto& row : a.m)
        for (double entry : row)
            largest = std::max(largest, entry);
    return largest;
}

// A cofactor is three factors to a product and six products to a sum, scaled once: about ten roundings.
inline void ExpectInverse(const kvMatrix& actual, const kvMatrix& input, const std::string& what)
{
    constexpr double roundings = 10.0;
    constexpr double eliminationNoise = 1e-14; // of the reference in double: goes by the largest entry
    const Reference::Matrix wide = Reference::Widen(input);
    const Reference::Matrix size = Reference::InverseSize(wide);
    ExpectEntries(actual, Reference::Inverse(wide), size, roundings, what, eliminationNoise * LargestEntry(size));
}

// A float product of four terms an entry.
inline void ExpectProduct(const kvMatrix& actual, const kvMatrix& a, const kvMatrix& b, const std::string& what)
{
    constexpr double roundings = 8.0;
    const Reference::Matrix left = Reference::Widen(a), right = Reference::Widen(b);
    ExpectEntries(actual, Reference::Product(left, right),
                  Reference::Product(Reference::Magnitudes(left), Reference::Magnitudes(right)), roundings, what);
}
} // namespace Recording
