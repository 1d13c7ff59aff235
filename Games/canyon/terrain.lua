-- The canyon's rock, water and plants: grown from the seeded random numbers once, kept in four tile maps.
--
-- Cells are counted from 0: columns to the right, rows down. A cell is solid or open; what is left or right of the
-- room or below it counts as solid, what is above it as open.

local TILE = 32 -- room units a cell; the pictures have 16 pixels, so each shows as 2 x 2
local COLUMNS, ROWS = 168, 72
local MESA, FLOOR = 26, 57 -- the ground's row at the room's sides and in the canyon
local RIVER_BED = FLOOR + 3
local RIVER_FROM, RIVER_TO = COLUMNS // 2 - 10, COLUMNS // 2 + 9

local sheet = sprite_add_sheet("tiles.png", 16, 16)

-- Where the sheet has what. Its 16 columns stand for open sides, open corners, or variants.
local ROW_WIDTH = 16
local TOP_ROCK, TOP_GRASS, TOP_SAND = 0, 1, 2
local INSIDE_ROW, CORNER_ROW, PLANT_ROW, WATER_ROW = 12, 13, 17, 18
local TUFT, GRASS, RED_FLOWERS, YELLOW_FLOWERS, BUSH, CACTUS, SHRUB = 0, 1, 2, 3, 4, 5, 6
local STONES, MUSHROOMS, BLUE_CRYSTALS, PINK_CRYSTALS, BONES, SIGN, REEDS, CACTUS_TOP, CACTUS_STEM =
    7, 8, 9, 10, 11, 12, 13, 14, 15

local solid = {}  -- solid[row][column]
local ground = {} -- the row of the highest rock below the sky, for each column; islands do not count

local function solid_at(column, row)
    if column < 0 or column >= COLUMNS or row >= ROWS then
        return true
    end
    return row >= 0 and solid[row][column]
end

-- ---- shape ----

-- The slope that the terraces follow: level mesas, a steep fall, a level floor.
local function slope_row(column)
    local away = math.abs(column - COLUMNS / 2) / (COLUMNS / 2)
    local height = math.max(0, math.min(1, (away - 0.24) / 0.5))
    return FLOOR + (MESA - FLOOR) * height
end

-- Terraces a few cells wide. No step is higher than three cells, which a runner can jump.
local function raise_ground()
    local row = MESA
    local left = 0
    while left < COLUMNS do
        local right = math.min(COLUMNS, left + 3 + irandom(2))
        local wanted = math.floor(slope_row((left + right) / 2)) + irandom(2) - 1
        row = math.max(row - 3, math.min(row + 3, wanted, FLOOR))
        for column = left, right - 1 do
            ground[column] = row
        end
        left = right
    end
end

-- The river's bed is deep in the middle and has stones to step on.
local function dig_river()
    for column = RIVER_FROM, RIVER_TO do
        local from_bank = math.min(column - RIVER_FROM, RIVER_TO - column)
        ground[column] = math.min(RIVER_BED, FLOOR + 1 + from_bank // 2)
        if from_bank > 3 and irandom(4) == 0 then
            ground[column] = FLOOR
        end
    end
end

local function fill_rock()
    for row = 0, ROWS - 1 do
        solid[row] = {}
        for column = 0, COLUMNS - 1 do
            solid[row][column] = row >= ground[column]
        end
    end
end

-- Of the cell itself and the eight around it.
local function open_neighbours(column, row)
    local count = 0
    for y = row - 1, row + 1 do
        for x = column - 1, column + 1 do
            if not solid_at(x, y) then
                count = count + 1
            end
        end
    end
    return count
end

local function inside_rock(column, row)
    return row > ground[column] + 4 and row < ROWS - 2 and column > 1 and column < COLUMNS - 2
end

-- Random holes, then each cell becomes what most of its neighbours are: the holes gather into caves.
local function dig_caves()
    for row = 0, ROWS - 1 do
        for column = 0, COLUMNS - 1 do
            if inside_rock(column, row) and random() < 0.44 then
                solid[row][column] = false
            end
        end
    end
    for _ = 1, 4 do
        local after = {}
        for row = 0, ROWS - 1 do
            after[row] = {}
            for column = 0, COLUMNS - 1 do
                if inside_rock(column, row) then
                    after[row][column] = open_neighbours(column, row) < 5
                else
                    after[row][column] = solid[row][column]
                end
            end
        end
        solid = after
    end
end

-- Floating islands, narrower towards the bottom.
local function hang_islands()
    for _ = 1, 16 do
        local column = 14 + irandom(COLUMNS - 28)
        local row = math.max(12, ground[column] - 9 - irandom(14))
        local half = 2 + irandom(3)
        for depth = 0, 1 + half // 2 do
            for x = column - half + depth, column + half - depth do
                if row + depth < ground[x] - 6 then
                    solid[row + depth][x] = true
                end
            end
        end
    end
end

-- ---- tiles ----

local function frame(sheet_row, sheet_column)
    return sheet_row * ROW_WIDTH + sheet_column
end

-- Which neighbours are open, as a number: the first of the pairs counts 1, the next 2, then 4 and 8.
local SIDES = { {0, -1}, {1, 0}, {0, 1}, {-1, 0} }
local CORNERS = { {1, -1}, {1, 1}, {-1, 1}, {-1, -1} }
local function open_mask(column, row, directions)
    local mask, bit = 0, 1
    for _, direction in ipairs(directions) do
        if not solid_at(column + direction[1], row + direction[2]) then
            mask = mask + bit
        end
        bit = bit * 2
    end
    return mask
end

local function top_of(column, row)
    if row > ground[column] or row >= FLOOR + 1 then
        return TOP_ROCK
    end
    return row > FLOOR - 10 and TOP_SAND or TOP_GRASS
end

-- Layers of rock lie level, but for a wave of a cell or two.
local wave = {}
local function layer_at(column, row)
    return (row + wave[column]) // 6 % 4
end

local function wave_layers()
    local height = 0
    local left = 0
    while left < COLUMNS do
        local right = math.min(COLUMNS, left + 6 + irandom(8))
        for column = left, right - 1 do
            wave[column] = height
        end
        height = math.max(-2, math.min(2, height + (irandom(1) == 0 and 1 or -1)))
        left = right
    end
end

local function rock_frame(column, row)
    local layer = layer_at(column, row)
    local sides = open_mask(column, row, SIDES)
    if sides > 0 then
        return frame(layer * 3 + top_of(column, row), sides)
    end
    local corners = open_mask(column, row, CORNERS)
    if corners > 0 then
        return frame(CORNER_ROW + layer, corners)
    end
    return frame(INSIDE_ROW, layer * 4 + math.max(0, irandom(8) - 5))
end

-- A tile map from a function that gives a cell's frame, or nil for an empty cell.
local function map_of(frame_of)
    local data = {}
    for row = 0, ROWS - 1 do
        for column = 0, COLUMNS - 1 do
            local number = frame_of(column, row)
            data[#data + 1] = number and number + 1 or 0
        end
    end
    return tilemap_add{ sprite = sheet, columns = COLUMNS, rows = ROWS, tile_width = TILE, tile_height = TILE,
                        data = data }
end

-- ---- plants ----

local ON_GRASS = { TUFT, TUFT, GRASS, GRASS, RED_FLOWERS, YELLOW_FLOWERS, BUSH, BUSH, MUSHROOMS, SIGN }
local ON_SAND = { CACTUS, SHRUB, STONES, STONES, BONES, GRASS }
local IN_CAVES = { BLUE_CRYSTALS, PINK_CRYSTALS, STONES, MUSHROOMS }

local function any_of(list)
    return list[1 + irandom(#list - 1)]
end

local function in_river(column, row)
    return row >= FLOOR and column >= RIVER_FROM and column <= RIVER_TO
end

local function plant_frame(column, row)
    if solid_at(column, row) or not solid_at(column, row + 1) or row + 1 == ROWS or random() < 0.45 then
        return nil
    elseif in_river(column, row) then
        return frame(PLANT_ROW, REEDS)
    elseif row > ground[column] then
        return frame(PLANT_ROW, any_of(IN_CAVES))
    end
    return frame(PLANT_ROW, any_of(top_of(column, row + 1) == TOP_SAND and ON_SAND or ON_GRASS))
end

-- Some cactuses are two cells tall.
local function raise_cactuses(map)
    local cactus = frame(PLANT_ROW, CACTUS) + 1
    for row = 1, ROWS - 1 do
        for column = 0, COLUMNS - 1 do
            if tilemap_get(map, column, row) == cactus and not solid_at(column, row - 1) and irandom(1) == 0 then
                tilemap_set(map, column, row, frame(PLANT_ROW, CACTUS_STEM) + 1)
                tilemap_set(map, column, row - 1, frame(PLANT_ROW, CACTUS_TOP) + 1)
            end
        end
    end
end

raise_ground()
dig_river()
fill_rock()
dig_caves()
hang_islands()
wave_layers()

local rock = map_of(function(column, row)
    return solid[row][column] and rock_frame(column, row) or nil
end)
-- Behind caves, and behind the round corners of the rock around them.
local cave_wall = map_of(function(column, row)
    local shows = row > ground[column] and open_neighbours(column, row) > 0
    return shows and frame(INSIDE_ROW, layer_at(column, row) * 4) or nil
end)
local water = map_of(function(column, row)
    return in_river(column, row) and not solid[row][column] and frame(WATER_ROW, row == FLOOR and 0 or 4) or nil
end)
local plants = map_of(plant_frame)
raise_cactuses(plants)

-- ---- what the game uses ----

local terrain = { TILE = TILE, width = COLUMNS * TILE, height = ROWS * TILE, columns = COLUMNS }

terrain.solid_at = solid_at

-- The height of the ground below the sky.
function terrain.ground_y(column)
    return ground[column] * TILE
end

function terrain.is_water(x, y)
    return in_river(x // TILE, y // TILE)
end

-- Under everything that moves.
function terrain.draw()
    draw_set_colour(colour_rgb(88, 76, 104))
    draw_tilemap(cave_wall, 0, 0)
    draw_set_colour(colours.white)
    draw_tilemap(plants, 0, 0)
    draw_tilemap(rock, 0, 0)
end

-- The river covers who wades in it, but lets them shine through.
terrain.river = object_add{
    name = "river", depth = -100,
    step = function()
        if frame_number() % 10 > 0 then
            return
        end
        local waves = frame(WATER_ROW, frame_number() // 10 % 4) + 1
        for column = RIVER_FROM, RIVER_TO do
            if not solid[FLOOR][column] then
                tilemap_set(water, column, FLOOR, waves)
            end
        end
    end,
    draw = function()
        draw_set_alpha(0.72)
        draw_tilemap(water, 0, 0)
        draw_set_alpha(1)
    end,
}

return terrain
