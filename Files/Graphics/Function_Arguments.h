#pragma once
// What each built-in takes and gives: names, kinds and units of its arguments, for error texts, reference pages and
// editors. The module's code reads none of it, so it adds nothing to the archive; Function_Table.cpp asserts that its
// own table has the same names and counts.
//
// Units: room units are the room's coordinates, x to the right and y downwards; screen units are those of the ports.

#include <cstddef>

enum eArgument
{
    eArgument_Number,   // a real
    eArgument_Flag,     // true or false; as a number, above one half is true
    eArgument_Camera,   // an identifier; one that names no camera is no error
    eArgument_View,     // a number, 0 to 7
    eArgument_Instance, // an identifier of an instance or an object, -1 for none
    eArgument_Surface,  // a surface's number, -1 for the screen
    eArgument_Matrix,   // an array of 16 numbers, row by row
    eArgument_Script,   // a callable, a script's number, or -1 for none
};

struct KvArgument
{
    const char* name;
    eArgument kind;
    const char* meaning; // and unit
};

struct KvSignature
{
    const char* name;
    int least; // arguments that a call must have; what comes after them may be left out from the end
    int count; // entries of arguments
    const KvArgument* arguments;
    KvArgument result; // a name of "" stands for none
};

namespace KvArguments
{
inline constexpr KvArgument CAMERA = {"camera", eArgument_Camera, "the camera"};
inline constexpr KvArgument VIEW = {"view", eArgument_View, "the view"};
inline constexpr KvArgument MATRIX = {"matrix", eArgument_Matrix, "16 numbers, row by row"};
inline constexpr KvArgument SCRIPT = {"script", eArgument_Script, "what to call, -1 for nothing"};
inline constexpr KvArgument TARGET = {"target", eArgument_Instance, "what the camera follows, -1 for nothing"};
inline constexpr KvArgument ANGLE = {"angle", eArgument_Number, "rotation of the view, degrees"};
inline constexpr KvArgument X = {"x", eArgument_Number, "left edge of the view, room units"};
inline constexpr KvArgument Y = {"y", eArgument_Number, "top edge of the view, room units"};
inline constexpr KvArgument W = {"w", eArgument_Number, "width of the view, room units"};
inline constexpr KvArgument H = {"h", eArgument_Number, "height of the view, room units"};
inline constexpr KvArgument SPEED_X = {"speed_x", eArgument_Number,
                                       "largest step sideways, room units per update; negative for no limit"};
inline constexpr KvArgument SPEED_Y = {"speed_y", eArgument_Number,
                                       "largest step up or down, room units per update; negative for no limit"};
inline constexpr KvArgument BORDER_X = {
    "border_x", eArgument_Number, "dead zone: the target keeps this far from the left and right edge, room units"};
inline constexpr KvArgument BORDER_Y = {
    "border_y", eArgument_Number, "dead zone: the target keeps this far from the top and bottom edge, room units"};
inline constexpr KvArgument VISIBLE = {"visible", eArgument_Flag, "whether the view is drawn"};
inline constexpr KvArgument XPORT = {"xport", eArgument_Number, "left edge of the view's port, screen units"};
inline constexpr KvArgument YPORT = {"yport", eArgument_Number, "top edge of the view's port, screen units"};
inline constexpr KvArgument WPORT = {"wport", eArgument_Number, "width of the view's port, screen units"};
inline constexpr KvArgument HPORT = {"hport", eArgument_Number, "height of the view's port, screen units"};
inline constexpr KvArgument SURFACE = {"surface", eArgument_Surface, "what the view draws into, -1 for the screen"};
inline constexpr KvArgument NOTHING = {"", eArgument_Number, ""};

inline constexpr KvArgument OF_CAMERA[] = {CAMERA};
inline constexpr KvArgument OF_VIEW[] = {VIEW};
inline constexpr KvArgument OF_NEW_VIEW[] = {X, Y, W, H, ANGLE, TARGET, SPEED_X, SPEED_Y, BORDER_X, BORDER_Y};
inline constexpr KvArgument POSITION[] = {CAMERA, X, Y};
inline constexpr KvArgument SIZE[] = {CAMERA, W, H};
inline constexpr KvArgument SPEED[] = {CAMERA, SPEED_X, SPEED_Y};
inline constexpr KvArgument BORDER[] = {CAMERA, BORDER_X, BORDER_Y};

// The second argument of a setter: its camera or its view, and the value.
template <const KvArgument& owner, const KvArgument& value> inline constexpr KvArgument SETTING[] = {owner, value};

template <size_t COUNT>
constexpr KvSignature Of(const char* name, const KvArgument (&arguments)[COUNT], KvArgument result, int optional = 0)
{
    return {name, static_cast<int>(COUNT) - optional, static_cast<int>(COUNT), arguments, result};
}

inline constexpr KvSignature SIGNATURES[] = {
    {"camera_create", 0, 0, nullptr, CAMERA},
    Of("camera_create_view", OF_NEW_VIEW, CAMERA, 6),
    Of("camera_destroy", OF_CAMERA, NOTHING),
    Of("camera_apply", OF_CAMERA, NOTHING),
    {"camera_get_active", 0, 0, nullptr, CAMERA},
    {"camera_get_default", 0, 0, nullptr, CAMERA},
    Of("camera_set_default", OF_CAMERA, NOTHING),
    Of("camera_set_view_mat", SETTING<CAMERA, MATRIX>, NOTHING),
    Of("camera_set_proj_mat", SETTING<CAMERA, MATRIX>, NOTHING),
    Of("camera_set_update_script", SETTING<CAMERA, SCRIPT>, NOTHING),
    Of("camera_set_begin_script", SETTING<CAMERA, SCRIPT>, NOTHING),
    Of("camera_set_end_script", SETTING<CAMERA, SCRIPT>, NOTHING),
    Of("camera_set_view_pos", POSITION, NOTHING),
    Of("camera_set_view_size", SIZE, NOTHING),
    Of("camera_set_view_speed", SPEED, NOTHING),
    Of("camera_set_view_border", BORDER, NOTHING),
    Of("camera_set_view_angle", SETTING<CAMERA, ANGLE>, NOTHING),
    Of("camera_set_view_target", SETTING<CAMERA, TARGET>, NOTHING),
    Of("camera_get_view_mat", OF_CAMERA, MATRIX),
    Of("camera_get_proj_mat", OF_CAMERA, MATRIX),
    Of("camera_get_update_script", OF_CAMERA, SCRIPT),
    Of("camera_get_begin_script", OF_CAMERA, SCRIPT),
    Of("camera_get_end_script", OF_CAMERA, SCRIPT),
    Of("camera_get_view_x", OF_CAMERA, X),
    Of("camera_get_view_y", OF_CAMERA, Y),
    Of("camera_get_view_width", OF_CAMERA, W),
    Of("camera_get_view_height", OF_CAMERA, H),
    Of("camera_get_view_speed_x", OF_CAMERA, SPEED_X),
    Of("camera_get_view_speed_y", OF_CAMERA, SPEED_Y),
    Of("camera_get_view_border_x", OF_CAMERA, BORDER_X),
    Of("camera_get_view_border_y", OF_CAMERA, BORDER_Y),
    Of("camera_get_view_angle", OF_CAMERA, ANGLE),
    Of("camera_get_view_target", OF_CAMERA, TARGET),
    Of("view_get_camera", OF_VIEW, CAMERA),
    Of("view_get_visible", OF_VIEW, VISIBLE),
    Of("view_get_xport", OF_VIEW, XPORT),
    Of("view_get_yport", OF_VIEW, YPORT),
    Of("view_get_wport", OF_VIEW, WPORT),
    Of("view_get_hport", OF_VIEW, HPORT),
    Of("view_get_surface_id", OF_VIEW, SURFACE),
    Of("view_set_camera", SETTING<VIEW, CAMERA>, NOTHING),
    Of("view_set_visible", SETTING<VIEW, VISIBLE>, NOTHING),
    Of("view_set_xport", SETTING<VIEW, XPORT>, NOTHING),
    Of("view_set_yport", SETTING<VIEW, YPORT>, NOTHING),
    Of("view_set_wport", SETTING<VIEW, WPORT>, NOTHING),
    Of("view_set_hport", SETTING<VIEW, HPORT>, NOTHING),
    Of("view_set_surface_id", SETTING<VIEW, SURFACE>, NOTHING),
};
} // namespace KvArguments
