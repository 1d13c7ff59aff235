-- A bar lies right below the map, however high the map is.
local field = include("field.lua")

field.show{
    views = { [0] = field.following, [1] = field.corner },
    step = function() view_set_hport(1, 130 + 90 * math.sin(frame_number() / 30) // 1) end,
    draw_gui = function()
        local bottom = view_get_yport(1) + view_get_hport(1)
        draw_set_colour(colours.white) draw_rectangle(440, bottom, 628, bottom + 8)
    end,
    text = function() return string.format("height of the map: %.0f", view_get_hport(1)) end,
}
