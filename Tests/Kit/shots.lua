-- Shots with priorities, their blends, and cut-scenes, on a host of this file's own.

local expect = include("support/expect.lua")
local checks = include("kit/checks.lua")
local shots = include("kit/shots.lua")

local VIEW = { width = 640, height = 360 }
local ROOM = { left = 0, right = 9000, top = 0, bottom = 9000 }
local ran = {}
local host = { position = function() end, script = function(number) ran[#ran + 1] = number end }

local function at(x, y, more)
    local fields = { follow = { x = x, y = y or 1000 } }
    for name, value in pairs(more or {}) do
        fields[name] = value
    end
    return checks.fields(fields, shots.FIELDS, "")
end

local function walk(state, frames)
    for _ = 1, frames or 1 do
        shots.step(state, host, VIEW, ROOM)
    end
    return state.base
end

local function live(state)
    return state.chain[#state.chain].rig.name
end

local function start(frames, ease)
    local state = shots.new(at(1000))
    shots.blend(state, "*", "*", frames or 0, ease or "linear")
    walk(state)
    return state
end

local function the_highest_priority_is_live()
    local state = start()
    shots.put(state, "low", at(2000, 1000, { priority = -1 }))
    expect.equal("low", walk(state).x, 1000)
    shots.put(state, "high", at(3000, 1000, { priority = 5 }))
    expect.equal("high", walk(state).x, 3000)
    shots.put(state, "other", at(4000, 1000, { priority = 5 }))
    expect.equal("of two the one that came last", walk(state).x, 4000)
    shots.put(state, "high", { on = false })
    shots.put(state, "high", { on = true })
    expect.equal("or was switched on last", walk(state).x, 3000)
    shots.put(state, "high", { on = false })
    shots.put(state, "other", { on = false })
    expect.equal("back", walk(state).x, 1000)
    shots.put(state, "low", { priority = 9 })
    expect.equal("a priority may change", walk(state).x, 2000)
    shots.remove(state, "low")
    expect.equal("removed", walk(state).x, 1000)
end

-- elastic_out passes its goal by a third: from 1 to 1/10 the size would be -0.2.
local function an_overshoot_zooms_in_to_twice_the_nearer_zoom_at_most()
    local state = start(40, "elastic_out")
    shots.put(state, "near", at(1000, 1000, { priority = 1, zoom = 10 }))
    local least, most = math.huge, 0
    for _ = 1, 40 do
        local zoom = walk(state).zoom
        least, most = math.min(least, zoom), math.max(most, zoom)
    end
    expect.is("never turned over", least > 0)
    expect.near("twice the zoom of the shot", most, 20, 1e-9)
    expect.equal("there", state.base.zoom, 10)
end

-- Linear over 10 frames, by hand; the size of what is seen is blended, not the zoom: halfway between 1 and 1/3 is 2/3.
local function blends_go_by_their_time()
    local state = start(10)
    shots.put(state, "next", at(2000, 1500, { zoom = 3, angle = 40 }))
    local base = walk(state, 5)
    expect.near("x", base.x, 1500, 1e-9)
    expect.near("y", base.y, 1250, 1e-9)
    expect.near("zoom", base.zoom, 1.5, 1e-12)
    expect.near("angle", base.angle, 20, 1e-12)
    base = walk(state, 5)
    expect.equal("there, x", base.x, 2000)
    expect.equal("there, zoom", base.zoom, 3)
    expect.equal("the chain is one again", #state.chain, 1)
end

local function pairs_have_their_own_blends()
    local state = start(10)
    shots.blend(state, "main", "a", 4, "linear")
    shots.blend(state, "*", "a", 100, "linear")
    shots.blend(state, "main", "*", 50, "linear")
    shots.put(state, "a", at(2000))
    expect.near("the pair", walk(state, 2).x, 1500, 1e-9)
    walk(state, 5)
    shots.put(state, "b", at(3000))
    expect.near("any to any", walk(state, 5).x, 2500, 1e-9)
    walk(state, 5)
    shots.put(state, "a", { on = false })
    shots.put(state, "a", { on = true })
    expect.near("any to a", walk(state, 50).x, 2500, 1e-9)
    shots.blend(state, "*", "a", 0, "linear")
    shots.put(state, "b", { on = false })
    shots.put(state, "b", { on = true })
    walk(state, 100)
    shots.put(state, "a", { on = false })
    shots.put(state, "a", { on = true })
    expect.equal("0 frames cut", walk(state).x, 2000)
end

-- Neither the place nor the speed jumps when a third shot, or the first one again, comes in the middle of a blend.
local function interrupted_blends_go_on_smoothly()
    for _, third in ipairs{ "c", "main" } do
        local state = start(60, "sine_inout")
        shots.put(state, "b", at(2000))
        shots.put(state, "c", at(3000, 1000, { on = false }))
        local last, pace = 1000, 0
        for frame = 1, 200 do
            if frame == 20 then
                shots.put(state, third == "c" and "c" or "b", { on = third == "c" })
            end
            local x = walk(state).x
            -- sine: 1000 units in 60 frames change their speed by at most 1000 * (pi / 60)^2 / 2 = 1.4 a frame; 2000: 2.8
            expect.is(third .. ", frame " .. frame, math.abs(x - last - pace) < 4.2)
            last, pace = x, x - last
        end
        expect.equal(third, last, third == "c" and 3000 or 1000)
    end
end

local function many_interruptions_are_bounded()
    local state = start(1000)
    for number = 1, 50 do
        shots.put(state, "shot " .. number, at(1000 + 10 * number))
        walk(state)
        expect.is("the chain", #state.chain <= 8)
    end
end

local function a_scene_plays_its_shots()
    local state = start()
    shots.put(state, "boss", at(5000, 1000, { on = false }))
    shots.play(state, {
        { shot = "boss", frames = 3, blend = 0, call = 11 },
        { follow = { x = 2000, y = 1000 }, zoom = 2, frames = 4, blend = 4, ease = "linear" },
    }, 12)
    expect.equal("the first shot", walk(state).x, 5000)
    expect.equal("its script", ran[1], 11)
    walk(state, 2)
    expect.near("on the way to the second", walk(state).x, 4250, 1e-9)
    expect.near("zoom", state.base.zoom, 1 / (1 + (0.5 - 1) / 4), 1e-12)
    walk(state, 3)
    expect.equal("the second", state.base.x, 2000)
    expect.equal("not over yet", #ran, 1)
    expect.equal("over, and back by priority", walk(state).x, 1000)
    expect.equal("the script at the end", ran[2], 12)
    expect.equal("live", live(state), "main")
end

local function a_scene_may_be_ended_and_may_start_another()
    ran = {}
    local state = start()
    shots.play(state, { { follow = { x = 2000, y = 1000 }, frames = 100, blend = 0 } }, 5)
    walk(state)
    shots.stop(state, host)
    expect.equal("ended", walk(state).x, 1000)
    expect.equal("its script ran", ran[1], 5)
    local again = { { follow = { x = 3000, y = 1000 }, frames = 1, blend = 0 } }
    local next_host = { position = host.position, script = function() shots.play(state, again) end }
    shots.play(state, { { follow = { x = 2000, y = 1000 }, frames = 1, blend = 0 } }, 5)
    shots.step(state, next_host, VIEW, ROOM)
    shots.step(state, next_host, VIEW, ROOM)
    expect.equal("the next scene", state.base.x, 3000)
end

local function refusals()
    local state = start()
    local function refused(wanted, f, ...)
        local arguments = table.pack(...)
        expect.refusal(wanted, function() f(state, table.unpack(arguments)) end, wanted)
    end
    refused("there is no shot nobody", shots.get, "nobody")
    refused('the shot "main" stays: switch another one on', shots.remove, "main")
    refused("the scene is a list of at least one shot, got a table", shots.play, {})
    refused("scene[1].frames is a whole number of frames, 1 or more, got nil", shots.play, { { shot = "main" } })
    refused("there is no shot nobody", shots.play, { { shot = "nobody", frames = 1 } })
    refused("scene[1] is a table, got 5", shots.play, { 5 })
end

room_add{ create = function()
    the_highest_priority_is_live()
    blends_go_by_their_time()
    an_overshoot_zooms_in_to_twice_the_nearer_zoom_at_most()
    pairs_have_their_own_blends()
    interrupted_blends_go_on_smoothly()
    many_interruptions_are_bounded()
    a_scene_plays_its_shots()
    a_scene_may_be_ended_and_may_start_another()
    refusals()
    expect.done()
end }
