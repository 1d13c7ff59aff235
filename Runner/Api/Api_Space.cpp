#include "Platform/Strict_Float.h"

#include "Runner/Api/Api_Functions.h"
#include "Runner/Base/Mathematics.h"
#include "Runner/Draw/Painter.h"
#include "Runner/Host/Convert.h"
#include "Runner/Host/Graphics.h"

#include <cmath>

namespace Runner
{
namespace
{
constexpr float HALF_A_DEGREE = RADIANS_PER_DEGREE * 0.5f; // in radians

// ---- matrices ----

int ReturnMatrix(const Arguments& call, const kvMatrix& matrix)
{
    lua_createtable(call.L, 16, 0);
    for (int i = 0; i < 16; ++i)
    {
        lua_pushnumber(call.L, static_cast<double>(matrix.m[i]));
        lua_rawseti(call.L, -2, i + 1);
    }
    return 1;
}

kvVector3 Vector(const Arguments& call, int first)
{
    return {call.Float(first), call.Float(first + 1), call.Float(first + 2)};
}

int MatrixIdentity(Arguments& call) { return ReturnMatrix(call, IdentityMatrix()); }

int MatrixMultiply(Arguments& call)
{
    const kvMatrix a = MatrixArgument(call, 1);
    const kvMatrix b = MatrixArgument(call, 2);
    kvMatrix product;
    kvMatrix::Multiply(product, a, b);
    return ReturnMatrix(call, product);
}

int MatrixBuild(Arguments& call)
{
    const kvVector3 position = Vector(call, 1);
    const kvVector3 degrees = Vector(call, 4);
    return ReturnMatrix(call, BuildWorldMatrix(position, degrees, Vector(call, 7)));
}

int MatrixLookAt(Arguments& call)
{
    const kvVector3 eye = Vector(call, 1);
    const kvVector3 at = Vector(call, 4);
    kvMatrix view;
    kvMatrix::LookAtLH(view, eye, at, Vector(call, 7));
    return ReturnMatrix(call, view);
}

int MatrixOrtho(Arguments& call)
{
    const auto [width, height, nearest, farthest] = Floats<4>(call, 1);
    kvMatrix projection;
    kvMatrix::OrthoLH(projection, width, height, nearest, farthest);
    return ReturnMatrix(call, projection);
}

int MatrixPerspective(Arguments& call)
{
    const auto [width, height, nearest, farthest] = Floats<4>(call, 1);
    kvMatrix projection;
    kvMatrix::PerspectiveLH(projection, width, height, nearest, farthest);
    return ReturnMatrix(call, projection);
}

int MatrixPerspectiveFov(Arguments& call)
{
    const auto [degrees, aspect, nearest, farthest] = Floats<4>(call, 1);
    const float height = 2.0f * nearest * Tangent(degrees * HALF_A_DEGREE);
    kvMatrix projection;
    kvMatrix::PerspectiveLH(projection, height * aspect, height, nearest, farthest);
    return ReturnMatrix(call, projection);
}

int MatrixSetWorld(Arguments& call)
{
    DrawingPainter(call);
    kvMatrix world = MatrixArgument(call, 1);
    Graphics::SetMatrix(eM_World, world.m);
    return 0;
}

int MatrixResetWorld(Arguments& call)
{
    DrawingPainter(call);
    ResetWorldMatrix();
    return 0;
}

// ---- 3D ----

// Turns the depth test on until it is destroyed: shapes in space cover each other by distance, whatever is set for flat
// drawing.
class DepthTestOn
{
public:
    explicit DepthTestOn(Painter& painter) : m_painter(painter), m_before(painter.DepthTest())
    {
        m_painter.SetDepthTest(true);
    }
    ~DepthTestOn() { m_painter.SetDepthTest(m_before); }
    DepthTestOn(const DepthTestOn&) = delete;
    DepthTestOn& operator=(const DepthTestOn&) = delete;

private:
    Painter& m_painter;
    bool m_before;
};

int DrawQuad(Arguments& call)
{
    Painter& painter = DrawingPainter(call);
    const int sprite = call.Whole(1);
    const int frame = NearestInteger<int>(call.Number(2));
    const kvVector3 corners[4] = {Vector(call, 3), Vector(call, 6), Vector(call, 9), Vector(call, 12)};
    const DepthTestOn depthTest(painter);
    painter.Quad(sprite, frame, corners);
    return 0;
}

int DrawBox(Arguments& call)
{
    Painter& painter = DrawingPainter(call);
    const int sprite = call.Whole(1);
    const int frame = NearestInteger<int>(call.Number(2));
    const kvVector3 low = Vector(call, 3);
    const kvVector3 high = Vector(call, 6);
    const DepthTestOn depthTest(painter);
    painter.Box(sprite, frame, low, high);
    return 0;
}

constexpr ApiFunction FUNCTIONS[] = {
    {"matrix_identity", 0, {}, MatrixIdentity},
    {"matrix_multiply", 2, {"a", "b"}, MatrixMultiply},
    {"matrix_build", 9, {"x", "y", "z", "angle_x", "angle_y", "angle_z", "scale_x", "scale_y", "scale_z"}, MatrixBuild},
    {"matrix_look_at",
     9,
     {"from_x", "from_y", "from_z", "to_x", "to_y", "to_z", "down_x", "down_y", "down_z"},
     MatrixLookAt},
    {"matrix_ortho", 4, {"width", "height", "near", "far"}, MatrixOrtho},
    {"matrix_perspective", 4, {"width", "height", "near", "far"}, MatrixPerspective},
    {"matrix_perspective_fov", 4, {"fov_y", "aspect", "near", "far"}, MatrixPerspectiveFov},
    {"matrix_set_world", 1, {"matrix"}, MatrixSetWorld},
    {"matrix_reset_world", 0, {}, MatrixResetWorld},
    {"draw_quad3d",
     14,
     {"sprite", "frame", "x1", "y1", "z1", "x2", "y2", "z2", "x3", "y3", "z3", "x4", "y4", "z4"},
     DrawQuad},
    {"draw_box", 8, {"sprite", "frame", "x1", "y1", "z1", "x2", "y2", "z2"}, DrawBox},
};
} // namespace

ApiTable SpaceApi() { return {FUNCTIONS, std::size(FUNCTIONS)}; }

kvMatrix MatrixArgument(const Arguments& call, int i)
{
    lua_State* L = call.L;
    if (!lua_istable(L, i) || lua_rawlen(L, i) != 16)
        call.FailArgument(i, "is a table of 16 numbers, got " + DescribeListAt(L, i));
    kvMatrix matrix;
    for (int entry = 0; entry < 16; ++entry)
        matrix.m[entry] = NearestFloat(call.NumberEntry(i, entry + 1));
    return matrix;
}
} // namespace Runner
