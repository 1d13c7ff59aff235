-- Pixel art: poses whose picture falls on whole pixels.
--
--   pixels.new(field, value) -> state            checks what a camera was told; the options are below
--   pixels.place(state, base, pose, view, anchor) -> pose   base: the pose without effects
--   pixels.snap(value, grid) -> value            rounded to a multiple of the grid
--
-- A view is { width, height, scale }: its size at zoom 1 in room units, and the pixels of the screen for a unit then. An
-- anchor is {x, y}: what the camera follows, if anything. state.unit is the grid after place, in room units: things that
-- move by fractions are to be drawn at places snapped to it.
--
--   grid = "art"     whole units of the room: the picture moves by whole pixels of the art
--   grid = "screen"  whole pixels of the screen: the art scrolls by parts of its own pixels, and since each of its
--                    pixels covers whole pixels of the screen nothing shimmers. What is drawn stands on whole units
--   integer_zoom     the zoom that makes each unit a whole number of pixels
--   scale            in place of the view's, for one that draws into a surface
--
-- The left top edge of the view is what must be whole, not its centre: of a view of odd width the centre is a half.
--
-- Rounding alone makes things tremble: the camera's place and that of what it follows are rounded each for itself, now
-- the one up, now the other. So the edge has a play of one pixel on each axis, and two rules bind its steps: it steps in
-- the direction in which the camera moves, and what is followed steps on the screen in the direction in which it moves
-- there. Then a thing that is followed at constant speed stands still on the screen, whatever its speed, and neither it
-- nor the room behind it ever goes to and fro.
-- A view that is turned has no whole pixels: it is left as it is.

local checks = include("kit/checks.lua")

local pixels = {}

local NEARLY = 1e-6 -- of a pixel: below it, two places are one
local SETTLED = 0.01 -- pixels a frame: what slides less on the screen stands there

local fields = checks.table_of({ grid = checks.one_of{ "art", "screen" }, integer_zoom = checks.boolean,
                                 scale = checks.positive },
                               "true, false or a table of grid, integer_zoom and scale")

-- What a camera's field `pixels` may be; the answer is the state, false for none.
function pixels.new(field, value)
    if value == false then
        return false
    end
    local taken = fields(field, value == true and {} or value)
    return { grid = taken.grid or "art", integer_zoom = taken.integer_zoom or false, scale = taken.scale }
end

function pixels.snap(value, grid)
    return math.floor(value / grid + 0.5) * grid
end

local function rounded(value)
    return math.floor(value + 0.5)
end

-- Moves `kept` by whole steps, where it is farther than the play from the wanted place, and by as few as bring it within
-- a step of it.
local function with_play(kept, wanted, play)
    if wanted > kept + play then
        return math.ceil(wanted - 1 - NEARLY)
    elseif wanted < kept - play then
        return math.floor(wanted + 1 + NEARLY)
    end
    return kept
end

-- Of the steps from low to high those that lie, seen from one of them, in the direction of a motion: without a motion
-- this one alone.
local function steps_along(motion, origin, low, high)
    if motion > NEARLY then
        return math.max(low, origin), high
    elseif motion < -NEARLY then
        return low, math.min(high, origin)
    end
    return math.max(low, origin), math.min(high, origin)
end

-- The next whole place of an edge that has moved to `edge`, while what it follows has moved to `anchor`.
local function next_place(axis, edge, anchor)
    local moved = edge - axis.edge
    local low, high = steps_along(moved, 0, -math.huge, math.huge)
    local kept, wanted, play = axis.at, edge, 1
    if anchor and axis.anchor then
        local slid = moved - (anchor - axis.anchor) -- what is followed moves backwards on the screen by this
        local step = rounded(anchor) - rounded(axis.anchor)
        low, high = steps_along(slid, step, low, high)
        if math.abs(slid) < math.abs(moved) then
            kept, wanted = kept + step, rounded(anchor) + edge - anchor
        end
        if math.abs(slid) < SETTLED then
            play = 1.125 -- the last thousandths of a smooth way make no step
        end
    end
    return axis.at + math.max(low, math.min(high, with_play(kept, wanted, play) - axis.at))
end

-- One axis, in steps of the grid. A grid of another width has no steps in common with it: the edge is rounded anew.
local function place_axis(axis, edge, anchor, grid)
    axis.at = axis.grid == grid and next_place(axis, edge, anchor) or rounded(edge)
    axis.edge, axis.anchor, axis.grid = edge, anchor, grid
    return axis.at
end

-- Whole pixels for each unit of the room, at least one. Between two of them the nearer one in ratio, and the one that
-- is there already where both are nearly as near.
local function whole_zoom(memory, per_unit)
    local low = math.max(1, math.floor(per_unit))
    local part = per_unit / math.sqrt(low * (low + 1))
    if memory.zoom ~= low and memory.zoom ~= low + 1 then
        memory.zoom = part >= 1 and low + 1 or low
    elseif memory.zoom == low and part > 1.05 then
        memory.zoom = low + 1
    elseif memory.zoom == low + 1 and part < 0.95 then
        memory.zoom = low
    end
    return memory.zoom
end

local function place(state, memory, pose, view, anchor)
    if pose.angle % 90 ~= 0 then
        return pose
    end
    local scale = state.scale or view.scale
    local per_unit = pose.zoom * scale
    if state.integer_zoom then
        per_unit = whole_zoom(memory, per_unit)
    end
    local grid = state.grid == "screen" and 1 / per_unit or 1
    local zoom = per_unit / scale
    local half_w, half_h = view.width / zoom / 2, view.height / zoom / 2
    state.unit = grid
    if pose.angle % 180 ~= 0 then
        half_w, half_h = half_h, half_w
    end
    local x = place_axis(memory.x, (pose.x - half_w) / grid, anchor and anchor.x / grid, grid)
    local y = place_axis(memory.y, (pose.y - half_h) / grid, anchor and anchor.y / grid, grid)
    return { x = x * grid + half_w, y = y * grid + half_h, zoom = zoom, angle = pose.angle }
end

local function copy(memory)
    local copied = {}
    for name, value in pairs(memory) do
        copied[name] = type(value) == "table" and copy(value) or value
    end
    return copied
end

-- Where the play leaves an edge depends on the way it came. So that no effect leaves a trace, the base goes its own way
-- all the time, and what effects make of it has one of its own, which starts where the base is and is then forgotten.
function pixels.place(state, base, pose, view, anchor)
    state.base = state.base or { x = {}, y = {} }
    if pose == base then
        state.laid = nil
        return place(state, state.base, base, view, anchor)
    end
    state.laid = state.laid or copy(state.base)
    local laid = place(state, state.laid, pose, view, anchor)
    local unit = state.unit
    place(state, state.base, base, view, anchor)
    state.unit = unit
    return laid
end

return pixels
