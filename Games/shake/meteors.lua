-- Meteors that fall now and then, and what is left when they hit.

local town = include("town.lua")

local impact_handler

-- ---- fire and smoke ----

local FIRE = { {150, colour_rgb(255, 120, 40), 0.12}, {100, colour_rgb(255, 150, 60), 0.25},
               {60, colour_rgb(255, 206, 110), 0.5}, {32, colour_rgb(255, 246, 214), 0.95} }
local LIFE = 75

local function new_pieces()
    local pieces = {}
    for i = 1, 22 do
        pieces[i] = { x = 0, y = 0, vx = random_range(-7, 7), vy = random_range(-13, -3), size = 2 + irandom(4) }
    end
    return pieces
end

local function draw_fire(self, left)
    for _, ring in ipairs(FIRE) do
        draw_set_colour(ring[2])
        draw_set_alpha(ring[3] * left)
        draw_circle(self.x, self.y, ring[1] * (0.6 + 0.8 * (1 - left)))
    end
end

local function draw_smoke(self, part)
    draw_set_colour(colour_rgb(96, 88, 116))
    for i = 1, 6 do
        draw_set_alpha(0.4 * (1 - part))
        draw_circle(self.x + (i - 3.5) * 22, self.y - part * (90 + i % 3 * 60), 16 + 34 * part)
    end
end

local explosion = object_add{
    name = "explosion", bbox = {-260, -320, 260, 40}, depth = -20,
    create = function(self)
        self.age = 0
        self.pieces = new_pieces()
    end,
    step = function(self)
        self.age = self.age + 1
        for _, piece in ipairs(self.pieces) do
            piece.x = piece.x + piece.vx
            piece.y = math.min(0, piece.y + piece.vy)
            piece.vy = piece.vy + 0.5
        end
        if self.age >= LIFE then
            instance_destroy(self.id)
        end
    end,
    draw = function(self)
        local part = self.age / LIFE
        draw_smoke(self, part)
        draw_fire(self, math.max(0, 1 - part * 2.2))
        draw_set_alpha(1 - part)
        draw_set_colour(colour_rgb(255, 190, 90))
        for _, piece in ipairs(self.pieces) do
            local x, y = self.x + piece.x, self.y + piece.y
            draw_rectangle(x, y - piece.size, x + piece.size, y)
        end
        draw_set_alpha(1)
    end,
}

-- ---- meteors ----

local TAIL = { {26, 300, 0.1}, {18, 220, 0.25}, {11, 140, 0.6} } -- half width, length, alpha
local FALL_X, FALL_Y = -7, 17 -- a frame

local function draw_tail(self)
    local length = math.sqrt(FALL_X * FALL_X + FALL_Y * FALL_Y)
    local x, y = -FALL_X / length, -FALL_Y / length
    draw_set_colour(colour_rgb(255, 170, 90))
    for _, tail in ipairs(TAIL) do
        draw_set_alpha(tail[3])
        draw_triangle(self.x - y * tail[1], self.y + x * tail[1], self.x + y * tail[1], self.y - x * tail[1],
                      self.x + x * tail[2], self.y + y * tail[2])
    end
    draw_set_alpha(1)
end

local meteor = object_add{
    name = "meteor", bbox = {-30, -310, 140, 30}, depth = -10,
    step = function(self)
        self.x = self.x + FALL_X
        self.y = self.y + FALL_Y
        if self.y >= town.GROUND then
            instance_create(self.x, town.GROUND, explosion)
            instance_destroy(self.id)
            impact_handler(self.x)
        end
    end,
    draw = function(self)
        draw_tail(self)
        draw_set_colour(colour_rgb(255, 226, 170))
        draw_circle(self.x, self.y, 15)
        draw_set_colour(colour_rgb(120, 70, 60))
        draw_circle(self.x + 2, self.y + 2, 10)
    end,
}

return {
    -- handler(x) is called when one has hit the ground there.
    on_impact = function(handler)
        impact_handler = handler
    end,
    -- One that hits the ground at x.
    call_down = function(x)
        local fall = (town.GROUND + 100) // FALL_Y
        instance_create(x - fall * FALL_X, -100, meteor)
    end,
    -- Once a step.
    rain = function()
        if irandom(38) == 0 then
            instance_create(500 + irandom(1900), -100, meteor)
        end
    end,
}
