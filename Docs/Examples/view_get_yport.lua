-- The map glides up and down; a line stays at its top edge.
local field = include("field.lua")

field.show{
    views = { [0] = field.following, [1] = field.corner },
    step = function() view_set_yport(1, 110 + 90 * math.sin(frame_number() / 30) // 1) end,
    draw_gui = function()
        local top = view_get_yport(1)
        draw_set_colour(colours.white) draw_line(0, top, screen_width(), top, 3)
    end,
    text = function() return string.format("top edge on the screen: %.0f", view_get_yport(1)) end,
}
