-- Only while the map in the corner is drawn: a frame around what the large view shows.
local field = include("field.lua")

field.show{
    views = { [0] = field.following, [1] = field.corner },
    draw = function()
        if camera_get_active() ~= view_get_camera(1) then return end
        local camera = view_get_camera(0)
        local x, y = camera_get_view_x(camera), camera_get_view_y(camera)
        draw_set_colour(colours.white)
        for line = 0, 6 do draw_rectangle(x + line, y + line, x + 320 - line, y + 180 - line, true) end
    end,
    text = function() return "the frame is drawn on the map alone" end,
}
