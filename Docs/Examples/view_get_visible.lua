-- Each half second the map is hidden if it is shown, and shown if it is hidden.
local field = include("field.lua")

field.show{
    views = { [0] = field.following, [1] = field.corner },
    step = function()
        if frame_number() % 30 == 29 then view_set_visible(1, view_get_visible(1) == 0) end
    end,
    text = function() return view_get_visible(1) == 1 and "with the map" or "without it" end,
}
