#pragma once
// Between a room and the picture of a view, in double precision. A picture's y grows downwards, as clip y does: what
// the device draws is upside down once more (Runner/Draw/Gl_Program.h).

#include "Platform/Matrix.h"
#include "Runner/Draw/Port.h"

#include <array>
#include <optional>
#include <vector>

namespace Runner
{
struct Point
{
    double x = 0.0, y = 0.0;
};

using Matrix4 = std::array<double, 16>; // as kvMatrix: row by row, points are rows on the left

class ViewGeometry
{
public:
    ViewGeometry(const kvMatrix& view, const kvMatrix& projection);

    // A line of the plane z = 0 as it shows in the port, in pixels of the screen; without what is behind the eye. None:
    // nothing of it lies before the eye, or a number is not finite.
    struct Segment
    {
        Point from, to;
    };
    std::optional<Segment> ToScreen(const Point& from, const Point& to, const Port& port) const;

    // The point of the plane z = 0 that shows at clip x, y (-1 to 1); none where the ray does not meet it between the
    // near and the far plane.
    std::optional<Point> RoomPoint(double clipX, double clipY) const;

    // What the view shows of the plane z = 0: the intersection of plane and frustum, a convex polygon, in order around
    // it. Empty where they do not meet.
    std::vector<Point> Footprint() const;

private:
    struct Space
    {
        double x, y, z;
    };
    std::optional<Space> Unproject(double clipX, double clipY, double clipZ) const;

    Matrix4 m_toClip;
    std::optional<Matrix4> m_fromClip; // none for a singular matrix
};
} // namespace Runner
