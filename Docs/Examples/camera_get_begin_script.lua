-- A second callback is added without losing the first: the new one runs the old one before it goes on.
local field = include("field.lua")

local function add_begin(camera, more)
    local before = camera_get_begin_script(camera)
    camera_set_begin_script(camera, function()
        if before ~= -1 then before() end
        more()
    end)
end

field.show{
    create = function()
        local camera = view_get_camera(0)
        add_begin(camera, function() camera_set_view_angle(camera, 5 * math.sin(frame_number() / 10)) end)
        add_begin(camera, function()
            local width = 320 + 60 * math.sin(frame_number() / 25)
            camera_set_view_size(camera, width, width * 9 / 16)
        end)
    end,
    text = function() return "leans and breathes" end,
}
