-- The map falls in from above.
local field = include("field.lua")

field.show{
    views = { [0] = field.following, [1] = field.corner },
    step = function() view_set_yport(1, math.min(12, -106 + frame_number() % 120 * 3)) end,
    text = function() return string.format("top edge of the map: %.0f", view_get_yport(1)) end,
}
