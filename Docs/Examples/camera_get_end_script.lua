-- Each second the callback that darkens the view is taken away or given again.
local field = include("field.lua")

local function darken()
    draw_set_colour(colours.black) draw_set_alpha(0.5)
    draw_rectangle(0, 0, room_width(), room_height())
end

field.show{
    step = function()
        local camera = view_get_camera(0)
        if frame_number() % 60 == 0 then
            camera_set_end_script(camera, camera_get_end_script(camera) == -1 and darken or -1)
        end
    end,
    text = function() return camera_get_end_script(view_get_camera(0)) == -1 and "day" or "night" end,
}
