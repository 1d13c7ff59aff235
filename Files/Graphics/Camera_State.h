#pragma once
// The saved record of a camera: one list of fields, by which it is written, read and documented.

#include "Files/Graphics/Camera.h"

enum eStateItem
{
    eState_S32,
    eState_F32,
    eState_Bool,   // travels as an S32, 0 or 1
    eState_Script, // travels as an S32: a script index, -1 for none and for callable objects
};

// A run of items of one field.
struct CameraStateField
{
    const char* name;
    eStateItem type;
    int count;
    size_t offset; // of the first in CCamera
};

constexpr CameraStateField CAMERA_STATE[] = {
    {"m_ID", eState_S32, 1, offsetof(CCamera, m_ID)},
    {"m_projMat", eState_F32, 16, offsetof(CCamera, m_projMat)},
    {"m_viewMat", eState_F32, 16, offsetof(CCamera, m_viewMat)},
    {"m_viewProjMat", eState_F32, 16, offsetof(CCamera, m_viewProjMat)},
    {"m_invProjMat", eState_F32, 16, offsetof(CCamera, m_invProjMat)},
    {"m_invViewMat", eState_F32, 16, offsetof(CCamera, m_invViewMat)},
    {"m_invViewProjMat", eState_F32, 16, offsetof(CCamera, m_invViewProjMat)},
    {"m_viewX", eState_F32, 1, offsetof(CCamera, m_viewX)},
    {"m_viewY", eState_F32, 1, offsetof(CCamera, m_viewY)},
    {"m_viewWidth", eState_F32, 1, offsetof(CCamera, m_viewWidth)},
    {"m_viewHeight", eState_F32, 1, offsetof(CCamera, m_viewHeight)},
    {"m_viewSpeedX", eState_F32, 1, offsetof(CCamera, m_viewSpeedX)},
    {"m_viewSpeedY", eState_F32, 1, offsetof(CCamera, m_viewSpeedY)},
    {"m_viewBorderX", eState_F32, 1, offsetof(CCamera, m_viewBorderX)},
    {"m_viewBorderY", eState_F32, 1, offsetof(CCamera, m_viewBorderY)},
    {"m_viewAngle", eState_F32, 1, offsetof(CCamera, m_viewAngle)},
    {"m_targetInstance", eState_S32, 1, offsetof(CCamera, m_targetInstance)},
    {"m_beginScript", eState_Script, 1, offsetof(CCamera, m_beginScript)},
    {"m_endScript", eState_Script, 1, offsetof(CCamera, m_endScript)},
    {"m_updateScript", eState_Script, 1, offsetof(CCamera, m_updateScript)},
    {"m_is2D", eState_Bool, 1, offsetof(CCamera, m_is2D)},
    {"m_isViewDirty", eState_Bool, 1, offsetof(CCamera, m_isViewDirty)},
};
