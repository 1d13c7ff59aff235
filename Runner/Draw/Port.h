#pragma once

namespace Runner
{
// A view port: a rectangle of a target in pixels, from the target's top left corner.
struct Port
{
    int x = 0, y = 0, width = 0, height = 0;

    bool operator==(const Port& o) const { return x == o.x && y == o.y && width == o.width && height == o.height; }
};
} // namespace Runner
