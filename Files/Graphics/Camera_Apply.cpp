// Making a camera's view current: the visible area is published, the matrices go to the graphics layer.
#include "Platform/Strict_Float.h"

#include "Files/Graphics/Camera.h"

#include "Files/Graphics/Render_Target.h"
#include "Files/Graphics/Trigonometry.h"
#include "Files/Graphics_API/Graphics_API.h"
#include "Files/Room/Room.h"

#include <cmath>

using namespace CameraModule;

namespace
{

constexpr float TWO_PI = 6.2831855f;

struct ViewArea
{
    float x, y, w, h, angle;
};

// One row of a matrix. Three entries are used; with four, the compiler computes a row in one vector register.
struct Row
{
    float at[4];
};

// The vector in the room from clip point (-X, -Y) to clip point (X, Y). A point is mapped as the row vector (x, y, 0,
// 1) times the matrix, with the products by zero: a NaN or infinity in any entry must reach the result.
template <int X, int Y> inline Row Across(const kvMatrix& m)
{
    constexpr float x = X, y = Y, z = 0.0f, oppositeX = -X, oppositeY = -Y; // of integers: no minus zero
    const float *const r1 = m.m, *const r2 = r1 + 4, *const r3 = r2 + 4, *const r4 = r3 + 4;
    Row across;
    for (int i = 0; i < 4; ++i)
        across.at[i] =
            (x * r1[i] + y * r2[i] + z * r3[i] + r4[i]) - (oppositeX * r1[i] + oppositeY * r2[i] + z * r3[i] + r4[i]);
    return across;
}

inline float LengthOrZero(const Row& v)
{
    const float square = v.at[0] * v.at[0] + v.at[1] * v.at[1] + v.at[2] * v.at[2];
    return square > 0.0f ? sqrtf(square) : 0.0f;
}

// The angle in degrees between the room's y axis and the view's vertical axis. NaN for a view of height 0: two plain
// comparisons clamp the cosine and let a NaN through; keep their form.
float AngleOf(const Row& vertical, float length)
{
    float cosine = vertical.at[1] / length;
    if (cosine <= -1.0f)
        cosine = -1.0f;
    else if (cosine >= 1.0f)
        cosine = 1.0f;
    float angle = GR_Acos(cosine);
    if (vertical.at[0] / length < 0.0f)
        angle = TWO_PI - angle;
    return angle / TWO_PI * 360.0f;
}

// The area of a perspective camera is the whole room: a frustum cuts no rectangle out of it.
ViewArea WholeRoom()
{
    if (Run_Room == nullptr)
        return {0.0f, 0.0f, 1.0f, 1.0f, 0.0f};
    return {0.0f, 0.0f, static_cast<float>(Run_Room->r_width), static_cast<float>(Run_Room->r_height), 0.0f};
}

ViewArea AreaAbout(const kvMatrix& viewToRoom, float w, float h, float angle)
{
    return {viewToRoom._41 - w * 0.5f, viewToRoom._42 - h * 0.5f, w, h, angle};
}

// Within these bounds sqrtf(x*x) == x exactly, so the root can be skipped.
inline bool IsRootOfItsSquare(float length) { return length > 1e-15f && length < 1e15f; }

// Whether the view is not rotated, as most are: clip x changes room x alone, and clip y room y alone. The lengths can
// then be read off, and the angle is 0.
inline bool IsUpright(const Row& across, const Row& down)
{
    const float others = fabsf(across.at[1]) + fabsf(across.at[2]) + fabsf(down.at[0]) + fabsf(down.at[2]);
    return others == 0.0f && IsRootOfItsSquare(across.at[0]) && IsRootOfItsSquare(down.at[1]);
}

// The rectangle of the room that the clip square shows, centred on the eye.
ViewArea MeasureArea(const kvMatrix& clipToRoom, const kvMatrix& viewToRoom)
{
    const Row across = Across<1, 0>(clipToRoom);
    const Row down = Across<0, 1>(clipToRoom);
    if (IsUpright(across, down))
        return AreaAbout(viewToRoom, across.at[0], down.at[1], 0.0f);
    const float w = LengthOrZero(across);
    const float h = LengthOrZero(down);
    return AreaAbout(viewToRoom, w, h, AngleOf(down, h));
}

void Publish(const ViewArea& area)
{
    g_ViewAreaX = area.x;
    g_ViewAreaY = area.y;
    g_ViewAreaW = area.w;
    g_ViewAreaH = area.h;
    g_ViewAreaA = area.angle;
    SetViewExtents(area.x, area.y, area.w, area.h, area.angle);
}

} // namespace

void CCamera::ApplyMatrices()
{
    BuildViewIfDirty();
    Publish(IsOrthoProj() ? MeasureArea(m_invViewProjMat, m_invViewMat) : WholeRoom());

    kvMatrix flipped;
    kvMatrix& projection = ProjectionForTarget(m_projMat, flipped);
    Graphics::SetMatrix(eM_View, m_viewMat.m);
    Graphics::SetMatrix(eM_Projection, projection.m);
}
