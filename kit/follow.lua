-- Following: from targets to the pose of one shot.
--
--   follow.FIELDS                                  what a shot can be told, as checks by name
--   follow.new(name, fields) -> rig                plain data; fields as checked
--   follow.set(rig, fields)                        changes some of them, at any time
--   follow.step(rig, host, view, room)             one frame: writes rig.pose
--
-- view: { width = , height = } of the room at zoom 1; room: { left = 0, right = , top = 0, bottom = } of the room.
-- rig.pose: { x, y, zoom, angle } and anchor_x, anchor_y, the point that is followed.
--
-- The stages of a frame: where the targets are; offset and look-ahead; the style with its dead and soft zone, which give
-- the goal; limits and zones, which bring the goal inside; a bound on the goal's speed and then the smoothing, which
-- give the pose. Each coordinate keeps its own state in rig.x and rig.y:
--
--   last, pace     the target's place, and how far it moved in the last frame
--   lead, lead_speed   the look-ahead and its spring
--   goal           after the style
--   near           the goal with its speed bounded
--   at, speed      after the smoothing
--   moved, change  of the camera in the last frame, and of the target on the screen; change_before: a frame earlier

local checks = include("kit/checks.lua")
local motion = include("kit/motion.lua")
local smooth = include("kit/smooth.lua")
local zones = include("kit/zones.lua")
local path = include("kit/path.lua")

local follow = {}

-- What a style means where a shot says nothing else. dead_part: the dead zone as parts of the view, to each side.
-- acceleration: how much the camera's speed may change in a frame, room units; lock has none, and follows at once.
local STYLES = {
    lock = { smoothing = "none", half_life = { x = 0, y = 0, zoom = 12 } },
    platformer = { smoothing = "spring", half_life = { x = 5, y = 8, zoom = 12 }, dead_part = { x = 1 / 16, y = 1 / 4 } },
    topdown = { smoothing = "spring", half_life = { x = 6, y = 6, zoom = 12 }, dead_part = { x = 1 / 16, y = 1 / 16 } },
    screen = { smoothing = "spring", half_life = { x = 6, y = 6, zoom = 12 } },
    path = { smoothing = "spring", half_life = { x = 6, y = 6, zoom = 12 } },
}
local ACCELERATION = 4
local SOFT_HALF_LIFE = 8
local LEAD_HALF_LIFE, LEAD_LIMIT_PART = 15, 1 / 4
local GROUP_MARGIN_PART, GROUP_MIN_ZOOM = 1 / 8, 0.25
local SCREEN_MARGIN = 4
local STILL_FRAMES = 2 -- without vertical motion: the target stands. At the top of a jump it hangs for one at most

follow.FIELDS = include("kit/shot_fields.lua")

-- ---- making and changing ----

local function new_axis()
    return { last = 0, pace = 0, lead = 0, lead_speed = 0, goal = 0, near = 0, at = 0, speed = 0,
             moved = 0, change = 0, change_before = 0 }
end

function follow.new(name, fields)
    local rig = {
        name = name, targets = {}, given = {}, style = "lock", offset = { x = 0, y = 0 }, zoom = 1, angle = 0,
        acceleration = ACCELERATION, soft_half_life = SOFT_HALF_LIFE, limits = "room", zones = {}, screen = {},
        group = {}, still = 0, seen = 0, ready = false, x = new_axis(), y = new_axis(), size = { at = 1, speed = 0 },
        shown = { x = 0, y = 0, half_w = 0, half_h = 0 },
        pose = { x = 0, y = 0, zoom = 1, angle = 0, anchor_x = 0, anchor_y = 0 },
    }
    follow.set(rig, fields)
    return rig
end

-- What depends on the style: the shot's own word, or else the style's.
local function apply_style(rig)
    local style, given = STYLES[rig.style], rig.given
    rig.smoothing = given.smoothing or (style.smoothing == "none" and given.half_life and "spring") or style.smoothing
    local lives = given.half_life or {}
    rig.half_life = { x = lives.x or style.half_life.x, y = lives.y or style.half_life.y,
                      zoom = lives.zoom or style.half_life.zoom }
    rig.dead_zone, rig.dead_part = given.dead_zone, nil
    if given.dead_zone == nil and style.dead_part then
        rig.dead_part = { x = style.dead_part.x, y = style.dead_part.y }
    end
end

function follow.set(rig, fields)
    for name, value in pairs(fields) do
        if name == "follow" then
            rig.targets, rig.seen = value, 0
        elseif name == "half_life" or name == "smoothing" or name == "dead_zone" then
            rig.given[name] = value
        else
            rig[name] = value
        end
    end
    if rig.style == "path" and not rig.path then
        checks.fail('the style "path" needs the field path, a table with points')
    end
    apply_style(rig)
end

-- ---- where the targets are ----

-- Centre and size of the box around all targets that exist, and how many these are.
local function locate(rig, host)
    local only = #rig.targets == 1 and rig.targets[1]
    if only and type(only) == "number" then
        local x, y = host.position(only)
        if x and x - x == 0 and y - y == 0 then
            return x, y, 0, 0, 1
        end
        return rig.x.last, rig.y.last, 0, 0, 0
    end
    local left, right, top, bottom = math.huge, -math.huge, math.huge, -math.huge
    local count = 0
    for _, one in ipairs(rig.targets) do
        local x, y
        if type(one) == "table" then
            x, y = one.x, one.y
        else
            x, y = host.position(one)
        end
        if x and x - x == 0 and y - y == 0 then
            count = count + 1
            left, right = math.min(left, x), math.max(right, x)
            top, bottom = math.min(top, y), math.max(bottom, y)
        end
    end
    if count == 0 then
        return rig.x.last, rig.y.last, 0, 0, 0
    elseif count == 1 then
        return left, top, 0, 0, 1
    end
    return (left + right) / 2, (top + bottom) / 2, right - left, bottom - top, count
end

-- The size of the view (1 / zoom) in which the box has its margin, within the group's zooms.
local function framing(rig, view, wide, high)
    local group = rig.group
    local room_around = 2 * (group.margin or view.width * GROUP_MARGIN_PART)
    local size = math.max((wide + room_around) / view.width, (high + room_around) / view.height)
    return math.max(1 / (group.max_zoom or rig.zoom), math.min(1 / (group.min_zoom or GROUP_MIN_ZOOM), size))
end

-- How far the target has moved. One that has appeared, or goes on as part of another group, has not moved.
local function moved(rig, axis, place, count)
    local speed = (rig.ready and rig.seen == count) and place - axis.last or 0
    axis.last = place
    return speed
end

local function look_ahead(rig, axis, name, speed, view)
    local ahead = rig.lead
    if not ahead then
        axis.lead, axis.lead_speed = 0, 0
        return 0
    end
    local limit = ahead.limit or view * LEAD_LIMIT_PART
    local goal = math.max(-limit, math.min(limit, speed * (ahead[name] or 0)))
    axis.lead, axis.lead_speed = smooth.spring(axis.lead, axis.lead_speed, goal, ahead.half_life or LEAD_HALF_LIFE)
    return axis.lead
end

-- ---- styles: from the point that is followed to the goal ----

-- The dead zone is the way that the point may go from the goal to each side before the goal moves. In the soft zone
-- around it the goal comes after with a half-life; at its outer edge it is taken along at once.
local function drag(rig, goal, point, dead_low, dead_high, soft_low, soft_high)
    local excess = point - goal
    if excess > dead_high then
        excess = excess - dead_high
        local inner = smooth.exponential(excess, 0, rig.soft_half_life)
        return goal + excess - math.min(inner, soft_high)
    elseif excess < -dead_low then
        excess = -excess - dead_low
        local inner = smooth.exponential(excess, 0, rig.soft_half_life)
        return goal - excess + math.min(inner, soft_low)
    end
    return goal
end

local NO_SIDES = { left = 0, right = 0, top = 0, bottom = 0 }

local function by_zone(rig, view, size, x, y, stands)
    local dead, soft, part = rig.dead_zone or NO_SIDES, rig.soft_zone or NO_SIDES, rig.dead_part
    local left, right, top, bottom = dead.left, dead.right, dead.top, dead.bottom
    if part then
        left, top = view.width * part.x, view.height * part.y
        right, bottom = left, top
    end
    rig.x.goal = drag(rig, rig.x.goal, x, left * size, right * size, soft.left * size, soft.right * size)
    if stands then
        rig.y.goal = y
    else
        rig.y.goal = drag(rig, rig.y.goal, y, top * size, bottom * size, soft.top * size, soft.bottom * size)
    end
end

-- Whether the target stands on the ground: as the game has said, or when it keeps its height.
local function is_standing(rig, speed)
    rig.still = speed == 0 and rig.still + 1 or 0
    if rig.grounded ~= nil then
        return rig.grounded
    end
    return rig.still >= STILL_FRAMES
end

-- The edge of the screen that holds the point; the last one stays until the point is past its edge by the margin.
local function screen_edge(last, point, origin, long, border)
    if last and point >= last - border and point <= last + long + border then
        return last
    end
    return origin + math.floor((point - origin) / long) * long
end

local function by_screen(rig, view, size, room)
    local screen = rig.screen
    local wide, high = screen.width or view.width * size, screen.height or view.height * size
    local border = screen.margin or SCREEN_MARGIN
    screen.left = screen_edge(rig.ready and screen.left or nil, rig.x.last, screen.x or room.left, wide, border)
    screen.top = screen_edge(rig.ready and screen.top or nil, rig.y.last, screen.y or room.top, high, border)
    rig.x.goal, rig.y.goal = screen.left + wide / 2, screen.top + high / 2
end

local function find_goal(rig, view, size, room, x, y, speed_y)
    if rig.style == "screen" then
        return by_screen(rig, view, size, room)
    elseif rig.style == "path" then
        if rig.path.progress then
            rig.x.goal, rig.y.goal = path.at(rig.path.line, rig.path.progress)
        else
            rig.x.goal, rig.y.goal = path.nearest(rig.path.line, x, y)
        end
        return
    end
    local stands = rig.style == "platformer" and is_standing(rig, speed_y)
    if not rig.ready then
        rig.x.goal, rig.y.goal = x, y
    else
        by_zone(rig, view, size, x, y, stands)
    end
end

-- ---- smoothing ----

-- A camera that gathers or loses speed overtakes the target, or falls behind it: on the screen the target turns round. If
-- the target changes its own speed just before or after, it goes to and fro within three frames. So the camera goes along
-- with the target for one frame where it would turn it round, where the target itself turns round twice in a row, and
-- where it turns slightly: after that it may stop faster than a camera can follow.
local FELT = 0.02 -- room units a frame
local SLIGHT = 1 -- room units a frame

-- The part of the stated acceleration that the goal may ask for. The frame after one in which the camera has gone along
-- takes what is left.
local GOAL_PART = 3 / 4

local function turns_round(change, last)
    return (last > FELT and change < -FELT) or (last < -FELT and change > FELT)
end

local function goes_along(axis, change, target_speed, acceleration)
    if not turns_round(change, axis.change) then
        return false
    end
    local turn = target_speed - axis.moved
    if not turns_round(turn, axis.change) then
        return true -- its speed is then between the last one and its own next one
    end
    local most = turns_round(axis.change, axis.change_before) and acceleration or SLIGHT
    return math.abs(turn) <= most
end

local function steady(axis, was, target_speed, acceleration)
    local moved = axis.at - was
    local change = target_speed - moved
    if goes_along(axis, change, target_speed, acceleration) then
        axis.at, axis.speed = was + target_speed, axis.speed + change
        moved, change = target_speed, 0
    end
    axis.moved, axis.change_before, axis.change = moved, axis.change, change
end

-- The goal may move as fast as the stated acceleration allows, or as the target itself does. One frame of high speed is
-- a jump from one place to another, and does not count.
local function sustained(axis, speed)
    local pace = math.min(axis.pace, math.abs(speed))
    axis.pace = math.abs(speed)
    return pace
end

local function approach(rig, axis, goal, life, target_speed)
    local was = axis.at
    if rig.smoothing == "none" or life <= 0 then
        axis.near, axis.speed, axis.at = goal, goal - was, goal
        return
    end
    local bound = smooth.goal_speed(rig.smoothing, life, rig.acceleration * GOAL_PART)
    axis.near = smooth.toward(axis.near, goal, math.max(bound, sustained(axis, target_speed)))
    if rig.smoothing == "spring" then
        axis.at, axis.speed = smooth.spring(was, axis.speed, axis.near, life)
    else
        axis.at = smooth.exponential(was, axis.near, life)
        axis.speed = axis.at - was
    end
    steady(axis, was, target_speed, rig.acceleration)
end

local function stand_at(axis, goal)
    axis.near, axis.at, axis.speed = goal, goal, 0
    axis.pace, axis.moved, axis.change, axis.change_before = 0, 0, 0, 0
end

local function write_pose(rig, x, y, size, view)
    local half_w, half_h = view.width * size / 2, view.height * size / 2
    local pose, shown = rig.pose, rig.shown
    shown.x, shown.y, shown.half_w, shown.half_h = x, y, half_w, half_h
    pose.x, pose.y, pose.zoom, pose.angle = x, y, 1 / size, motion.angle(rig.angle, view)
    pose.anchor_x, pose.anchor_y = rig.x.last, rig.y.last
    rig.ready = true
end

local function find_size(rig, view, wide, high, count)
    local size = (count > 1 or rig.group.max_zoom) and framing(rig, view, wide, high) or 1 / rig.zoom
    size = motion.size(zones.size(rig, size), view, count > 1 and rig.group.min_zoom)
    local now = rig.size
    if rig.ready then
        now.at, now.speed = smooth.spring(now.at, now.speed, size, rig.half_life.zoom)
    else
        now.at, now.speed = size, 0
    end
    return now.at
end

function follow.step(rig, host, view, room)
    local cut = not rig.ready
    local target_x, target_y, wide, high, count = locate(rig, host)
    local x, y = rig.x, rig.y
    local speed_x, speed_y = moved(rig, x, target_x, count), moved(rig, y, target_y, count)
    rig.seen = count
    zones.step(rig, target_x, target_y, cut)
    local size = find_size(rig, view, wide, high, count)
    local half_w, half_h = view.width * size / 2, view.height * size / 2
    find_goal(rig, view, size, room, target_x + rig.offset.x + look_ahead(rig, x, "x", speed_x, view.width),
              target_y + rig.offset.y + look_ahead(rig, y, "y", speed_y, view.height), speed_y)
    local goal_x, goal_y = zones.clamp(rig, x.goal, y.goal, half_w, half_h, room)
    if cut then
        stand_at(x, goal_x)
        stand_at(y, goal_y)
        write_pose(rig, goal_x, goal_y, size, view)
        rig.ready = count > 0 or #rig.targets == 0 -- it starts where its target will appear
        return
    end
    approach(rig, x, goal_x, rig.half_life.x, speed_x)
    approach(rig, y, goal_y, rig.half_life.y, speed_y)
    local shown_x, shown_y = zones.keep_inside(rig, x.at, y.at, half_w, half_h, room)
    write_pose(rig, shown_x, shown_y, size, view)
end

return follow
