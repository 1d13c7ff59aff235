-- The view shows one camera for a second, then another: a cut.
local field = include("field.lua")
local at_house, at_pond

field.show{
    create = function()
        at_house, at_pond = view_get_camera(0), camera_create_view(540, 60, 320, 180)
    end,
    step = function() view_set_camera(0, frame_number() % 120 < 60 and at_house or at_pond) end,
    text = function() return view_get_camera(0) == at_pond and "at the pond" or "with the walker" end,
}
