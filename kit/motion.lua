-- One setting for players who are made ill by motion: 1 plays shakes, rolls and zooms as the game has them, 0 plays none,
-- between them they are smaller. It scales what is shown and nothing that the game reckons with: a game plays on alike,
-- its callbacks come in the same frames.
--
--   motion.get(settings) -> 0 to 1        1 unless set
--   motion.set(settings, amount)
--   motion.calm(pose, rest, amount) -> pose   the pose with its angle scaled, and its zoom about the rest zoom
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

function motion.calm(pose, rest, amount)
    if amount == 1 then
        return pose
    end
    return { x = pose.x, y = pose.y, zoom = rest * (pose.zoom / rest) ^ amount, angle = pose.angle * amount }
end

return motion
