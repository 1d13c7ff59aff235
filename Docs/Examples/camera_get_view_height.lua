-- On the map, a line lies where the large view's bottom edge is: the top one and the height.
local field = include("field.lua")

field.show{
    views = { [0] = field.following, [1] = field.corner },
    step = function() camera_set_view_size(view_get_camera(0), 320, 180 + 50 * math.sin(frame_number() / 30)) end,
    draw = function()
        local camera = view_get_camera(0)
        local y = camera_get_view_y(camera) + camera_get_view_height(camera)
        draw_set_colour(colours.red)
        if field.is_corner() then draw_line(0, y, room_width(), y, 8) end
    end,
    text = function() return string.format("height: %.1f", camera_get_view_height(view_get_camera(0))) end,
}
