-- One setting for players who are made ill by motion: 1 plays shakes, rolls and zooms as the game has them, 0 plays none,
-- between them they are smaller. It scales what is shown; times, scripts and what is followed stay as they are.
--
--   motion.get(settings) -> 0 to 1                  1 unless set
--   motion.set(settings, amount)
--   motion.prepare(view, main, settings)            once a frame: what the two below need, kept in the view
--   motion.size(size, view, wide_zoom) -> size      the size of a view (1 / zoom); a group's widest zoom, if it has one
--   motion.angle(angle, view) -> angle
--
-- Zooms and angles of shots are scaled about those of the camera's first shot: a game whose pictures are all twice as
-- large or lie on their sides stays so. A group goes to its widest zoom, in which nobody is left out. They are scaled
-- before limits are applied, so that no limit is broken.
--
-- `settings` is the Runner's table of the player's choices, which is kept apart from saves; the entry is kit_motion.

local checks = include("kit/checks.lua")

local motion = {}

function motion.get(settings)
    local amount = settings.kit_motion
    if type(amount) ~= "number" or amount ~= amount then
        return amount == false and 0 or 1
    end
    return math.max(0, math.min(1, amount))
end

function motion.set(settings, amount)
    settings.kit_motion = checks.number("a number from 0 to 1", 0, 1)("the amount", amount)
end

function motion.prepare(view, main, settings)
    view.motion, view.rest_zoom, view.rest_angle = motion.get(settings), main.zoom, main.angle
end

function motion.size(size, view, wide_zoom)
    local amount = view.motion or 1
    if amount == 1 then
        return size
    end
    local rest = 1 / (wide_zoom or view.rest_zoom)
    return rest * (size / rest) ^ amount
end

function motion.angle(angle, view)
    local amount = view.motion or 1
    return amount == 1 and angle or view.rest_angle + (angle - view.rest_angle) * amount
end

return motion
