-- 1,000 cameras of which one shows the room and follows a figure; the others stand about it, so that an inspector has
-- all their frames to draw.
local WIDTH, HEIGHT = 1280, 720

screen_set_size(WIDTH, HEIGHT)
local figure = object_add{
    name = "figure", bbox = { -8, -8, 8, 8 },
    step = function(self) self.x = self.x + 1.5 end,
    draw = function(self) draw_rectangle(self.x - 8, self.y - 8, self.x + 8, self.y + 8) end,
}
room_add{
    width = 8000, height = 720, background = 0x402010,
    views = { [0] = { w = WIDTH, h = HEIGHT, wport = WIDTH, hport = HEIGHT, hborder = 400, vborder = 200, hspeed = 8,
                      target = figure } },
    instances = { { figure, 300, 360 } },
    create = function()
        for i = 0, 998 do
            camera_create_view(i % 50 * 60, i // 50 * 34, 54, 30)
        end
    end,
}
