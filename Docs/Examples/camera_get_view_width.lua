-- On the map, a line stands where the large view's right edge is: the left one and the width.
local field = include("field.lua")

field.show{
    views = { [0] = field.following, [1] = field.corner },
    step = function() camera_set_view_size(view_get_camera(0), 320 + 100 * math.sin(frame_number() / 30), 180) end,
    draw = function()
        local camera = view_get_camera(0)
        local x = camera_get_view_x(camera) + camera_get_view_width(camera)
        draw_set_colour(colours.red)
        if field.is_corner() then draw_line(x, 0, x, room_height(), 8) end
    end,
    text = function() return string.format("width: %.1f", camera_get_view_width(view_get_camera(0))) end,
}
