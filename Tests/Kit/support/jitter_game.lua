-- Cameras that follow one target, which the test moves: settings.batch says what they are, settings.first and
-- settings.last which of them there are, settings.room how large the room is. Tests/Runner/Support/Jitter.cpp looks at what
-- they show.

local kit = include("kit/camera_kit.lua")

local SIZE = settings.room
local WIDTH, HEIGHT = 640, 360
local SCALE = settings.batch == "smooth" and 2 or 1 -- pixels of the screen for a room unit

local target = object_add{ name = "target", bbox = {-8, -8, 8, 8} }

-- A way across the room in long straight pieces.
local function path()
    local points = {}
    for i = 0, 8 do
        points[i + 1] = { SIZE * i / 8, SIZE * (i % 2 == 0 and 0.3 or 0.7) }
    end
    return { points = points }
end

-- In the order of the table in Jitter.cpp.
local STYLES = {
    { style = "lock" },
    { style = "platformer" },
    { style = "platformer", lead = { x = 12 }, soft_zone = { 60, 40 } },
    { style = "topdown" },
    { style = "topdown", smoothing = "exponential", dead_zone = 0 },
    { style = "topdown", dead_zone = 0, group = { margin = 40, max_zoom = 1 } },
    { style = "screen" },
    { style = "path", path = path() },
}

-- The exponential follow of most tutorials: a part of the way to the target in each frame, from where the camera says
-- that it is; the second one rounds down to whole units.
local function plain_follow(view, round)
    local camera = view_get_camera(view)
    local who = instance_get(instance_find(target, 0))
    local x = camera_get_view_x(camera) + (who.x - WIDTH / 2 - camera_get_view_x(camera)) * 0.1
    local y = camera_get_view_y(camera) + (who.y - HEIGHT / 2 - camera_get_view_y(camera)) * 0.1
    camera_set_view_pos(camera, round(x), round(y))
end

local function same(x)
    return x
end

local function jump(view)
    local who = instance_get(instance_find(target, 0))
    camera_set_view_pos(view_get_camera(view), who.x - WIDTH / 2, who.y - HEIGHT / 2)
end

local PLAIN = { same, math.floor }

-- `frame` of the target is 1 in the first frame of a path: it has been put somewhere else.
local function step_plain(is_new)
    for view, round in ipairs(PLAIN) do
        if is_new then
            jump(view - 1)
        else
            plain_follow(view - 1, round)
        end
    end
end

local cameras = {}

local function step()
    local is_new = instance_get(instance_find(target, 0)).frame == 1
    if settings.batch == "plain" then
        return step_plain(is_new)
    end
    for _, camera in ipairs(cameras) do
        if is_new then
            camera:cut()
        end
    end
    kit.step()
end

local function create()
    if settings.batch == "plain" then
        return
    end
    for number = settings.first, settings.last do
        local style = STYLES[number]
        style.view, style.follow = number - 1, target
        if settings.batch == "snapped" then
            style.pixels = true
        end
        table.insert(cameras, kit.camera(style))
    end
end

local views = {}
for view = 0, 7 do
    local is_used = view + 1 >= settings.first and view + 1 <= settings.last
    views[view] = { visible = is_used, w = WIDTH, h = HEIGHT, wport = WIDTH * SCALE, hport = HEIGHT * SCALE }
end

room_add{
    name = "room", width = SIZE, height = SIZE, views = views, instances = { {target, 320, 320} },
    create = create, step = step, -- the test moves the target before the frame
}
