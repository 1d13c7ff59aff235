// How evenly frames follow each other, worked out by hand.
#include "Runner/Window/Frame_Pace.h"

#include <gtest/gtest.h>

namespace
{
using Runner::FramePace;
using Runner::PaceOf;

constexpr int64_t MILLISECOND = 1000000;

// The mean is (16 + 17 + 15 + 20) / 4 = 17: all but the last are within 2 ms of it.
TEST(Pace, IsToldByTheMeanTheShareNearItAndTheLongest)
{
    const FramePace pace = PaceOf({16 * MILLISECOND, 17 * MILLISECOND, 15 * MILLISECOND, 20 * MILLISECOND});
    EXPECT_EQ(pace.frames, 4u);
    EXPECT_DOUBLE_EQ(pace.mean, 17.0);
    EXPECT_DOUBLE_EQ(pace.within, 75.0) << "15 is just within 2 ms, 20 is not";
    EXPECT_DOUBLE_EQ(pace.longest, 20.0);
    EXPECT_EQ(pace.longestFrame, 4u);
    EXPECT_EQ(TextOf(pace), "4 frames, 17.00 ms each; 75.0 % within 2 ms of that, the longest 20.00 ms at frame 4");
}

TEST(Pace, OfNoFramesIsNothing)
{
    EXPECT_EQ(PaceOf({}).frames, 0u);
    EXPECT_EQ(PaceOf({}).within, 0.0);
}
} // namespace
