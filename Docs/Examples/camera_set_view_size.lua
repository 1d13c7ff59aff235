-- Zoom: a rectangle of half the size is shown twice as large. The middle stays at the house.
local field = include("field.lua")

field.show{
    views = { [0] = field.resting },
    step = function()
        local camera, width = view_get_camera(0), 480 + 320 * math.sin(frame_number() / 30)
        camera_set_view_pos(camera, 480 - width / 2, 270 - width * 9 / 32)
        camera_set_view_size(camera, width, width * 9 / 16)
    end,
    text = function() return string.format("zoom %.2f", 640 / camera_get_view_width(view_get_camera(0))) end,
}
