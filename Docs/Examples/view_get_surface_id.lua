-- The map is drawn into a surface, and the surface onto the screen, turned.
local field = include("field.lua")

field.show{
    views = { [0] = field.following, [1] = field.corner },
    create = function() view_set_surface_id(1, surface_create(192, 108)) end,
    draw_gui = function()
        draw_surface(view_get_surface_id(1), 430, 60, 1, 1, 10 * math.sin(frame_number() / 20))
    end,
    text = function() return string.format("view 1 draws into surface %d", view_get_surface_id(1)) end,
}
