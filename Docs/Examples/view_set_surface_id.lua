-- A screen in the field: a view draws into a surface, and the room draws that surface between the trees.
local field = include("field.lua")
local screen

field.show{
    views = { [0] = { x = 320, y = 180, w = 320, h = 180 }, [1] = { x = 620, y = 105, w = 160, h = 90 } },
    create = function()
        screen = surface_create(160, 90)
        view_set_surface_id(1, screen)
    end,
    draw = function()
        if field.is_corner() then return end -- the surface cannot be drawn into itself
        draw_set_colour(colours.black) draw_rectangle(335, 195, 425, 247)
        draw_surface(screen, 340, 200, 0.5, 0.5)
    end,
    text = function() return string.format("view 1 draws into surface %d", view_get_surface_id(1)) end,
}
