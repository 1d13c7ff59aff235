-- Following, on a host of this file's own: where the goal is, by hand.

local expect = include("support/expect.lua")
local checks = include("kit/checks.lua")
local follow = include("kit/follow.lua")

local VIEW = { width = 640, height = 360 }
local ROOM = { left = 0, right = 4000, top = 0, bottom = 2000 }
local places = {}
local host = { position = function(target)
    local place = places[target]
    if place then
        return place.x, place.y
    end
end }

local function rig_of(fields)
    return follow.new("main", checks.fields(fields, follow.FIELDS, ""))
end

-- Steps the shot while the target 1 moves by dx, dy a frame.
local function walk(rig, frames, dx, dy)
    for _ = 1, frames do
        places[1].x, places[1].y = places[1].x + (dx or 0), places[1].y + (dy or 0)
        follow.step(rig, host, VIEW, ROOM)
    end
    return rig.pose
end

local function start(fields, x, y)
    places = { { x = x or 2000, y = y or 1000 } }
    fields.follow = fields.follow or 1
    local rig = rig_of(fields)
    walk(rig, 1)
    return rig
end

local function lock_keeps_the_target_in_the_middle()
    local rig = start{ style = "lock", offset = { 10, -5 } }
    local pose = walk(rig, 7, 3.25, -1.5)
    expect.equal("x", pose.x, places[1].x + 10)
    expect.equal("y", pose.y, places[1].y - 5)
    expect.equal("anchor", pose.anchor_x, places[1].x)
end

-- 40 to the right and 25 to the left: the goal moves when the target has passed them, and as far.
local function dead_zone_has_four_sides()
    local rig = start{ style = "lock", dead_zone = { left = 25, right = 40, top = 10, bottom = 0 } }
    expect.equal("inside, right", walk(rig, 4, 10).x, 2000)
    expect.equal("outside, right", walk(rig, 1, 10).x, 2010)
    expect.equal("back inside", walk(rig, 6, -10).x, 2010)
    expect.equal("outside, left", walk(rig, 1, -10).x, 1980 + 25)
    expect.equal("no zone below", walk(rig, 1, 0, 7).y, 1007)
    expect.equal("inside, above", walk(rig, 1, 0, -10).y, 1007)
end

-- Pulled to the dead zone's edge by halves every 8 frames, and taken along at the soft zone's outer edge.
local function soft_zone_pulls_gently()
    local rig = start{ style = "lock", dead_zone = 10, soft_zone = 30, soft_half_life = 8 }
    walk(rig, 1, 26)
    local first = rig.pose.x
    expect.near("first frame", first, 2000 + 16 - 16 * 0.5 ^ (1 / 8), 1e-9)
    walk(rig, 7)
    expect.near("after the half-life", rig.pose.x, 2008, 1e-9)
    walk(rig, 1, 100)
    expect.near("never beyond the outer edge", places[1].x - rig.pose.x, 40, 1e-9)
end

local function look_ahead_leads_the_target()
    local rig = start{ style = "lock", lead = { x = 10, half_life = 5 } }
    walk(rig, 200, 4)
    expect.near("ten frames ahead", rig.pose.x - places[1].x, 40, 1e-6)
    walk(rig, 100, 0)
    expect.near("at rest", rig.pose.x, places[1].x, 1e-6)
    rig = start{ style = "lock", lead = { x = 10, limit = 15 } }
    walk(rig, 200, 4)
    expect.near("limited", rig.pose.x - places[1].x, 15, 1e-6)
end

-- The height stays during a jump and comes after when the target has landed elsewhere.
local function platformer_waits_for_the_landing()
    local rig = start{ style = "platformer" }
    walk(rig, 5)
    local speed = -10
    for _ = 1, 18 do -- up by 90 at most: within a quarter of the view
        walk(rig, 1, 0, speed)
        speed = speed + 1
        expect.equal("in the air", rig.pose.y, 1000)
    end
    expect.is("it is higher now", places[1].y < 1000)
    walk(rig, 120)
    expect.near("landed", rig.pose.y, places[1].y, 1e-3)
    rig.grounded = false
    walk(rig, 20, 0, -1)
    walk(rig, 60)
    expect.near("told that it flies", rig.pose.y, places[1].y + 20, 1e-3)
end

local function a_group_is_framed()
    local rig = start({ style = "lock", follow = { 1, 2 }, group = { margin = 50, min_zoom = 0.25, max_zoom = 2 } })
    places[2] = { x = 3100, y = 1200 }
    rig.ready = false
    local pose = walk(rig, 1)
    expect.equal("x", pose.x, 2550)
    expect.equal("y", pose.y, 1100)
    expect.near("zoom", pose.zoom, 640 / (1100 + 100), 1e-12)
    places[2] = nil
    rig.ready = false
    pose = walk(rig, 1)
    expect.equal("alone", pose.x, 2000)
    expect.equal("alone, zoom", pose.zoom, 2)
    places[2] = { x = 100, y = 1000 }
    rig.ready = false
    expect.near("no farther than min_zoom", walk(rig, 1).zoom, 640 / 2000, 1e-12)
    places[2].x = 3999999
    rig.ready = false
    expect.equal("min_zoom", walk(rig, 1).zoom, 0.25)
end

local function screens_change_as_a_whole()
    local rig = start({ style = "screen", half_life = 0 }, 100, 100)
    expect.equal("first", rig.pose.x, 320)
    expect.equal("up to the margin", walk(rig, 1, 543).x, 320)
    expect.equal("second", walk(rig, 1, 2).x, 960)
    expect.equal("the border has a margin", walk(rig, 1, -8).x, 960)
    expect.equal("back", walk(rig, 1, -2).x, 320)
    expect.equal("down", walk(rig, 1, 0, 300).y, 540)
end

local function paths_are_rails()
    local rig = start({ style = "path", half_life = 0, limits = false,
                        path = { points = { { 0, 0 }, { 100, 0 }, { 100, 300 } } } }, 40, 50)
    expect.equal("nearest x", rig.pose.x, 40)
    expect.equal("nearest y", rig.pose.y, 0)
    rig.path.progress = 0.5
    walk(rig, 1)
    expect.near("half of the way, x", rig.pose.x, 100, 1e-9)
    expect.near("half of the way, y", rig.pose.y, 100, 1e-9)
end

-- The curve goes through its points; between equal steps on a line it is the line.
local function curves_go_through_their_points()
    local points = { { 0, 0 }, { 100, 50 }, { 200, -50 }, { 300, 0 } }
    local rig = rig_of{ style = "path", path = { points = points, curve = true } }
    local line = rig.path.line
    for number, point in ipairs(points) do
        local corner = (number - 1) * 16 + 1
        expect.near("x of " .. number, line.x[corner], point[1], 1e-9)
        expect.near("y of " .. number, line.y[corner], point[2], 1e-9)
    end
    -- halfway between the second and third: (-1, 9, 9, -1) / 16
    expect.near("between, x", line.x[25], 150, 1e-9)
    expect.near("between, y", line.y[25], 0, 1e-9)
end

local function limits_hold_on_each_side()
    local rig = start({ style = "lock", limits = { left = 100, bottom = 1500 }, margin = { left = 20 } }, 50, 50)
    expect.equal("left", rig.pose.x, 100 + 20 + 320)
    expect.equal("no limit above", rig.pose.y, 50)
    expect.equal("bottom", walk(rig, 1, 0, 3000).y, 1500 - 180)
    expect.equal("no limit to the right", walk(rig, 1, 90000).x, 90050)
    rig = start({ style = "lock", limits = { left = 0, right = 500 } }, 50, 500)
    expect.equal("narrower than the view", rig.pose.x, 250)
end

-- A spring behind a goal that is held at the limit comes to rest there, at any speed of the target.
local function limits_are_never_passed()
    for _, pace in ipairs{ 1, 7.3, 25, 400 } do
        local rig = start({ style = "topdown", dead_zone = 0 }, 3600, 1000)
        for frame = 1, 300 do
            walk(rig, 1, pace)
            expect.is("speed " .. pace .. " frame " .. frame, rig.pose.x <= 4000 - 320)
        end
        expect.near("at the limit", rig.pose.x, 3680, 1e-3)
    end
end

-- Zooming out at the room's edge pushes the camera inwards, so that nothing outside is ever seen.
local function a_growing_view_stays_inside()
    local rig = start({ style = "topdown", zoom = 2 }, 170, 100)
    follow.set(rig, { zoom = 0.6 })
    for frame = 1, 200 do
        local pose = walk(rig, 1)
        expect.is("left, frame " .. frame, pose.x - 320 / pose.zoom >= -1e-9)
        expect.is("top, frame " .. frame, pose.y - 180 / pose.zoom >= -1e-9)
    end
end

local function zones_blend_in_and_out()
    local zone = { left = 1000, top = 0, right = 2000, bottom = 2000, zoom = 0.64, frames = 20,
                   limits = { left = 1000, right = 2000 } }
    local rig = start({ style = "lock", half_life = { zoom = 0 }, smoothing = "none", zones = { zone } }, 900, 1000)
    expect.equal("outside", rig.pose.x, 900)
    walk(rig, 1, 200)
    expect.is("on its way", rig.pose.x > 1100 and rig.pose.x < 1500)
    expect.equal("weight", rig.zones[1].weight, 0.05)
    walk(rig, 19)
    expect.near("inside: the zone is as wide as the view", rig.pose.x, 1500, 1e-9)
    expect.near("zoom", rig.pose.zoom, 0.64, 1e-12)
    walk(rig, 1, -500)
    walk(rig, 19)
    expect.near("outside again", rig.pose.x, 600, 1e-9)
    expect.near("zoom again", rig.pose.zoom, 1, 1e-12)
end

local function a_target_that_is_gone_leaves_the_camera()
    local rig = start{ style = "lock" }
    walk(rig, 3, 5)
    places[1] = nil
    follow.step(rig, host, VIEW, ROOM)
    expect.equal("x", rig.pose.x, 2015)
    places[1] = { x = 100 / 0, y = 0 }
    follow.step(rig, host, VIEW, ROOM)
    expect.equal("infinite", rig.pose.x, 2015)
end

local function refusals()
    local function refused(fields, wanted)
        expect.refusal(wanted, function() rig_of(fields) end, wanted)
    end
    refused({ zoom = 0 }, "zoom is a number above 0, got 0")
    refused({ zoom = "big" }, 'zoom is a number above 0, got the string "big"')
    refused({ style = "lok" }, 'style is one of "lock", "platformer", "topdown", "screen", "path", got the string "lok"')
    refused({ dead_zone = { left = -1 } }, "dead_zone.left is a number, 0 or more, got -1")
    refused({ dead_zone = { lfet = 1 } }, "there is no field dead_zone.lfet; the fields are bottom, left, right, top")
    refused({ follow = { 1, "two" } },
            'follow[2] is an instance, an object or a place {x = , y = }, got the string "two"')
    refused({ zones = { { left = 9, right = 5, top = 0, bottom = 1 } } },
            "zones[1] has its right before its left or its bottom above its top: nothing is ever inside")
    refused({ group = { min_zoom = 2, max_zoom = 1.5 } }, "group.min_zoom is at most max_zoom, 1.5, got 2")
    refused({ style = "path" }, 'the style "path" needs the field path, a table with points')
    refused({ path = { points = { { 1, 2 } } } }, "path.points is a list of at least two points {x, y}, got a table")
    refused({ zones = { { left = 1, top = 2, right = 3 } } }, "zones[1].bottom is needed, got nil")
    refused({ half_life = 0 / 0 }, "half_life.x is a number, 0 or more, got " .. tostring(0 / 0))
end

room_add{ create = function()
    lock_keeps_the_target_in_the_middle()
    dead_zone_has_four_sides()
    soft_zone_pulls_gently()
    look_ahead_leads_the_target()
    platformer_waits_for_the_landing()
    a_group_is_framed()
    screens_change_as_a_whole()
    paths_are_rails()
    curves_go_through_their_points()
    limits_hold_on_each_side()
    limits_are_never_passed()
    a_growing_view_stays_inside()
    zones_blend_in_and_out()
    a_target_that_is_gone_leaves_the_camera()
    refusals()
    expect.done()
end }
