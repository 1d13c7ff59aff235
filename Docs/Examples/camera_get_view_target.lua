-- A ring around whatever the camera follows: the walker, then the duck.
local field = include("field.lua")

field.show{
    step = function()
        if frame_number() % 60 ~= 59 then return end
        local camera = view_get_camera(0)
        local is_walker = camera_get_view_target(camera) == field.walker
        camera_set_view_target(camera, is_walker and field.duck or field.walker)
    end,
    draw = function()
        local followed = instance_get(instance_find(camera_get_view_target(view_get_camera(0)), 0))
        draw_set_colour(colours.red) draw_circle(followed.x, followed.y - 8, 24, true)
    end,
    text = function() return "followed: " .. object_get_name(camera_get_view_target(view_get_camera(0))) end,
}
