-- Smooth noise: random heights at whole places, joined by a curve without corners.
--
--   noise.at(seed, channel, place) -> -1 to 1
--
-- Computed from its arguments alone, so a save needs only the place. Neighbouring frames get neighbouring values: a
-- shake made of it moves the picture along a path instead of tearing it from spot to spot.

local noise = {}

-- Whole numbers wrap at 64 bits, the same on every machine. The multipliers mix every bit into the top ones.
local function height(seed, channel, index)
    local mixed = seed * 0x1E3779B97F4A7C15 + channel * 0x3F58476D1CE4E5B9 + index * 0x14D049BB133111EB
    mixed = (mixed ~ (mixed >> 30)) * 0x3F58476D1CE4E5B9
    mixed = (mixed ~ (mixed >> 27)) * 0x14D049BB133111EB
    mixed = mixed ~ (mixed >> 31)
    return (mixed >> 11) / 4503599627370496.0 - 1 -- 53 bits, as -1 to 1
end

function noise.at(seed, channel, place)
    local index = math.floor(place)
    local t = place - index
    local from, to = height(seed, channel, index), height(seed, channel, index + 1)
    return from + (to - from) * t * t * t * (t * (t * 6 - 15) + 10)
end

return noise
