-- Two lines show the dead zone: between them the walker goes without moving the view sideways.
local field = include("field.lua")

field.show{
    draw = function()
        local camera = view_get_camera(0)
        local left = camera_get_view_x(camera) + camera_get_view_border_x(camera)
        local right = camera_get_view_x(camera) + 320 - camera_get_view_border_x(camera)
        draw_set_colour(colours.white)
        draw_line(left, 0, left, room_height(), 2) draw_line(right, 0, right, room_height(), 2)
    end,
    text = function() return string.format("border: %.0f", camera_get_view_border_x(view_get_camera(0))) end,
}
