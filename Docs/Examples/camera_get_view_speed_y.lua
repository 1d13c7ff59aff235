-- The view starts slowly and may go a little faster up and down in each frame, up to 6 units.
local field = include("field.lua")

field.show{
    create = function() camera_set_view_speed(view_get_camera(0), -1, 0.5) end,
    step = function()
        local camera = view_get_camera(0)
        camera_set_view_speed(camera, -1, math.min(camera_get_view_speed_y(camera) + 0.05, 6))
    end,
    text = function() return string.format("%.2f units a frame", camera_get_view_speed_y(view_get_camera(0))) end,
}
