-- The map slides in from the right.
local field = include("field.lua")

field.show{
    views = { [0] = field.following, [1] = field.corner },
    step = function() view_set_xport(1, math.max(440, 640 - frame_number() % 120 * 5)) end,
    text = function() return string.format("left edge of the map: %.0f", view_get_xport(1)) end,
}
