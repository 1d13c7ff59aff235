-- A town at night by a lake: sky, hills and houses, all drawn from shapes.

local WIDTH, HEIGHT = 2400, 1200
local GROUND = 1040
local LAKE_FROM, LAKE_TO = 1560, 2160
local MARGIN = 200 -- what a shaken camera may see beyond the room

local town = { WIDTH = WIDTH, HEIGHT = HEIGHT, GROUND = GROUND, NIGHT = colour_rgb(12, 14, 38) }

local function mixed(from, to, part)
    local c = {}
    for i = 1, 3 do
        c[i] = math.floor(from[i] + (to[i] - from[i]) * part + 0.5)
    end
    return colour_rgb(c[1], c[2], c[3])
end

-- ---- sky ----

local stars = {}
for i = 1, 160 do
    stars[i] = { x = irandom(WIDTH), y = irandom(760), size = 1 + irandom(2), phase = irandom(59) }
end

local SKY_TOP, SKY_MIDDLE, SKY_FOOT = {12, 14, 38}, {44, 36, 92}, {170, 84, 110}
local SKY_STEPS = 40

-- The bands of the sky, from the top down. They never change: they are mixed once, not for each view of each frame.
local sky = {}
for step = 0, SKY_STEPS - 1 do
    local part = step / (SKY_STEPS - 1)
    sky[step + 1] = {
        top = step == 0 and -MARGIN or step * GROUND / SKY_STEPS,
        foot = (step + 1) * GROUND / SKY_STEPS,
        colour = part < 0.5 and mixed(SKY_TOP, SKY_MIDDLE, part * 2) or mixed(SKY_MIDDLE, SKY_FOOT, part * 2 - 1),
    }
end

local function draw_sky()
    for _, band in ipairs(sky) do
        draw_set_colour(band.colour)
        draw_rectangle(-MARGIN, band.top, WIDTH + MARGIN, band.foot)
    end
    draw_set_colour(colour_rgb(255, 246, 220))
    local frame = frame_number()
    for _, star in ipairs(stars) do
        draw_set_alpha(0.35 + 0.5 * math.abs((frame + star.phase) % 60 - 30) / 30)
        draw_rectangle(star.x, star.y, star.x + star.size, star.y + star.size)
    end
    draw_set_alpha(1)
end

local function draw_moon(x, y)
    draw_set_colour(colour_rgb(255, 244, 214))
    for ring = 4, 1, -1 do
        draw_set_alpha(0.05)
        draw_circle(x, y, 70 + ring * 22)
    end
    draw_set_alpha(1)
    draw_circle(x, y, 70)
    draw_set_colour(colour_rgb(232, 216, 186))
    draw_circle(x - 22, y - 14, 15)
    draw_circle(x + 24, y + 20, 19)
    draw_circle(x + 18, y - 32, 8)
    draw_circle(x - 26, y + 30, 9)
end

-- ---- hills ----

local HILL_STEP = 60
local function new_hills(base, height)
    local line = {}
    local level = 0.5
    for i = 0, (WIDTH + 2 * MARGIN) // HILL_STEP + 1 do
        level = math.max(0, math.min(1, level + random_range(-0.22, 0.22)))
        line[i] = base - level * height
    end
    return line
end

local hills = {
    { line = new_hills(900, 330), colour = colour_rgb(58, 40, 92) },
    { line = new_hills(980, 240), colour = colour_rgb(38, 28, 68) },
}

local function draw_hills(range)
    draw_set_colour(range.colour)
    for i = 0, #range.line - 1 do
        local left, right = i * HILL_STEP - MARGIN, (i + 1) * HILL_STEP - MARGIN
        local from, to = range.line[i], range.line[i + 1]
        draw_triangle(left, from, right, to, left, GROUND)
        draw_triangle(right, to, right, GROUND, left, GROUND)
    end
end

local function draw_lake()
    draw_set_colour(colour_rgb(66, 72, 104))
    draw_triangle(LAKE_FROM - 60, GROUND + 6, LAKE_TO + 60, GROUND + 6, (LAKE_FROM + LAKE_TO) / 2, HEIGHT + 800)
    draw_set_colour(colour_rgb(34, 50, 104))
    draw_triangle(LAKE_FROM - 40, GROUND + 12, LAKE_TO + 40, GROUND + 12, (LAKE_FROM + LAKE_TO) / 2, HEIGHT + 760)
    draw_set_colour(colour_rgb(150, 150, 200))
    for i = 0, 23 do
        local row = i // 4
        local shift = (frame_number() // 2 + i * 67) % 120
        local x = LAKE_FROM + 60 + (i % 4) * 120 + shift * (i % 2 == 0 and 0.3 or -0.2)
        draw_set_alpha(0.3 - row * 0.03)
        draw_rectangle(x, GROUND + 44 + row * 24, x + 46 + row * 8, GROUND + 47 + row * 24)
    end
    draw_set_alpha(1)
end

-- Under the houses.
function town.draw_ground()
    draw_sky()
    draw_moon(430, 270)
    draw_hills(hills[1])
    draw_hills(hills[2])
    draw_set_colour(colour_rgb(24, 22, 44))
    draw_rectangle(-MARGIN, GROUND, WIDTH + MARGIN, HEIGHT + MARGIN)
    draw_set_colour(colour_rgb(52, 58, 84))
    draw_rectangle(-MARGIN, GROUND, WIDTH + MARGIN, GROUND + 6)
    draw_lake()
end

-- ---- houses ----

local WINDOW, WINDOW_STEP = 12, 24

-- What is the same for all windows of a house is asked of it once: a field of an instance takes longer than a local.
local function draw_windows(self)
    local flicker = self.dark > 0 and (frame_number() // 3 + self.x // 1) % 3 > 0
    local left, top, columns = self.x + 12, self.y - self.height + 18, self.columns
    local light, unlit = self.light, self.unlit
    for i, lit in ipairs(self.lit) do
        local x = left + (i - 1) % columns * WINDOW_STEP
        local y = top + (i - 1) // columns * WINDOW_STEP
        draw_set_colour(lit and not flicker and light or unlit)
        draw_rectangle(x, y, x + WINDOW, y + WINDOW)
    end
end

local LIGHTS = { colour_rgb(255, 214, 130), colour_rgb(255, 196, 110), colour_rgb(200, 226, 255) }

local house = object_add{
    name = "house", bbox = {-8, -520, 180, 0}, depth = 10,
    create = function(self)
        self.columns = 2 + irandom(3)
        self.width = self.columns * WINDOW_STEP + 12
        self.height = (4 + irandom(9)) * WINDOW_STEP
        self.tone = irandom(14)
        self.light = LIGHTS[1 + irandom(2)]
        self.dark = 0
        self.lit = {}
        for i = 1, self.columns * (self.height // WINDOW_STEP - 1) do
            self.lit[i] = irandom(2) > 0
        end
        self.unlit = colour_rgb(34 + self.tone, 34 + self.tone, 62 + self.tone)
    end,
    step = function(self)
        self.dark = math.max(0, self.dark - 1)
    end,
    draw = function(self)
        local top = self.y - self.height
        draw_set_colour(colour_rgb(46 + self.tone, 46 + self.tone, 80 + self.tone))
        draw_rectangle(self.x, top, self.x + self.width, self.y)
        draw_set_colour(colour_rgb(74 + self.tone, 70 + self.tone, 112 + self.tone))
        draw_rectangle(self.x, top, self.x + 4, self.y)
        draw_rectangle(self.x - 4, top - 6, self.x + self.width + 4, top)
        draw_windows(self)
    end,
}

-- The tallest house: a tower with a lamp that blinks.
local tower = object_add{
    name = "tower", parent = house,
    create = function(self)
        self.columns, self.width, self.height = 4, 108, 17 * WINDOW_STEP
        self.tone, self.light, self.dark = 20, LIGHTS[3], 0
        self.unlit = colour_rgb(60, 60, 92)
        self.lit = {}
        for i = 1, self.columns * 16 do
            self.lit[i] = irandom(3) > 0
        end
    end,
}
local lamp = object_add{
    name = "lamp", bbox = {-20, -90, 20, 0},
    draw = function(self)
        draw_set_colour(colour_rgb(90, 86, 130))
        draw_rectangle(self.x - 2, self.y - 70, self.x + 2, self.y)
        draw_set_colour(colours.red)
        draw_set_alpha(frame_number() % 60 < 30 and 1 or 0.25)
        draw_circle(self.x, self.y - 72, 6)
        draw_set_alpha(1)
    end,
}

local TOWER_X = 1060

function town.build()
    local x = 40
    while x < WIDTH - 140 do
        local near_tower = x + 140 > TOWER_X and x < TOWER_X + 120
        local in_lake = x + 150 > LAKE_FROM and x < LAKE_TO + 20
        if not near_tower and not in_lake then
            local id = instance_create(x, GROUND, house)
            x = x + instance_get(id).width
        end
        x = x + 14 + irandom(26)
    end
    instance_create(TOWER_X, GROUND, tower)
    instance_create(TOWER_X + 54, GROUND - 17 * WINDOW_STEP - 6, lamp)
end

-- An impact at x lets the lights of the houses around flicker.
function town.shake_lights(x)
    for n = 0, instance_count(house) - 1 do
        local self = instance_get(instance_find(house, n))
        if math.abs(self.x - x) < 420 then
            self.dark = 30 + irandom(50)
        end
    end
end

return town
