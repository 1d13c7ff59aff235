-- On the map, a line stands where the large view's left edge is.
local field = include("field.lua")

field.show{
    views = { [0] = field.following, [1] = field.corner },
    draw = function()
        local x = camera_get_view_x(view_get_camera(0))
        draw_set_colour(colours.red)
        if field.is_corner() then draw_line(x, 0, x, room_height(), 8) end
    end,
    text = function() return string.format("left edge: %.0f", camera_get_view_x(view_get_camera(0))) end,
}
