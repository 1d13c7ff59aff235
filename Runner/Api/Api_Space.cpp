#include "Platform/Strict_Float.h"

#include "Runner/Api/Api_Functions.h"
#include "Runner/Draw/Painter.h"
#include "Runner/Host/Convert.h"
#include "Runner/Host/Graphics.h"

#include <cmath>

namespace Runner
{
namespace
{
constexpr float HALF_A_DEGREE = 0.008726646f; // in radians

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
    return ReturnMatrix(call, BuildWorldMatrix(Vector(call, 1), Vector(call, 4), Vector(call, 7)));
}

int MatrixLookAt(Arguments& call)
{
    kvMatrix view;
    kvMatrix::LookAtLH(view, Vector(call, 1), Vector(call, 4), Vector(call, 7));
    return ReturnMatrix(call, view);
}

int MatrixOrtho(Arguments& call)
{
    kvMatrix projection;
    kvMatrix::OrthoLH(projection, call.Float(1), call.Float(2), call.Float(3), call.Float(4));
    return ReturnMatrix(call, projection);
}

int MatrixPerspective(Arguments& call)
{
    kvMatrix projection;
    kvMatrix::PerspectiveLH(projection, call.Float(1), call.Float(2), call.Float(3), call.Float(4));
    return ReturnMatrix(call, projection);
}

int MatrixPerspectiveFov(Arguments& call)
{
    const float nearest = call.Float(3);
    const float height = 2.0f * nearest * tanf(call.Float(1) * HALF_A_DEGREE);
    kvMatrix projection;
    kvMatrix::PerspectiveLH(projection, height * call.Float(2), height, nearest, call.Float(4));
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

// What is in space covers by distance, whatever the flat drawing around it does.
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
    const DepthTestOn depthTest(painter);
    const kvVector3 corners[4] = {Vector(call, 3), Vector(call, 6), Vector(call, 9), Vector(call, 12)};
    painter.Quad(call.Whole(1), NearestInteger<int>(call.Number(2)), corners);
    return 0;
}

int DrawBox(Arguments& call)
{
    Painter& painter = DrawingPainter(call);
    const DepthTestOn depthTest(painter);
    painter.Box(call.Whole(1), NearestInteger<int>(call.Number(2)), Vector(call, 3), Vector(call, 6));
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
    {
        if (lua_rawgeti(L, i, entry + 1) != LUA_TNUMBER)
            call.FailEntry(i, entry + 1, "is a number, got " + DescribeAt(L, -1));
        matrix.m[entry] = NearestFloat(lua_tonumber(L, -1));
        lua_pop(L, 1);
    }
    return matrix;
}
} // namespace Runner
