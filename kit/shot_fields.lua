-- What a shot can be told, as checks by name: the fields of kit.camera{...} and camera:shot(name, {...}). Each check
-- answers the value as it is stored: numbers, names and tables of these.

local checks = include("kit/checks.lua")
local path = include("kit/path.lua")

-- An instance or object as its number, or a place that does not move.
local function target(field, value)
    if type(value) == "number" then
        return checks.whole("an instance, an object or a place {x = , y = }", 0)(field, value)
    elseif type(value) == "userdata" or (type(value) == "table" and value.id ~= nil) then
        return checks.whole("an instance", 0)(field, value.id)
    elseif type(value) == "table" and value.x ~= nil then
        return checks.point(field, value)
    end
    checks.refuse(field, "an instance, an object or a place {x = , y = }", value)
end

local target_list = checks.list_of(target, "a list of targets", 0)

-- One target or a list; false for none.
local function targets(field, value)
    if type(value) == "table" and value.id == nil and value.x == nil then
        return target_list(field, value)
    end
    return value == false and {} or { target(field, value) }
end

local function half_life(field, value)
    if type(value) == "number" then
        value = { x = value, y = value }
    end
    local lives = checks.table_of({ x = checks.not_negative, y = checks.not_negative, zoom = checks.not_negative },
                                  "frames, or a table of frames for x, y and zoom")(field, value)
    return lives
end

local limits = checks.table_of({ left = checks.any_number, right = checks.any_number, top = checks.any_number,
                                 bottom = checks.any_number }, '"room", false or a table of left, right, top, bottom')

local function limits_or_room(field, value)
    return value == "room" and value or limits(field, value)
end

local margin = checks.sides(checks.any_number)

local zone_fields = checks.table_of({
    name = checks.text, left = checks.any_number, right = checks.any_number, top = checks.any_number,
    bottom = checks.any_number, limits = checks.or_false(limits_or_room), zoom = checks.positive, margin = margin,
    frames = checks.frames,
}, "a table of left, right, top, bottom, limits, zoom, margin, frames", { "left", "right", "top", "bottom" })

local function zone(field, value)
    local taken = zone_fields(field, value)
    if taken.right < taken.left or taken.bottom < taken.top then
        checks.fail(field .. " has its right before its left or its bottom above its top: nothing is ever inside")
    end
    taken.frames = taken.frames or 30
    taken.weight = 0
    return taken
end

local lead_fields = checks.table_of({ x = checks.any_number, y = checks.any_number, limit = checks.not_negative,
                                      half_life = checks.not_negative },
                                    "frames, or a table of x, y, limit and half_life")

local function lead(field, value)
    return lead_fields(field, type(value) == "number" and { x = value } or value)
end

local path_fields = checks.table_of({
    points = checks.list_of(checks.point, "a list of at least two points {x, y}", 2), curve = checks.boolean,
    closed = checks.boolean, progress = checks.number("a part of the way, 0 to 1", 0, 1),
}, "a table of points, curve, closed and progress", { "points" })

local function path_of(field, value)
    local taken = path_fields(field, value)
    taken.line = path.new(taken.points, taken.curve, taken.closed)
    return taken
end

local group_fields = checks.table_of({ margin = checks.not_negative, min_zoom = checks.positive, max_zoom = checks.positive },
                                     "a table of margin, min_zoom and max_zoom")

local function group(field, value)
    local taken = group_fields(field, value)
    if taken.min_zoom and taken.max_zoom and taken.min_zoom > taken.max_zoom then
        checks.refuse(field .. ".min_zoom", "at most max_zoom, " .. taken.max_zoom, taken.min_zoom)
    end
    return taken
end

-- What a shot can be told. All lengths are room units, on the screen at zoom 1; times are frames.
--   follow          a target or a list of them; false for none. A target is an instance, an object (its first instance)
--                   or a place {x = , y = }. Several are framed together. What does not exist is left out; while none
--                   does, the camera stays
--   style           "lock" (unless given): the target stays where it is on the screen, without smoothing
--                   "platformer": height changes when the target has landed, or leaves the dead zone
--                   "topdown": with a small dead zone, smoothed
--                   "screen": a screen at a time
--                   "path": on the rails of `path`
--   offset          {x, y} from the target to the middle of the view; 0, 0 unless given
--   zoom, angle     2 shows everything twice as large; degrees. 1 and 0 unless given
--   smoothing       "spring" (critically damped), "exponential" or "none"; the style's unless given
--   half_life       frames in which half of a distance is gone: a number, or { x = , y = , zoom = }; platformer 5 and 8,
--                   others 6, zoom 12
--   acceleration    the most by which the camera's speed changes in a frame, 4 unless given. It is kept for targets up to
--                   three quarters of goal_speed of smooth.lua (12 units a frame with a spring of half-life 5, 14 with
--                   6); behind a faster one the bound grows with its speed. "none" has no bound
--   dead_zone       how far the target may go from the middle to each side before the camera follows: sides. platformer:
--                   a sixteenth of the view's width, a quarter of its height; topdown: sixteenths; others none
--   soft_zone       beyond the dead zone: the camera comes after with soft_half_life (8), and at once at its outer edge
--   lead            look-ahead: how many frames of its motion the camera is ahead of the target: a number (across), or
--                   { x = , y = , limit = , half_life = }; the limit is a quarter of the view unless given, half_life 15
--   limits          "room" (unless given), false, or { left = , right = , top = , bottom = }, each side optional
--   margin          sides by which the limits are drawn in
--   group           { margin = , min_zoom = , max_zoom = } of several targets: an eighth of the view around them, 0.25,
--                   and `zoom`, unless given
--   screen          { width = , height = , x = , y = , margin = }: the grid of the style "screen"; the view's size, from
--                   the room's corner, and how far past an edge (4) the screen changes
--   path            { points = { {x, y}, ... }, curve = , closed = , progress = }: straight, or a Catmull-Rom curve; the
--                   camera is at the point that is nearest to the target, or at a part of its length, 0 to 1
--   zones           a list of { left = , right = , top = , bottom = , limits = , zoom = , margin = , frames = }, see zones.lua;
--                   limits: the rectangle itself unless given; frames: of the blend, 30 unless given
-- Sides are a number for all four, {across, down}, or a table of left, right, top and bottom.
return {
    follow = targets,
    style = checks.one_of{ "lock", "platformer", "topdown", "screen", "path" },
    offset = checks.point,
    zoom = checks.positive,
    angle = checks.any_number,
    smoothing = checks.one_of{ "spring", "exponential", "none" },
    half_life = half_life,
    acceleration = checks.positive,
    dead_zone = checks.or_false(checks.sides(checks.not_negative)),
    soft_zone = checks.or_false(checks.sides(checks.not_negative)),
    soft_half_life = checks.not_negative,
    lead = checks.or_false(lead),
    limits = checks.or_false(limits_or_room),
    margin = margin,
    group = group,
    screen = checks.table_of({ width = checks.positive, height = checks.positive, x = checks.any_number,
                               y = checks.any_number, margin = checks.not_negative },
                             "a table of width, height, x, y and margin"),
    path = path_of,
    zones = checks.list_of(zone, "a list of zones", 0),
}
