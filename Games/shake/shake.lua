-- Shake: meteors fall on a town at night.
--
-- Technique: a camera is directed by its three callbacks, which are closures made for each shot.
--   begin   rolls the dice for this frame's shake
--   update  moves the camera along its shot (a cinematic path or a smooth zoom), shake included; at the end of a shot
--           it puts the next shot's update in its own place
--   end     draws the flash of an impact over the picture and takes the shake away again, so that whoever asks where
--           the camera is gets the steady place
-- Halfway along each path the camera is replaced by a clone, and nothing of it shows: the callbacks ask for the camera
-- that runs them and remember none. The small picture shows the whole room, the path and what the camera sees.
-- A saved game keeps no functions: what changes is in `vars`, and the room's load event gives the callbacks out again.
-- A click calls down a meteor there, space or a gamepad's A one in the middle; arrows, a gamepad's stick and the wheel
-- lead the camera off its path, to which it comes back by itself.
-- The town is in town.lua, the meteors in meteors.lua.

local town = include("town.lua")
local meteors = include("meteors.lua")

local SHOT_VIEW, MAP_VIEW = 0, 1
local SCREEN_WIDTH, SCREEN_HEIGHT = screen_width(), screen_height()
local SHAPE = SCREEN_HEIGHT / SCREEN_WIDTH

-- ---- curves ----

-- From 0 to 1 for t from 0 to 1: slow, fast, slow.
local function ease(t)
    return t * t * (3 - 2 * t)
end

local function between(from, to, t)
    return from + (to - from) * t
end

-- A smooth curve through b (t = 0) and c (t = 1); a and d are the points before and after.
local function curve(a, b, c, d, t)
    return 0.5 * (2 * b + (c - a) * t + (2 * a - 5 * b + 4 * c - d) * t * t + (3 * b - a - 3 * c + d) * t * t * t)
end

-- ---- the shake ----

-- What an impact does to a camera, and how it wears off. The strength is 0 to 1.
vars.shake = { strength = 0, x = 0, y = 0, roll = 0 }

local shaker = {}

function shaker.hit(force)
    vars.shake.strength = math.min(1, vars.shake.strength + force)
end

-- The square makes a strong shake violent and lets it end softly.
function shaker.roll_dice()
    local shake = vars.shake
    local reach = shake.strength * shake.strength
    shake.x = random_range(-36, 36) * reach
    shake.y = random_range(-28, 28) * reach
    shake.roll = random_range(-3, 3) * reach
    shake.strength = math.max(0, shake.strength - 0.018)
end

function shaker.offset()
    return vars.shake.x, vars.shake.y, vars.shake.roll
end

local function aim(camera, x, y, zoom)
    local lead = vars.lead
    x, y = x + lead.x, y + lead.y
    local width = SCREEN_WIDTH / (zoom * lead.zoom)
    local shake_x, shake_y, roll = shaker.offset()
    camera_set_view_size(camera, width, width * SHAPE)
    camera_set_view_pos(camera, x - width / 2 + shake_x, y - width * SHAPE / 2 + shake_y)
    camera_set_view_angle(camera, roll)
end

-- ---- the player ----

action_add{ name = "left", keys = {"left", "@a"}, buttons = {"dpad_left"}, axes = {"left_x-"} }
action_add{ name = "right", keys = {"right", "@d"}, buttons = {"dpad_right"}, axes = {"left_x+"} }
action_add{ name = "up", keys = {"up", "@w"}, buttons = {"dpad_up"}, axes = {"left_y-"} }
action_add{ name = "down", keys = {"down", "@s"}, buttons = {"dpad_down"}, axes = {"left_y+"} }
action_add{ name = "meteor", keys = {"space"}, buttons = {"a"} }

-- How far the player has led the camera off its path.
vars.lead = { x = 0, y = 0, zoom = 1 }

local LEAD_SPEED, LEAD_REACH, LEAD_BACK = 14, 420, 0.97

local function led(value, less, more)
    local way = action_value(more) - action_value(less)
    local goal = value + way * LEAD_SPEED
    return math.max(-LEAD_REACH, math.min(LEAD_REACH, way == 0 and goal * LEAD_BACK or goal))
end

local function lead_camera()
    local lead = vars.lead
    lead.x = led(lead.x, "left", "right")
    lead.y = led(lead.y, "up", "down")
    local zoom = lead.zoom * (1 + 0.1 * mouse_wheel())
    lead.zoom = math.max(0.6, math.min(1.8, mouse_wheel() == 0 and 1 + (zoom - 1) * LEAD_BACK or zoom))
end

local function call_meteors()
    if action_pressed("meteor") then
        meteors.call_down(view_to_room(SHOT_VIEW, SCREEN_WIDTH / 2, SCREEN_HEIGHT / 2) or 1200)
    end
    if mouse_pressed("left") then
        local x = mouse_room(math.max(SHOT_VIEW, view_at(mouse_x(), mouse_y())))
        if x then
            meteors.call_down(math.max(0, math.min(town.WIDTH, x)))
        end
    end
end

local function begin_shot()
    shaker.roll_dice()
end

local function end_shot()
    local camera = camera_current()
    local x, y = camera_get_view_x(camera), camera_get_view_y(camera)
    local width, height = camera_get_view_width(camera), camera_get_view_height(camera)
    draw_set_colour(colour_rgb(255, 236, 200))
    draw_set_alpha(math.max(0, vars.shake.strength - 0.6))
    draw_rectangle(x - width, y - height, x + 2 * width, y + 2 * height)
    local shake_x, shake_y = shaker.offset()
    camera_set_view_pos(camera, x - shake_x, y - shake_y)
    camera_set_view_angle(camera, 0)
end

-- ---- shots: each is a function of the time since its start; it gives x, y and zoom, or nothing when it is over ----

local function place_on_path(points, t)
    local along = t * (#points - 1)
    local index = math.min(#points - 1, math.floor(along) + 1)
    local a = points[math.max(1, index - 1)]
    local b, c = points[index], points[index + 1]
    local d = points[math.min(#points, index + 2)]
    local place = {}
    for i = 1, 3 do
        place[i] = curve(a[i], b[i], c[i], d[i], along - (index - 1))
    end
    return place[1], place[2], place[3]
end

local function fly(points, frames)
    return {
        points = points, relay = frames // 2,
        at = function(time)
            if time <= frames then
                return place_on_path(points, ease(time / frames))
            end
        end,
    }
end

local function zoom_to(from, to, frames)
    return {
        points = { from, to },
        at = function(time)
            if time <= frames then
                local t = ease(time / frames)
                return between(from[1], to[1], t), between(from[2], to[2], t), between(from[3], to[3], t)
            end
        end,
    }
end

-- x, y, zoom. The first shot starts where the last one ends.
local OVERVIEW = { 1200, 640, 0.6 }
local TOWER = { 1110, 700, 1.9 }
local SHORE = { 1750, 860, 1.2 }
local SHOTS = {
    fly({ OVERVIEW, { 540, 500, 0.85 }, { 560, 780, 1.3 }, { 860, 860, 1.5 }, { 1000, 640, 1.2 }, TOWER }, 210),
    zoom_to(TOWER, SHORE, 90),
    fly({ SHORE, { 1900, 820, 1.25 }, { 1780, 640, 0.95 }, { 1450, 600, 0.75 }, OVERVIEW }, 180),
}

-- ---- a clone in the camera's place ----

local CALLBACKS = {
    { camera_get_begin_script, camera_set_begin_script },
    { camera_get_update_script, camera_set_update_script },
    { camera_get_end_script, camera_set_end_script },
}

local function clone_camera(camera)
    local clone = camera_create_view(
        camera_get_view_x(camera), camera_get_view_y(camera),
        camera_get_view_width(camera), camera_get_view_height(camera),
        camera_get_view_angle(camera), camera_get_view_target(camera),
        camera_get_view_speed_x(camera), camera_get_view_speed_y(camera),
        camera_get_view_border_x(camera), camera_get_view_border_y(camera))
    for _, callback in ipairs(CALLBACKS) do
        local get, set = callback[1], callback[2]
        set(clone, get(camera))
    end
    return clone
end

-- The view goes on with the clone in the same frame.
local function relay(view)
    local camera = view_get_camera(view)
    view_set_camera(view, clone_camera(camera))
    camera_destroy(camera)
end

-- ---- the director ----

vars.shot = { number = 1, time = 0 } -- time: frames of the shot with this number so far

-- The update callback for the shot with this number, from a time on.
local function direct(number, time)
    local shot = SHOTS[number]
    return function()
        local camera = camera_current()
        local x, y, zoom = shot.at(time)
        if not x then
            local next_update = direct(number % #SHOTS + 1, 0)
            camera_set_update_script(camera, next_update)
            return next_update()
        end
        aim(camera, x, y, zoom)
        if time == shot.relay then
            log("frame " .. frame_number() .. ": a clone takes camera " .. camera .. "'s place")
            relay(SHOT_VIEW)
        end
        time = time + 1
        vars.shot = { number = number, time = time }
    end
end

-- ---- the small picture ----

local function draw_frame(left, top, right, bottom, width)
    local half = width / 2
    draw_line(left - half, top, right + half, top, width)
    draw_line(left - half, bottom, right + half, bottom, width)
    draw_line(left, top, left, bottom, width)
    draw_line(right, top, right, bottom, width)
end

local function draw_path_and_frame()
    local points = SHOTS[vars.shot.number].points
    draw_set_colour(colour_rgb(255, 214, 110))
    local from_x, from_y = points[1][1], points[1][2]
    for step = 1, 40 do
        local x, y = place_on_path(points, step / 40)
        draw_line(from_x, from_y, x, y, 8)
        from_x, from_y = x, y
    end
    local camera = view_get_camera(SHOT_VIEW)
    local left, top = camera_get_view_x(camera), camera_get_view_y(camera)
    local right = left + camera_get_view_width(camera)
    local bottom = top + camera_get_view_height(camera)
    draw_set_colour(colours.white)
    draw_frame(left, top, right, bottom, 10)
end

-- ---- the room ----

local BAR = 44 -- height of the black bars above and below
local MAP = { x = 880, y = 60, w = 384, h = 192 }

local function draw_meter(x, y)
    draw_set_colour(colour_rgb(70, 60, 90))
    draw_rectangle(x, y, x + 160, y + 12)
    draw_set_colour(colour_rgb(255, 150, 80))
    draw_rectangle(x, y, x + 160 * vars.shake.strength, y + 12)
end

local function give_out_callbacks()
    local camera = view_get_camera(SHOT_VIEW)
    camera_set_begin_script(camera, begin_shot)
    camera_set_update_script(camera, direct(vars.shot.number, vars.shot.time))
    camera_set_end_script(camera, end_shot)
    camera_set_end_script(view_get_camera(MAP_VIEW), draw_path_and_frame)
end

room_add{
    name = "night", width = town.WIDTH, height = town.HEIGHT, background = town.NIGHT,
    views = {
        [SHOT_VIEW] = {},
        [MAP_VIEW] = { w = town.WIDTH, h = town.HEIGHT, xport = MAP.x, yport = MAP.y, wport = MAP.w, hport = MAP.h },
    },
    create = function()
        town.build()
        meteors.on_impact(function(x)
            local camera = view_get_camera(SHOT_VIEW)
            local distance = math.abs(x - camera_get_view_x(camera) - camera_get_view_width(camera) / 2)
            shaker.hit(between(0.9, 0.25, math.min(1, distance / 900)))
            town.shake_lights(x)
        end)
        give_out_callbacks()
    end,
    load = give_out_callbacks,
    step = function()
        lead_camera()
        call_meteors()
        meteors.rain()
    end,
    draw = town.draw_ground,
    draw_gui = function()
        draw_set_colour(colours.black)
        draw_rectangle(0, 0, SCREEN_WIDTH, BAR)
        draw_rectangle(0, SCREEN_HEIGHT - BAR, SCREEN_WIDTH, SCREEN_HEIGHT)
        draw_set_colour(colours.white)
        draw_frame(MAP.x - 1, MAP.y - 1, MAP.x + MAP.w + 1, MAP.y + MAP.h + 1, 2)
        draw_text(16, SCREEN_HEIGHT - 28, "SHAKE")
        draw_text(MAP.x, SCREEN_HEIGHT - 28, "CAMERA " .. math.tointeger(view_get_camera(SHOT_VIEW)))
        draw_meter(64, SCREEN_HEIGHT - 28)
    end,
}
