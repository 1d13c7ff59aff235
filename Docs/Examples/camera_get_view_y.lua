-- On the map, a line lies where the large view's top edge is.
local field = include("field.lua")

field.show{
    views = { [0] = field.following, [1] = field.corner },
    draw = function()
        local y = camera_get_view_y(view_get_camera(0))
        draw_set_colour(colours.red)
        if field.is_corner() then draw_line(0, y, room_width(), y, 8) end
    end,
    text = function() return string.format("top edge: %.0f", camera_get_view_y(view_get_camera(0))) end,
}
