-- The easing curves, against values reckoned by hand.

local expect = include("support/expect.lua")
local easing = include("kit/easing.lua")

local FAMILIES = { "quad", "cubic", "quart", "quint", "sine", "expo", "circ", "elastic", "back", "bounce" }

local function names_are_complete()
    local count = 1 + 3 * #FAMILIES
    expect.equal("number of names", #easing.names(), count)
    for _, family in ipairs(FAMILIES) do
        for _, way in ipairs{ "_in", "_out", "_inout" } do
            expect.is(family .. way .. " exists", easing.exists(family .. way))
        end
    end
    expect.is("no other name exists", not easing.exists("quad") and not easing.exists(nil))
end

-- Also outside, where the time is clamped.
local function ends_are_exact()
    for _, name in ipairs(easing.names()) do
        for _, t in ipairs{ -3, 0 } do
            expect.equal(name .. " at " .. t, easing.at(name, t), 0)
        end
        for _, t in ipairs{ 1, 7.5 } do
            expect.equal(name .. " at " .. t, easing.at(name, t), 1)
        end
    end
end

-- At a half and at a quarter: powers of these, 1 - cos 45 degrees, 1 - sqrt(3/4), ...
local function known_values()
    local known = {
        { "linear", 0.25, 0.25 }, { "quad_in", 0.5, 0.25 }, { "cubic_in", 0.5, 0.125 }, { "quart_in", 0.5, 0.0625 },
        { "quint_in", 0.5, 0.03125 }, { "sine_in", 0.5, 1 - math.sqrt(0.5) }, { "expo_in", 0.5, 31 / 1023 },
        { "circ_in", 0.5, 1 - math.sqrt(0.75) }, { "back_in", 0.5, 0.25 * (2.70158 * 0.5 - 1.70158) },
        { "bounce_out", 1 / 2.75, 1 }, { "bounce_out", 1.5 / 2.75, 0.75 }, { "quad_out", 0.25, 1 - 0.5625 },
        { "quad_inout", 0.25, 0.125 }, { "cubic_inout", 0.75, 1 - 0.0625 }, { "elastic_inout", 0.5, 0.5 },
    }
    for _, row in ipairs(known) do
        expect.near(row[1] .. " at " .. row[2], easing.at(row[1], row[2]), row[3], 1e-6)
    end
end

local function out_is_in_turned_round()
    for _, family in ipairs(FAMILIES) do
        for i = 1, 19 do
            local t = i / 20
            local rise, fall = easing.at(family .. "_in", t), easing.at(family .. "_out", 1 - t)
            expect.near(family .. " at " .. t, fall, 1 - rise, 1e-6)
            local half = easing.at(family .. "_inout", t / 2)
            expect.near(family .. "_inout at " .. t / 2, half, rise / 2, 1e-6)
        end
    end
end

-- All but the three that swing go one way; none jumps anywhere, the ends included.
local function curves_are_smooth_ways()
    for _, name in ipairs(easing.names()) do
        local swings = name:find("back") or name:find("elastic") or name:find("bounce")
        local before = 0
        for i = 1, 1000 do
            local now = easing.at(name, i / 1000)
            expect.is(name .. " never goes back at " .. i, swings or now >= before)
            -- the steepest is the circle's end: sqrt(2 / 1000)
            expect.is(name .. " does not jump at " .. i, math.abs(now - before) < 0.07)
            before = now
        end
    end
end

room_add{ create = function()
    names_are_complete()
    ends_are_exact()
    known_values()
    out_is_in_turned_round()
    curves_are_smooth_ways()
    expect.done()
end }
