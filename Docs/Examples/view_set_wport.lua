-- A second player's view pushes the first aside; each port shows its camera stretched to its width.
local field = include("field.lua")

field.show{
    views = { [0] = field.following, [1] = { x = 540, y = 60, w = 320, h = 180, xport = 640, wport = 320 } },
    step = function()
        local width = 640 - math.min(320, frame_number() % 120 * 5)
        view_set_wport(0, width)
        view_set_xport(1, width)
        camera_set_view_size(view_get_camera(0), width / 2, 180)
    end,
    text = function() return string.format("width of the port: %.0f", view_get_wport(0)) end,
}
