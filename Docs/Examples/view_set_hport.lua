-- A window opens from a slit: the port grows, and the camera shows as much more.
local field = include("field.lua")

field.show{
    views = { [0] = field.resting },
    step = function()
        local height = math.min(328, 8 + frame_number() % 120 * 4)
        view_set_hport(0, height)
        view_set_yport(0, (328 - height) // 2)
        camera_set_view_size(view_get_camera(0), 320, height / 2)
    end,
    text = function() return string.format("height of the port: %.0f", view_get_hport(0)) end,
}
