-- The view starts slowly and may go a little faster sideways in each frame, up to 6 units.
local field = include("field.lua")

field.show{
    create = function() camera_set_view_speed(view_get_camera(0), 0.5, -1) end,
    step = function()
        local camera = view_get_camera(0)
        camera_set_view_speed(camera, math.min(camera_get_view_speed_x(camera) + 0.05, 6), -1)
    end,
    text = function() return string.format("%.2f units a frame", camera_get_view_speed_x(view_get_camera(0))) end,
}
