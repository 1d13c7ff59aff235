-- The other side of the comparison: the same sprites at the same places in LÖVE 11.4, drawn by its SpriteBatch as its
-- manual recommends: one batch for the sheet, filled anew in each frame, drawn once for each view.
-- arguments: SHEET.png SIDE VIEWS FRAMES
local COUNT = 10000
local WIDTH, HEIGHT = 1280, 720
local side, views, last
local batch, quads = nil, {}
local x, y, dx, dy = {}, {}, {}, {}
local shown, first = 0, nil

local state = 1
local function number(limit)
    state = (state * 16807) % 2147483647
    return state % limit
end

function love.load(arguments)
    side, views, last = tonumber(arguments[2]), tonumber(arguments[3]), tonumber(arguments[4])
    local file = assert(io.open(arguments[1], "rb"))
    local data = love.filesystem.newFileData(file:read("*a"), "sheet.png")
    file:close()
    local sheet = love.graphics.newImage(love.image.newImageData(data))
    sheet:setFilter("nearest", "nearest")
    local width, height = sheet:getDimensions()
    for top = 0, height - side, side do
        for left = 0, width - side, side do
            quads[#quads + 1] = love.graphics.newQuad(left, top, side, side, width, height)
        end
    end
    batch = love.graphics.newSpriteBatch(sheet, COUNT, "stream")
    for i = 1, COUNT do
        x[i], y[i] = number(WIDTH - side), number(HEIGHT - side)
        dx[i], dy[i] = number(5) - 2, number(5) - 2
    end
    love.graphics.setBackgroundColor(16 / 255, 32 / 255, 64 / 255)
end

function love.update()
    local right, bottom = WIDTH - side, HEIGHT - side
    for i = 1, COUNT do
        local nx, ny = x[i] + dx[i], y[i] + dy[i]
        if nx < 0 or nx > right then dx[i] = -dx[i] nx = x[i] end
        if ny < 0 or ny > bottom then dy[i] = -dy[i] ny = y[i] end
        x[i], y[i] = nx, ny
    end
end

function love.draw()
    batch:clear()
    local frames = #quads
    for i = 1, COUNT do
        batch:add(quads[i % frames + 1], x[i], y[i])
    end
    local columns = views == 4 and 2 or 1
    for view = 0, views - 1 do
        local left, top = view % columns * WIDTH / columns, math.floor(view / columns) * HEIGHT / columns
        love.graphics.setScissor(left, top, WIDTH / columns, HEIGHT / columns)
        love.graphics.draw(batch, left, top, 0, 1 / columns, 1 / columns)
    end
    love.graphics.setScissor()
end

-- The loop of love.run without its pause of a millisecond after each frame: it is there to spare the processor.
function love.run()
    love.load(love.arg.parseGameArguments(arg))
    return function()
        love.event.pump()
        for name in love.event.poll() do
            if name == "quit" then return 0 end
        end
        love.update()
        love.graphics.origin()
        love.graphics.clear(love.graphics.getBackgroundColor())
        love.draw()
        love.graphics.present()
        first = first or love.timer.getTime()
        shown = shown + 1
        if shown >= last then
            print(string.format("%d frames shown, %.2f a second", shown, (shown - 1) / (love.timer.getTime() - first)))
            return 0
        end
    end
end
