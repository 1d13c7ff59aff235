-- Two lines show the dead zone: between them the walker goes without moving the view up or down.
local field = include("field.lua")

field.show{
    draw = function()
        local camera = view_get_camera(0)
        local top = camera_get_view_y(camera) + camera_get_view_border_y(camera)
        local bottom = camera_get_view_y(camera) + 180 - camera_get_view_border_y(camera)
        draw_set_colour(colours.white)
        draw_line(0, top, room_width(), top, 2) draw_line(0, bottom, room_width(), bottom, 2)
    end,
    text = function() return string.format("border: %.0f", camera_get_view_border_y(view_get_camera(0))) end,
}
