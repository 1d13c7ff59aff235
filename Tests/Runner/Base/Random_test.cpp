#include "Runner/Base/Random.h"

#include <gtest/gtest.h>

#include <climits>

namespace
{
using Runner::Random;

// The generator's published check: stream 54, seed 42.
TEST(Random, GivesThePublishedNumbers)
{
    Random random;
    random.SetState({0, 109});
    random.Next32();
    Random::State state = random.GetState();
    state.position += 42;
    random.SetState(state);
    random.Next32();
    for (const uint32_t expected : {0xA15C02B7u, 0x7B47F409u, 0xBA1D3330u, 0x83D2F293u, 0xBFA4784Bu, 0xCBED606Eu})
        EXPECT_EQ(random.Next32(), expected);
}

TEST(Random, ASavedStateGoesOnWithTheSameNumbers)
{
    Random random(7);
    for (int i = 0; i < 100; ++i)
        random.Next32();
    Random other(99);
    other.SetState(random.GetState());
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(other.Next32(), random.Next32());
}

TEST(Random, SeedsDecide)
{
    Random a(1), b(1), c(2);
    int same = 0;
    for (int i = 0; i < 100; ++i)
    {
        const uint32_t number = a.Next32();
        EXPECT_EQ(number, b.Next32());
        same += number == c.Next32() ? 1 : 0;
    }
    EXPECT_LT(same, 5);
}

TEST(Random, Next01StaysBelowOneAndFillsTheInterval)
{
    Random random(3);
    double sum = 0;
    for (int i = 0; i < 100000; ++i)
    {
        const double number = random.Next01();
        ASSERT_GE(number, 0.0);
        ASSERT_LT(number, 1.0);
        sum += number;
    }
    EXPECT_NEAR(sum / 100000, 0.5, 0.005); // five standard deviations of the mean
}

TEST(Random, RangeHoldsBothEndsAndEachEquallyOften)
{
    Random random(5);
    int counts[6] = {};
    for (int i = 0; i < 60000; ++i)
    {
        const int32_t number = random.Range(-2, 3);
        ASSERT_GE(number, -2);
        ASSERT_LE(number, 3);
        ++counts[number + 2];
    }
    for (const int count : counts)
        EXPECT_NEAR(count, 10000, 500); // more than five standard deviations
}

TEST(Random, RangeTakesEveryPairOfIntegers)
{
    Random random(6);
    EXPECT_EQ(random.Range(5, 5), 5);
    EXPECT_EQ(random.Range(INT_MIN, INT_MIN), INT_MIN);
    bool negative = false, positive = false;
    for (int i = 0; i < 100; ++i)
    {
        const int32_t number = random.Range(INT_MAX, INT_MIN); // in the wrong order
        negative = negative || number < 0;
        positive = positive || number > 0;
        EXPECT_LE(random.Range(3, 1), 3);
    }
    EXPECT_TRUE(negative && positive);
}

TEST(Random, AnEvenIncrementIsMadeOdd)
{
    Random random;
    random.SetState({5, 8});
    EXPECT_EQ(random.GetState().increment, 9u);
}
} // namespace
