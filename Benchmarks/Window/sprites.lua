-- 10,000 sprites of one sheet, moved by the script in each frame and drawn through one view or four. The other program of
-- this comparison is love/main.lua: the same places, the same pictures.
-- settings: side (of a sprite, pixels: 8 or 32), views (1 or 4)
local COUNT = 10000
local WIDTH, HEIGHT = 1280, 720
local side = settings.side or 32
local views = settings.views or 1

screen_set_size(WIDTH, HEIGHT)
local sheet = sprite_add_sheet("sheet_" .. side .. ".png", side, side)
local frames = sprite_frames(sheet)
local frame, x, y, dx, dy = {}, {}, {}, {}, {}

-- Numbers that both programs draw alike.
local state = 1
local function number(limit)
    state = (state * 16807) % 2147483647
    return state % limit
end

for i = 1, COUNT do
    frame[i] = i % frames
    x[i], y[i] = number(WIDTH - side), number(HEIGHT - side)
    dx[i], dy[i] = number(5) - 2, number(5) - 2
end

local function move()
    local right, bottom = WIDTH - side, HEIGHT - side
    for i = 1, COUNT do
        local nx, ny = x[i] + dx[i], y[i] + dy[i]
        if nx < 0 or nx > right then dx[i] = -dx[i] nx = x[i] end
        if ny < 0 or ny > bottom then dy[i] = -dy[i] ny = y[i] end
        x[i], y[i] = nx, ny
    end
end

local function draw() draw_sprites(sheet, frame, x, y) end

local shown = {}
local columns = views == 4 and 2 or 1
for view = 0, views - 1 do
    shown[view] = { x = 0, y = 0, w = WIDTH, h = HEIGHT, xport = view % columns * WIDTH / columns,
                    yport = view // columns * HEIGHT / columns, wport = WIDTH / columns, hport = HEIGHT / columns }
end
room_add{ width = WIDTH, height = HEIGHT, step = move, draw = draw, views = shown, background = 0x402010 }
