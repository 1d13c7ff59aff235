-- 1,000 cameras spread over a room: one shows a part of it and follows a figure, and an inspector has the frames of about
-- twenty others to draw in it.
local WIDTH, HEIGHT = 1280, 720

screen_set_size(WIDTH, HEIGHT)
local figure = object_add{
    name = "figure", bbox = { -8, -8, 8, 8 },
    step = function(self) self.x = self.x + 1.5 end,
    draw = function(self) draw_rectangle(self.x - 8, self.y - 8, self.x + 8, self.y + 8) end,
}
room_add{
    width = 8000, height = 7200, background = 0x402010,
    views = { [0] = { w = WIDTH, h = HEIGHT, wport = WIDTH, hport = HEIGHT, hborder = 400, vborder = 200, hspeed = 8,
                      target = figure } },
    instances = { { figure, 3000, 3600 } },
    create = function()
        for i = 0, 998 do
            camera_create_view(i % 40 * 200, i // 40 * 288, 160, 90)
        end
    end,
}
