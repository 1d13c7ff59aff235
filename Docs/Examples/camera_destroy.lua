-- The camera in the corner comes and goes. A camera that is made later gets the number of a destroyed one.
local field = include("field.lua")
local close_up

field.show{
    views = { [0] = field.resting, [1] = field.corner },
    step = function()
        if frame_number() % 80 == 0 then
            close_up = camera_create_view(0, 0, 96, 54, 0, field.walker, -1, -1, 48, 27)
            view_set_camera(1, close_up)
        elseif frame_number() % 80 == 40 then
            camera_destroy(close_up)
            view_set_camera(1, -1)
        end
    end,
    text = function()
        return view_get_camera(1) == -1 and "destroyed" or string.format("camera %d", view_get_camera(1))
    end,
}
