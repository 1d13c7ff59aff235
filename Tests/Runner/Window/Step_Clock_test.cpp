#include "Runner/Window/Step_Clock.h"

#include <gtest/gtest.h>

namespace
{
using Runner::LateFrames;
using Runner::StepClock;

constexpr int64_t PERIOD = 10; // of a clock with this rate, nanoseconds
constexpr int RATE = 100000000;

// Steps that are played without waiting at this moment.
int PlayDue(StepClock& clock, int64_t now)
{
    int steps = 0;
    for (; clock.IsDue(now); ++steps)
        clock.Take(now);
    return steps;
}

TEST(StepClock, AStepIsDueAtOnceAndTheNextOneAPeriodLater)
{
    StepClock clock(RATE, 1000);
    EXPECT_EQ(PlayDue(clock, 1000), 1);
    EXPECT_EQ(clock.UntilDue(1000), PERIOD);
    EXPECT_FALSE(clock.IsDue(1009));
    EXPECT_TRUE(clock.IsDue(1010));
}

// A display of 37 frames a second, looked at for a thousand periods: the steps are those of the clock, not its own.
TEST(StepClock, TheRateDoesNotDependOnHowOftenItIsAsked)
{
    StepClock clock(RATE, 0);
    int steps = 0;
    for (int64_t now = 0; now <= 1000 * PERIOD; now += 27)
        steps += PlayDue(clock, now);
    EXPECT_NEAR(steps, 1000, 2);
}

TEST(StepClock, AFewMissedStepsAreMadeUp)
{
    StepClock clock(RATE, 0);
    EXPECT_EQ(PlayDue(clock, 4 * PERIOD), 5);
}

TEST(StepClock, AfterALongPauseTheMissedStepsAreDropped)
{
    StepClock clock(RATE, 0);
    EXPECT_LE(PlayDue(clock, 1000000 * PERIOD), 2);
    EXPECT_EQ(clock.UntilDue(1000000 * PERIOD), PERIOD);
}

TEST(StepClock, AfterARestartNothingWasMissed)
{
    StepClock clock(RATE, 0);
    clock.Restart(4 * PERIOD);
    EXPECT_EQ(PlayDue(clock, 4 * PERIOD), 1);
}
} // namespace

// Plays frames that take as long, and showing one as much longer. How many of them were shown.
namespace
{
int ShownOf(int frames, int64_t playing, int64_t showing)
{
    StepClock clock(RATE, 0);
    LateFrames late(clock.Period());
    int64_t now = 0;
    int shown = 0;
    for (int frame = 0; frame < frames; ++frame)
    {
        now += clock.UntilDue(now);
        clock.Take(now);
        now += playing;
        if (!late.Shows(clock.IsDue(now), now))
            continue;
        ++shown;
        now += showing;
    }
    return shown;
}
} // namespace

TEST(LateFrames, EachFrameIsShownWhileThereIsTime)
{
    const int64_t period = StepClock(RATE, 0).Period();
    EXPECT_EQ(ShownOf(1000, period / 2, period / 4), 1000);
}

TEST(LateFrames, ADisplayOfHalfTheRateShowsAboutHalfTheFrames)
{
    const int64_t period = StepClock(RATE, 0).Period();
    const int shown = ShownOf(1000, period / 10, 2 * period - period / 10);
    EXPECT_GT(shown, 400);
    EXPECT_LT(shown, 600);
}

TEST(LateFrames, AGameThatIsTooSlowForItsStepsShowsNearlyEachFrame)
{
    const int64_t period = StepClock(RATE, 0).Period();
    EXPECT_GT(ShownOf(2000, period + period / 20, period / 20), 1900);
}
