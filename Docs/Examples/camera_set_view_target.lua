-- The view follows the walker for a second, then the duck.
local field = include("field.lua")

field.show{
    step = function()
        camera_set_view_target(view_get_camera(0), frame_number() % 120 < 60 and field.walker or field.duck)
    end,
    text = function() return frame_number() % 120 < 60 and "the walker" or "the duck" end,
}
