-- The room that is seen from the side: hills, blocks to jump on, and those who run there.

local player = include("player.lua")

local hills = { WIDTH = 3600, HEIGHT = 1080, GROUND = 940 }

local BLOCKS = { -- left, top, right
    {420, 860, 560}, {560, 780, 760}, {980, 880, 1060}, {1240, 820, 1500}, {1420, 660, 1640}, {1760, 860, 1860},
    {2060, 800, 2260}, {2260, 700, 2420}, {2420, 840, 2560}, {2860, 870, 2980}, {3140, 800, 3360},
}
local RUN, JUMP, WEIGHT, FALL = 4.6, -15.5, 0.62, 16

local function floor_under(x, y)
    local floor = hills.GROUND
    for _, block in ipairs(BLOCKS) do
        if x > block[1] - 12 and x < block[3] + 12 and y <= block[2] + 1 then
            floor = math.min(floor, block[2])
        end
    end
    return floor
end

local function wall_ahead(x, y, way)
    for _, block in ipairs(BLOCKS) do
        local ahead = way > 0 and block[1] - x or x - block[3]
        if ahead > -14 and ahead < 60 and y > block[2] + 1 then
            return true, ahead
        end
    end
    return false
end

-- Alone it runs on, jumps onto what is in the way, and turns round at the room's ends.
local function decide(self)
    if self.played and not player.is_away() then
        local way = player.way()
        return way, player.pressed("jump")
    end
    if self.x < 160 then
        self.way = 1
    elseif self.x > hills.WIDTH - 160 then
        self.way = -1
    end
    return self.way * self.pace, (wall_ahead(self.x, self.y, self.way))
end

local function move(self, way, jumps)
    if jumps and self.stands then
        self.rise = JUMP
    end
    self.rise = math.min(FALL, self.rise + WEIGHT)
    local _, ahead = wall_ahead(self.x, self.y, way)
    if way ~= 0 and not (ahead and ahead < 14) then
        self.x = math.max(40, math.min(hills.WIDTH - 40, self.x + way * RUN))
    end
    local floor = floor_under(self.x, self.y)
    self.y = math.min(self.y + self.rise, floor)
    self.stands = self.y == floor
    self.landed = self.stands and self.rise > 8
    self.rise = self.stands and 0 or self.rise
end

function hills.draw_figure(x, y, colour, way)
    draw_set_colour(colour)
    draw_rectangle(x - 11, y - 34, x + 11, y)
    draw_circle(x, y - 42, 14)
    draw_set_colour(colours.white)
    draw_circle(x + 5 * way, y - 44, 4)
end

hills.runner = object_add{
    name = "runner", bbox = {-16, -60, 16, 0},
    create = function(self)
        self.way, self.pace, self.rise, self.stands, self.landed = 1, 1, 0, false, false
        self.colour, self.played = colour_rgb(240, 120, 70), false
    end,
    step = function(self)
        local way, jumps = decide(self)
        move(self, way, jumps)
        self.way = way > 0 and 1 or way < 0 and -1 or self.way
    end,
    draw = function(self)
        hills.draw_figure(self.x, self.y, self.colour, self.way)
    end,
}

function hills.add_runner(x, fields)
    local self = instance_get(instance_create(x, hills.GROUND, hills.runner))
    for name, value in pairs(fields or {}) do
        self[name] = value
    end
    return self.id
end

local function draw_far()
    for i = 0, 12 do
        draw_set_colour(i % 2 == 0 and colour_rgb(92, 140, 120) or colour_rgb(78, 124, 112))
        draw_circle(i * 320, hills.GROUND + 120, 260 + i * 7 % 5 * 22)
    end
end

function hills.draw()
    draw_far()
    draw_set_colour(colour_rgb(64, 92, 66))
    draw_rectangle(0, hills.GROUND, hills.WIDTH, hills.HEIGHT)
    draw_set_colour(colour_rgb(122, 170, 84))
    draw_rectangle(0, hills.GROUND, hills.WIDTH, hills.GROUND + 14)
    for x = 60, hills.WIDTH, 120 do
        draw_set_colour(colour_rgb(240, 214, 120))
        draw_circle(x, hills.GROUND - 8, 5)
    end
    for _, block in ipairs(BLOCKS) do
        draw_set_colour(colour_rgb(126, 92, 70))
        draw_rectangle(block[1], block[2], block[3], hills.GROUND)
        draw_set_colour(colour_rgb(170, 128, 88))
        draw_rectangle(block[1], block[2], block[3], block[2] + 12)
    end
    draw_set_colour(colours.white)
end

hills.SKY = colour_rgb(150, 196, 214)

return hills
