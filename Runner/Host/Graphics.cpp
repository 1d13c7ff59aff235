#include "Platform/Strict_Float.h"

#include "Runner/Host/Graphics.h"

#include "Files/Graphics/Camera.h"
#include "Files/Graphics/Trigonometry.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>
#include <limits>

float g_ViewAreaX, g_ViewAreaY, g_ViewAreaW, g_ViewAreaH, g_ViewAreaA;
int g_RenderTargetActive = -1;

namespace Runner
{
namespace
{
constexpr float RADIANS_PER_DEGREE = 0.017453292f;

constexpr kvMatrix IDENTITY = {{{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}}};

kvMatrix s_slots[3] = {IDENTITY, IDENTITY, IDENTITY}; // by eMatrix
unsigned s_version = 0;

// Turns from the axis `from` towards `to` by minus the angle: what makes a positive turn counter-clockwise on a screen
// whose second axis points down.
kvMatrix Turn(int from, int to, float degrees)
{
    const float sine = GR_Sin(degrees * RADIANS_PER_DEGREE);
    const float cosine = GR_Cos(degrees * RADIANS_PER_DEGREE);
    kvMatrix turn = IDENTITY;
    turn.m[from * 4 + from] = cosine;
    turn.m[from * 4 + to] = -sine;
    turn.m[to * 4 + from] = sine;
    turn.m[to * 4 + to] = cosine;
    return turn;
}
} // namespace

const kvMatrix& CurrentMatrix(eMatrix slot) { return s_slots[slot]; }

kvMatrix RoomToClip()
{
    kvMatrix product;
    kvMatrix::Multiply(product, s_slots[eM_World], s_slots[eM_View]);
    kvMatrix::Multiply(product, product, s_slots[eM_Projection]);
    return product;
}

unsigned MatrixVersion() { return s_version; }

void ResetGraphics()
{
    std::fill(std::begin(s_slots), std::end(s_slots), IDENTITY);
    s_version++;
    g_RenderTargetActive = -1;
    SetViewExtents(0.0f, 0.0f, 0.0f, 0.0f, 0.0f);
}

void ResetWorldMatrix()
{
    s_slots[eM_World] = IDENTITY;
    s_version++;
}

void SetFlatView(float x, float y, float width, float height)
{
    CCamera camera; // in no registry: it only lends its arithmetic, so that both ways give the same pixels
    camera.SetViewX(x);
    camera.SetViewY(y);
    camera.SetViewWidth(width);
    camera.SetViewHeight(height);
    camera.SetViewDirty();
    camera.ApplyMatrices();
}

kvMatrix IdentityMatrix() { return IDENTITY; }

kvMatrix BuildWorldMatrix(const kvVector3& position, const kvVector3& degrees, const kvVector3& scale)
{
    kvMatrix world = IDENTITY;
    world._11 = scale.x;
    world._22 = scale.y;
    world._33 = scale.z;
    kvMatrix::Multiply(world, world, Turn(0, 1, degrees.z));
    kvMatrix::Multiply(world, world, Turn(1, 2, degrees.x));
    kvMatrix::Multiply(world, world, Turn(2, 0, degrees.y));
    world._41 = position.x;
    world._42 = position.y;
    world._43 = position.z;
    return world;
}

RoomArea VisibleArea()
{
    const float turn = g_ViewAreaA * RADIANS_PER_DEGREE;
    const float sine = fabsf(GR_Sin(turn));
    const float cosine = fabsf(GR_Cos(turn));
    const float halfWidth = (g_ViewAreaW * cosine + g_ViewAreaH * sine) * 0.5f;
    const float halfHeight = (g_ViewAreaW * sine + g_ViewAreaH * cosine) * 0.5f;
    const float x = g_ViewAreaX + g_ViewAreaW * 0.5f;
    const float y = g_ViewAreaY + g_ViewAreaH * 0.5f;
    const RoomArea area = {x - halfWidth, y - halfHeight, x + halfWidth, y + halfHeight};
    if (std::isfinite(area.left) && std::isfinite(area.top) && std::isfinite(area.right) && std::isfinite(area.bottom))
        return area;
    constexpr float endless = std::numeric_limits<float>::infinity();
    return {-endless, -endless, endless, endless};
}
} // namespace Runner

void Graphics::SetMatrix(eMatrix slot, float* matrix)
{
    memcpy(Runner::s_slots[slot].m, matrix, sizeof(kvMatrix));
    Runner::s_version++;
}

void SetViewExtents(float x, float y, float w, float h, float a)
{
    g_ViewAreaX = x;
    g_ViewAreaY = y;
    g_ViewAreaW = w;
    g_ViewAreaH = h;
    g_ViewAreaA = a;
}
