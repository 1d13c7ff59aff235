-- Two cameras take turns in drawing a room without views.
local field = include("field.lua")
local near, far

field.show{
    views = {},
    create = function()
        near, far = camera_create_view(320, 180, 320, 180), camera_create_view(160, 90, 640, 360)
    end,
    step = function() camera_set_default(frame_number() % 120 < 60 and near or far) end,
    text = function() return camera_get_default() == near and "near" or "far" end,
}
