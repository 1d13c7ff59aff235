-- A callback after the view was drawn marks its middle, over everything else.
local field = include("field.lua")

field.show{
    create = function()
        camera_set_end_script(view_get_camera(0), function()
            local camera = camera_current()
            local x = camera_get_view_x(camera) + camera_get_view_width(camera) / 2
            local y = camera_get_view_y(camera) + camera_get_view_height(camera) / 2
            draw_set_colour(colours.red)
            draw_line(x - 12, y, x + 12, y, 2) draw_line(x, y - 12, x, y + 12, 2)
        end)
    end,
    text = function() return "red: the middle of the view" end,
}
