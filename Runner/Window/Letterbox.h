#pragma once

#include "Runner/Draw/Port.h"

namespace Runner
{
struct PixelSize
{
    int width = 0, height = 0;
};

struct ScreenPoint
{
    float x = 0.0f, y = 0.0f;
};

// Where a game's screen stands in a window: the largest rectangle of its shape in the window's middle, at least a pixel
// wide and high.
class Letterbox
{
public:
    Letterbox() = default;
    Letterbox(PixelSize screen, PixelSize window); // sizes of 1 or more

    const Port& Where() const { return m_port; } // pixels of the window
    bool IsWhole() const; // each pixel of the screen covers as many pixels of the window: nothing is to be interpolated

    // From pixels of the window to units of the screen, in steps of an eighth; outside of the screen beyond it.
    ScreenPoint ToScreen(float x, float y) const;

private:
    PixelSize m_screen = {1, 1};
    Port m_port = {0, 0, 1, 1};
};
} // namespace Runner
