// The one list of built-ins: what scripts can call, under which name, with how many arguments.
#include "Files/Graphics/Camera_Manager.h"

#include "Files/Code/Function.h"
#include "Files/Graphics/Function_Arguments.h"
#include "Files/Graphics/Functions.h"

namespace
{

struct Builtin
{
    const char* name;
    TFunction handler;
    int argc; // what the script language shows; the handlers check for themselves
};

constexpr Builtin BUILTINS[] = {
    {"camera_create", F_CameraCreate, 0},
    {"camera_create_view", F_CameraCreateView, 4},
    {"camera_destroy", F_CameraDestroy, 1},
    {"camera_apply", F_CameraApply, 1},
    {"camera_get_active", F_CameraGetActive, 0},
    {"camera_get_default", F_CameraGetDefault, 0},
    {"camera_set_default", F_CameraSetDefault, 1},
    {"camera_set_view_mat", F_CameraSetViewMat, 2},
    {"camera_set_proj_mat", F_CameraSetProjMat, 2},
    {"camera_set_update_script", F_CameraSetUpdateScript, 2},
    {"camera_set_begin_script", F_CameraSetBeginScript, 2},
    {"camera_set_end_script", F_CameraSetEndScript, 2},
    {"camera_set_view_pos", F_CameraSetViewPos, 3},
    {"camera_set_view_size", F_CameraSetViewSize, 3},
    {"camera_set_view_speed", F_CameraSetViewSpeed, 3},
    {"camera_set_view_border", F_CameraSetViewBorder, 3},
    {"camera_set_view_angle", F_CameraSetViewAngle, 2},
    {"camera_set_view_target", F_CameraSetViewTarget, 2},
    {"camera_get_view_mat", F_CameraGetViewMat, 1},
    {"camera_get_proj_mat", F_CameraGetProjMat, 1},
    {"camera_get_update_script", F_CameraGetUpdateScript, 1},
    {"camera_get_begin_script", F_CameraGetBeginScript, 1},
    {"camera_get_end_script", F_CameraGetEndScript, 1},
    {"camera_get_view_x", F_CameraGetViewX, 1},
    {"camera_get_view_y", F_CameraGetViewY, 1},
    {"camera_get_view_width", F_CameraGetViewWidth, 1},
    {"camera_get_view_height", F_CameraGetViewHeight, 1},
    {"camera_get_view_speed_x", F_CameraGetViewSpeedX, 1},
    {"camera_get_view_speed_y", F_CameraGetViewSpeedY, 1},
    {"camera_get_view_border_x", F_CameraGetViewBorderX, 1},
    {"camera_get_view_border_y", F_CameraGetViewBorderY, 1},
    {"camera_get_view_angle", F_CameraGetViewAngle, 1},
    {"camera_get_view_target", F_CameraGetViewTarget, 1},
    {"view_get_camera", F_ViewGetCamera, 1},
    {"view_get_visible", F_ViewGetVisible, 1},
    {"view_get_xport", F_ViewGetXport, 1},
    {"view_get_yport", F_ViewGetYport, 1},
    {"view_get_wport", F_ViewGetWport, 1},
    {"view_get_hport", F_ViewGetHport, 1},
    {"view_get_surface_id", F_ViewGetSurfaceId, 1},
    {"view_set_camera", F_ViewSetCamera, 2},
    {"view_set_visible", F_ViewSetVisible, 2},
    {"view_set_xport", F_ViewSetXport, 2},
    {"view_set_yport", F_ViewSetYport, 2},
    {"view_set_wport", F_ViewSetWport, 2},
    {"view_set_hport", F_ViewSetHport, 2},
    {"view_set_surface_id", F_ViewSetSurfaceId, 2},
};

static_assert(sizeof(BUILTINS) / sizeof(BUILTINS[0]) == 47, "F_CameraSetView stays out on purpose");

constexpr bool AreEqual(const char* a, const char* b)
{
    for (; *a == *b; ++a, ++b)
        if (*a == '\0')
            return true;
    return false;
}

constexpr bool MatchesItsArguments()
{
    constexpr int COUNT = sizeof(BUILTINS) / sizeof(BUILTINS[0]);
    if (sizeof(KvArguments::SIGNATURES) / sizeof(KvSignature) != COUNT)
        return false;
    for (int row = 0; row < COUNT; ++row)
    {
        const KvSignature& signature = KvArguments::SIGNATURES[row];
        if (!AreEqual(signature.name, BUILTINS[row].name) || signature.least != BUILTINS[row].argc)
            return false;
    }
    return true;
}

static_assert(MatchesItsArguments(), "Function_Arguments.h has the same functions, in the same order");

} // namespace

void CCameraManager::SetupLumFunctions()
{
    for (const Builtin& builtin : BUILTINS)
        Function_Add(builtin.name, builtin.handler, builtin.argc, true);
}
