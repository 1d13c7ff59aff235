-- Entries 1 and 6 of the projection say how much of the room is shown.
local field = include("field.lua")

field.show{
    views = { [0] = field.resting },
    step = function()
        local width = 320 + 80 * math.sin(frame_number() / 30)
        camera_set_view_size(view_get_camera(0), width, width * 9 / 16)
    end,
    text = function()
        local lens = camera_get_proj_mat(view_get_camera(0))
        return string.format("shows %.1f x %.1f units", 2 / lens[1], 2 / lens[6])
    end,
}
