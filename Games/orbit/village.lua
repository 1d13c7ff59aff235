-- The village: a map of the ground, and objects that stand on it. Each object draws itself in space; every camera sees
-- the same instances.

local models = include("models.lua")
local space = include("space.lua")

local CELL, CELLS = 64, 16
local SIZE = CELL * CELLS
local ground_tiles = sprite_add("ground.png", 6)

-- . grass  * flowers  = road  # square  ~ water  % field  T a tree on grass
local GROUND = {
    "T.*T..T...*T..TT",
    ".*...........T.T",
    "T.............*T",
    "..============..",
    "T.=.*.T..*...=.*",
    ".*=..######..=..",
    "..=T.######.T=..",
    "*.====####====..",
    "..=..######..=~.",
    "T.=%%######.T=~~",
    "..=%%%.*.~~..=~~",
    ".*=%%%T.~~~~.=.~",
    "..============.*",
    "T..........*...T",
    ".T.*..T......T..",
    "TT..T..*.T.T..TT",
}
local TILES = { ["."] = 1, ["T"] = 1, ["*"] = 2, ["="] = 3, ["#"] = 4, ["~"] = 5, ["%"] = 6 }

-- left, top, right, bottom, height of the walls, walls, tiles
local HOUSES = {
    { 204, 272, 314, 366, 56, models.WINDOW, models.RED_TILES },
    { 722, 272, 818, 366, 60, models.BRICK, models.SLATE },
    { 246, 104, 350, 190, 52, models.BRICK, models.RED_TILES },
    { 430, 96, 570, 190, 64, models.WINDOW, models.SLATE },
    { 648, 104, 748, 192, 54, models.WINDOW, models.RED_TILES },
    { 226, 850, 336, 940, 54, models.WINDOW, models.SLATE },
    { 474, 850, 604, 936, 58, models.BRICK, models.RED_TILES },
    { 706, 850, 806, 940, 54, models.WINDOW, models.RED_TILES },
    { 22, 400, 112, 500, 54, models.BRICK, models.SLATE },
}

local function cell_at(column, row)
    return GROUND[row + 1]:sub(column + 1, column + 1)
end

local function new_ground()
    local data = {}
    for row = 0, CELLS - 1 do
        for column = 0, CELLS - 1 do
            data[#data + 1] = TILES[cell_at(column, row)]
        end
    end
    return tilemap_add{ sprite = ground_tiles, columns = CELLS, rows = CELLS, tile_width = CELL, tile_height = CELL,
                        data = data }
end
local ground = new_ground()

-- ---- what stands still ----

local house_models = {}
for number, place in ipairs(HOUSES) do
    local left, top, right, bottom, height, wall, tiles = table.unpack(place)
    house_models[number] = models.new(function()
        models.walls_around(wall, models.DOOR, left, top, right, bottom, 0, height)
        models.gable_roof(tiles, models.PLANKS, left, top, right, bottom, height, 46)
    end)
end

local house = object_add{
    name = "house", bbox = {0, 0, 140, 100},
    create = function(self)
        self.number = instance_count(self.object)
    end,
    draw = function(self)
        models.draw(house_models[self.number])
    end,
}

local CHURCH_X, CHURCH_Y = 512, 448
local church_model = models.new(function()
    local x, y = CHURCH_X, CHURCH_Y
    models.walls_around(models.STONE, models.STONE, x - 36, y - 20, x + 36, y + 70, 0, 70)
    models.spire(models.SLATE, x - 42, y - 26, x + 42, y + 76, 70, 40)
    models.walls_around(models.STONE, models.STONE, x - 26, y - 70, x + 26, y - 18, 0, 140)
    models.spire(models.RED_TILES, x - 32, y - 76, x + 32, y - 12, 140, 90)
end)

local church = object_add{
    name = "church", bbox = {-60, -80, 60, 80},
    draw = function()
        models.draw(church_model)
    end,
}

local RIMS = { {-34, -34, 34, -26}, {-34, 26, 34, 34}, {-34, -26, -26, 26}, {26, -26, 34, 26} }
local fountain = object_add{
    name = "fountain", bbox = {-40, -40, 40, 40},
    draw = function(self)
        local x, y = self.x, self.y
        for _, rim in ipairs(RIMS) do
            models.block(models.STONE, x + rim[1], y + rim[2], x + rim[3], y + rim[4], 0, 14)
        end
        draw_quad3d(ground_tiles, 4, x - 26, y - 26, -9, x + 26, y - 26, -9, x + 26, y + 26, -9, x - 26, y + 26, -9)
        models.block(models.STONE, x - 6, y - 6, x + 6, y + 6, 0, 40)
        models.block(models.STONE, x - 12, y - 12, x + 12, y + 12, 40, 6)
    end,
}

local tree = object_add{
    name = "tree", bbox = {-24, -24, 24, 24},
    create = function(self)
        self.height = 22 + irandom(14)
        self.half = 16 + irandom(6)
    end,
    draw = function(self)
        local x, y, half, height = self.x, self.y, self.half, self.height
        models.block(models.BARK, x - 5, y - 5, x + 5, y + 5, 0, height)
        models.block(models.LEAVES, x - half, y - half, x + half, y + half, height, half * 1.5)
        half = half * 0.6
        models.block(models.LEAVES, x - half, y - half, x + half, y + half, height + half * 2.5, half * 1.4)
    end,
}

-- ---- what moves ----

-- Four sails in the plane of x and z, turned a little further in each step.
local SAIL_TURN, SAIL_TURN_ASIDE = space.turn(0.012)
local MILL_X, MILL_Y = 950, 330
local mill_model = models.new(function()
    local x, y = MILL_X, MILL_Y
    models.walls_around(models.PLANKS, models.DOOR, x - 30, y - 30, x + 30, y + 30, 0, 48)
    models.walls_around(models.PLANKS, models.WINDOW, x - 25, y - 25, x + 25, y + 25, 48, 52)
    models.spire(models.RED_TILES, x - 32, y - 32, x + 32, y + 32, 100, 40)
end)

local mill = object_add{
    name = "mill", bbox = {-100, -60, 100, 60},
    create = function(self)
        self.c, self.s = 1, 0
    end,
    step = function(self)
        self.c, self.s = space.add_turn(self.c, self.s, SAIL_TURN, SAIL_TURN_ASIDE)
    end,
    draw = function(self)
        local x, y = self.x, self.y
        models.draw(mill_model)
        models.block(models.BARK, x - 4, y + 25, x + 4, y + 40, 90, 8)
        draw_set_colour(colours.white)
        local c, s = self.c, self.s
        for _ = 1, 4 do
            local function at(along, aside) -- from the hub
                return x + c * along - s * aside, y + 38, -94 - (s * along + c * aside)
            end
            local x1, y1, z1 = at(10, 14)
            local x2, y2, z2 = at(84, 14)
            local x3, y3, z3 = at(84, -4)
            local x4, y4, z4 = at(10, -4)
            draw_quad3d(models.walls, models.SAIL, x1, y1, z1, x2, y2, z2, x3, y3, z3, x4, y4, z4)
            c, s = -s, c
        end
    end,
}

-- Drives around the road and turns at its corners.
local ROUTE = { {160, 224}, {864, 224}, {864, 800}, {160, 800} }
local SPEED, STEERING = 2.4, 0.07
local WHEELS = { {-22, -17}, {12, -17}, {-22, 13}, {12, 13} }
local function corner_reached(self)
    local goal = ROUTE[self.goal]
    return math.abs(goal[1] - self.x) + math.abs(goal[2] - self.y) < 28
end

local cart = object_add{
    name = "cart", bbox = {-30, -30, 30, 30},
    create = function(self)
        self.goal = 2
        self.c, self.s = 1, 0
    end,
    step = function(self)
        if corner_reached(self) then
            self.goal = self.goal % #ROUTE + 1
        end
        local goal = ROUTE[self.goal]
        local dx, dy = goal[1] - self.x, goal[2] - self.y
        local distance = math.sqrt(dx * dx + dy * dy)
        local c, s = self.c + dx / distance * STEERING, self.s + dy / distance * STEERING
        local length = math.sqrt(c * c + s * s)
        self.c, self.s = c / length, s / length
        self.x = self.x + self.c * SPEED
        self.y = self.y + self.s * SPEED
    end,
    draw = function(self)
        matrix_set_world(space.place(self.x, self.y, self.c, self.s))
        for _, wheel in ipairs(WHEELS) do
            models.block(models.BARK, wheel[1], wheel[2], wheel[1] + 10, wheel[2] + 4, 0, 10)
        end
        models.block(models.PLANKS, -26, -14, 26, 14, 6, 12)
        models.block(models.SAIL, -24, -13, 6, 13, 18, 16)
        models.block(models.RED_TILES, 10, -8, 20, 8, 18, 10)
        matrix_reset_world()
    end,
}

-- ---- what the game uses ----

local function place_trees()
    for row = 0, CELLS - 1 do
        for column = 0, CELLS - 1 do
            if cell_at(column, row) == "T" then
                instance_create((column + 0.3 + random() * 0.4) * CELL, (row + 0.3 + random() * 0.4) * CELL, tree)
            end
        end
    end
end

local FAR = 6000
return {
    SIZE = SIZE,
    cart = cart,

    build = function()
        place_trees()
        for _, place in ipairs(HOUSES) do
            instance_create(place[1], place[2], house)
        end
        instance_create(CHURCH_X, CHURCH_Y, church)
        instance_create(512, 590, fountain)
        instance_create(MILL_X, MILL_Y, mill)
        instance_create(ROUTE[1][1], ROUTE[1][2], cart)
    end,

    -- Flat and first: what stands on the ground comes over it. Shadows fall to the right and down.
    draw_ground = function()
        draw_set_colour(colour_rgb(122, 180, 100))
        draw_rectangle(-FAR, -FAR, FAR, FAR)
        draw_set_colour(colours.white)
        draw_tilemap(ground, 0, 0)
        draw_set_colour(colours.black)
        draw_set_alpha(0.22)
        for _, place in ipairs(HOUSES) do
            draw_rectangle(place[1], place[2], place[3] + place[5] * 0.5, place[4] + place[5] * 0.3)
        end
        for n = 0, instance_count(tree) - 1 do
            local self = instance_get(instance_find(tree, n))
            draw_circle(self.x + 12, self.y + 8, self.half * 1.2)
        end
        draw_set_alpha(1)
    end,
}
