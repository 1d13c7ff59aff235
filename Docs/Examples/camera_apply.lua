-- The same rectangle twice: red through the view's camera, yellow through another one that shows more and more.
local field = include("field.lua")
local wide

local function draw_frame(colour)
    draw_set_colour(colour) draw_rectangle(410, 185, 550, 315, true)
end

field.show{
    views = { [0] = field.resting },
    create = function() wide = camera_create_view(320, 180, 320, 180) end,
    step = function()
        local width = 320 + 4 * (frame_number() % 120)
        camera_set_view_pos(wide, 480 - width / 2, 270 - width * 9 / 32)
        camera_set_view_size(wide, width, width * 9 / 16)
    end,
    draw = function()
        draw_frame(colours.red)
        camera_apply(wide)
        draw_frame(colours.yellow)
        camera_apply(camera_get_active())
    end,
    text = function() return "red: the view's camera, yellow: wide" end,
}
