#include "Runner/Base/Hash.h"

#include <gtest/gtest.h>

#include <limits>

namespace
{
using namespace Runner;

TEST(Hash, GivesThePublishedValues)
{
    EXPECT_EQ(HashBytes("", 0), UINT64_C(0xCBF29CE484222325));
    EXPECT_EQ(HashBytes("a", 1), UINT64_C(0xAF63DC4C8601EC8C));
    EXPECT_EQ(HashBytes("foobar", 6), UINT64_C(0x85944171F73967E8));
}

TEST(Hash, WordsGoInLowestByteFirst)
{
    Hash hash;
    hash.U32(0x64636261u);
    EXPECT_EQ(hash.Value(), HashBytes("abcd", 4));
}

TEST(Hash, FloatsGoInAsTheirBitsAndEveryNanAlike)
{
    const auto of = [](float number)
    {
        Hash hash;
        hash.Float(number);
        return hash.Value();
    };
    Hash one;
    one.U32(0x3F800000u);
    EXPECT_EQ(of(1.0f), one.Value());
    EXPECT_NE(of(0.0f), of(-0.0f));
    const float nan = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(of(nan), of(-nan));
}
} // namespace
