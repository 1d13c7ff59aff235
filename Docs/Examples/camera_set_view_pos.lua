-- The view goes from the left end of the field to the right one, again and again.
local field = include("field.lua")

field.show{
    views = { [0] = field.resting },
    step = function() camera_set_view_pos(view_get_camera(0), frame_number() * 4 % 640, 180) end,
    text = function() return string.format("x is %.0f", camera_get_view_x(view_get_camera(0))) end,
}
