-- Easing: the ten common families, each as NAME_in, NAME_out and NAME_inout, and "linear".
--
--   easing.at(name, t) -> part of the way, for t from 0 (start) to 1 (end); t outside is clamped
--   easing.exists(name), easing.unknown(field, name), easing.names()
--
-- Every curve is exactly 0 at the start and exactly 1 at the end. "back" and "elastic" leave this range in between.
-- Only the in-curves are written down: an out-curve is the in-curve turned by half a turn about its middle, an
-- inout-curve is the one after the other at half the size.

local easing = {}

local BACK = 1.70158          -- overshoots by a tenth
local ELASTIC_PERIOD = 0.3    -- of one oscillation, as a part of the duration
local TURN = 2 * math.pi

-- A ball that falls and bounces, told backwards: parabolas of falling height. Each row: until, middle, floor.
local BOUNCES = { {1 / 2.75, 0, 0}, {2 / 2.75, 1.5 / 2.75, 0.75}, {2.5 / 2.75, 2.25 / 2.75, 0.9375},
                  {math.huge, 2.625 / 2.75, 0.984375} }

local function bounce_out(t)
    for _, bounce in ipairs(BOUNCES) do
        if t < bounce[1] then
            local part = t - bounce[2]
            return 7.5625 * part * part + bounce[3]
        end
    end
end

local IN = {
    quad = function(t) return t * t end,
    cubic = function(t) return t * t * t end,
    quart = function(t) return t * t * t * t end,
    quint = function(t) return t * t * t * t * t end,
    sine = function(t) return 1 - math.cos(t * TURN / 4) end,
    expo = function(t) return (2 ^ (10 * t) - 1) / 1023 end,
    circ = function(t) return 1 - math.sqrt(1 - t * t) end,
    back = function(t) return t * t * ((BACK + 1) * t - BACK) end,
    elastic = function(t) return -2 ^ (10 * (t - 1)) * math.sin((t - 1 - ELASTIC_PERIOD / 4) * TURN / ELASTIC_PERIOD) end,
    bounce = function(t) return 1 - bounce_out(1 - t) end,
}

local curves = { linear = function(t) return t end }
for family, rise in pairs(IN) do
    curves[family .. "_in"] = rise
    curves[family .. "_out"] = function(t) return 1 - rise(1 - t) end
    curves[family .. "_inout"] = function(t)
        if t < 0.5 then
            return rise(2 * t) / 2
        end
        return 1 - rise(2 - 2 * t) / 2
    end
end

function easing.names()
    local names = {}
    for name in pairs(curves) do
        names[#names + 1] = name
    end
    table.sort(names)
    return names
end

function easing.exists(name)
    return curves[name] ~= nil
end

-- What to say about a name that does not exist.
function easing.unknown(field, name)
    return field .. ' is "linear", or one of quad cubic quart quint sine expo circ back elastic bounce with _in, _out or '
        .. '_inout after it, got ' .. tostring(name)
end

function easing.at(name, t)
    if t <= 0 then
        return 0
    elseif t >= 1 then
        return 1
    end
    return curves[name](t)
end

return easing
