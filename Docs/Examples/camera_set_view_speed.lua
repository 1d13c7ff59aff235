-- For a second the view may move 2 units a frame, and the walker gets away; then as far as it needs.
local field = include("field.lua")

field.show{
    step = function()
        local limit = frame_number() % 120 < 60 and 2 or -1
        camera_set_view_speed(view_get_camera(0), limit, limit)
    end,
    text = function() return frame_number() % 120 < 60 and "2 units a frame" or "no limit" end,
}
