-- The port's width and the view's tell how large a unit of the room is on the screen.
local field = include("field.lua")

field.show{
    views = { [0] = field.resting },
    step = function()
        local width = 480 + 160 * math.sin(frame_number() / 30)
        camera_set_view_size(view_get_camera(0), width, width * 9 / 16)
    end,
    text = function()
        return string.format("a unit is %.2f pixels", view_get_wport(0) / camera_get_view_width(view_get_camera(0)))
    end,
}
