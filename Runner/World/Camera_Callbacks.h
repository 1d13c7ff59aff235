#pragma once
// A camera's three callbacks by name, for what the host says about them.

#include "Files/Graphics/Camera.h"

#include <cstddef>

namespace Runner
{
struct CameraCallback
{
    const char* name; // as in camera_set_begin_script
    RValue CCamera::*value;
};

constexpr CameraCallback CAMERA_CALLBACKS[] = {
    {"begin", &CCamera::m_beginScript}, {"update", &CCamera::m_updateScript}, {"end", &CCamera::m_endScript}};

// The number under which the module performs and saves the callback; -1 is no script. False, and -1, for a function and
// for a value that is no number. Reports nothing.
bool ScriptNumberOf(const RValue& callback, int& number);
} // namespace Runner
