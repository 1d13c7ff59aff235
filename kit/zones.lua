-- Limits: what of the room a camera may show, for the whole room and by zones.
--
--   zones.step(rig, x, y, cut)                          once a frame: which zones the point is in
--   zones.size(rig, size) -> size                       the size of the view (1 / zoom), with the zones' zooms
--   zones.clamp(rig, x, y, half_w, half_h, room) -> x, y   the goal, brought inside the limits
--   zones.keep_inside(rig, x, y, half_w, half_h, room) -> x, y   the result, see below
--
-- A zone is a rectangle with limits, a zoom and margins of its own. Its weight grows from 0 to 1 while the followed
-- point is inside and falls back outside; the goal is blended by the eased weight, in the order of the list. Limits act
-- on the goal, before the smoothing, so the camera comes to rest at a limit as it does anywhere else.
--
-- A side without a limit is infinite. Where the limits are narrower than the view, it is centred between them.

local zones = {}

local INFINITY = math.huge

local function bounds(area, limits, room)
    if not limits then
        return -INFINITY, INFINITY, -INFINITY, INFINITY
    elseif limits == "room" then
        limits = room
    end
    local margin = area.margin
    local left, right = limits.left or -INFINITY, limits.right or INFINITY
    local top, bottom = limits.top or -INFINITY, limits.bottom or INFINITY
    if margin then
        return left + margin.left, right - margin.right, top + margin.top, bottom - margin.bottom
    end
    return left, right, top, bottom
end

local function inside(place, low, high, half)
    if high - low < 2 * half then
        return (low + high) / 2
    elseif place < low + half then
        return low + half
    elseif place > high - half then
        return high - half
    end
    return place
end

local function eased(weight)
    return weight * weight * (3 - 2 * weight)
end

function zones.step(rig, x, y, cut)
    for _, zone in ipairs(rig.zones) do
        local is_in = x >= zone.left and x < zone.right and y >= zone.top and y < zone.bottom
        if cut or zone.frames == 0 then
            zone.weight = is_in and 1 or 0
        elseif is_in then
            zone.weight = math.min(1, zone.weight + 1 / zone.frames)
        else
            zone.weight = math.max(0, zone.weight - 1 / zone.frames)
        end
    end
end

function zones.size(rig, size)
    for _, zone in ipairs(rig.zones) do
        if zone.zoom and zone.weight > 0 then
            size = size + (1 / zone.zoom - size) * eased(zone.weight)
        end
    end
    return size
end

-- A zone whose limits are not given shows nothing but itself.
local function zone_limits(zone)
    return zone.limits == nil and zone or zone.limits
end

function zones.clamp(rig, x, y, half_w, half_h, room)
    local left, right, top, bottom = bounds(rig, rig.limits, room)
    local goal_x, goal_y = inside(x, left, right, half_w), inside(y, top, bottom, half_h)
    for _, zone in ipairs(rig.zones) do
        local limits = zone_limits(zone)
        if zone.weight > 0 and limits then
            left, right, top, bottom = bounds(zone, limits, room)
            local part = eased(zone.weight)
            goal_x = goal_x + (inside(x, left, right, half_w) - goal_x) * part
            goal_y = goal_y + (inside(y, top, bottom, half_h) - goal_y) * part
        end
    end
    return goal_x, goal_y
end

-- What the base's limits and those of all zones that count allow together.
local function hull(rig, room)
    local left, right, top, bottom = bounds(rig, rig.limits, room)
    for _, zone in ipairs(rig.zones) do
        if zone.weight > 0 then
            local l, r, t, b = bounds(zone, zone_limits(zone), room)
            left, right, top, bottom = math.min(left, l), math.max(right, r), math.min(top, t), math.max(bottom, b)
        end
    end
    return left, right, top, bottom
end

-- place: where the smoothing has come to; was, was_half: what the last frame showed.
local function no_farther_out(place, half, was, was_half, low, high)
    if high - low < 2 * half then
        return place
    end
    local low_out, high_out = math.max(0, low + was_half - was), math.max(0, was - high + was_half)
    return math.max(low + half - low_out, math.min(high - half + high_out, place))
end

-- A growing view pushes the camera away from the limits. What already lies outside, because the limits were changed,
-- may glide back, but gets no farther out.
function zones.keep_inside(rig, x, y, half_w, half_h, room)
    local left, right, top, bottom = hull(rig, room)
    local shown = rig.shown
    return no_farther_out(x, half_w, shown.x, shown.half_w, left, right),
           no_farther_out(y, half_h, shown.y, shown.half_h, top, bottom)
end

return zones
