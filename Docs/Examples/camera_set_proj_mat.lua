-- A lens of one's own: it shows more sideways and less up and down, then the other way round.
local field = include("field.lua")
local width, height = 320, 180

field.show{
    views = { [0] = field.resting },
    step = function()
        local wave = math.sin(frame_number() / 20)
        width, height = 320 + 120 * wave, 180 - 60 * wave
        camera_set_proj_mat(view_get_camera(0), matrix_ortho(width, height, 0, 32000))
    end,
    text = function() return string.format("shows %.0f x %.0f units", width, height) end,
}
