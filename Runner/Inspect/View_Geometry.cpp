#include "Runner/Inspect/View_Geometry.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Runner
{
namespace
{
constexpr double NEAREST = 1e-6; // clip w of what counts as before the eye

Matrix4 Widened(const kvMatrix& matrix)
{
    Matrix4 wide = {};
    for (size_t i = 0; i < 16; ++i)
        wide[i] = static_cast<double>(matrix.m[i]);
    return wide;
}

Matrix4 Product(const Matrix4& a, const Matrix4& b)
{
    Matrix4 product = {};
    for (size_t row = 0; row < 4; ++row)
        for (size_t column = 0; column < 4; ++column)
            for (size_t i = 0; i < 4; ++i)
                product[row * 4 + column] += a[row * 4 + i] * b[i * 4 + column];
    return product;
}

void AddRow(Matrix4& matrix, size_t to, size_t from, double factor)
{
    for (size_t column = 0; column < 4; ++column)
        matrix[to * 4 + column] += matrix[from * 4 + column] * factor;
}

void SwapRows(Matrix4& matrix, size_t a, size_t b)
{
    for (size_t column = 0; column < 4; ++column)
        std::swap(matrix[a * 4 + column], matrix[b * 4 + column]);
}

// Gauss and Jordan, with the largest pivot of each column.
std::optional<Matrix4> Inverse(Matrix4 matrix)
{
    Matrix4 inverse = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    for (size_t i = 0; i < 4; ++i)
    {
        size_t pivot = i;
        for (size_t row = i + 1; row < 4; ++row)
            if (std::abs(matrix[row * 4 + i]) > std::abs(matrix[pivot * 4 + i]))
                pivot = row;
        const double value = matrix[pivot * 4 + i];
        if (!(std::abs(value) > 0.0) || !std::isfinite(value))
            return std::nullopt;
        SwapRows(matrix, i, pivot);
        SwapRows(inverse, i, pivot);
        AddRow(inverse, i, i, 1.0 / value - 1.0);
        AddRow(matrix, i, i, 1.0 / value - 1.0);
        for (size_t row = 0; row < 4; ++row)
            if (row != i)
            {
                const double factor = -matrix[row * 4 + i];
                AddRow(inverse, row, i, factor);
                AddRow(matrix, row, i, factor);
            }
    }
    return inverse;
}

struct Clip
{
    double x, y, w;
};

Clip ToClip(const Matrix4& m, const Point& point)
{
    return {point.x * m[0] + point.y * m[4] + m[12], point.x * m[1] + point.y * m[5] + m[13],
            point.x * m[3] + point.y * m[7] + m[15]};
}

// Where the line from a to b reaches w = NEAREST.
Clip AtNearest(const Clip& a, const Clip& b)
{
    const double t = (NEAREST - a.w) / (b.w - a.w);
    return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t, NEAREST};
}

Point OnScreen(const Clip& clip, const Port& port)
{
    return {port.x + (clip.x / clip.w + 1.0) * 0.5 * port.width, port.y + (clip.y / clip.w + 1.0) * 0.5 * port.height};
}

bool IsFinite(const Point& point) { return std::isfinite(point.x) && std::isfinite(point.y); }

// Around their middle, by angle.
void SortAround(std::vector<Point>& points)
{
    Point middle;
    for (const Point& point : points)
    {
        middle.x += point.x / static_cast<double>(points.size());
        middle.y += point.y / static_cast<double>(points.size());
    }
    // Half-planes and a cross product order by angle without an inexact function.
    const auto isUpper = [&middle](const Point& p) { return p.y > middle.y || (p.y == middle.y && p.x > middle.x); };
    std::sort(points.begin(), points.end(),
              [&](const Point& a, const Point& b)
              {
                  if (isUpper(a) != isUpper(b))
                      return isUpper(a);
                  return (a.x - middle.x) * (b.y - middle.y) - (a.y - middle.y) * (b.x - middle.x) > 0.0;
              });
}
} // namespace

std::optional<Matrix4> WorldOf(const kvMatrix& drawn, const kvMatrix& roomToClip)
{
    constexpr double ROUNDING = 1e-3;
    const std::optional<Matrix4> inverse = Inverse(Widened(roomToClip));
    if (!inverse)
        return std::nullopt;
    const Matrix4 world = Product(Widened(drawn), *inverse);
    const double bent = std::abs(world[3]) + std::abs(world[7]) + std::abs(world[11]) + std::abs(world[15] - 1.0);
    return bent < ROUNDING ? std::optional<Matrix4>(world) : std::nullopt;
}

kvMatrix ClipThrough(const Matrix4& world, const kvMatrix& roomToClip)
{
    const Matrix4 wide = Product(world, Widened(roomToClip));
    kvMatrix clip = {};
    for (size_t i = 0; i < 16; ++i)
        clip.m[i] = static_cast<float>(wide[i]);
    return clip;
}

ViewGeometry::ViewGeometry(const kvMatrix& view, const kvMatrix& projection)
    : m_toClip(Product(Widened(view), Widened(projection))), m_fromClip(Inverse(m_toClip))
{
}

std::optional<ViewGeometry::Segment> ViewGeometry::ToScreen(const Point& from, const Point& to, const Port& port) const
{
    Clip a = ToClip(m_toClip, from), b = ToClip(m_toClip, to);
    if (!(a.w >= NEAREST) && !(b.w >= NEAREST))
        return std::nullopt;
    if (a.w < NEAREST)
        a = AtNearest(a, b);
    if (b.w < NEAREST)
        b = AtNearest(b, a);
    const Segment segment = {OnScreen(a, port), OnScreen(b, port)};
    if (!IsFinite(segment.from) || !IsFinite(segment.to))
        return std::nullopt;
    return segment;
}

std::optional<ViewGeometry::Space> ViewGeometry::Unproject(double clipX, double clipY, double clipZ) const
{
    if (!m_fromClip)
        return std::nullopt;
    double out[4];
    for (size_t column = 0; column < 4; ++column)
        out[column] = clipX * (*m_fromClip)[column] + clipY * (*m_fromClip)[4 + column] +
                      clipZ * (*m_fromClip)[8 + column] + (*m_fromClip)[12 + column];
    const Space space = {out[0] / out[3], out[1] / out[3], out[2] / out[3]};
    if (!std::isfinite(space.x) || !std::isfinite(space.y) || !std::isfinite(space.z))
        return std::nullopt;
    return space;
}

std::optional<Point> ViewGeometry::RoomPoint(double clipX, double clipY) const
{
    const std::optional<Space> near = Unproject(clipX, clipY, 0.0), far = Unproject(clipX, clipY, 1.0);
    if (!near || !far || (near->z < 0.0) == (far->z < 0.0))
        return std::nullopt;
    const double t = near->z / (near->z - far->z);
    return Point{near->x + (far->x - near->x) * t, near->y + (far->y - near->y) * t};
}

std::vector<Point> ViewGeometry::Footprint() const
{
    // Bit 0 of a corner takes the larger clip x, bit 1 the larger y, bit 2 the far plane. An edge joins two corners
    // that differ in one bit.
    std::array<std::optional<Space>, 8> corners;
    for (size_t i = 0; i < 8; ++i)
        corners[i] = Unproject((i & 1) != 0 ? 1.0 : -1.0, (i & 2) != 0 ? 1.0 : -1.0, (i & 4) != 0 ? 1.0 : 0.0);
    std::vector<Point> points;
    for (size_t i = 0; i < 8; ++i)
        for (size_t bit = 1; bit < 8; bit <<= 1)
        {
            const std::optional<Space>&a = corners[i], &b = corners[i | bit];
            if ((i & bit) != 0 || !a || !b || (a->z < 0.0) == (b->z < 0.0))
                continue;
            const double t = a->z / (a->z - b->z);
            points.push_back({a->x + (b->x - a->x) * t, a->y + (b->y - a->y) * t});
        }
    if (points.size() < 3)
        return {};
    SortAround(points);
    return points;
}
} // namespace Runner
