// Making a camera's view current, and running its callbacks.
#include "Platform/Strict_Float.h"

#include "Files/Graphics/Camera.h"

#include "Files/Code/Function.h"
#include "Files/Graphics/Camera_Manager.h"
#include "Files/Graphics/Render_Target.h"
#include "Files/Graphics/Trigonometry.h"
#include "Files/Graphics/Values.h"
#include "Files/Graphics_API/Graphics_API.h"
#include "Files/Javascript/Callable.h"
#include "Files/Room/Room.h"
#include "Files/Run/Run_Globals.h"
#include "Files/Script/Script.h"

#include <cmath>

namespace
{

constexpr float TWO_PI = 6.2831855f;

struct ViewArea
{
    float x, y, w, h, angle;
};

// A row of a matrix. Of four numbers, so that a processor with four lanes takes one at a time; the last is not used.
struct Row
{
    float at[4];
};

// From where (-X, -Y) of the clip square stands in the room to where (X, Y) does: each end is the row vector
// (x, y, 0, 1) times the matrix, with every product taken, so that a NaN anywhere shows.
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

// Degrees from room down to the view's own vertical axis; not a number for a view without height.
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

// What a perspective camera sees has no rectangle: the whole room stands for it.
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

// Through the rounding, the root of a square that neither overflows nor underflows is the length itself.
inline bool IsRootOfItsSquare(float length) { return length > 1e-15f && length < 1e15f; }

// As most views are: right is right and down is down, so that the lengths stand there and the angle is none.
inline bool IsUpright(const Row& across, const Row& down)
{
    const float turn = fabsf(across.at[1]) + fabsf(across.at[2]) + fabsf(down.at[0]) + fabsf(down.at[2]);
    return turn == 0.0f && IsRootOfItsSquare(across.at[0]) && IsRootOfItsSquare(down.at[1]);
}

// The room rectangle that fills the clip square, about the camera's place.
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

// True when the script counts as run: a camera between rooms has nobody to run it, and yet no target is followed.
bool PerformScript(int index, RValue& result)
{
    if (index == NO_SCRIPT)
        return false;
    CInstance* const instance = g_fIsJSProject ? g_pGlobal : g_CM.m_pScriptInstance;
    if (g_fIsJSProject || instance != nullptr)
        Script_Perform(index, instance, instance, 0, &result, nullptr);
    return true;
}

// Runs a copy: the callback may replace the field that it came from.
bool RunCallback(RValue callback)
{
    RValue result = MakeEmpty(VALUE_UNSET);
    bool ran = true;
    if (KvKind(callback) == VALUE_OBJECT)
        Call_RValue(g_CM.m_pScriptInstance, &result, &callback, 0, nullptr);
    else
        ran = PerformScript(KvGetInt32(&callback, 0), result);
    ReleaseValue(result);
    return ran;
}

} // namespace

void CCamera::ApplyMatrices()
{
    BuildViewIfDirty();
    Publish(IsOrthoProj() ? MeasureArea(m_invViewProjMat, m_invViewMat) : WholeRoom());

    kvMatrix turned;
    kvMatrix& projection = ProjectionForTarget(m_projMat, turned);
    Graphics::SetMatrix(eM_View, m_viewMat.m);
    Graphics::SetMatrix(eM_Projection, projection.m);
}

bool CCamera::ExecuteScript(RValue* script)
{
    if (script == nullptr || IsNoScript(*script))
        return false;
    const int caller = Current_Object;
    Current_Object = m_ID;
    const bool ran = RunCallback(*script);
    Current_Object = caller;
    return ran;
}

void CCamera::Begin() { ExecuteScript(&m_beginScript); }

void CCamera::End() { ExecuteScript(&m_endScript); }
