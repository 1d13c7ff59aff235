// Files/Graphics_API: the matrix slots and the view area.

#include "Host_Check/Check.h"

#include <cstring>
#include <limits>

namespace HostCheck
{
namespace
{

constexpr char HEADER[] = "Files/Graphics_API/Graphics_API.h";
constexpr eMatrix SLOTS[] = {eM_View, eM_Projection, eM_World};

void Fill(float (&matrix)[16], float first)
{
    for (int i = 0; i < 16; ++i)
        matrix[i] = first + static_cast<float>(i);
}

// Each slot gets a matrix of its own, which is overwritten at once; then all are read.
void MatricesAreCopied(Trial& trial)
{
    for (const eMatrix slot : SLOTS)
    {
        float matrix[16];
        Fill(matrix, 100.0f * static_cast<float>(slot));
        Graphics::SetMatrix(slot, matrix);
        Fill(matrix, -1.0f);
    }
    for (const eMatrix slot : SLOTS)
    {
        float expected[16], got[16] = {};
        Fill(expected, 100.0f * static_cast<float>(slot));
        if (!trial.Expect(trial.hooks.readMatrix(slot, got), "the hook readMatrix could not read slot %d",
                          static_cast<int>(slot)))
            return;
        for (int i = 0; i < 16; ++i)
            trial.Expect(got[i] == expected[i], "float %d of slot %d is %g, not %g", i, static_cast<int>(slot),
                         static_cast<double>(got[i]), static_cast<double>(expected[i]));
    }
    float identity[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    for (const eMatrix slot : SLOTS)
        Graphics::SetMatrix(slot, identity);
}

// The module writes both, first the globals, then the call.
void TheViewAreaStaysReadable(Trial& trial)
{
    g_ViewAreaX = 10.0f;
    g_ViewAreaY = 20.0f;
    g_ViewAreaW = 640.0f;
    g_ViewAreaH = 480.0f;
    g_ViewAreaA = 30.0f;
    SetViewExtents(10.0f, 20.0f, 640.0f, 480.0f, 30.0f);
    trial.Expect(g_ViewAreaX == 10.0f && g_ViewAreaY == 20.0f && g_ViewAreaW == 640.0f && g_ViewAreaH == 480.0f &&
                     g_ViewAreaA == 30.0f,
                 "after SetViewExtents(10, 20, 640, 480, 30) the globals are %g, %g, %g, %g, %g",
                 static_cast<double>(g_ViewAreaX), static_cast<double>(g_ViewAreaY), static_cast<double>(g_ViewAreaW),
                 static_cast<double>(g_ViewAreaH), static_cast<double>(g_ViewAreaA));
}

void ViewAreaMayBeNoNumber(Trial& trial)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    g_ViewAreaX = g_ViewAreaY = g_ViewAreaW = g_ViewAreaH = g_ViewAreaA = nan;
    SetViewExtents(nan, nan, nan, nan, nan);
    trial.Expect(g_ViewAreaA != g_ViewAreaA, "SetViewExtents has replaced an angle that is no number by %g",
                 static_cast<double>(g_ViewAreaA));
    g_ViewAreaX = g_ViewAreaY = g_ViewAreaW = g_ViewAreaH = g_ViewAreaA = 0.0f;
    SetViewExtents(0.0f, 0.0f, 0.0f, 0.0f, 0.0f);
}

void NoTargetIsMinusOne(Trial& trial)
{
    trial.Expect(g_RenderTargetActive == -1, "g_RenderTargetActive is %d although nothing draws to a render target",
                 g_RenderTargetActive);
}

constexpr Check CHECKS[] = {
    {"graphics.matrices_copied", Level::Follow, HEADER, "sixteen floats, copied; layout of Platform/Matrix.h",
     Need_Matrix, MatricesAreCopied},
    {"graphics.view_area", Level::Follow, HEADER, "the same, for everyone to read", Need_Nothing,
     TheViewAreaStaysReadable},
    {"graphics.view_area_nan", Level::Follow, HEADER, "Not a number where a camera has no extent.", Need_Nothing,
     ViewAreaMayBeNoNumber},
    {"graphics.no_target", Level::Follow, HEADER, "-1 while drawing to the screen", Need_Nothing, NoTargetIsMinusOne},
};

} // namespace

Checks GraphicsChecks() { return Table(CHECKS); }

} // namespace HostCheck
