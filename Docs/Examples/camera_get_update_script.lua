-- Each second: if a callback moves the view, it is taken away, and if none does, it is given.
local field = include("field.lua")

local function to_the_pond()
    camera_set_view_pos(camera_current(), 540, 60)
end

field.show{
    step = function()
        local camera = view_get_camera(0)
        if frame_number() % 60 == 59 then
            camera_set_update_script(camera, camera_get_update_script(camera) == -1 and to_the_pond or -1)
        end
    end,
    text = function()
        return camera_get_update_script(view_get_camera(0)) == -1 and "follows the walker" or "looks at the pond"
    end,
}
