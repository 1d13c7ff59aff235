// Making a camera's view current, and running its callbacks.
#include "Platform/Strict_Float.h"

#include "Files/Graphics/Camera.h"

#include "Files/Code/Function.h"
#include "Files/Graphics/Camera_Manager.h"
#include "Files/Graphics/Render_Target.h"
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
constexpr int NO_SCRIPT = -1;

struct ViewArea
{
    float x, y, w, h, angle;
};

// One coordinate of the row vector (x, y, 0, 1) times a matrix, from a column of it; with every product taken: a NaN
// anywhere in the column shows.
inline float MapCoordinate(float x, float y, float m1, float m2, float m3, float m4)
{
    constexpr float z = 0.0f;
    return x * m1 + y * m2 + z * m3 + m4;
}

// From where (-x, -y) of the clip square stands in the room to where (x, y) does.
template <int X, int Y> kvVector3 Across(const kvMatrix& m)
{
    constexpr float x = X, y = Y, oppositeX = -X, oppositeY = -Y; // of integers: no minus zero
    const auto span = [](float m1, float m2, float m3, float m4)
    { return MapCoordinate(x, y, m1, m2, m3, m4) - MapCoordinate(oppositeX, oppositeY, m1, m2, m3, m4); };
    return {span(m._11, m._21, m._31, m._41), span(m._12, m._22, m._32, m._42), span(m._13, m._23, m._33, m._43)};
}

float LengthOrZero(const kvVector3& v)
{
    const float square = v.x * v.x + v.y * v.y + v.z * v.z;
    return square > 0.0f ? sqrtf(square) : 0.0f;
}

// Degrees from room down to the view's own vertical axis; not a number for a view without height.
float AngleOf(const kvVector3& vertical, float length)
{
    float cosine = vertical.y / length;
    if (cosine <= -1.0f)
        cosine = -1.0f;
    else if (cosine >= 1.0f)
        cosine = 1.0f;
    float angle = acosf(cosine);
    if (vertical.x / length < 0.0f)
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

// The room rectangle that fills the clip square, about the camera's place.
ViewArea MeasureArea(const kvMatrix& clipToRoom, const kvMatrix& viewToRoom)
{
    const kvVector3 across = Across<1, 0>(clipToRoom);
    const kvVector3 down = Across<0, 1>(clipToRoom);
    const float w = LengthOrZero(across);
    const float h = LengthOrZero(down);
    return {viewToRoom._41 - w * 0.5f, viewToRoom._42 - h * 0.5f, w, h, AngleOf(down, h)};
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

    kvMatrix projection = ProjectionForTarget(m_projMat);
    Graphics::SetMatrix(eM_View, m_viewMat.m);
    Graphics::SetMatrix(eM_Projection, projection.m);
}

bool CCamera::ExecuteScript(RValue* script)
{
    if (script == nullptr)
        return false;
    const int caller = Current_Object;
    Current_Object = m_ID;
    const bool ran = RunCallback(*script);
    Current_Object = caller;
    return ran;
}

void CCamera::Begin() { ExecuteScript(&m_beginScript); }

void CCamera::End() { ExecuteScript(&m_endScript); }
