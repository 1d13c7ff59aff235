#include "Platform/Strict_Float.h"

#include "Tests/Support/Compare.h"
#include "Tests/Support/Numbers.h"

#include <cmath>
#include <limits>
#include <random>

using namespace Recording;

namespace
{

kvMatrix Diagonal(float a, float b, float c, float d)
{
    kvMatrix matrix = {};
    matrix._11 = a;
    matrix._22 = b;
    matrix._33 = c;
    matrix._44 = d;
    return matrix;
}

kvMatrix Counting() // regular in its first rows, but rows 1, 2 and 3 lie in a plane
{
    kvMatrix matrix = {};
    for (int i = 0; i < 16; ++i)
        matrix.m[i] = static_cast<float>(i + 1);
    return matrix;
}

// ---- the stated order of operations, once more, with loops ----

// The three of 0..3 that are not the one left out.
void Remaining(int leftOut, int (&kept)[3])
{
    for (int i = 0, k = 0; i < 4; ++i)
        if (i != leftOut)
            kept[k++] = i;
}

// Six terms: the first column's rows in order, each with the other two rows both ways; signs + - - + + -.
float SignedMinor(const kvMatrix& a, int row, int column)
{
    static const int rowOrders[6][3] = {{0, 1, 2}, {0, 1, 2}, {1, 0, 2}, {1, 0, 2}, {2, 0, 1}, {2, 0, 1}};
    static const float signs[6] = {1, -1, -1, 1, 1, -1};
    int r[3], c[3];
    Remaining(row, r);
    Remaining(column, c);
    const float turn = (row + column) % 2 == 0 ? 1.0f : -1.0f;
    float sum = 0.0f;
    for (int term = 0; term < 6; ++term)
    {
        const int second = term % 2 == 0 ? 1 : 2; // the column of the second factor; the third takes the other
        const float first = a.m[4 * r[rowOrders[term][0]] + c[0]];
        const float others[2] = {a.m[4 * r[rowOrders[term][1]] + c[second]],
                                 a.m[4 * r[rowOrders[term][2]] + c[3 - second]]};
        const float product = signs[term] * turn * first * others[0] * others[1];
        sum = term == 0 ? product : sum + product;
    }
    return sum;
}

bool InvertInStatedOrder(kvMatrix& a)
{
    kvMatrix adjugate = {};
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j)
            adjugate.m[4 * i + j] = SignedMinor(a, j, i);
    float determinant = a.m[0] * adjugate.m[0];
    for (int k = 1; k < 4; ++k)
        determinant = determinant + a.m[k] * adjugate.m[4 * k];
    if (determinant == 0.0f)
        return false;
    const float scale = 1.0f / determinant;
    for (int k = 0; k < 16; ++k)
        a.m[k] = adjugate.m[k] * scale;
    return true;
}

bool SameButForNaNs(const kvMatrix& a, const kvMatrix& b)
{
    for (int i = 0; i < 16; ++i)
        if (a.u[i] != b.u[i] && !(std::isnan(a.m[i]) && std::isnan(b.m[i])))
            return false;
    return true;
}

class Source // of random matrices, by a fixed seed
{
public:
    float Ordinary() { return m_spread(m_engine); }

    float AnyBits()
    {
        const uint32_t bits = Word();
        float number;
        std::memcpy(&number, &bits, sizeof number);
        return number;
    }

    float Special()
    {
        using limits = std::numeric_limits<float>;
        static const float values[] = {0.0f,
                                       -0.0f,
                                       1.0f,
                                       -1.0f,
                                       limits::max(),
                                       -limits::max(),
                                       limits::min(),
                                       -limits::min(),
                                       limits::denorm_min(),
                                       NOT_A_NUMBER,
                                       limits::infinity(),
                                       -limits::infinity(),
                                       3.0e-20f,
                                       -7.0e12f,
                                       0.5f,
                                       2.0f};
        return values[Word() % (sizeof values / sizeof values[0])];
    }

    float SmallWhole() { return static_cast<float>(static_cast<int>(Word() % 7) - 3); }

    // Each flavour a quarter of the time; the fourth mixes ordinary numbers with a rare special one.
    kvMatrix Matrix()
    {
        kvMatrix matrix;
        const uint32_t flavour = Word() % 4;
        for (float& entry : matrix.m)
            entry = flavour == 0      ? Ordinary()
                    : flavour == 1    ? AnyBits()
                    : flavour == 2    ? SmallWhole()
                    : Word() % 4 == 0 ? Special()
                                      : Ordinary();
        return matrix;
    }

private:
    uint32_t Word() { return static_cast<uint32_t>(m_engine()); }

    std::mt19937 m_engine{20240611};
    std::uniform_real_distribution<float> m_spread{-100.0f, 100.0f};
};

void ExpectInverts(const kvMatrix& input, const std::string& what)
{
    kvMatrix inverse = input;
    ASSERT_TRUE(inverse.Invert()) << what;
    ExpectInverse(inverse, input, what);
}
} // namespace

TEST(MatrixInvert, TheIdentityInvertsToItself)
{
    kvMatrix matrix = Identity();
    EXPECT_TRUE(matrix.Invert());
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(matrix.m[i], Identity().m[i]) << i;
}

TEST(MatrixInvert, AZeroRowOrColumnAnswersFalseAndChangesNoBit)
{
    for (int line = 0; line < 8; ++line)
    {
        kvMatrix matrix = Identity();
        matrix._12 = 7.0f;
        matrix._43 = -3.0f;
        for (int k = 0; k < 4; ++k)
            matrix.m[line < 4 ? 4 * line + k : 4 * k + line - 4] = 0.0f;
        const kvMatrix before = matrix;
        EXPECT_FALSE(matrix.Invert()) << "line " << line;
        EXPECT_EQ(matrix, before);
    }
}

TEST(MatrixInvert, DependentRowsAnswerFalseAndChangeNoBit)
{
    kvMatrix matrix = Counting();
    const kvMatrix before = matrix;
    EXPECT_FALSE(matrix.Invert());
    EXPECT_EQ(matrix, before);
}

TEST(MatrixInvert, AScaleAndTranslationInvertsExactly)
{
    kvMatrix matrix = Diagonal(2.0f, 4.0f, -8.0f, 1.0f);
    matrix._41 = 10.0f;
    matrix._42 = -20.0f;
    matrix._43 = 24.0f;
    EXPECT_TRUE(matrix.Invert());
    kvMatrix expected = Diagonal(0.5f, 0.25f, -0.125f, 1.0f);
    expected._41 = -5.0f;
    expected._42 = 5.0f;
    expected._43 = 3.0f;
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(matrix.m[i], expected.m[i]) << i;
}

TEST(MatrixInvert, APermutationOfTheAxesInvertsToItsTranspose)
{
    kvMatrix matrix = {};
    matrix._12 = matrix._23 = matrix._34 = matrix._41 = 1.0f;
    EXPECT_TRUE(matrix.Invert());
    kvMatrix expected = {};
    expected._21 = expected._32 = expected._43 = expected._14 = 1.0f;
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(matrix.m[i], expected.m[i]) << i;
}

TEST(MatrixInvert, AFullMatrixOfWholeNumbersInvertsExactly)
{
    // Lower times upper triangle, both with ones on the diagonal: the determinant is 1 and the inverse whole.
    kvMatrix matrix = {{{1, 2, 3, 4, 2, 5, 8, 11, 3, 8, 14, 20, 4, 11, 20, 30}}};
    const Reference::Matrix expected = Reference::Inverse(Reference::Widen(matrix));
    EXPECT_TRUE(matrix.Invert());
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(static_cast<double>(matrix.m[i]), std::round(expected.m[i / 4][i % 4])) << i;
}

TEST(MatrixInvert, AScaleWhoseDeterminantUnderflowsToZeroIsSingular)
{
    kvMatrix matrix = Diagonal(1e-20f, 1e-20f, 1e-20f, 1.0f);
    const kvMatrix before = matrix;
    EXPECT_FALSE(matrix.Invert());
    EXPECT_EQ(matrix, before);
}

TEST(MatrixInvert, ATinyScaleInvertsToAVeryLargeOne)
{
    kvMatrix matrix = Diagonal(1e-12f, 1e-12f, 1e-12f, 1.0f);
    EXPECT_TRUE(matrix.Invert());
    EXPECT_NEAR(static_cast<double>(matrix._11) / 1e12, 1.0, 1e-6);
    EXPECT_NEAR(static_cast<double>(matrix._33) / 1e12, 1.0, 1e-6);
}

TEST(MatrixInvert, AScaleWhoseDeterminantIsSubnormalGivesInfinities)
{
    kvMatrix matrix = Diagonal(1e-13f, 1e-13f, 1e-13f, 1.0f);
    EXPECT_TRUE(matrix.Invert());
    EXPECT_TRUE(std::isinf(matrix._11)) << matrix._11;
    EXPECT_TRUE(std::isinf(matrix._33)) << matrix._33;
}

TEST(MatrixInvert, ANegativeDeterminantIsNotSingular)
{
    kvMatrix matrix = Diagonal(-1.0f, 1.0f, 1.0f, 1.0f);
    EXPECT_TRUE(matrix.Invert());
    EXPECT_EQ(matrix._11, -1.0f);
}

TEST(MatrixInvert, NaNElementsOverwriteEverythingWithNaNAndAnswerTrue)
{
    kvMatrix matrix;
    for (float& entry : matrix.m)
        entry = NOT_A_NUMBER;
    EXPECT_TRUE(matrix.Invert());
    for (float entry : matrix.m)
        EXPECT_TRUE(std::isnan(entry));
}

TEST(MatrixInvert, OneNaNAnywhereIsNotSingular)
{
    for (int i = 0; i < 16; ++i)
    {
        kvMatrix matrix = Counting(); // singular without it
        matrix.m[i] = NOT_A_NUMBER;
        EXPECT_TRUE(matrix.Invert()) << i;
        EXPECT_TRUE(std::isnan(matrix.m[0])) << i;
    }
}

TEST(MatrixInvert, EveryInputGivesTheBitsOfTheStatedOrderOfOperations)
{
    Source source;
    int singular = 0;
    for (int i = 0; i < 1000000; ++i)
    {
        const kvMatrix input = source.Matrix();
        kvMatrix expected = input, actual = input;
        const bool regular = InvertInStatedOrder(expected);
        ASSERT_EQ(actual.Invert(), regular) << testing::PrintToString(input);
        ASSERT_TRUE(SameButForNaNs(actual, expected))
            << i << testing::PrintToString(input) << testing::PrintToString(actual) << testing::PrintToString(expected);
        singular += regular ? 0 : 1;
    }
    EXPECT_GT(singular, 1000) << "the matrices must reach both answers";
}

TEST(MatrixInvert, RandomMatricesAgreeWithTheReference)
{
    Source source;
    for (int i = 0; i < 20000; ++i)
    {
        kvMatrix matrix;
        for (float& entry : matrix.m)
            entry = source.Ordinary();
        for (int k = 0; k < 4; ++k)
            matrix.m[5 * k] += 400.0f; // well away from singular
        ExpectInverts(matrix, testing::PrintToString(matrix));
    }
}

TEST(MatrixInvert, CameraMatricesAgreeWithTheReference)
{
    for (float size : {0.5f, 32.0f, 640.0f, 1920.0f, 20000.0f})
        for (float angle : {0.0f, 0.3f, 1.5707964f, 3.0f, -2.0f})
            for (float x : {0.0f, 320.5f, -5000.0f, 100000.0f})
            {
                kvMatrix view, flat, deep, product;
                kvMatrix::LookAtLH(view, {x, 77.0f, -16000.0f}, {x, 77.0f, 0.0f}, {sinf(angle), cosf(angle), 0.0f});
                kvMatrix::OrthoLH(flat, size, size * 0.75f, 0.0f, 32000.0f);
                kvMatrix::PerspectiveLH(deep, 1.0f, -0.75f, 1.0f, 32000.0f);
                ExpectInverts(view, "view");
                ExpectInverts(flat, "parallel projection");
                ExpectInverts(deep, "perspective projection");
                kvMatrix::Multiply(product, view, flat);
                ExpectInverts(product, "flat product");
            }
}

TEST(MatrixInvert, AnInverseTimesItsMatrixIsTheIdentity)
{
    constexpr double roundings = 32.0;
    kvMatrix view, projection;
    kvMatrix::LookAtLH(view, {320.0f, 240.0f, -16000.0f}, {320.0f, 240.0f, 0.0f}, {0.6f, 0.8f, 0.0f});
    kvMatrix::OrthoLH(projection, 640.0f, 480.0f, 0.0f, 32000.0f);
    for (const kvMatrix& matrix : {view, projection})
    {
        kvMatrix inverse = matrix;
        ASSERT_TRUE(inverse.Invert());
        const Reference::Matrix a = Reference::Widen(inverse), b = Reference::Widen(matrix);
        const Reference::Matrix product = Reference::Product(a, b);
        const Reference::Matrix size = Reference::Product(Reference::Magnitudes(a), Reference::Magnitudes(b));
        for (int i = 0; i < 16; ++i)
            EXPECT_NEAR(product.m[i / 4][i % 4], i % 5 == 0 ? 1.0 : 0.0,
                        roundings * Reference::EPSILON * (1.0 + size.m[i / 4][i % 4]))
                << i;
    }
}
