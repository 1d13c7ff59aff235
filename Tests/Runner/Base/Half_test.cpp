#include "Runner/Base/Half.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace
{
using namespace Runner;

struct Case
{
    double number;
    uint16_t half;
};

TEST(Half, KnownNumbers)
{
    const double inf = std::numeric_limits<double>::infinity();
    const Case cases[] = {{0.0, 0x0000},     {-0.0, 0x8000},      {1.0, 0x3C00},    {-2.0, 0xC000}, {0.5, 0x3800},
                          {65504.0, 0x7BFF}, {-65504.0, 0xFBFF},  {inf, 0x7C00},    {-inf, 0xFC00}, {0x1p-14, 0x0400},
                          {0x1p-24, 0x0001}, {0x3ffp-24, 0x03FF}, {1.0 / 3, 0x3555}};
    for (const Case& c : cases)
        EXPECT_EQ(HalfFromReal(c.number), c.half) << c.number;
}

TEST(Half, RoundsToTheNearestAndTiesToEven)
{
    const Case cases[] = {{1 + 0x1p-11, 0x3C00}, {1 + 3 * 0x1p-11, 0x3C02}, {1 + 0x1p-11 + 0x1p-50, 0x3C01},
                          {65519.99, 0x7BFF},    {65520.0, 0x7C00},         {1e300, 0x7C00},
                          {-1e300, 0xFC00},      {0x1p-25, 0x0000},         {0x1p-25 + 0x1p-60, 0x0001},
                          {0x3p-25, 0x0002},     {0x1p-26, 0x0000},         {5e-324, 0x0000},
                          {-5e-324, 0x8000},     {0x7ffp-25, 0x0400},       {2047.5, 0x6800}};
    for (const Case& c : cases)
        EXPECT_EQ(HalfFromReal(c.number), c.half) << c.number;
}

TEST(Half, EveryHalfComesBack)
{
    for (uint32_t bits = 0; bits < 0x10000; ++bits)
    {
        const uint16_t half = static_cast<uint16_t>(bits);
        const double number = RealFromHalf(half);
        const bool isNan = (bits & 0x7C00) == 0x7C00 && (bits & 0x3FF) != 0;
        EXPECT_EQ(std::isnan(number), isNan) << bits;
        if (!isNan)
            EXPECT_EQ(HalfFromReal(number), half) << number;
        else
            EXPECT_TRUE(std::isnan(RealFromHalf(HalfFromReal(number))));
    }
}

// Between two neighbours the nearer one wins, checked by their distance.
TEST(Half, NoOtherHalfIsNearer)
{
    for (int i = 1; i < 20000; ++i)
    {
        const double number = i * 0.7310585 * (i % 3 == 0 ? 1e-6 : 1.0);
        const uint16_t half = HalfFromReal(number);
        const double error = std::fabs(RealFromHalf(half) - number);
        EXPECT_LE(error, std::fabs(RealFromHalf(static_cast<uint16_t>(half + 1)) - number)) << number;
        const double below = half != 0 ? RealFromHalf(static_cast<uint16_t>(half - 1)) : -1.0;
        EXPECT_LE(error, std::fabs(below - number)) << number;
    }
}
} // namespace
