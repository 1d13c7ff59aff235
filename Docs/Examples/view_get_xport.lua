-- The map glides sideways; a line stays at its left edge.
local field = include("field.lua")

field.show{
    views = { [0] = field.following, [1] = field.corner },
    step = function() view_set_xport(1, 226 + 200 * math.sin(frame_number() / 30) // 1) end,
    draw_gui = function()
        local left = view_get_xport(1)
        draw_set_colour(colours.white) draw_line(left, 0, left, screen_height(), 3)
    end,
    text = function() return string.format("left edge on the screen: %.0f", view_get_xport(1)) end,
}
