#pragma once
// Areas of a room, in room units, and the test which of them a view shows.

#include <cmath>

namespace Runner
{
// An axis-aligned rectangle, edges in order: left <= right, top <= bottom.
struct RoomArea
{
    float left, top, right, bottom;

    // Whether the two overlap or share an edge.
    bool Touches(const RoomArea& other) const
    {
        return left <= other.right && right >= other.left && top <= other.bottom && bottom >= other.top;
    }
};

// The points between two parallel lines: |x * point.x + y * point.y + offset| <= half. As it starts, every point.
struct RoomSlab
{
    float x = 0.0f, y = 0.0f, offset = 0.0f;
    float half = 0.0f;

    // Whether part of the area lies between the lines. True where the numbers overflow or are not numbers.
    bool Touches(const RoomArea& area) const
    {
        const float centreX = (area.left * 0.5f + area.right * 0.5f) * x;
        const float centreY = (area.top * 0.5f + area.bottom * 0.5f) * y;
        const float reach = std::fabs((area.right * 0.5f - area.left * 0.5f) * x) +
                            std::fabs((area.bottom * 0.5f - area.top * 0.5f) * y);
        const float rounding = (std::fabs(centreX) + std::fabs(centreY) + std::fabs(offset)) * ROUNDING_OF_PRODUCTS;
        return !(std::fabs(centreX + centreY + offset) > half + reach + rounding);
    }

    // A bound for the relative rounding error of a few products and sums, some sixteen units in the last place.
    static constexpr float ROUNDING_OF_PRODUCTS = 1e-6f;
};

// What a flat view shows: a parallelogram, as the two slabs whose intersection it is and the rectangle around it.
// Together these are the separating-axis test of a convex quadrilateral and a rectangle. Without slabs, the rectangle.
struct RoomRegion
{
    RoomArea bounds;
    RoomSlab across = {}, down = {};

    bool Touches(const RoomArea& area) const
    {
        return bounds.Touches(area) && across.Touches(area) && down.Touches(area);
    }
};

constexpr RoomRegion ENTIRE_PLANE = {{-INFINITY, -INFINITY, INFINITY, INFINITY}, {}, {}};
} // namespace Runner
