-- A callback before the update leans the view; the view still follows the walker.
local field = include("field.lua")

field.show{
    create = function()
        camera_set_begin_script(view_get_camera(0), function()
            camera_set_view_angle(camera_current(), 6 * math.sin(frame_number() / 12))
        end)
    end,
    text = function() return "follows, and leans as a boat does" end,
}
