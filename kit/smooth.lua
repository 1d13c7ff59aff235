-- Smoothing of one coordinate, exact for the fixed step of one frame.
--
--   smooth.spring(at, speed, goal, half_life) -> at, speed     a critically damped spring
--   smooth.exponential(at, goal, half_life) -> at              exponential smoothing: goes half of the way in half_life
--   smooth.toward(at, goal, step) -> at                        at most so far
--   smooth.goal_speed(kind, half_life, acceleration) -> speed  see below
--
-- Both answer what the differential equation has after one frame, not an approximation of it, for a goal that stands
-- still during the frame. half_life: frames in which half of a distance is gone; 0 follows at once.
--
-- Neither overshoots: what they answer is an average of earlier goals with weights that are never negative, so it lies
-- among them. The same average bounds the acceleration: for a goal that moves by at most V a frame, a spring's speed
-- changes by at most 2 V w / e a frame (w: its frequency), that of exponential smoothing by at most 2 V k (k: the part
-- of the distance that a frame takes). goal_speed turns this round: how fast the goal may move so that the speed never
-- changes by more than `acceleration` a frame.

local smooth = {}

local FREQUENCY = 1.6783469900166605 -- of half-life 1: (1 + f) e^-f is a half
local E = 2.718281828459045

local springs, rates = {}, {} -- what depends on the half-life alone, by half-life

local function spring_of(half_life)
    local frequency = FREQUENCY / half_life
    local spring = { frequency, E ^ -frequency }
    springs[half_life] = spring
    return spring
end

local function rate_of(half_life)
    local rate = 1 - 0.5 ^ (1 / half_life)
    rates[half_life] = rate
    return rate
end

function smooth.spring(at, speed, goal, half_life)
    if half_life <= 0 then
        return goal, goal - at
    end
    local spring = springs[half_life] or spring_of(half_life)
    local frequency, decay = spring[1], spring[2]
    local away = at - goal
    local push = speed + frequency * away
    local left = (away + push) * decay
    return goal + left, push * decay - frequency * left
end

function smooth.exponential(at, goal, half_life)
    if half_life <= 0 then
        return goal
    end
    return at + (goal - at) * (rates[half_life] or rate_of(half_life))
end

function smooth.toward(at, goal, step)
    if goal > at + step then
        return at + step
    elseif goal < at - step then
        return at - step
    end
    return goal
end

function smooth.goal_speed(kind, half_life, acceleration)
    if half_life <= 0 then
        return math.huge
    elseif kind == "exponential" then
        return acceleration / (2 * (rates[half_life] or rate_of(half_life)))
    end
    return acceleration * E / (2 * FREQUENCY / half_life)
end

return smooth
