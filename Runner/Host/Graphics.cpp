#include "Platform/Strict_Float.h"

#include "Runner/Host/Graphics.h"

#include "Files/Graphics/Camera.h"
#include "Files/Graphics/Trigonometry.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>

float g_ViewAreaX, g_ViewAreaY, g_ViewAreaW, g_ViewAreaH, g_ViewAreaA;
int g_RenderTargetActive = -1;

namespace Runner
{
namespace
{
constexpr kvMatrix IDENTITY = {{{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}}};

kvMatrix s_slots[3] = {IDENTITY, IDENTITY, IDENTITY}; // by eMatrix
unsigned s_version = 0;

// Rotates from the axis `from` towards the axis `to` by minus the angle, so that a positive angle is counter-clockwise
// on a screen whose y axis points down.
kvMatrix Rotation(int from, int to, float degrees)
{
    const float sine = GR_Sin(degrees * RADIANS_PER_DEGREE);
    const float cosine = GR_Cos(degrees * RADIANS_PER_DEGREE);
    kvMatrix rotation = IDENTITY;
    rotation.m[from * 4 + from] = cosine;
    rotation.m[from * 4 + to] = -sine;
    rotation.m[to * 4 + from] = sine;
    rotation.m[to * 4 + to] = cosine;
    return rotation;
}

// ---- what the matrices show ----

// Whether a point's z neither moves it across the screen nor scales it: a parallel projection along z.
bool IsParallel(const kvMatrix& toClip)
{
    return toClip._14 == 0.0f && toClip._24 == 0.0f && toClip._34 == 0.0f && toClip._31 == 0.0f && toClip._32 == 0.0f &&
           toClip._44 > 0.0f;
}

struct Interval
{
    float low, high;
};

bool IsFinite(const Interval& interval) { return std::isfinite(interval.low) && std::isfinite(interval.high); }

// One room coordinate over the clip square. perClipX and perClipY are the entries of the adjugate of the 2 x 2 matrix
// that maps room x, y to clip x, y; over the determinant they are those of its inverse. The interval is widened by a
// bound of the rounding errors, which grow where the determinant cancels.
Interval ShownInterval(float perClipX, float perClipY, const kvMatrix& toClip)
{
    const float product = toClip._11 * toClip._22, crossProduct = toClip._12 * toClip._21;
    const float determinant = product - crossProduct;
    const float fromX = toClip._41 * perClipX / determinant, fromY = toClip._42 * perClipY / determinant;
    const float centre = -(fromX + fromY);
    const float half = toClip._44 * (fabsf(perClipX) + fabsf(perClipY)) / fabsf(determinant);
    const float condition = (fabsf(product) + fabsf(crossProduct)) / fabsf(determinant);
    const float rounding = RoomSlab::ROUNDING_OF_PRODUCTS * condition * (fabsf(fromX) + fabsf(fromY) + half);
    return {centre - half - rounding, centre + half + rounding};
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

GraphicsKeeper::GraphicsKeeper()
    : m_area{g_ViewAreaX, g_ViewAreaY, g_ViewAreaW, g_ViewAreaH, g_ViewAreaA}, m_target(g_RenderTargetActive)
{
    std::copy(std::begin(s_slots), std::end(s_slots), std::begin(m_slots));
}

GraphicsKeeper::~GraphicsKeeper()
{
    std::copy(std::begin(m_slots), std::end(m_slots), std::begin(s_slots));
    s_version++;
    g_RenderTargetActive = m_target;
    SetViewExtents(m_area[0], m_area[1], m_area[2], m_area[3], m_area[4]);
}

void SetFlatView(float x, float y, float width, float height)
{
    CCamera camera; // not registered: only its arithmetic is used, so that both ways give the same pixels
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
    kvMatrix::Multiply(world, world, Rotation(0, 1, degrees.z));
    kvMatrix::Multiply(world, world, Rotation(1, 2, degrees.x));
    kvMatrix::Multiply(world, world, Rotation(2, 0, degrees.y));
    world._41 = position.x;
    world._42 = position.y;
    world._43 = position.z;
    return world;
}

RoomRegion VisibleRegion()
{
    const kvMatrix toClip = RoomToClip();
    if (!IsParallel(toClip))
        return ENTIRE_PLANE;
    const Interval x = ShownInterval(toClip._22, -toClip._21, toClip);
    const Interval y = ShownInterval(-toClip._12, toClip._11, toClip);
    if (!IsFinite(x) || !IsFinite(y))
        return ENTIRE_PLANE;
    return {{x.low, y.low, x.high, y.high},
            {toClip._11, toClip._21, toClip._41, toClip._44},
            {toClip._12, toClip._22, toClip._42, toClip._44}};
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
