-- The room that is seen from above: lawns, trees and ponds, and those who walk there.

local kit = include("kit/camera_kit.lua")
local player = include("player.lua")

local garden = { WIDTH = 2560, HEIGHT = 1440, GROUND = colour_rgb(96, 146, 82) }

-- Where to draw what is at x, y: on the pixels of the camera that draws now, if the kit has it on whole pixels.
function garden.snap(x, y)
    for view = 0, 1 do
        if view_get_camera(view) == camera_get_active() then
            return kit.camera(view):snap(x, y)
        end
    end
    return x, y
end

local STOPS = { {400, 380}, {1240, 300}, {2100, 420}, {2180, 1080}, {1400, 1160}, {900, 820}, {380, 1080} }
local PACE = 4.3
local REST = 35 -- frames at a stop

local function to_next_stop(self)
    local stop = STOPS[self.stop]
    local dx, dy = stop[1] - self.x, stop[2] - self.y
    local way = math.sqrt(dx * dx + dy * dy)
    if way < PACE then
        self.stop = self.stop % #STOPS + 1
        self.rest = REST
        return 0, 0
    end
    return dx / way, dy / way
end

garden.walker = object_add{
    name = "walker", bbox = {-16, -16, 16, 16},
    create = function(self)
        self.stop, self.rest, self.played = 2, 0, false
        self.colour = colour_rgb(240, 120, 70)
        self.look_x, self.look_y = 1, 0
    end,
    step = function(self)
        local x, y = 0, 0
        if self.played and not player.is_away() then
            x, y = player.way()
        elseif self.rest > 0 then
            self.rest = self.rest - 1
        else
            x, y = to_next_stop(self)
        end
        self.x = math.max(20, math.min(garden.WIDTH - 20, self.x + x * PACE))
        self.y = math.max(20, math.min(garden.HEIGHT - 20, self.y + y * PACE))
        if x ~= 0 or y ~= 0 then
            self.look_x, self.look_y = x, y
        end
    end,
    draw = function(self)
        local x, y = garden.snap(self.x, self.y)
        draw_set_colour(colour_rgb(60, 92, 56))
        draw_circle(x + 3, y + 4, 16)
        draw_set_colour(self.colour)
        draw_circle(x, y, 15)
        draw_set_colour(colours.white)
        draw_circle(x + 8 * self.look_x, y + 8 * self.look_y, 4)
    end,
}

function garden.add_walker(stop, fields)
    local self = instance_get(instance_create(STOPS[stop][1], STOPS[stop][2], garden.walker))
    self.stop = stop % #STOPS + 1
    for name, value in pairs(fields or {}) do
        self[name] = value
    end
    return self.id
end

local function draw_lawns()
    for column = 0, garden.WIDTH // 160 - 1 do
        for row = 0, garden.HEIGHT // 160 - 1 do
            if (column + row) % 2 == 0 then
                draw_set_colour(colour_rgb(106, 158, 88))
                draw_rectangle(column * 160, row * 160, column * 160 + 160, row * 160 + 160)
            end
        end
    end
end

local function draw_paths()
    draw_set_colour(colour_rgb(206, 186, 140))
    local from = STOPS[#STOPS]
    for _, stop in ipairs(STOPS) do
        draw_line(from[1], from[2], stop[1], stop[2], 44)
        draw_circle(stop[1], stop[2], 40)
        from = stop
    end
end

local function draw_trees()
    for i = 0, 59 do
        local x, y = i * 397 % garden.WIDTH, i * 619 % garden.HEIGHT
        draw_set_colour(colour_rgb(54, 96, 60))
        draw_circle(x, y, 26 + i % 4 * 5)
        draw_set_colour(colour_rgb(72, 120, 70))
        draw_circle(x - 6, y - 8, 15 + i % 4 * 3)
    end
end

function garden.draw()
    draw_lawns()
    draw_paths()
    draw_set_colour(colour_rgb(88, 150, 186))
    draw_circle(1680, 700, 150)
    draw_circle(1800, 760, 120)
    draw_trees()
    draw_set_colour(colours.white)
end

return garden
