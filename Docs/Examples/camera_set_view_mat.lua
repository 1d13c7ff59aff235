-- An eye of one's own: it moves over the house and rolls with the direction that is down.
local field = include("field.lua")

field.show{
    views = { [0] = field.resting },
    step = function()
        local turn = frame_number() / 30
        local x = 480 + 120 * math.sin(turn)
        camera_set_view_mat(view_get_camera(0), matrix_look_at(x, 270, -500, x, 270, 0, 0.3 * math.cos(turn), 1, 0))
    end,
    text = function() return "seen by matrix_look_at" end,
}
