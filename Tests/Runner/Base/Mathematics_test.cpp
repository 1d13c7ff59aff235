// The Runner's own functions: the exact results, rounded once. References are MPFR's, as hashes
// (Mathematics_Proof.cpp), the C library's in long double, and what arithmetic says.
#include "Platform/Strict_Float.h"

#include "Runner/Base/Double_Double.h"
#include "Runner/Base/Mathematics.h"
#include "Runner/Base/Range_Reduction.h"
#include "Tests/Support/Mathematics_Sample.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>

namespace
{
using namespace MathematicsSample;

constexpr float INFINITE = std::numeric_limits<float>::infinity();
constexpr float NOT_A_NUMBER = std::numeric_limits<float>::quiet_NaN();

// ---- one argument ----

class OneArgument : public ::testing::TestWithParam<NamedFunction>
{
};

TEST_P(OneArgument, IsTheExactResultRoundedOnce)
{
    const uint64_t ours = HashOfSample(GetParam().function);
    EXPECT_EQ(ours, GetParam().exactResults) << std::hex << ours;
}

INSTANTIATE_TEST_SUITE_P(Mathematics, OneArgument, ::testing::ValuesIn(FUNCTIONS),
                         [](const auto& test) { return test.param.name; });

TEST(Mathematics, EndsAreWhatTheyAreInTheLimit)
{
    EXPECT_EQ(Runner::Logarithm(0.0f), -INFINITE);
    EXPECT_EQ(Runner::Logarithm(-0.0f), -INFINITE);
    EXPECT_EQ(Runner::Logarithm(INFINITE), INFINITE);
    EXPECT_EQ(Runner::DecimalLogarithm(0.0f), -INFINITE);
    EXPECT_EQ(Runner::Exponential(INFINITE), INFINITE);
    EXPECT_EQ(Runner::Exponential(-INFINITE), 0.0f);
    EXPECT_EQ(Runner::HyperbolicSine(-INFINITE), -INFINITE);
    EXPECT_EQ(Runner::HyperbolicCosine(-INFINITE), INFINITE);
    EXPECT_EQ(Runner::HyperbolicTangent(-INFINITE), -1.0f);
    EXPECT_EQ(Runner::HyperbolicTangent(INFINITE), 1.0f);
}

TEST(Mathematics, OutsideTheDomainIsNoNumber)
{
    for (float x : {-1.0f, -INFINITE, -1e-45f, NOT_A_NUMBER})
    {
        EXPECT_TRUE(std::isnan(Runner::Logarithm(x))) << x;
        EXPECT_TRUE(std::isnan(Runner::DecimalLogarithm(x))) << x;
    }
    for (float x : {1.0000001f, -1.0000001f, INFINITE, -INFINITE, NOT_A_NUMBER})
        EXPECT_TRUE(std::isnan(Runner::ArcSine(x))) << x;
    for (float x : {INFINITE, -INFINITE, NOT_A_NUMBER})
        EXPECT_TRUE(std::isnan(Runner::Tangent(x))) << x;
    for (auto function :
         {Runner::Exponential, Runner::HyperbolicSine, Runner::HyperbolicCosine, Runner::HyperbolicTangent})
        EXPECT_TRUE(std::isnan(function(NOT_A_NUMBER)));
}

TEST(Mathematics, OddFunctionsKeepTheSignOfZero)
{
    for (auto function : {Runner::Tangent, Runner::ArcSine, Runner::HyperbolicSine, Runner::HyperbolicTangent})
    {
        EXPECT_FALSE(std::signbit(function(0.0f)));
        EXPECT_TRUE(std::signbit(function(-0.0f)));
    }
}

TEST(Mathematics, LogarithmsOfPowersOfTenAreWhole)
{
    for (int i = 0; i <= 10; ++i) // 10^10 is the largest that is a float
        EXPECT_EQ(Runner::DecimalLogarithm(static_cast<float>(std::stod("1e" + std::to_string(i)))),
                  static_cast<float>(i));
}

// pi/2 has no end: the float nearest to it is short of it by 4.37e-8, and the tangent is about the inverse of that.
TEST(Mathematics, TheTangentBesideAQuarterTurnIsLarge)
{
    EXPECT_EQ(Runner::Tangent(1.57079637f), -22877332.0f);
    EXPECT_EQ(Runner::Tangent(-1.57079637f), 22877332.0f);
}

TEST(Mathematics, LargeAnglesKeepEveryDigit)
{
    // The angle minus whole turns, from the digits of pi: 16367173 * 2^72 is the float that comes closest to a multiple
    // of pi/2.
    const float closest = std::ldexp(16367173.0f, 72);
    const Runner::ReducedAngle reduced = Runner::ReduceAngleExactly(closest);
    EXPECT_NEAR(std::fabs(reduced.remainder.high), 1.6147697982476211883e-9, 1e-24);
}

// ---- two arguments ----

// Where a result is a zero, an infinity, no number or one of a few angles, C's rules say which.
TEST(Mathematics, AnglesOfSpecialPointsAreThoseOfC)
{
    const float special[] = {0.0f, -0.0f, 1.0f, -1.0f, INFINITE, -INFINITE, NOT_A_NUMBER, 1e-45f, -1e-45f};
    for (float y : special)
        for (float x : special)
        {
            const auto expected = static_cast<float>(std::atan2(static_cast<double>(y), static_cast<double>(x)));
            EXPECT_EQ(BitsOf(Runner::ArcTangent(y, x)), BitsOf(expected)) << y << ", " << x;
        }
}

TEST(Mathematics, AnglesAreRightInEveryQuadrant)
{
    Bits64 bits(1);
    for (int i = 0; i < 200000; ++i)
    {
        const float y = bits.NextFloat(), x = bits.NextFloat();
        if (std::isnan(y) || std::isnan(x))
            continue;
        const long double exact = atan2l(static_cast<long double>(y), static_cast<long double>(x));
        const float ours = Runner::ArcTangent(y, x);
        // Half the distance to a neighbour, and what the reference itself is off by.
        const float size = std::fabs(ours);
        const long double half = (static_cast<long double>(std::nextafter(size, INFINITE)) - size) / 2;
        ASSERT_LE(fabsl(static_cast<long double>(ours) - exact), half * 1.000001L) << y << ", " << x;
    }
}

TEST(Mathematics, PowersOfSpecialNumbersAreThoseOfC)
{
    constexpr double infinite = std::numeric_limits<double>::infinity();
    const double bases[] = {
        0.0, -0.0, 1.0, -1.0, infinite, -infinite, 2.0, -2.0, 0.5, -0.5, std::numeric_limits<double>::quiet_NaN()};
    const double exponents[] = {0.0,
                                -0.0,
                                1.0,
                                -1.0,
                                3.0,
                                -3.0,
                                2.0,
                                -2.0,
                                0.5,
                                -0.5,
                                infinite,
                                -infinite,
                                1e9,
                                -1e9,
                                1e300,
                                -1e300,
                                1e9 + 1,
                                9007199254740993.0,
                                std::numeric_limits<double>::quiet_NaN()};
    for (double base : bases)
        for (double exponent : exponents)
        {
            const double expected = std::pow(base, exponent);
            if (expected == expected && expected != 0.0 && std::fabs(expected) != infinite &&
                std::fabs(exponent) == 0.5)
                continue; // no special result
            EXPECT_EQ(BitsOf(Runner::Power(base, exponent)), BitsOf(expected)) << base << " ^ " << exponent;
        }
}

TEST(Mathematics, PowersOfWholeNumbersAreExact)
{
    for (int base = 2; base < 100; ++base)
    {
        double product = base;
        for (int exponent = 2; product * base <= 9007199254740992.0; ++exponent)
        {
            product *= base;
            ASSERT_EQ(Runner::Power(base, exponent), product) << base << " ^ " << exponent;
            ASSERT_EQ(Runner::Power(-base, exponent), exponent % 2 == 0 ? product : -product) << base << exponent;
            ASSERT_EQ(Runner::Power(base, -exponent), 1.0 / product) << base << " ^ -" << exponent;
        }
    }
    EXPECT_EQ(Runner::Power(10.0, 15.0), 1e15);
    EXPECT_EQ(Runner::Power(10.0, 22.0), 1e22);
}

TEST(Mathematics, PowersOfTwoAreExactDownToTheSmallestNumber)
{
    for (int exponent = -1080; exponent <= 1030; ++exponent)
    {
        EXPECT_EQ(Runner::Power(2.0, exponent), std::ldexp(1.0, exponent)) << exponent;
        EXPECT_EQ(Runner::Power(0.25, exponent * 0.5), std::ldexp(1.0, -exponent)) << exponent;
    }
}

TEST(Mathematics, RootsOfSquaresAreExact)
{
    for (int root = 1; root < 3000; ++root)
    {
        const double number = root + 0.125;
        ASSERT_EQ(Runner::Power(number * number, 0.5), number);
        ASSERT_EQ(Runner::Power(number * number, -0.5), Runner::Power(number, -1.0));
        ASSERT_EQ(Runner::Power(number * number, 1.5), number * number * number) << number;
    }
}

// The reference is off by one unit in its own last place at most: of a long double, or where that is a double, of that.
TEST(Mathematics, PowersAreTheNearestDoubles)
{
    constexpr long double slack = LDBL_MANT_DIG > DBL_MANT_DIG ? 0.501L : 1.5L;
    Bits64 bits(2);
    for (int i = 0; i < 100000; ++i)
    {
        const double base = bits.NextBase(), exponent = bits.NextExponent();
        const long double exact = powl(static_cast<long double>(base), static_cast<long double>(exponent));
        const double ours = Runner::Power(base, exponent);
        if (std::isnan(base) || !(exact < static_cast<long double>(std::numeric_limits<double>::max())))
            continue;
        const long double unit = static_cast<long double>(std::nextafter(ours, static_cast<double>(INFINITE))) - ours;
        ASSERT_LE(fabsl(ours - exact), unit * slack) << base << " ^ " << exponent << " = " << ours;
    }
}

TEST(Mathematics, PairsGiveTheSameBitsOnEveryMachine)
{
    const PairHashes hashes = HashesOfPairs(0, 100000);
    EXPECT_EQ(hashes.angle, GOLDEN_PAIRS.angle) << std::hex << hashes.angle;
    EXPECT_EQ(hashes.logarithm, GOLDEN_PAIRS.logarithm) << std::hex << hashes.logarithm;
    EXPECT_EQ(hashes.power, GOLDEN_PAIRS.power) << std::hex << hashes.power;
}

// ---- double-doubles ----

TEST(DoubleDouble, SumsAndProductsKeepWhatADoubleLoses)
{
    const Runner::DoubleDouble sum = Runner::TwoSum(1.0, 0x1p-80);
    EXPECT_EQ(sum.high, 1.0);
    EXPECT_EQ(sum.low, 0x1p-80);
    const double x = 1.0 + 0x1p-30;
    const Runner::DoubleDouble square = Runner::TwoProduct(x, x); // 1 + 2^-29 + 2^-60
    EXPECT_EQ(square.high, 1.0 + 0x1p-29);
    EXPECT_EQ(square.low, 0x1p-60);
}

// A third as a double is not enough: three of them are short of one by 2^-54.
TEST(DoubleDouble, AQuotientTimesItsDivisorIsTheDividend)
{
    const Runner::DoubleDouble third = Runner::DoubleDouble(1.0) / Runner::DoubleDouble(3.0);
    const Runner::DoubleDouble rest = third * Runner::DoubleDouble(3.0) - Runner::DoubleDouble(1.0);
    EXPECT_LT(std::fabs(rest.high), 0x1p-103);
    const Runner::DoubleDouble root = Runner::SquareRoot(Runner::DoubleDouble(2.0));
    EXPECT_LT(std::fabs((root * root - Runner::DoubleDouble(2.0)).high), 0x1p-102);
}

TEST(DoubleDouble, AFloatIsRoundedOnce)
{
    const double middle = 1.0 + 0x1p-24; // between 1 and the next float; as a double it would go to the even one
    EXPECT_EQ(Runner::RoundToFloat({middle, 0x1p-80}), 1.0f + FLT_EPSILON);
    EXPECT_EQ(Runner::RoundToFloat({middle, -0x1p-80}), 1.0f);
    EXPECT_EQ(Runner::RoundToFloat({middle, 0.0}), 1.0f);
    EXPECT_EQ(Runner::RoundToFloat({-middle, -0x1p-80}), -1.0f - FLT_EPSILON);
}

TEST(DoubleDouble, ADenormalResultIsRoundedOnce)
{
    constexpr double smallest = std::numeric_limits<double>::denorm_min();
    EXPECT_EQ(Runner::Scaled({1.5, 0x1p-60}, -1074), 2 * smallest);
    EXPECT_EQ(Runner::Scaled({1.5, -0x1p-60}, -1074), smallest);
    EXPECT_EQ(Runner::Scaled({1.5, 0.0}, -1074), 2 * smallest); // half to even
    EXPECT_EQ(Runner::Scaled({2.5, 0.0}, -1074), 2 * smallest);
    EXPECT_EQ(Runner::Scaled({1.0, 0.0}, -1076), 0.0);
    EXPECT_EQ(Runner::Scaled({1.0, 0.0}, -1022), std::numeric_limits<double>::min());
    EXPECT_EQ(Runner::Scaled({1.0, 0.0}, 2000), std::numeric_limits<double>::infinity());
}
} // namespace
