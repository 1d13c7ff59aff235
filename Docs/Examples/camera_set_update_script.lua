-- In place of following, a callback moves the view: a patrol along the field.
local field = include("field.lua")

field.show{
    create = function()
        camera_set_update_script(view_get_camera(0), function()
            camera_set_view_pos(camera_current(), 320 + 320 * math.sin(frame_number() / 40), 180)
        end)
    end,
    text = function() return "on patrol, whoever walks" end,
}
