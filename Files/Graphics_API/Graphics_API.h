#pragma once
// The graphics layer's matrix slots and what it knows of the view being drawn.

enum eMatrix
{
    eM_View,
    eM_Projection,
    eM_World,
};

class Graphics
{
public:
    static void SetMatrix(eMatrix slot, float* matrix); // sixteen floats, copied; layout of Platform/Matrix.h
};

// The visible part of the room: left, top, width, height in room units, and its rotation in degrees [0, 360].
// Not a number where a camera has no extent.
void SetViewExtents(float x, float y, float w, float h, float a);
extern float g_ViewAreaX, g_ViewAreaY, g_ViewAreaW, g_ViewAreaH, g_ViewAreaA; // the same, for everyone to read

extern int g_RenderTargetActive; // -1 while drawing to the screen
