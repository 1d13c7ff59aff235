// The builders against their definitions in plain float operations, bit for bit.

#include "Platform/Strict_Float.h"

#include "Platform/Matrix.h"
#include "Tests/Runner/Support/Matrix_Definitions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

namespace
{
using namespace MatrixDefinitions;

void ExpectSame(const kvMatrix& actual, const kvMatrix& expected, int round)
{
    for (int i = 0; i < 16; ++i)
        ASSERT_TRUE(actual.u[i] == expected.u[i] || (std::isnan(actual.m[i]) && std::isnan(expected.m[i])))
            << "round " << round << ", entry " << i << ": " << actual.m[i] << " instead of " << expected.m[i];
}

class Source // by a fixed seed
{
public:
    // A number like those of cameras, or one of any bits.
    float Number()
    {
        const uint32_t word = static_cast<uint32_t>(m_engine());
        if (m_engine() % 4 != 0)
            return (static_cast<float>(word >> 8) / 8388608.0f - 1.0f) * (word % 2 == 0 ? 1.0f : 16000.0f);
        static const float special[] = {0.0f, -0.0f, 1.0f, -1.0f, 1e-40f, 1e30f, INFINITY, -INFINITY};
        float number;
        std::memcpy(&number, &word, sizeof number);
        return m_engine() % 2 == 0 ? special[word % 8] : number;
    }

    float Fraction() { return static_cast<float>(m_engine() >> 8) / 16777216.0f; }

    kvVector3 Vector() { return {Number(), Number(), Number()}; }

    kvMatrix Matrix()
    {
        kvMatrix matrix;
        for (float& entry : matrix.m)
            entry = Number();
        return matrix;
    }

private:
    std::mt19937 m_engine{99};
};
} // namespace

TEST(HostMatrixBits, AProductSumsFromLeftToRight)
{
    Source source;
    for (int round = 0; round < 200000 && !testing::Test::HasFatalFailure(); ++round)
    {
        kvMatrix a = source.Matrix();
        const kvMatrix b = source.Matrix();
        const kvMatrix expected = Product(a, b);
        kvMatrix product;
        kvMatrix::Multiply(product, a, b);
        ExpectSame(product, expected, round);
        kvMatrix::Multiply(a, a, b);
        ExpectSame(a, expected, round);
    }
}

TEST(HostMatrixBits, ALookAtFollowsItsDefinition)
{
    Source source;
    for (int round = 0; round < 200000 && !testing::Test::HasFatalFailure(); ++round)
    {
        const kvVector3 eye = source.Vector(), at = source.Vector(), up = source.Vector();
        kvMatrix view;
        kvMatrix::LookAtLH(view, eye, at, up);
        ExpectSame(view, LookAt(eye, at, up), round);
    }
}

TEST(HostMatrixBits, AFlatCamerasLookAtFollowsItsDefinition)
{
    Source source;
    for (int round = 0; round < 100000 && !testing::Test::HasFatalFailure(); ++round)
    {
        const float x = source.Number(), y = source.Number(), angle = static_cast<float>(round) * 0.001f - 50.0f;
        const kvVector3 eye = {x, y, -16000.0f}, at = {x, y, 0.0f}, up = {sinf(angle), cosf(angle), 0.0f};
        kvMatrix view;
        kvMatrix::LookAtLH(view, eye, at, up);
        ExpectSame(view, LookAt(eye, at, up), round);
    }
}

TEST(HostMatrixBits, ALookStraightAlongZFollowsItsDefinitionAtEveryDistance)
{
    Source source;
    for (int exponent = -149; exponent <= 127; ++exponent)
        for (int round = 0; round < 500 && !testing::Test::HasFatalFailure(); ++round)
        {
            const float distance = std::ldexp(1.0f + 0.5f * source.Fraction(), exponent);
            const float x = round % 5 == 0 ? source.Number() : 100.0f * source.Fraction(), y = source.Fraction();
            const kvVector3 eye = {x, y, 0.0f}, at = {x, y, round % 2 == 0 ? distance : -distance};
            const float angle = round % 3 == 0 ? 0.0f : 400.0f * source.Fraction();
            const kvVector3 up = round % 7 == 0 ? source.Vector() : kvVector3{sinf(angle), cosf(angle), 0.0f};
            kvMatrix view;
            kvMatrix::LookAtLH(view, eye, at, up);
            ExpectSame(view, LookAt(eye, at, up), round);
        }
}

TEST(HostMatrixBits, AVectorOfAboutLengthOneIsDividedByItsLength)
{
    constexpr float few = 1e-40f; // below the normal numbers
    int justBelow = 0;
    for (int round = 0; round < 100000 && !testing::Test::HasFatalFailure(); ++round)
    {
        const float angle = static_cast<float>(round) * 0.0001f;
        const kvVector3 eye = {0, 0, 0}, at = {sinf(angle), cosf(angle), round % 2 == 0 ? few : -few};
        justBelow += at.x * at.x + at.y * at.y + at.z * at.z == 0x1.fffffep-1f;
        kvMatrix view;
        kvMatrix::LookAtLH(view, eye, at, {0.0f, few, 1.0f});
        ExpectSame(view, LookAt(eye, at, {0.0f, few, 1.0f}), round);
    }
    EXPECT_GT(justBelow, 1000);
}
