-- The view turns about its middle, 1 degree a frame.
local field = include("field.lua")

field.show{
    views = { [0] = field.resting },
    step = function() camera_set_view_angle(view_get_camera(0), frame_number() % 360) end,
    text = function() return string.format("%.0f degrees", camera_get_view_angle(view_get_camera(0))) end,
}
