-- Whole pixels: where the edge of the view falls, and what a followed thing does on the screen.

local expect = include("support/expect.lua")
local pixels = include("kit/pixels.lua")

local VIEW = { width = 321, height = 180, scale = 3 } -- an odd width
local HALF_W, HALF_H = VIEW.width / 2, VIEW.height / 2
local SPEEDS = { 0.001, 0.1, 1 / 3, 0.5, 0.7, 0.999, 1, 1.3, 1.5, 2.718281828, 7.77 }

local function pose_at(x, y, zoom, angle)
    return { x = x, y = y, zoom = zoom or 1, angle = angle or 0 }
end

local function is_whole(value)
    return value == math.floor(value)
end

-- Without effects.
local function snapped(state, pose, view, anchor)
    return pixels.place(state, pose, pose, view, anchor)
end

local function edges_are_whole()
    for _, grid in ipairs{ "art", "screen" } do
        local unit = grid == "art" and 1 or 3
        for i = 1, 500 do
            local state = pixels.new("pixels", { grid = grid })
            local pose = snapped(state, pose_at(i * 1.37 - 200, i * 0.61), VIEW)
            local name = grid .. " " .. i
            local left, top = (pose.x - HALF_W) * unit, (pose.y - HALF_H) * unit
            expect.near(name .. ": whole across", left, math.floor(left + 0.5), 1e-9)
            expect.near(name .. ": whole down", top, math.floor(top + 0.5), 1e-9)
            expect.near(name .. ": across", pose.x, i * 1.37 - 200, 0.5 / unit + 1e-9)
            expect.near(name .. ": down", pose.y, i * 0.61, 0.5 / unit + 1e-9)
        end
    end
end

-- Turned by a quarter the view's height lies across; turned otherwise there are no whole pixels.
local function turned_views()
    local quarter = snapped(pixels.new("pixels", {}), pose_at(10.3, 20.4, 1, 90), VIEW)
    expect.is("left edge", is_whole(quarter.x - HALF_H))
    expect.is("top edge", is_whole(quarter.y - HALF_W))
    local oblique = pose_at(10.3, 20.4, 1, 30)
    expect.pose("left as it is", snapped(pixels.new("pixels", {}), oblique, VIEW), oblique)
end

-- Where a thing stands on the screen, in pixels of the grid, when it is drawn at its snapped place.
local function on_screen(thing, pose, unit)
    local edge = pose.x - HALF_W / pose.zoom
    return (pixels.snap(thing, 1 / unit) - edge) * unit
end

-- The camera goes along with what it follows, at any distance aside: it stands still on the screen.
local function what_is_followed_stands_still()
    for _, grid in ipairs{ "art", "screen" } do
        local unit = grid == "art" and 1 or 3
        for _, speed in ipairs(SPEEDS) do
            for _, aside in ipairs{ 0, 0.25, 0.5, 16 + 1 / 3, -7.999999 } do
                local state = pixels.new("pixels", { grid = grid })
                local place
                for frame = 0, 300 do
                    local x = 100.123 + speed * frame
                    local pose = snapped(state, pose_at(x + aside, 0), VIEW, { x = x, y = 0 })
                    local now = on_screen(x, pose, unit)
                    if frame > 1 then
                        expect.near("speed " .. speed .. " aside " .. aside .. " frame " .. frame, now, place, 1e-6)
                    end
                    place = now
                end
            end
        end
    end
end

-- The other way round: the camera rests, and the room must not move under what walks through it.
local function a_camera_that_rests_rests()
    for _, speed in ipairs(SPEEDS) do
        local state = pixels.new("pixels", {})
        local first = snapped(state, pose_at(250.5, 0), VIEW, { x = 0, y = 0 })
        for frame = 1, 200 do
            local pose = snapped(state, pose_at(250.5, 0), VIEW, { x = speed * frame, y = 0 })
            expect.equal("speed " .. speed .. " frame " .. frame, pose.x, first.x)
        end
    end
end

-- Steps of 1.3 are ones and twos, never a nought or a step back.
local function steady_scrolling_has_even_steps()
    for _, speed in ipairs(SPEEDS) do
        local state = pixels.new("pixels", {})
        local before
        for frame = 0, 400 do
            local pose = snapped(state, pose_at(33 + speed * frame, 0), VIEW)
            if frame > 2 then
                local step = pose.x - before
                expect.is("speed " .. speed .. " frame " .. frame .. " step " .. step,
                    step >= math.floor(speed) and step <= math.ceil(speed))
            end
            before = pose.x
        end
    end
end

-- Somebody who runs, stops and turns, followed by a camera that closes a tenth of the distance in each frame. On the
-- screen he goes to and fro, but never by three steps that alternate; and the camera is never off by two pixels.
local function nobody_trembles()
    random_set_seed(15)
    for run = 1, 20 do
        local state = pixels.new("pixels", {})
        local x, camera, speed = 500, 500, 0
        local place, step, step_before = nil, 0, 0
        for frame = 1, 1500 do
            if frame % 90 == 1 then
                speed = irandom(3) == 0 and 0 or random_range(-4, 4)
            end
            x = x + speed
            camera = camera + (x - camera) * 0.1
            local pose = snapped(state, pose_at(camera, 0), VIEW, { x = x, y = 0 })
            expect.near("run " .. run .. " frame " .. frame .. ": the camera's place", pose.x, camera, 1.6)
            local now = on_screen(x, pose, 1)
            local change = place and now - place or 0
            expect.is("run " .. run .. " frame " .. frame .. ": " .. step_before .. ", " .. step .. ", " .. change,
                not (change * step < 0 and step * step_before < 0))
            place, step_before, step = now, step, change
        end
    end
end

local function zooms_are_whole()
    local state = pixels.new("pixels", { integer_zoom = true })
    local before = 0
    for i = 0, 300 do
        local pose = snapped(state, pose_at(0, 0, 0.1 + i / 100), VIEW) -- 0.3 to 9.3 pixels a unit
        local per_unit = pose.zoom * 3
        expect.near("whole at " .. i, per_unit, math.floor(per_unit + 0.5), 1e-9)
        expect.is("never down at " .. i, per_unit >= before and per_unit >= 1)
        before = per_unit
    end
    expect.near("the last", before, 9, 1e-9)
    for i = 1, 100 do -- to and fro about the middle between 8 and 9: it stays
        local pose = snapped(state, pose_at(0, 0, math.sqrt(72) / 3 * (1 + 0.03 * (-1) ^ i)), VIEW)
        expect.near("no flicker at " .. i, pose.zoom * 3, 9, 1e-9)
    end
end

-- The play depends on the way an edge came; a camera that was shaken and zoomed must stand where it would have stood.
local function effects_leave_no_trace()
    local options = { integer_zoom = true, grid = "screen" }
    local shaken, quiet = pixels.new("pixels", options), pixels.new("pixels", options)
    local differed = false
    for frame = 1, 600 do
        local x = 40 + frame * 1.37 + 20 * math.sin(frame / 30)
        local base, anchor = pose_at(x, frame / 7, 1 + frame / 400), { x = x + frame % 50 / 9, y = 3 }
        local pose = base
        if frame % 100 < 60 then
            pose = pose_at(x + frame % 3 * 5.3, base.y - 2.2, base.zoom * 1.6)
        end
        local got = pixels.place(shaken, base, pose, VIEW, anchor)
        local wanted = pixels.place(quiet, base, base, VIEW, anchor)
        differed = differed or got.x ~= wanted.x
        if pose == base then
            expect.pose("frame " .. frame, got, wanted)
        end
    end
    expect.is("the effects showed", differed)
end

local function mistakes_are_told()
    expect.refusal("grid", function() pixels.new("pixels", { grid = "big" }) end,
        'pixels.grid is one of "art", "screen", got the string "big"')
end

room_add{ create = function()
    for _, test in ipairs{ edges_are_whole, turned_views, what_is_followed_stands_still, a_camera_that_rests_rests,
                           steady_scrolling_has_even_steps, nobody_trembles, zooms_are_whole,
                           effects_leave_no_trace, mistakes_are_told } do
        test()
    end
    expect.done()
end }
