-- Three runners that cross the canyon. Each has a pad: `way` (-1, 0 or 1) and `jump`. A player fills it (players.lua);
-- while nobody plays, seeded random numbers and a look at the rock ahead do.

local terrain = include("terrain.lua")
local players = include("players.lua")
local TILE = terrain.TILE

local HALF_WIDTH, HEIGHT = 10, 40
local GRAVITY, JUMP, FALL_LIMIT = 0.5, 11.2, 13
local SCALE = 2 -- screen pixels a picture's pixel

local figures = sprite_add_sheet("figures.png", 20, 24, 10, 23)
local items = sprite_add_sheet("items.png", 16, 16, 8, 8)

-- Frames of a row of the sheet.
local FRAMES_A_ROW = 10
local STAND, RUN, RISE, FALL = 0, 2, 8, 9
local RUN_FRAMES, RUN_STRIDE = 6, 13 -- room units from one frame to the next

-- ---- things that come and go ----

-- A short animation that removes itself.
local function burst(name, first, count, frames_each)
    return object_add{
        name = name, sprite = items, depth = -10,
        create = function(self)
            self.age = 0
            self.frame = first
            self.xscale, self.yscale = SCALE, SCALE
        end,
        step = function(self)
            self.age = self.age + 1
            self.frame = first + self.age // frames_each
            if self.age >= count * frames_each then
                instance_destroy(self.id)
            end
        end,
    }
end
local sparkle = burst("sparkle", 6, 4, 4)
local dust = burst("dust", 10, 4, 4)

-- ---- the pad ----

-- How many cells high the rock in front is; 5 and more look alike.
local function wall_ahead(self)
    local column = math.floor((self.x + self.facing * (HALF_WIDTH + 22)) / TILE)
    local row = math.floor((self.y - 1) / TILE)
    local height = 0
    while height < 5 and terrain.solid_at(column, row - height) do
        height = height + 1
    end
    return height
end

-- Runs for a while, rests for a while.
local function change_mood(self)
    self.patience = self.patience - 1
    if self.patience <= 0 then
        self.resting = not self.resting
        self.patience = self.resting and 20 + irandom(30) or 90 + irandom(90)
    end
end

local function press_pad(self)
    if players.press_pad(self) then
        return
    end
    change_mood(self)
    self.way = self.resting and 0 or self.facing
    self.jump = false
    if self.resting or not self.grounded then
        return
    end
    local wall = wall_ahead(self)
    if wall > 4 or self.stuck > 45 then
        self.facing = -self.facing
        self.stuck = 0
    else
        self.jump = wall > 0 or irandom(110) == 0
    end
end

-- ---- motion ----

-- Whether a body that stands at x, y would touch rock.
local function touches_rock(x, y)
    local right = math.floor((x + HALF_WIDTH - 0.01) / TILE)
    local bottom = math.floor((y - 0.01) / TILE)
    for row = math.floor((y - HEIGHT) / TILE), bottom do
        for column = math.floor((x - HALF_WIDTH) / TILE), right do
            if terrain.solid_at(column, row) then
                return true
            end
        end
    end
    return false
end

local function towards(value, goal, step)
    return value < goal and math.min(goal, value + step) or math.max(goal, value - step)
end

local function accelerate(self)
    local wading = terrain.is_water(self.x, self.y - 8)
    local speed = wading and self.speed * 0.5 or self.speed
    self.vx = towards(self.vx, self.way * speed, 0.4)
    self.vy = math.min(self.vy + (wading and GRAVITY * 0.6 or GRAVITY), wading and 4 or FALL_LIMIT)
    if self.jump then
        self.vy = -JUMP
    end
end

local function move_sideways(self)
    local x = self.x + self.vx
    if not touches_rock(x, self.y) then
        self.x = x
        self.stuck = 0
        return
    end
    local edge = self.vx > 0 and (x + HALF_WIDTH) // TILE * TILE or (x - HALF_WIDTH) // TILE * TILE + TILE
    self.x = self.vx > 0 and edge - HALF_WIDTH or edge + HALF_WIDTH
    self.vx = 0
    self.stuck = self.stuck + 1
end

local function move_down(self)
    local y = self.y + self.vy
    local hit = touches_rock(self.x, y)
    local landed = hit and self.vy > 0
    if landed then
        y = y // TILE * TILE
        if not self.grounded and self.vy > 7 then
            instance_create(self.x, y - 8, dust)
        end
    elseif hit then
        y = (y - HEIGHT) // TILE * TILE + TILE + HEIGHT
    end
    self.vy = hit and 0 or self.vy
    self.grounded = landed
    self.y = y
end

local function pose(self)
    if not self.grounded then
        return self.vy < 0 and RISE or FALL
    elseif math.abs(self.vx) > 0.5 then
        return RUN + math.floor(self.x / RUN_STRIDE) % RUN_FRAMES
    end
    return STAND + frame_number() // 20 % 2
end

local function show(self)
    self.frame = self.row * FRAMES_A_ROW + pose(self)
    self.xscale, self.yscale = self.facing * SCALE, SCALE
end

-- ---- the objects ----

local runner = object_add{
    name = "runner", sprite = figures, bbox = {-HALF_WIDTH, -HEIGHT, HALF_WIDTH, 0}, depth = -20,
    step = function(self)
        press_pad(self)
        accelerate(self)
        move_sideways(self)
        move_down(self)
        show(self)
    end,
}

-- row: of the sheet. speed: room units a frame.
-- Of player 0, 1 or 2, who is the row as well.
local function kind_of_runner(name, row, speed, facing)
    return object_add{
        name = name, parent = runner,
        create = function(self)
            self.row, self.speed, self.facing = row, speed, facing
            self.vx, self.vy, self.way, self.stuck = 0, 0, 0, 0
            self.jump, self.grounded, self.resting = false, false, false
            self.patience = 100 + irandom(60)
            self.player, self.played = row, 0 -- played: frames until the runner goes on by itself
            self.crystals = 0
            show(self)
        end,
    }
end

local function nearby_runner(self)
    for n = 0, instance_count(runner) - 1 do
        local other = instance_get(instance_find(runner, n))
        if math.abs(other.x - self.x) < 24 and math.abs(other.y - 20 - self.y) < 34 then
            return other
        end
    end
    return nil
end

local BOB = { 0, 1, 2, 3, 3, 2, 1, 0, -1, -2, -3, -3, -2, -1 }
local crystal = object_add{
    name = "crystal", sprite = items, depth = -5,
    create = function(self)
        self.start = irandom(59)
        self.home = self.y
        self.xscale, self.yscale = SCALE, SCALE
    end,
    step = function(self)
        local time = frame_number() + self.start
        self.frame = time // 7 % 6
        self.y = self.home + BOB[time // 5 % #BOB + 1]
        local finder = nearby_runner(self)
        if finder then
            finder.crystals = finder.crystals + 1
            instance_create(self.x, self.y, sparkle)
            instance_destroy(self.id)
        end
    end,
}

return {
    explorer = kind_of_runner("explorer", 0, 4.6, 1),
    bandit = kind_of_runner("bandit", 1, 4, -1),
    robot = kind_of_runner("robot", 2, 4.2, 1),
    crystal = crystal,
}
