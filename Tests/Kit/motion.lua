-- The setting for players who are made ill by motion, on whole cameras.

local expect = include("support/expect.lua")
local kit = include("kit/camera_kit.lua")

local walker = object_add{ bbox = {-4, -4, 4, 4} }

-- The zoom and angle that a camera comes to in a hundred frames, with this much motion.
local function settled(amount, fields, use)
    kit.motion(amount)
    local camera = kit.camera(fields)
    if use then
        use(camera)
    end
    for _ = 1, 100 do
        kit.step()
    end
    local _, _, zoom, angle = camera:place()
    return zoom, angle
end

local function check_turns_and_zooms(first, second)
    local function fields(more)
        more.view, more.follow = 0, more.follow or first
        return more
    end
    local zones = { { left = 0, right = 4000, top = 0, bottom = 4000, zoom = 4, limits = false, frames = 1 } }
    local function shot(camera)
        camera:shot("other", { follow = first, zoom = 8, angle = 40, priority = 1 })
    end
    local cases = { -- what, the camera, what is done with it, zoom and angle without motion, with all of it
        { "a zone", fields{ zones = zones }, nil, 1, 0, 4, 0 },
        { "a shot", fields{ zoom = 2, angle = 10 }, shot, 2, 10, 8, 40 },
        { "zoom and angle of its own", fields{ zoom = 2, angle = 10 }, nil, 2, 10, 2, 10 },
        { "a group", fields{ follow = {first, second}, group = { margin = 0, min_zoom = 0.5, max_zoom = 4 } }, nil,
          0.5, 0, 3.2, 0 },
    }
    for _, case in ipairs(cases) do
        local what, camera, use = case[1], case[2], case[3]
        local zoom, angle = settled(0, camera, use)
        expect.near(what .. ": zoom without", zoom, case[4], 1e-3)
        expect.near(what .. ": angle without", angle, case[5], 1e-9)
        zoom, angle = settled(1, camera, use)
        expect.near(what .. ": zoom with", zoom, case[6], 1e-3)
        expect.near(what .. ": angle with", angle, case[7], 1e-9)
        zoom, angle = settled(0.5, camera, use)
        expect.near(what .. ": zoom between", zoom, math.sqrt(case[4] * case[6]), 1e-2)
        expect.near(what .. ": angle between", angle, (case[5] + case[7]) / 2, 1e-9)
    end
end

local function check_the_setting()
    settings.kit_motion = nil
    expect.equal("unless set", kit.motion(), 1)
    for _, odd in ipairs{ "much", true, 7, 0 / 0 } do
        settings.kit_motion = odd
        expect.equal("what it cannot be", kit.motion(), 1)
    end
    settings.kit_motion = false
    expect.equal("switched off", kit.motion(), 0)
    expect.equal("set", kit.motion(0.25), 0.25)
    expect.equal("kept with the player's choices", settings.kit_motion, 0.25)
    local ok, problem = pcall(kit.motion, 2)
    expect.is("refused: " .. tostring(problem),
        not ok and problem:find("kit.motion: the amount is a number from 0 to 1, got 2", 1, true))
end

room_add{
    width = 4000, height = 4000, views = { [0] = { w = 640, h = 360 } },
    create = function()
        check_turns_and_zooms(instance_create(2000, 2000, walker), instance_create(2200, 2000, walker))
        check_the_setting()
        settings.kit_motion = nil
        expect.done()
    end,
}
