-- The needle of the compass turns with the picture, and so it always points to the top of the field.
local field = include("field.lua")

field.show{
    step = function() camera_set_view_angle(view_get_camera(0), 60 * math.sin(frame_number() / 40)) end,
    draw_gui = function()
        local turn = math.rad(camera_get_view_angle(view_get_camera(0)))
        draw_set_colour(colours.white) draw_circle(580, 60, 40)
        draw_set_colour(colours.red) draw_line(580, 60, 580 - 34 * math.sin(turn), 60 - 34 * math.cos(turn), 5)
    end,
    text = function() return string.format("%.1f degrees", camera_get_view_angle(view_get_camera(0))) end,
}
