-- The map comes and goes, each half second.
local field = include("field.lua")

field.show{
    views = { [0] = field.following, [1] = field.corner },
    step = function() view_set_visible(1, frame_number() % 60 < 30) end,
    text = function() return frame_number() % 60 < 30 and "with the map" or "without it" end,
}
