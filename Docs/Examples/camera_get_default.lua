-- A room without views is drawn by the default camera. Here it leans to and fro.
local field = include("field.lua")

field.show{
    views = {},
    step = function() camera_set_view_angle(camera_get_default(), 12 * math.sin(frame_number() / 20)) end,
    text = function() return string.format("drawn by camera %d", camera_get_default()) end,
}
