#include "Platform/Matrix.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

namespace
{
struct Matrix64
{
    double m[4][4];
};

void ExpectNear(const kvMatrix& actual, const Matrix64& expected, double relative)
{
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
        {
            const double want = expected.m[row][column];
            EXPECT_NEAR(static_cast<double>(actual.m[4 * row + column]), want,
                        relative * std::fmax(1.0, std::fabs(want)))
                << "row " << row + 1 << ", column " << column + 1;
        }
}

kvMatrix Numbered(float first, float step)
{
    kvMatrix matrix;
    for (int i = 0; i < 16; ++i)
        matrix.m[i] = first + step * static_cast<float>(i);
    return matrix;
}

// Small whole numbers: every product and sum is exact.
TEST(HostMatrix, MultiplyIsRowsTimesColumns)
{
    const kvMatrix a = Numbered(1, 1);  // 1 2 3 4 / 5 6 7 8 / ...
    const kvMatrix b = Numbered(2, -1); // 2 1 0 -1 / -2 -3 -4 -5 / ...
    kvMatrix product;
    kvMatrix::Multiply(product, a, b);
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
        {
            double expected = 0;
            for (int k = 0; k < 4; ++k)
                expected += (1.0 + 4 * row + k) * (2.0 - (4 * k + column));
            EXPECT_EQ(static_cast<double>(product.m[4 * row + column]), expected) << row << ", " << column;
        }
}

TEST(HostMatrix, MultiplyMayWriteOverEitherFactor)
{
    const kvMatrix a = Numbered(1, 1);
    const kvMatrix b = Numbered(2, -1);
    kvMatrix expected;
    kvMatrix::Multiply(expected, a, b);
    kvMatrix first = a;
    kvMatrix::Multiply(first, first, b);
    kvMatrix second = b;
    kvMatrix::Multiply(second, a, second);
    EXPECT_EQ(std::memcmp(&first, &expected, sizeof(expected)), 0);
    EXPECT_EQ(std::memcmp(&second, &expected, sizeof(expected)), 0);

    kvMatrix square;
    kvMatrix::Multiply(square, a, a);
    kvMatrix itself = a;
    kvMatrix::Multiply(itself, itself, itself);
    EXPECT_EQ(std::memcmp(&itself, &square, sizeof(square)), 0);
}

// 2^24 + 1 is no float: from the left the ones are lost, from the right they would add up to 2.
TEST(HostMatrix, SumsGoFromLeftToRight)
{
    kvMatrix a = {};
    kvMatrix b = {};
    a._11 = 16777216.0f;
    a._12 = a._13 = 1.0f;
    b._11 = b._21 = b._31 = 1.0f;
    kvMatrix product;
    kvMatrix::Multiply(product, a, b);
    EXPECT_EQ(product._11, 16777216.0f);
}

// (1 + 2^-12)^2 = 1 + 2^-11 + 2^-24; the last term is lost when the product is rounded before -1 is added.
TEST(HostMatrix, ProductsAreRoundedBeforeTheyAreAdded)
{
    const float x = 1.0f + 1.0f / 4096.0f;
    kvMatrix a = {};
    kvMatrix b = {};
    a._11 = -1.0f;
    a._12 = x;
    b._11 = 1.0f;
    b._21 = x;
    kvMatrix product;
    kvMatrix::Multiply(product, a, b);
    EXPECT_EQ(product._11, 1.0f / 2048.0f);
}

TEST(HostMatrix, LookingAlongZFromTheFrontIsATranslation)
{
    kvMatrix view;
    kvMatrix::LookAtLH(view, {100, 50, -16000}, {100, 50, 0}, {0, 1, 0});
    ExpectNear(view, {{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {-100, -50, 16000, 1}}}, 0);
}

// From (0, 0, 0) along +x with z up: z = (1,0,0), x = up cross z = (0,1,0), y = z cross x = (0,0,1).
TEST(HostMatrix, LookAtTakesItsAxesAsColumns)
{
    kvMatrix view;
    kvMatrix::LookAtLH(view, {2, 3, 4}, {12, 3, 4}, {0, 0, 1});
    ExpectNear(view, {{{0, 0, 1, 0}, {1, 0, 0, 0}, {0, 1, 0, 0}, {-3, -4, -2, 1}}}, 0);
}

struct Vector64
{
    double x, y, z;
};
Vector64 Minus(Vector64 a, Vector64 b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
double Dot(Vector64 a, Vector64 b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
Vector64 Cross(Vector64 a, Vector64 b) { return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x}; }
Vector64 Unit(Vector64 v)
{
    const double length = std::sqrt(Dot(v, v));
    return {v.x / length, v.y / length, v.z / length};
}
kvVector3 Narrow(Vector64 v) { return {static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)}; }

TEST(HostMatrix, LookAtAgreesWithDoublePrecision)
{
    for (int i = 0; i < 500; ++i)
    {
        // Multiples of 1/8 below 1000: exact as floats.
        const Vector64 eye = {(i * 37 % 801) / 8.0, (i * 101 % 1601) / 8.0 - 100, (i * 53 % 401) / 8.0 - 60};
        const Vector64 at = {(i * 71 % 701) / 8.0 - 20, (i * 29 % 901) / 8.0, 200 + (i * 13 % 301) / 8.0};
        const Vector64 up = {(i % 7) / 8.0, 1, 0};
        const Vector64 z = Unit(Minus(at, eye));
        const Vector64 x = Unit(Cross(up, z));
        const Vector64 y = Cross(z, x);
        kvMatrix view;
        kvMatrix::LookAtLH(view, Narrow(eye), Narrow(at), Narrow(up));
        ExpectNear(view,
                   {{{x.x, y.x, z.x, 0},
                     {x.y, y.y, z.y, 0},
                     {x.z, y.z, z.z, 0},
                     {-Dot(x, eye), -Dot(y, eye), -Dot(z, eye), 1}}},
                   2e-5);
    }
}

TEST(HostMatrix, LookingNowhereIsNotANumberAndNoCrash)
{
    kvMatrix view;
    kvMatrix::LookAtLH(view, {1, 2, 3}, {1, 2, 3}, {0, 1, 0});
    EXPECT_TRUE(std::isnan(view._11));
    EXPECT_EQ(view._44, 1.0f);
}

TEST(HostMatrix, OrthoMapsItsBoxToTheClipBox)
{
    kvMatrix projection;
    kvMatrix::OrthoLH(projection, 640, 480, 0, 32000);
    ExpectNear(projection, {{{2.0 / 640, 0, 0, 0}, {0, 2.0 / 480, 0, 0}, {0, 0, 1.0 / 32000, 0}, {0, 0, 0, 1}}}, 1e-9);
    kvMatrix::OrthoLH(projection, 4, -8, 2, 10);
    ExpectNear(projection, {{{0.5, 0, 0, 0}, {0, -0.25, 0, 0}, {0, 0, 0.125, 0}, {0, 0, -0.25, 1}}}, 0);
}

TEST(HostMatrix, PerspectiveFollowsItsFormulas)
{
    kvMatrix projection;
    kvMatrix::PerspectiveLH(projection, 4, -8, 2, 10);
    ExpectNear(projection, {{{1, 0, 0, 0}, {0, -0.5, 0, 0}, {0, 0, 1.25, 1}, {0, 0, -2.5, 0}}}, 0);
    kvMatrix::PerspectiveLH(projection, 1, -0.75f, 1, 32000);
    ExpectNear(projection,
               {{{2, 0, 0, 0}, {0, -2.0 / 0.75, 0, 0}, {0, 0, 32000.0 / 31999, 1}, {0, 0, -32000.0 / 31999, 0}}}, 1e-6);
}

TEST(HostMatrix, ABoxWithoutWidthIsInfiniteAndNoCrash)
{
    kvMatrix projection;
    kvMatrix::OrthoLH(projection, 0, 480, 0, 32000);
    EXPECT_TRUE(std::isinf(projection._11));
}
} // namespace
