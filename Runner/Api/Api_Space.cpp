#include "Platform/Strict_Float.h"

#include "Runner/Api/Api.h"
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
    const kvMatrix first = MatrixArgument(call, 1);
    kvMatrix product;
    kvMatrix::Multiply(product, first, MatrixArgument(call, 2));
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
    const float height = 2.0f * nearest * tanf(degrees * HALF_A_DEGREE);
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
    {"matrix_identity", 0, 0, MatrixIdentity},
    {"matrix_multiply", 2, 2, MatrixMultiply},
    {"matrix_build", 9, 9, MatrixBuild},
    {"matrix_look_at", 9, 9, MatrixLookAt},
    {"matrix_ortho", 4, 4, MatrixOrtho},
    {"matrix_perspective", 4, 4, MatrixPerspective},
    {"matrix_perspective_fov", 4, 4, MatrixPerspectiveFov},
    {"matrix_set_world", 1, 1, MatrixSetWorld},
    {"matrix_reset_world", 0, 0, MatrixResetWorld},
    {"draw_quad3d", 14, 14, DrawQuad},
    {"draw_box", 8, 8, DrawBox},
};
} // namespace

ApiTable SpaceApi() { return {FUNCTIONS, std::size(FUNCTIONS)}; }

kvMatrix MatrixArgument(const Arguments& call, int i)
{
    call.Table(i);
    const std::string place = "argument " + std::to_string(i);
    if (lua_rawlen(call.L, i) != 16)
        call.Fail(place + " must be a table of 16 numbers");
    kvMatrix matrix;
    for (int element = 0; element < 16; ++element)
    {
        if (lua_rawgeti(call.L, i, element + 1) != LUA_TNUMBER)
            call.Fail(place + " must be a table of 16 numbers");
        matrix.m[element] = NearestFloat(lua_tonumber(call.L, -1));
        lua_pop(call.L, 1);
    }
    return matrix;
}
} // namespace Runner
