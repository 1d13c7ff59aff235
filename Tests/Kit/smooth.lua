-- Springs, exponential smoothing, and what bounds their acceleration.

local expect = include("support/expect.lua")
local smooth = include("kit/smooth.lua")

-- Half of the distance is gone after the half-life, for each half-life and from rest.
local function half_life_is_a_half()
    for _, life in ipairs{ 1, 5, 12, 60 } do
        local at, speed, slow = 100, 0, 100
        for _ = 1, life do
            at, speed = smooth.spring(at, speed, 0, life)
            slow = smooth.exponential(slow, 0, life)
        end
        expect.near("spring, " .. life, at, 50, 1e-9)
        expect.near("exponential, " .. life, slow, 50, 1e-9)
    end
end

-- The differential equation x'' = -2 w x' - w^2 x by many small steps (Runge-Kutta), one frame long.
local function slow_spring(at, speed, goal, life)
    local w = 1.6783469900166605 / life
    local function pull(x, v) return -2 * w * v - w * w * (x - goal) end
    local steps = 200
    local h = 1 / steps
    for _ = 1, steps do
        local v1, a1 = speed, pull(at, speed)
        local v2, a2 = speed + h / 2 * a1, pull(at + h / 2 * v1, speed + h / 2 * a1)
        local v3, a3 = speed + h / 2 * a2, pull(at + h / 2 * v2, speed + h / 2 * a2)
        local v4, a4 = speed + h * a3, pull(at + h * v3, speed + h * a3)
        at = at + h / 6 * (v1 + 2 * v2 + 2 * v3 + v4)
        speed = speed + h / 6 * (a1 + 2 * a2 + 2 * a3 + a4)
    end
    return at, speed
end

local function a_frame_is_exact()
    for _, start in ipairs{ {0, 0, 10, 5}, {3, -8, 10, 2}, {-100, 40, 7, 1}, {5, 1, 5, 30} } do
        local at, speed = smooth.spring(table.unpack(start))
        local slow_at, slow_speed = slow_spring(table.unpack(start))
        expect.near("place", at, slow_at, 1e-7)
        expect.near("speed", speed, slow_speed, 1e-7)
    end
end

-- The goal goes to 100 and stays: from rest, and behind a goal that came at any speed.
local function nothing_overshoots()
    for _, pace in ipairs{ 0.5, 3, 40, 1000 } do
        for _, life in ipairs{ 0.5, 4, 25 } do
            local at, speed, slow, goal = 0, 0, 0, 0
            for frame = 1, 400 do
                goal = math.min(100, goal + pace)
                at, speed = smooth.spring(at, speed, goal, life)
                slow = smooth.exponential(slow, goal, life)
                expect.is("spring at " .. frame .. " of " .. life, at <= 100 + 1e-9)
                expect.is("exponential at " .. frame .. " of " .. life, slow <= 100 + 1e-9)
            end
            expect.near("comes there", at, 100, 0.01)
        end
    end
end

-- A goal that goes to and fro as fast as goal_speed allows, at the times that hurt most.
local function acceleration_keeps_its_bound()
    for _, kind in ipairs{ "spring", "exponential" } do
        for _, life in ipairs{ 2, 6, 15 } do
            local pace = smooth.goal_speed(kind, life, 3)
            for _, turn in ipairs{ 1, 3, 7, 20, 61 } do
                local at, speed, goal, way, before = 0, 0, 0, 1, 0
                for frame = 1, 500 do
                    way = frame % turn == 0 and -way or way
                    goal = goal + way * pace
                    local was = at
                    if kind == "spring" then
                        at, speed = smooth.spring(at, speed, goal, life)
                    else
                        at = smooth.exponential(at, goal, life)
                    end
                    local moved = at - was
                    expect.is(kind .. " of " .. life .. " at " .. frame, math.abs(moved - before) <= 3 + 1e-9)
                    before = moved
                end
            end
        end
    end
end

local function no_half_life_follows_at_once()
    local at, speed = smooth.spring(1, 2, 5, 0)
    expect.equal("spring", at, 5)
    expect.equal("speed", speed, 4)
    expect.equal("exponential", smooth.exponential(1, 5, 0), 5)
end

room_add{ create = function()
    half_life_is_a_half()
    a_frame_is_exact()
    nothing_overshoots()
    acceleration_keeps_its_bound()
    no_half_life_follows_at_once()
    expect.done()
end }
