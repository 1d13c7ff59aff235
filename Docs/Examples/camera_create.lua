-- A camera that the script makes shows the whole field in the corner.
local field = include("field.lua")

field.show{
    views = { [0] = field.following, [1] = { xport = 440, yport = 12, wport = 188, hport = 106 } },
    create = function()
        local map = camera_create()
        camera_set_view_size(map, 960, 540)
        view_set_camera(1, map)
    end,
    text = function() return string.format("the map is camera %d", view_get_camera(1)) end,
}
