-- A close-up of the walker, made in one call: rectangle, angle, target, speed and border.
local field = include("field.lua")

field.show{
    views = { [0] = field.resting, [1] = field.corner },
    create = function()
        view_set_camera(1, camera_create_view(0, 0, 96, 54, 0, field.walker, -1, -1, 48, 27))
    end,
    text = function() return "a close-up in the corner" end,
}
