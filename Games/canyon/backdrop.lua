-- What lies behind the canyon: a sky, clouds and two ranges of rock. Each layer moves with the view by a part of the
-- view's own motion: 1 would stay put on the screen (endlessly far away), 0 stays put in the room.

local strips = sprite_add_sheet("far.png", 256, 96, 0, 96)
local clouds = sprite_add("cloud.png", 2)

local SKY = { {74, 146, 190}, {104, 174, 204}, {146, 200, 212}, {196, 218, 206}, {240, 220, 184}, {248, 206, 164},
              {240, 182, 148}, {224, 156, 136} }
local SKY_BAND, SKY_SOFTNESS = 130, 5 -- room units a colour, steps from one colour to the next

local RANGES = { -- base: room y of the foot when the view's centre is at 0
    { frame = 0, moves = 0.85, scale = 4, base = 390, foot = colour_rgb(206, 152, 150) },
    { frame = 1, moves = 0.7, scale = 5, base = 700, foot = colour_rgb(150, 92, 88) },
}
local CLOUDS = { -- frame, x, y from the sky's top, scale
    {0, 60, 210, 4}, {1, 420, 330, 3}, {0, 840, 120, 5}, {1, 1150, 250, 4}, {0, 1480, 390, 3}, {1, 1790, 170, 5},
}
local CLOUDS_WIDTH, CLOUDS_MOVE, CLOUDS_DRIFT = 2100, 0.9, 0.25

local function sky_colour(step)
    local index = math.min(step // SKY_SOFTNESS, #SKY - 2)
    local part = math.min(1, (step - index * SKY_SOFTNESS) / SKY_SOFTNESS)
    local from, to = SKY[index + 1], SKY[index + 2]
    local mixed = {}
    for i = 1, 3 do
        mixed[i] = math.floor(from[i] + (to[i] - from[i]) * part + 0.5)
    end
    return colour_rgb(mixed[1], mixed[2], mixed[3])
end

local function draw_sky(x, y, reach)
    local height = SKY_BAND / SKY_SOFTNESS
    local top = y * 0.5
    local last = (#SKY - 1) * SKY_SOFTNESS
    for step = 0, last do
        draw_set_colour(sky_colour(step))
        local from = step == 0 and y - reach or top + step * height
        local to = step == last and y + reach or top + (step + 1) * height
        if from < y + reach and to > y - reach and from < to then
            draw_rectangle(x - reach, from, x + reach, to)
        end
    end
    draw_set_colour(colours.white)
end

local function draw_clouds(x, y, reach)
    local shift = x * CLOUDS_MOVE + frame_number() * CLOUDS_DRIFT
    for copy = (x - reach - shift) // CLOUDS_WIDTH, (x + reach - shift) // CLOUDS_WIDTH do
        for _, cloud in ipairs(CLOUDS) do
            draw_sprite_ext(clouds, cloud[1], shift + copy * CLOUDS_WIDTH + cloud[2], y * 0.6 + cloud[3] - 150,
                            cloud[4], cloud[4], 0, colours.white, 0.85)
        end
    end
end

local function draw_range(range, x, y, reach)
    local width = sprite_width(strips) * range.scale
    local shift = x * range.moves
    local foot = y * range.moves + range.base
    for copy = (x - reach - shift) // width, (x + reach - shift) // width do
        draw_sprite_ext(strips, range.frame, shift + copy * width, foot, range.scale, range.scale, 0, colours.white, 1)
    end
    draw_set_colour(range.foot)
    draw_rectangle(x - reach, foot, x + reach, math.max(foot, y + reach))
    draw_set_colour(colours.white)
end

-- For the camera that draws now, whichever way it is turned: all within half its diagonal is covered.
return function()
    local camera = camera_get_active()
    local width, height = camera_get_view_width(camera), camera_get_view_height(camera)
    local x = camera_get_view_x(camera) + width / 2
    local y = camera_get_view_y(camera) + height / 2
    local reach = math.sqrt(width * width + height * height) / 2 + 1
    draw_sky(x, y, reach)
    draw_clouds(x, y, reach)
    for _, range in ipairs(RANGES) do
        draw_range(range, x, y, reach)
    end
end
