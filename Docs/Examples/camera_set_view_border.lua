-- For a second the walker may go up to the edge, then she is held in the middle.
local field = include("field.lua")

field.show{
    step = function()
        if frame_number() % 120 < 60 then
            camera_set_view_border(view_get_camera(0), 20, 30)
        else
            camera_set_view_border(view_get_camera(0), 160, 90) -- half of 320 x 180: no zone is left
        end
    end,
    text = function() return frame_number() % 120 < 60 and "border 20, 30" or "border 160, 90" end,
}
