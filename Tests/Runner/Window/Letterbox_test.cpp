#include "Runner/Window/Letterbox.h"

#include <gtest/gtest.h>

namespace
{
using Runner::Letterbox;
using Runner::Port;

void ExpectPort(const Port& port, const Port& wanted)
{
    EXPECT_TRUE(port == wanted) << port.x << ", " << port.y << ", " << port.width << " x " << port.height;
}

TEST(Letterbox, AWindowOfTheSameShapeIsFilled)
{
    const Letterbox box({640, 360}, {1280, 720});
    ExpectPort(box.Where(), {0, 0, 1280, 720});
    EXPECT_TRUE(box.IsWhole());
}

TEST(Letterbox, AWiderWindowHasBarsAtTheSides)
{
    ExpectPort(Letterbox({640, 360}, {1000, 360}).Where(), {180, 0, 640, 360});
}

TEST(Letterbox, AHigherWindowHasBarsAboveAndBelow)
{
    const Letterbox box({640, 360}, {320, 400});
    ExpectPort(box.Where(), {0, 110, 320, 180});
    EXPECT_FALSE(box.IsWhole()) << "half the size cannot show every pixel";
}

TEST(Letterbox, AWindowOfOnePixelStillHasAScreen)
{
    const Letterbox box({640, 360}, {1, 1});
    ExpectPort(box.Where(), {0, 0, 1, 1});
    EXPECT_EQ(box.ToScreen(0.5f, 0.5f).x, 320.0f);
}

TEST(Letterbox, AHugeScreenInAHugeWindowDoesNotOverflow)
{
    ExpectPort(Letterbox({8192, 8192}, {100000, 50000}).Where(), {25000, 0, 50000, 50000});
}

// Pixel 181 of the window is the second one of the screen's first row; a third of a pixel is rounded down to 2 eighths.
TEST(Letterbox, PointsOfTheWindowBecomeEighthsOfTheScreen)
{
    const Letterbox box({640, 360}, {1000, 360});
    EXPECT_EQ(box.ToScreen(181.0f, 0.0f).x, 1.0f);
    EXPECT_EQ(box.ToScreen(180.0f + 1.0f / 3.0f, 0.0f).x, 0.25f);
    EXPECT_EQ(box.ToScreen(170.0f, -3.0f).x, -10.0f) << "on the bar, outside of the screen";
    EXPECT_EQ(box.ToScreen(170.0f, -3.0f).y, -3.0f);
}
} // namespace
