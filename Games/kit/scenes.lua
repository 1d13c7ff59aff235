-- The scenes: each shows one thing that the camera kit does.
--
-- place: the room. start(): once, in the room's create event. step(time): in every frame; time counts from 0.
-- draw(): over the room; draw_gui(): on the screen.

local kit = include("kit/camera_kit.lua")
local hills = include("hills.lua")
local garden = include("garden.lua")

local RED, BLUE, GREEN = colour_rgb(255, 104, 104), colour_rgb(96, 184, 255), colour_rgb(112, 232, 160)

local function cam()
    return kit.camera(0)
end

local function hero(fields)
    fields = fields or {}
    fields.played = true
    return hills.add_runner(300, fields)
end

local function walker(stop)
    return garden.add_walker(stop or 1, { played = true })
end

local function outline(left, top, right, bottom, colour)
    draw_set_colour(colour)
    for _, line in ipairs{ {left, top, right, top}, {right, top, right, bottom}, {right, bottom, left, bottom},
                           {left, bottom, left, top} } do
        draw_line(line[1], line[2], line[3], line[4], 6)
    end
    draw_set_colour(colours.white)
end

-- ---- following ----

local platformer = {
    place = hills, title = "Platformer", text = "A dead zone, and a height that is kept until the runner lands.",
    start = function()
        kit.camera{ view = 0, follow = hero(), style = "platformer", offset = {0, -90}, limits = "room" }
    end,
}

local ahead = {
    place = garden, title = "Look-ahead", text = "Top-down: the camera shows more of where the walker goes.",
    start = function()
        kit.camera{ view = 0, follow = walker(), style = "topdown", lead = { x = 45, y = 45 }, limits = "room" }
    end,
}

local screens = {
    place = garden, title = "Screen by screen", text = "The room as screens of one size: the next one when one is left.",
    start = function()
        kit.camera{ view = 0, follow = walker(), style = "screen", screen = { width = 640, height = 360 }, zoom = 2,
                    limits = "room" }
    end,
}

local RAIL = { {380, 420}, {900, 520}, {1300, 300}, {1960, 480}, {2080, 960}, {1300, 1060}, {500, 980} }
local rail = {
    place = garden, title = "Along a path", text = "A curve through a few points; the camera is where it is nearest.",
    start = function()
        kit.camera{ view = 0, follow = walker(), style = "path", path = { points = RAIL, curve = true, closed = true },
                    zoom = 1.25, limits = "room" }
    end,
    draw = function()
        draw_set_colour(BLUE)
        for _, point in ipairs(RAIL) do
            draw_circle(point[1], point[2], 9)
        end
        draw_set_colour(colours.white)
        local x, y = cam():base()
        draw_circle(x, y, 6)
    end,
}

local group = {
    place = hills, title = "A group", text = "Three runners and one camera: it zooms so that none is left out.",
    start = function()
        local all = { hero(), hills.add_runner(420, { colour = BLUE, pace = 0.72 }),
                      hills.add_runner(540, { colour = GREEN, pace = 0.5 }) }
        kit.camera{ view = 0, follow = all, style = "topdown", group = { margin = 160, min_zoom = 0.6, max_zoom = 1.8 },
                    limits = "room" }
    end,
}

local ZONE = { left = 1000, top = 500, right = 1900, bottom = 1080 }
local zone = {
    place = hills, title = "A zone", text = "A part of the room with limits and a zoom of its own, blended when entered.",
    start = function()
        kit.camera{ view = 0, follow = hero(), style = "platformer", offset = {0, -90}, limits = "room",
                    zones = { { left = ZONE.left, top = ZONE.top, right = ZONE.right, bottom = ZONE.bottom, zoom = 1.5,
                                limits = ZONE, frames = 40 } } }
    end,
    draw = function()
        outline(ZONE.left, ZONE.top, ZONE.right, ZONE.bottom, RED)
    end,
}

-- ---- shots ----

local shots = {
    place = garden, title = "Shots", text = "Virtual cameras with priorities: whoever is switched on highest is live.",
    start = function()
        local camera = kit.camera{ view = 0, follow = walker(), style = "topdown", limits = "room" }
        camera:shot("pond", { follow = { x = 1720, y = 720 }, zoom = 1.6, priority = 1, on = false, limits = "room" })
        camera:shot("map", { follow = { x = 1280, y = 720 }, zoom = 0.5, priority = 2, on = false })
        camera:blend{ to = "pond", frames = 50, ease = "cubic_inout" }
        camera:blend{ to = "map", frames = 30, ease = "back_out" }
    end,
    step = function(time)
        cam():switch("pond", time % 240 >= 70 and time % 240 < 150)
        cam():switch("map", time % 240 >= 120 and time % 240 < 190)
    end,
}

local again = script_add(function() vars.scene_over = true end)
local cut_scene = {
    place = hills, title = "A cut-scene", text = "A list of shots; at its end the runner's own camera has the view again.",
    start = function()
        vars.scene_over = false
        local camera = kit.camera{ view = 0, follow = hero(), style = "platformer", offset = {0, -90}, limits = "room" }
        camera:letterbox{ to = 0.12, frames = 20 }
        camera:scene({ { follow = { x = 1540, y = 640 }, zoom = 1.4, frames = 80, blend = 45, limits = "room" },
                       { follow = { x = 2340, y = 660 }, zoom = 1.8, frames = 70, blend = 40, ease = "expo_inout",
                         limits = "room" } }, again)
    end,
    step = function()
        if vars.scene_over then
            vars.scene_over = false
            cam():letterbox{ to = 0, frames = 20 }
        end
    end,
}

-- ---- effects ----

local shake = {
    place = hills, title = "Shake and kick", text = "Trauma that adds up and wears off; a kick wherever the runner lands.",
    start = function()
        kit.camera{ view = 0, follow = hero(), style = "platformer", offset = {0, -90}, limits = "room" }
    end,
    step = function(time)
        local runner = instance_get(instance_find(hills.runner, 0))
        if runner.landed then
            cam():kick{ y = 14, frames = 24 }
        end
        if time % 80 == 40 then
            cam():trauma{ level = 0.7 }
            cam():flash{ strength = 0.5, frames = 12 }
        end
    end,
    draw_gui = function()
        draw_text(40, 640, "trauma", 2)
        draw_rectangle(150, 640, 450, 664, true)
        draw_rectangle(150, 640, 150 + 300 * cam():value("trauma"), 664)
    end,
}

local moves = {
    place = garden, title = "Pan, zoom, turn", text = "One after the other, about a point, and back to the walker.",
    start = function()
        kit.camera{ view = 0, follow = walker(), style = "topdown", limits = "room" }:chain{
            { "wait", frames = 30 }, { "pan_to", x = 1720, y = 720, frames = 50 },
            { "zoom_to", zoom = 2, point = {1800, 760}, frames = 40, ease = "back_out" },
            { "rotate_to", angle = 20, frames = 40 }, { "release", frames = 60, ease = "cubic_inout" } }
    end,
}

local over = {
    place = hills, title = "Fade, flash, letterbox", text = "What lies over the picture, each with its easing.",
    start = function()
        kit.camera{ view = 0, follow = hero(), style = "platformer", offset = {0, -90}, limits = "room" }:chain{
            { "letterbox", to = 0.14, frames = 40 }, { "flash", frames = 40 },
            { "fade", to = 1, colour = colour_rgb(40, 0, 60), frames = 40 }, { "wait", frames = 10 },
            { "fade", to = 0, frames = 40 }, { "letterbox", to = 0, frames = 40, ease = "bounce_out" } }
    end,
}

-- ---- curves ----

local FAMILIES = { "quad", "cubic", "quart", "quint", "sine", "expo", "circ", "elastic", "back", "bounce" }
local WAYS = { "_in", "_out", "_inout" }

local function draw_curve(name, left, top, part)
    draw_set_colour(colour_rgb(30, 44, 60))
    draw_rectangle(left, top, left + 112, top + 112)
    draw_set_colour(colours.silver)
    draw_text(left, top + 124, name)
    local x, y = left, top + 90
    for i = 1, 28 do
        local next_x, next_y = left + i * 4, top + 90 - 68 * kit.easing.at(name, i / 28)
        draw_line(x, y, next_x, next_y, 2)
        x, y = next_x, next_y
    end
    draw_set_colour(RED)
    draw_circle(left + 112 * part, top + 90 - 68 * kit.easing.at(name, part), 6)
    draw_set_colour(colours.white)
end

local easing = {
    place = garden, title = "Easing", text = "Ten families, each in, out and both.",
    start = function()
        kit.camera{ view = 0, follow = walker(), style = "topdown", limits = "room" }:fade{ to = 0.75, frames = 30 }
    end,
    draw_gui = function(time)
        for column, family in ipairs(FAMILIES) do
            for row, way in ipairs(WAYS) do
                draw_curve(family .. way, 24 + (column - 1) * 125, 140 + (row - 1) * 160, time % 90 / 80 % 1)
            end
        end
    end,
}

-- ---- pixels ----

local pixels = {
    place = garden, title = "Pixel art", text = "The same view twice at a zoom of 4: left as it comes, right on whole pixels.",
    views = { [0] = { w = 159, h = 180, wport = 636, hport = 720 },
              [1] = { w = 159, h = 180, xport = 644, wport = 636, hport = 720 } },
    start = function()
        local followed = walker()
        kit.camera{ view = 0, follow = followed, style = "topdown", limits = "room" }
        kit.camera{ view = 1, follow = followed, style = "topdown", limits = "room", pixels = true }
    end,
    draw = function()
        for i = 0, 159 do
            local x, y = 300 + i * 131 % 900, 260 + i * 57 % 300
            draw_set_colour(i % 3 == 0 and colours.yellow or colours.white)
            draw_rectangle(x, y, x + 2, y + 1)
            draw_rectangle(x + 1, y - 1, x + 2, y + 2)
        end
    end,
}

return { platformer, ahead, screens, rail, group, zone, shots, cut_scene, shake, moves, over, easing, pixels }
