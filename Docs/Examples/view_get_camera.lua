-- Each view has a camera of its own; these two lean against each other.
local field = include("field.lua")

field.show{
    views = {
        [0] = { x = 320, y = 180, w = 160, h = 180, wport = 320 },
        [1] = { x = 480, y = 180, w = 160, h = 180, xport = 320, wport = 320 },
    },
    step = function()
        for view = 0, 1 do
            local way = view == 0 and 1 or -1
            camera_set_view_angle(view_get_camera(view), way * 10 * math.sin(frame_number() / 20))
        end
    end,
    text = function() return string.format("cameras %d and %d", view_get_camera(0), view_get_camera(1)) end,
}
