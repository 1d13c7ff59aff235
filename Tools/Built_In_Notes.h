#pragma once
// What Docs/Built_Ins.md says of each built-in beyond its signature in Files/Graphics/Function_Arguments.h: what it
// does, what it answers where the signature does not tell, and a line of a game that calls it. Tests run these lines.

#include "Files/Graphics/Function_Arguments.h"

#include <string_view>

struct BuiltInNote
{
    const char* name;
    const char* does;
    const char* example;
};

// In the order of the function table.
inline constexpr BuiltInNote BUILT_IN_NOTES[] = {
    {"camera_create",
     "Makes a camera at 0, 0 whose view has no size yet: give it one with `camera_set_view_size`, or both matrices. It "
     "stays until a script destroys it.",
     "local map = camera_create()"},
    {"camera_create_view",
     "Makes a camera that shows a rectangle of the room, with its matrices built at once. It stays until a script "
     "destroys it.",
     "local close_up = camera_create_view(0, 0, 320, 180, 0, player, 4, 4, 100, 50)"},
    {"camera_destroy",
     "Destroys a camera. A view that showed it shows nothing. Its number goes to a camera that is made later.",
     "camera_destroy(camera)"},
    {"camera_apply",
     "What is drawn after it in this view goes through this camera. It neither runs callbacks nor follows the target, "
     "and changes neither the port nor which camera is active. A view whose position, size or angle was set has its "
     "matrices built first. The next view starts with its own camera again.",
     "camera_apply(camera)"},
    {"camera_get_active", "Which camera draws now.", "local drawing = camera_get_active()"},
    {"camera_get_default",
     "Which camera draws a room that has no visible view. At first it is one that the Runner makes and fits to the "
     "room.",
     "local overview = camera_get_default()"},
    {"camera_set_default", "Chooses the camera that draws a room without a visible view.",
     "camera_set_default(camera)"},
    {"camera_set_view_mat",
     "Replaces the matrix that leads from the room to the eye. It stays until something builds the view anew: a step "
     "that follows a target, or a position, size or angle that is set.",
     "camera_set_view_mat(camera, matrix_look_at(320, 180, -500, 320, 180, 0, 0, 1, 0))"},
    {"camera_set_proj_mat",
     "Replaces the matrix that leads from the eye to the picture. A projection with perspective makes the camera one "
     "of perspective: later builds keep that.",
     "camera_set_proj_mat(camera, matrix_perspective_fov(60, 16 / 9, 1, 32000))"},
    {"camera_set_update_script", "Gives a callback that runs once a frame in place of the step after the target.",
     "camera_set_update_script(camera, function() camera_set_view_pos(camera_current(), 0, frame_number() % 100) end)"},
    {"camera_set_begin_script", "Gives a callback that runs before the camera's update, in each frame that it draws.",
     "camera_set_begin_script(camera, function() camera_set_view_angle(camera_current(), irandom(2)) end)"},
    {"camera_set_end_script", "Gives a callback that runs after the camera's view was drawn.",
     "camera_set_end_script(camera, -1)"},
    {"camera_set_view_pos",
     "Puts the top left corner of the view's rectangle. The room does not hold it back; following does, with the next "
     "step.",
     "camera_set_view_pos(camera, 100, 50)"},
    {"camera_set_view_size",
     "Sets the size of the view's rectangle, from its top left corner. Half the size is a zoom of 2.",
     "camera_set_view_size(camera, 320, 180)"},
    {"camera_set_view_speed", "Limits how far the view may move in one step after its target. 0 holds it still.",
     "camera_set_view_speed(camera, 4, -1)"},
    {"camera_set_view_border",
     "Sets the dead zone: the target moves freely while it keeps this far from the view's edges. Twice the border as "
     "large as the view centres the target.",
     "camera_set_view_border(camera, 200, 100)"},
    {"camera_set_view_angle",
     "Turns the view about its middle. A positive angle turns the picture counter-clockwise on the screen.",
     "camera_set_view_angle(camera, 15)"},
    {"camera_set_view_target",
     "Chooses what the camera follows: an instance, or the first instance of an object or its children. One that does "
     "not exist is no error; the view stays where it is.",
     "camera_set_view_target(camera, player)"},
    {"camera_get_view_mat", "The matrix that leads from the room to the eye, built first where that is due.",
     "local eye = camera_get_view_mat(camera)"},
    {"camera_get_proj_mat",
     "The matrix that leads from the eye to the picture, built first where that is due. While a surface is drawn into, "
     "it is flipped as that surface needs it: entries 2, 6, 10 and 14 are negated.",
     "local lens = camera_get_proj_mat(camera)"},
    {"camera_get_update_script", "The callback that runs in place of following.",
     "local update = camera_get_update_script(camera)"},
    {"camera_get_begin_script", "The callback that runs before the camera's update.",
     "local begin = camera_get_begin_script(camera)"},
    {"camera_get_end_script", "The callback that runs after the camera's view was drawn.",
     "local finish = camera_get_end_script(camera)"},
    {"camera_get_view_x", "Left edge of the view's rectangle.", "local left = camera_get_view_x(camera)"},
    {"camera_get_view_y", "Top edge of the view's rectangle.", "local top = camera_get_view_y(camera)"},
    {"camera_get_view_width", "Width of the view's rectangle.",
     "local right = camera_get_view_x(camera) + camera_get_view_width(camera)"},
    {"camera_get_view_height", "Height of the view's rectangle.",
     "local bottom = camera_get_view_y(camera) + camera_get_view_height(camera)"},
    {"camera_get_view_speed_x", "The limit of a step sideways.", "local speed = camera_get_view_speed_x(camera)"},
    {"camera_get_view_speed_y", "The limit of a step up or down.", "local speed = camera_get_view_speed_y(camera)"},
    {"camera_get_view_border_x", "The border at the left and the right edge.",
     "local border = camera_get_view_border_x(camera)"},
    {"camera_get_view_border_y", "The border at the top and the bottom edge.",
     "local border = camera_get_view_border_y(camera)"},
    {"camera_get_view_angle", "The angle that was set.", "local angle = camera_get_view_angle(camera)"},
    {"camera_get_view_target", "What was set as target, whether it exists or not.",
     "local followed = camera_get_view_target(camera)"},
    {"view_get_camera", "Which camera a view shows, -1 for none.", "local camera = view_get_camera(0)"},
    {"view_get_visible", "Whether a view is drawn: 1 or 0.", "local is_shown = view_get_visible(0) == 1"},
    {"view_get_xport", "Left edge of the rectangle of the screen that shows the view.",
     "local left = view_get_xport(0)"},
    {"view_get_yport", "Top edge of the rectangle of the screen that shows the view.", "local top = view_get_yport(0)"},
    {"view_get_wport", "Width of the rectangle of the screen that shows the view.",
     "local zoom = view_get_wport(0) / camera_get_view_width(camera)"},
    {"view_get_hport", "Height of the rectangle of the screen that shows the view.",
     "local bottom = view_get_yport(0) + view_get_hport(0)"},
    {"view_get_surface_id", "The surface that a view draws into, -1 for the screen.",
     "local picture = view_get_surface_id(1)"},
    {"view_set_camera", "Gives a view another camera; -1 for none, and then it shows nothing.",
     "view_set_camera(1, camera)"},
    {"view_set_visible", "Shows or hides a view.", "view_set_visible(1, true)"},
    {"view_set_xport", "Moves the port sideways.", "view_set_xport(1, screen_width() / 2)"},
    {"view_set_yport", "Moves the port up or down.", "view_set_yport(1, 0)"},
    {"view_set_wport", "Sets the port's width. What the camera shows is stretched to it.",
     "view_set_wport(1, screen_width() / 2)"},
    {"view_set_hport", "Sets the port's height. What the camera shows is stretched to it.",
     "view_set_hport(1, screen_height())"},
    {"view_set_surface_id",
     "Lets a view draw into a surface, over its whole size, instead of on the screen. One that does not exist shows "
     "nothing.",
     "view_set_surface_id(1, surface_create(320, 180))"},
};

// What an argument is before anything has set it, and what camera_create_view takes where it is left out.
struct ArgumentDefault
{
    const char* name;
    const char* atFirst; // as a property of a camera or a view
    const char* leftOut; // by camera_create_view; empty: it cannot be left out
};

inline constexpr ArgumentDefault ARGUMENT_DEFAULTS[] = {
    {"matrix", "built from the view; the identity after `camera_create`", ""},
    {"script", "-1", ""},
    {"target", "-1", "-1"},
    {"angle", "0", "0"},
    {"x", "0", ""},
    {"y", "0", ""},
    {"w", "the port's width; 0 after `camera_create`", ""},
    {"h", "the port's height; 0 after `camera_create`", ""},
    {"speed_x", "-1; 0 after `camera_create`", "-1"},
    {"speed_y", "-1; 0 after `camera_create`", "-1"},
    {"border_x", "0", "0"},
    {"border_y", "0", "0"},
    {"visible", "true for the views that `room_add` lists, false for the others", ""},
    {"xport", "0", ""},
    {"yport", "0", ""},
    {"wport", "the screen's width; 0 for a view that `room_add` does not list", ""},
    {"hport", "the screen's height; 0 for a view that `room_add` does not list", ""},
    {"surface", "-1", ""},
};

namespace Built_In_Notes
{
constexpr bool CoverTheFunctionTable()
{
    constexpr size_t COUNT = sizeof(BUILT_IN_NOTES) / sizeof(BUILT_IN_NOTES[0]);
    if (sizeof(KvArguments::SIGNATURES) / sizeof(KvSignature) != COUNT)
        return false;
    for (size_t row = 0; row < COUNT; ++row)
        if (std::string_view(KvArguments::SIGNATURES[row].name) != BUILT_IN_NOTES[row].name)
            return false;
    return true;
}
static_assert(CoverTheFunctionTable(), "a note for each built-in, in the order of the function table");
} // namespace Built_In_Notes
