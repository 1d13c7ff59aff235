-- Effects on a base pose: what they do, when they end, and that nothing of them is left.

local expect = include("support/expect.lua")
local effects = include("kit/effects.lua")

local BASE = { x = 1000 / 3, y = -7.1, zoom = 1.3, angle = 11 }
local at = { x = 50, y = 60 } -- where the target is
local ran = {}

local host = {
    position = function(target) if target == 7 then return at.x, at.y end end,
    script = function(number) ran[#ran + 1] = number end,
    random = function() return 0.3 end,
}

local function steps(state, count, base, motion)
    local pose
    for _ = 1, count do
        pose = effects.step(state, base or BASE, host, motion)
    end
    return pose
end

local function one(kind, options, count, base, motion)
    local state = effects.new()
    effects.add(state, kind, options)
    return steps(state, count, base, motion), state
end

-- ---- places ----

local function pan_goes_there_and_holds()
    local half = one("pan_to", { x = 500, y = 20, frames = 10, ease = "linear" }, 5)
    expect.near("halfway x", half.x, (BASE.x + 500) / 2, 1e-9)
    expect.near("halfway y", half.y, (BASE.y + 20) / 2, 1e-9)
    local there = one("pan_to", { x = 500, y = 20, frames = 10 }, 10)
    expect.pose("there", there, { x = 500, y = 20, zoom = BASE.zoom, angle = BASE.angle })
    local held = one("pan_to", { x = 500, frames = 10 }, 500)
    expect.pose("held, across alone", held, { x = 500, y = BASE.y, zoom = BASE.zoom, angle = BASE.angle })
end

local function pan_follows_a_target_that_moves()
    local pose, state = one("pan_to", { target = 7, frames = 4 }, 4)
    expect.equal("x of the target", pose.x, 50)
    at.x = 90
    expect.equal("x later", steps(state, 1).x, 90)
    host.position, at.old = function() end, host.position
    expect.equal("x of a target that is gone", steps(state, 1).x, 90)
    host.position = at.old
end

-- From 1 to 4 in equal ratios is 2 halfway. A point keeps its place on the screen: (point - centre) * zoom.
local function zoom_keeps_its_point()
    local base = { x = 100, y = 50, zoom = 1, angle = 0 }
    expect.near("halfway", one("zoom_to", { zoom = 4, frames = 2, ease = "linear" }, 1, base).zoom, 2, 1e-12)
    for frame = 1, 9 do
        local pose = one("zoom_to", { zoom = 3, point = { 140, 20 }, frames = 7 }, frame, base)
        expect.near("point across in frame " .. frame, (140 - pose.x) * pose.zoom, 40, 1e-9)
        expect.near("point down in frame " .. frame, (20 - pose.y) * pose.zoom, -30, 1e-9)
    end
    expect.equal("zoom at the end", one("zoom_to", { zoom = 3, point = { 140, 20 }, frames = 7 }, 7, base).zoom, 3)
end

-- 350 to 10 degrees is a turn of 20, not of -340.
local function rotation_goes_the_short_way()
    local base = { x = 0, y = 0, zoom = 1, angle = 350 }
    expect.near("short", one("rotate_to", { angle = 10, frames = 2, ease = "linear" }, 1, base).angle, 360, 1e-9)
    local straight = { angle = 10, frames = 2, ease = "linear", way = "straight" }
    expect.near("straight", one("rotate_to", straight, 1, base).angle, 180, 1e-9)
end

-- The base turns on through the direction opposite to the goal: the picture must not spin.
local function rotation_does_not_flip()
    local state = effects.new()
    effects.add(state, "rotate_to", { angle = 0, frames = 100, ease = "linear" })
    local before = 170
    for frame = 1, 100 do
        local pose = effects.step(state, { x = 0, y = 0, zoom = 1, angle = 170 + frame }, host, 1)
        expect.is("small step in frame " .. frame, math.abs(pose.angle - before) < 4)
        before = pose.angle
    end
end

local function a_second_pan_goes_on_from_the_first()
    local _, state = one("pan_to", { x = 500, frames = 10 }, 20)
    effects.add(state, "pan_to", { x = 700, frames = 10, ease = "linear" })
    expect.near("halfway", steps(state, 5).x, 600, 1e-9)
    expect.equal("there", steps(state, 5).x, 700)
    expect.equal("the first is gone", #state.list, 1)
end

-- Each hides the one before, which is dropped: its point must keep its place on the screen all the same, in the frame in
-- which it arrives, too.
local function zooms_about_points_leave_one()
    local state = effects.new()
    local pose = BASE
    for round = 1, 5 do
        local x, y = 40 * round, 10 - round
        local across, down = (x - pose.x) * pose.zoom, (y - pose.y) * pose.zoom
        effects.add(state, "zoom_to", { zoom = 1 + round / 2, point = { x, y }, frames = 6 })
        for frame = 1, 9 do
            pose = steps(state, 1)
            local moment = " in round " .. round .. ", frame " .. frame
            expect.near("across" .. moment, (x - pose.x) * pose.zoom, across, 1e-9)
            expect.near("down" .. moment, (y - pose.y) * pose.zoom, down, 1e-9)
        end
        expect.equal("effects after round " .. round, #state.list, 1)
    end
    effects.add(state, "release", { frames = 9 })
    expect.pose("released", steps(state, 9), BASE)
end

-- ---- shakes ----

local function shake_moves_and_wears_off()
    local state = effects.new()
    effects.add(state, "shake", { x = 10, y = 6, angle = 2, frames = 30 })
    local reach_x, reach_y, roll = 0, 0, 0
    for frame = 1, 29 do
        local pose = effects.step(state, BASE, host, 1)
        local left = (1 - frame / 30) ^ 2
        expect.is("x in frame " .. frame, math.abs(pose.x - BASE.x) <= 10 * left / BASE.zoom + 1e-9)
        expect.is("angle in frame " .. frame, math.abs(pose.angle - BASE.angle) <= 2 * left + 1e-9)
        reach_x = math.max(reach_x, math.abs(pose.x - BASE.x))
        reach_y = math.max(reach_y, math.abs(pose.y - BASE.y))
        roll = math.max(roll, math.abs(pose.angle - BASE.angle))
    end
    expect.is("it shook", reach_x > 1 and reach_y > 0.6 and roll > 0.2)
    expect.pose("over", steps(state, 1), BASE)
    expect.equal("nothing is left", #state.list, 0)
end

local function an_axis_of_nothing_stays()
    local state = effects.new()
    effects.add(state, "shake", { x = 0, y = 9 })
    for frame = 1, 40 do
        local pose = effects.step(state, BASE, host, 1)
        expect.equal("x in frame " .. frame, pose.x, BASE.x)
        expect.equal("angle in frame " .. frame, pose.angle, BASE.angle)
    end
end

-- Smooth noise: at 0.1 changes a frame no step is longer than the steepest slope allows. The curve between two heights,
-- at most 2 apart, rises by at most 1.875 times their distance.
local function shakes_are_smooth()
    local state = effects.new()
    effects.add(state, "shake", { x = 10, y = 0, speed = 0.1, frames = 100000 })
    local before = steps(state, 1).x -- it starts with a jolt
    for frame = 2, 2000 do
        local pose = effects.step(state, BASE, host, 1)
        expect.is("step of frame " .. frame, math.abs(pose.x - before) <= 0.1 * 2 * 1.875 * 10 / BASE.zoom + 1e-6)
        before = pose.x
    end
end

-- Hits of 0.4 and 0.3 make 0.7 less what the first has lost in 6 of 60 frames, 0.1; they end together.
local function hits_add_up_and_end()
    local _, state = one("trauma", { level = 0.4 }, 6)
    effects.add(state, "trauma", { level = 0.3 })
    expect.equal("one effect", #state.list, 1)
    expect.near("level", effects.value(state, "trauma"), 0.6, 1e-12)
    effects.add(state, "trauma", { level = 1 })
    expect.near("at most 1", effects.value(state, "trauma"), 1, 0)
    expect.is("under way in frame 59", steps(state, 59).x ~= BASE.x)
    expect.pose("over in frame 60", steps(state, 1), BASE)
end

local function a_kick_goes_its_way_first()
    local pose = one("kick", { x = 8, y = -4, frames = 20, ease = "quad_out" }, 1)
    local left = 0.95 * 0.95 / BASE.zoom
    expect.near("x", pose.x, BASE.x + 8 * left, 1e-9)
    expect.near("y", pose.y, BASE.y - 4 * left, 1e-9)
    expect.pose("over", one("kick", { x = 8, frames = 20 }, 20), BASE)
end

-- ---- their course ----

-- A hundred effects of all kinds, started all over the place on a base that moves; then the camera stands as if
-- nothing had been.
local function nothing_drifts()
    local state = effects.new()
    local base = { x = 0, y = 0, zoom = 1, angle = 0 }
    for frame = 1, 900 do
        base = { x = base.x + 1.37, y = base.y - 0.11, zoom = 1 + frame % 7 / 10, angle = frame * 0.3 % 360 }
        if frame % 8 == 1 and frame < 800 then
            effects.add(state, "shake", { angle = 5, frames = 11 })
            effects.add(state, "trauma", { level = 0.3 })
            effects.add(state, "kick", { x = 9, frames = 30 })
            effects.add(state, "zoom_to", { zoom = 1 + frame % 5, point = { frame, 0 }, frames = 5 })
            effects.add(state, "pan_to", { x = frame * 2, y = 4, frames = 20 })
            effects.add(state, "rotate_to", { angle = frame, frames = 9 })
        elseif frame == 820 then
            effects.add(state, "release", { frames = 40, ease = "back_out" })
        end
        local pose = effects.step(state, base, host, 1)
        expect.is("limits of the list in frame " .. frame, #state.list < 40)
        if frame >= 859 then
            expect.pose("frame " .. frame, pose, base)
        end
    end
    expect.equal("nothing is left", #state.list, 0)
end

local function chains_run_one_after_the_other()
    ran = {}
    local state = effects.new()
    local last = effects.chain(state, { { "pan_to", x = 400, frames = 5, done = 1 }, { "wait", frames = 3, done = 2 },
                                        { "zoom_to", zoom = 2, frames = 4, done = 3 },
                                        { "release", frames = 6, done = 4 } })
    local script_at = { [5] = 1, [8] = 2, [12] = 3, [18] = 4 }
    for frame = 1, 20 do
        expect.equal("under way before frame " .. frame, effects.active(state, last), frame <= 18)
        local zoom = effects.step(state, BASE, host, 1).zoom
        expect.equal("script in frame " .. frame, ran[1], script_at[frame])
        expect.equal("zooms in frame " .. frame, zoom ~= BASE.zoom, frame > 8 and frame < 18)
        ran = {}
    end
    expect.equal("nothing is left", #state.list, 0)
end

local function cancelling_ends_what_waits()
    ran = {}
    local state = effects.new()
    local first = effects.add(state, "pan_to", { x = 400, frames = 9, done = 1 })
    effects.chain(state, { { "wait", after = first, done = 2 }, { "kick", x = 5, done = 3 } })
    local other = effects.add(state, "shake", { done = 4 })
    steps(state, 4)
    effects.cancel(state, first)
    expect.equal("left", #state.list, 1)
    expect.is("the other goes on", effects.active(state, other))
    effects.cancel(state, other, 10)
    expect.is("it glides", steps(state, 9).x ~= BASE.x)
    expect.pose("over", steps(state, 1), BASE)
    expect.equal("no script ran", #ran, 0)
    effects.cancel(state, 12345)
end

local function a_script_may_start_the_next_effect()
    local state = effects.new()
    host.script = function() effects.add(state, "pan_to", { x = 9, frames = 1 }) end
    effects.add(state, "wait", { frames = 3, done = 1 })
    expect.pose("frame 3", steps(state, 3), BASE)
    expect.equal("frame 4", steps(state, 1).x, 9)
    host.script = function(number) ran[#ran + 1] = number end
end

local function no_frames_is_at_once()
    expect.equal("x", one("pan_to", { x = 9, frames = 0 }, 1).x, 9)
    expect.pose("shake", one("shake", { frames = 0 }, 1), BASE)
end

-- ---- what lies on the screen ----

local function fades_go_on_from_where_they_are()
    local pose, state = one("fade", { to = 1, frames = 10 }, 5)
    expect.pose("the camera does not move", pose, BASE)
    expect.near("halfway", effects.value(state, "fade"), 0.5, 1e-12)
    effects.add(state, "fade", { to = 0, frames = 5 })
    expect.near("turned round", effects.value(state, "fade"), 0.5, 1e-12)
    steps(state, 4)
    expect.near("nearly clear", effects.value(state, "fade"), 0.1, 1e-12)
    steps(state, 1)
    expect.equal("nothing is left", #state.list, 0)
end

local function letterbox_and_flash()
    local _, state = one("letterbox", { to = 0.1, frames = 3 }, 50)
    expect.equal("bars stay", effects.value(state, "letterbox"), 0.1)
    effects.add(state, "flash", { frames = 4, ease = "linear" })
    steps(state, 1)
    expect.near("flash", effects.value(state, "flash"), 0.75, 1e-12)
    steps(state, 3)
    expect.equal("only the bars are left", #state.list, 1)
end

-- ---- players who are made ill by motion ----

local function motion_scales_shake_roll_and_zoom()
    local options = { x = 10, y = 10, angle = 4 }
    local whole, half = one("shake", options, 3, BASE, 1), one("shake", options, 3, BASE, 0.5)
    expect.near("shake", half.x - BASE.x, (whole.x - BASE.x) / 2, 1e-9)
    expect.near("its roll", half.angle - BASE.angle, (whole.angle - BASE.angle) / 2, 1e-9)
    expect.near("zoom", one("zoom_to", { zoom = 5.2, frames = 2 }, 2, BASE, 0.5).zoom, 2.6, 1e-9)
    expect.near("roll", one("rotate_to", { angle = 51, frames = 2 }, 2, BASE, 0.25).angle, 21, 1e-9)
    for _, kind in ipairs{ "shake", "trauma", "kick", "zoom_to", "rotate_to" } do
        local given = { zoom_to = { zoom = 3, point = { 0, 0 } }, rotate_to = { angle = 50 }, kick = { x = 9 } }
        expect.pose("none of " .. kind, one(kind, given[kind], 5, BASE, 0), BASE)
    end
    expect.equal("a pan is as it was", one("pan_to", { x = 5, frames = 3 }, 3, BASE, 0).x, 5)
end

-- ---- mistakes ----

local function mistakes_are_told()
    local state = effects.new()
    local function add(kind, options)
        return function() effects.add(state, kind, options) end
    end
    expect.refusal("kind", add("shaek"), 'an effect is one of "fade", "flash", "kick", "letterbox", "pan_to", '
        .. '"release", "rotate_to", "shake", "trauma", "wait", "zoom_to", got the string "shaek"')
    expect.refusal("field", add("kick", { z = 1 }),
        "there is no field z; the fields are after, done, ease, frames, x, y")
    expect.refusal("type", add("shake", { x = "big" }), 'x is a number, got the string "big"')
    expect.refusal("infinite", add("pan_to", { x = 1 / 0 }), "x is a number, got inf")
    expect.refusal("no goal", add("pan_to", {}), "x or y or target must be given")
    expect.refusal("zoom", add("zoom_to", { zoom = 0 }), "zoom is a number above 0, got 0")
    expect.refusal("ease", add("wait", { ease = "quad" }), 'ease is "linear", or one of quad cubic quart quint sine expo '
        .. "circ back elastic bounce with _in, _out or _inout after it, got quad")
    expect.equal("nothing was added", #state.list, 0)
    expect.refusal("in a chain", function() effects.chain(state, { { "wait" }, { "pan_to", x = false } }) end,
        "[2] x is a number, got false")
    expect.refusal("no goal in a chain", function() effects.chain(state, { { "pan_to" } }) end,
        "[1] x or y or target must be given")
    expect.equal("nothing of a chain was added", #state.list, 0)
    local function hoard()
        while true do
            effects.add(state, "wait")
        end
    end
    expect.refusal("too many", hoard, "this camera would have more than 200 effects; cancel or release some")
end

room_add{ create = function()
    for _, test in ipairs{
        pan_goes_there_and_holds, pan_follows_a_target_that_moves, zoom_keeps_its_point, rotation_goes_the_short_way,
        rotation_does_not_flip, a_second_pan_goes_on_from_the_first, zooms_about_points_leave_one,
        shake_moves_and_wears_off, an_axis_of_nothing_stays, shakes_are_smooth, hits_add_up_and_end,
        a_kick_goes_its_way_first, nothing_drifts, chains_run_one_after_the_other, cancelling_ends_what_waits,
        a_script_may_start_the_next_effect, no_frames_is_at_once, fades_go_on_from_where_they_are, letterbox_and_flash,
        motion_scales_shake_roll_and_zoom, mistakes_are_told } do
        test()
    end
    expect.done()
end }
