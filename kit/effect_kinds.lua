-- The kinds of effects, for effects.lua: what each takes, and how it moves a pose.
--
--   kinds.by_name                                the table at the end
--   kinds.new(kind, options, prefix) -> effect   plain data; refuses what is wrong
--
-- Every effect has a value that goes from `from` to `to` along its easing. A place (pan_to, zoom_to, rotate_to) goes
-- from 0, not at all, to 1, there; what wears off (shake, trauma, kick, flash) goes down to 0; fade and letterbox go from
-- where the picture is to where it shall be. An effect whose value has come to 0 is over; any other holds.
--
-- A kind's `apply(effect, pose, motion, host, state)` changes the pose; motion (0 to 1) scales shake, roll and zoom for
-- players who are made ill by motion. `kit/screen.lua` draws the kinds without `apply`.

local checks = include("kit/checks.lua")
local easing = include("kit/easing.lua")
local noise = include("kit/noise.lua")

local function between(from, to, part)
    return part == 1 and to or from + (to - from) * part
end

-- ---- places ----

local function pan(effect, pose, _, host)
    if effect.target then
        local x, y = host.position(effect.target)
        effect.x, effect.y = x or effect.x or pose.x, y or effect.y or pose.y -- gone: where it was last
    end
    pose.x = between(pose.x, effect.x or pose.x, effect.value)
    pose.y = between(pose.y, effect.y or pose.y, effect.value)
end

-- In equal ratios: half of the way from 1 to 4 is 2. A point that is given stays where it is on the screen.
local function zoom(effect, pose, motion)
    local part = effect.value * motion
    local factor = (effect.zoom / pose.zoom) ^ part
    local point = effect.point
    if point then
        pose.x = point.x + (pose.x - point.x) / factor
        pose.y = point.y + (pose.y - point.y) / factor
    end
    pose.x, pose.y = pose.x + effect.shift_x * part, pose.y + effect.shift_y * part
    pose.zoom = part == 1 and effect.zoom or pose.zoom * factor
end

-- The turn that is left is followed from frame to frame: a base that turns past the opposite direction does not make
-- the camera spin the other way round.
local function rotate(effect, pose, motion)
    local turn = effect.angle - pose.angle
    if effect.turn then
        turn = turn + 360 * math.floor((effect.turn - turn) / 360 + 0.5)
    elseif effect.way == "short" then
        turn = (turn + 180) % 360 - 180
    end
    effect.turn = turn
    pose.angle = pose.angle + turn * effect.value * motion
end

-- ---- jolts: in room units at zoom 1, so that they look alike at every zoom ----

-- The seed is drawn when it is first needed: a game without shakes draws no random number for them.
local function shake(effect, pose, motion, host, state)
    local seed = state.seed or math.floor(host.random() * 0x7FFFFFFF)
    state.seed = seed
    local strength = math.max(0, effect.value) ^ effect.power * motion
    local channel, place = 3 * effect.id, effect.age * effect.speed
    pose.x = pose.x + effect.x * strength / pose.zoom * noise.at(seed, channel, place)
    pose.y = pose.y + effect.y * strength / pose.zoom * noise.at(seed, channel + 1, place)
    if effect.angle ~= 0 then
        pose.angle = pose.angle + effect.angle * strength * noise.at(seed, channel + 2, place)
    end
end

local function kick(effect, pose, motion)
    local part = effect.value * motion / pose.zoom
    pose.x, pose.y = pose.x + effect.x * part, pose.y + effect.y * part
end

-- ---- what they take ----

local number, positive, not_negative = checks.any_number, checks.positive, checks.not_negative
local part = checks.number("a number from 0 to 1", 0, 1)
local colour = checks.whole("a colour, 0 to 0xFFFFFF", 0, 0xFFFFFF)
local identifier = checks.whole("the number of an effect", 1)
local way = checks.one_of{ "short", "straight" }

local function ease(field, value)
    if not easing.exists(value) then
        checks.fail(easing.unknown(field, value))
    end
    return value
end

-- An instance or an object, by its number or as an event's `self`.
local function target(field, value)
    local id = value
    if type(value) == "userdata" or type(value) == "table" then
        id = value.id
    end
    return checks.whole("an instance or an object", 0)(field, id)
end

-- What every effect takes, and after it what this one does.
local function taken(own)
    own.frames, own.ease, own.after, own.done = not_negative, ease, identifier, checks.script
    return own
end

local SHAKE = { x = number, y = number, angle = number, speed = not_negative, power = positive }

local function shaken(name)
    local own = { [name] = part }
    for option, check in pairs(SHAKE) do
        own[option] = check
    end
    return taken(own)
end

-- ---- the table ----

-- takes: the options with their checks. starts: the fields of a new effect. one_of: options of which one must be given.
-- from, to: of the value, a number or the name of an option. once: a new one takes the place of the old one and goes on
-- from its value.
local KINDS = {
    shake = { apply = shake, from = "strength", to = 0, takes = shaken("strength"),
              starts = { frames = 40, ease = "linear", strength = 1, x = 12, y = 12, angle = 0, speed = 0.35, power = 2 } },
    trauma = { apply = shake, from = "level", to = 0, takes = shaken("level"),
               starts = { frames = 60, ease = "linear", level = 0.5, x = 24, y = 24, angle = 3, speed = 0.35, power = 2 } },
    kick = { apply = kick, from = 1, to = 0, takes = taken{ x = number, y = number },
             starts = { frames = 30, ease = "elastic_out", x = 0, y = 0 } },
    pan_to = { apply = pan, place = true, from = 0, to = 1, takes = taken{ x = number, y = number, target = target },
               one_of = { "x", "y", "target" }, starts = { frames = 60, ease = "sine_inout" } },
    zoom_to = { apply = zoom, place = true, from = 0, to = 1, takes = taken{ zoom = positive, point = checks.point },
                one_of = { "zoom" }, starts = { frames = 60, ease = "sine_inout", shift_x = 0, shift_y = 0 } },
    rotate_to = { apply = rotate, place = true, from = 0, to = 1, takes = taken{ angle = number, way = way },
                  one_of = { "angle" }, starts = { frames = 60, ease = "sine_inout", way = "short" } },
    fade = { once = true, from = 0, to = "to", takes = taken{ to = part, colour = colour },
             starts = { frames = 30, ease = "linear", to = 1, colour = 0 } },
    letterbox = { once = true, from = 0, to = "to", takes = taken{ to = part, colour = colour },
                  starts = { frames = 30, ease = "sine_inout", to = 0.12, colour = 0 } },
    flash = { from = "strength", to = 0, takes = taken{ strength = part, colour = colour },
              starts = { frames = 20, ease = "quad_out", strength = 1, colour = 0xFFFFFF } },
    release = { from = 1, to = 0, takes = taken{}, starts = { frames = 60, ease = "sine_inout" } },
    wait = { from = 1, to = 0, takes = taken{}, starts = { frames = 60, ease = "linear" } },
}

local NAMES = {}
for name in pairs(KINDS) do
    NAMES[#NAMES + 1] = name
end
table.sort(NAMES)

local kinds = { by_name = KINDS }

-- ---- a new effect ----

local function has_any(options, names)
    for _, name in ipairs(names) do
        if options[name] ~= nil then
            return true
        end
    end
end

-- The effect that these options make; its course has not begun. prefix: of the fields in errors.
function kinds.new(kind, options, prefix)
    local spec = KINDS[checks.one_of(NAMES)(prefix .. "an effect", kind)]
    if type(options) ~= "table" then
        checks.refuse(prefix .. "its argument", "a table of options", options)
    end
    local given = checks.fields(options, spec.takes, prefix)
    if spec.one_of and not has_any(given, spec.one_of) then
        checks.fail(prefix .. table.concat(spec.one_of, " or ") .. " must be given")
    end
    local effect = { kind = kind, age = 0, time = 0 }
    for name, value in pairs(spec.starts) do
        effect[name] = value
    end
    for name, value in pairs(given) do
        effect[name] = value
    end
    return effect
end

return kinds
