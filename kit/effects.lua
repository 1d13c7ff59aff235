-- Effects: what is laid over a camera's pose for a while. A pose is {x, y, zoom, angle}: the centre in room units, the
-- zoom (2: twice as large), the angle in degrees.
--
--   effects.new() -> state
--   effects.add(state, kind, options) -> id           the kinds and their options stand in effect_kinds.lua
--   effects.chain(state, list) -> id                  {kind, option = ...} one after the other; the last one's
--   effects.cancel(state, id, frames, ease)           ends one, and what waits for it: at once, or gliding back
--   effects.active(state, id) -> boolean              whether it waits or moves; one that holds does not
--   effects.value(state, kind) -> value, effect       of the newest of this kind; 0 for none
--   effects.step(state, base, host, motion) -> pose   one frame
--
-- The state is plain data, so a saved table can hold it. The base pose is read and never written, and each frame starts
-- from it anew: nothing can drift, and when no effect is left the answer is the base, bit for bit.
--
-- Every effect takes `frames` (its duration), `ease` (a name of easing.lua), `after` (the identifier of an effect that
-- must have arrived first) and `done` (the number of a script that the host runs when it arrives; a cancelled one runs
-- none).
-- An effect that *holds* stays at its goal when it has arrived, until it is cancelled or a "release" takes it back.

local checks = include("kit/checks.lua")
local easing = include("kit/easing.lua")
local kinds = include("kit/effect_kinds.lua")

local KINDS = kinds.by_name

local effects = {}

local NONE = {} -- never written

local LIMIT = 200 -- effects of one camera at a time: a game that adds one in every frame hears of it

function effects.new()
    return { last = 0, list = {} }
end

-- ---- the list ----

local function find(state, id)
    for place, effect in ipairs(state.list) do
        if effect.id == id then
            return effect, place
        end
    end
end

local function newest(state, kind)
    for place = #state.list, 1, -1 do
        local effect = state.list[place]
        if effect.kind == kind and not effect.waiting then
            return effect, place
        end
    end
end

local function is_pending(effect)
    return effect ~= nil and (effect.waiting or effect.time < effect.frames) or false
end

function effects.active(state, id)
    return is_pending(find(state, id))
end

function effects.value(state, kind)
    local effect = newest(state, kind)
    return effect and effect.value or 0, effect
end

-- ---- the course of an effect ----

local function send_back(effect, frames, ease)
    effect.from, effect.to, effect.time = effect.value, 0, 0
    effect.frames, effect.ease, effect.done = frames, ease or effect.ease, nil
end

function effects.cancel(state, id, frames, ease)
    local effect, place = find(state, id)
    if effect and not effect.waiting and (frames or 0) > 0 then
        send_back(effect, frames, ease)
    elseif effect then
        table.remove(state.list, place)
    end
    for at = #state.list, 1, -1 do
        local waiting = state.list[at]
        if waiting and waiting.waiting and waiting.after == id then
            effects.cancel(state, waiting.id)
        end
    end
end

local function number_of(effect, wanted)
    return type(wanted) == "string" and effect[wanted] or wanted
end

local function release_places(state, release)
    for _, effect in ipairs(state.list) do
        if KINDS[effect.kind].place and not effect.waiting then
            send_back(effect, release.frames, release.ease)
        end
    end
end

local function begin(state, effect)
    local kind = KINDS[effect.kind]
    local old, place
    if kind.once then
        old, place = newest(state, effect.kind)
    end
    effect.from, effect.to = old and old.value or number_of(effect, kind.from), number_of(effect, kind.to)
    effect.waiting, effect.after, effect.value = nil, nil, effect.from
    if old then
        table.remove(state.list, place)
    end
    if effect.kind == "trauma" then
        effect.whole, effect.frames = effect.frames, effect.frames * effect.from
    elseif effect.kind == "release" then
        release_places(state, effect)
    end
end

-- Hits add up: a trauma that is under way grows, at most to 1, and wears off from there.
local function grow(state, options)
    local effect = newest(state, "trauma")
    if not effect or options.after then
        return nil
    end
    effect.from = math.min(1, effect.value + options.level)
    effect.time, effect.value, effect.frames = 0, effect.from, effect.whole * effect.from
    effect.done = options.done or effect.done
    return effect.id
end

local function start(state, effect)
    local grown = effect.kind == "trauma" and grow(state, effect)
    if grown then
        return grown
    end
    state.last = state.last + 1
    effect.id, effect.waiting = state.last, true
    state.list[#state.list + 1] = effect
    if not effect.after then
        begin(state, effect)
    end
    return effect.id
end

local function check_room(state, more)
    if #state.list + more > LIMIT then
        checks.fail("this camera would have more than " .. LIMIT .. " effects; cancel or release some")
    end
end

function effects.add(state, kind, options)
    local effect = kinds.new(kind, options or {}, "")
    check_room(state, 1)
    return start(state, effect)
end

-- Either all of them start, or, with an error, none.
function effects.chain(state, list)
    local made = {}
    for index, link in ipairs(list) do
        local options = {}
        for name, value in pairs(link) do
            if name ~= 1 then
                options[name] = value
            end
        end
        made[index] = kinds.new(link[1], options, "[" .. index .. "] ")
    end
    check_room(state, #made)
    local id
    for _, effect in ipairs(made) do
        effect.after = id or effect.after
        id = start(state, effect)
    end
    return id
end

local function is_ready(state, effect)
    return effect.waiting and not (effect.after and is_pending(find(state, effect.after)))
end

-- Whoever waits for another looks at it before anybody begins in this frame.
local function begin_waiting(state)
    local ready
    for _, effect in ipairs(state.list) do
        if is_ready(state, effect) then
            ready = ready or {}
            ready[#ready + 1] = effect
        end
    end
    for _, effect in ipairs(ready or NONE) do
        begin(state, effect)
    end
end

-- Answers whether it has arrived in this frame.
local function advance(effect)
    effect.age = effect.age + 1
    if effect.time > 0 and effect.time >= effect.frames then
        return false
    end
    effect.time = effect.time + 1
    local part = effect.frames == 0 and 1 or easing.at(effect.ease, effect.time / effect.frames)
    effect.value = part == 1 and effect.to or effect.from + (effect.to - effect.from) * part
    return effect.time >= effect.frames
end

-- Answers the effects that hold and have arrived in this frame, and the scripts to run. Those that are over are gone
-- before anything is shown: what is left of them is nothing, not a number close to nothing. Tables are made only when
-- somebody arrives.
local function advance_all(state)
    local arrived, scripts = NONE, NONE
    local list, kept = state.list, 0
    local count = #list
    for place = 1, count do
        local effect = list[place]
        local arrives = not effect.waiting and advance(effect)
        if arrives and effect.done then
            scripts = scripts == NONE and {} or scripts
            scripts[#scripts + 1], effect.done = effect.done, nil
        end
        if not (arrives and effect.to == 0) then
            kept = kept + 1
            list[kept] = effect
            if arrives then
                arrived = arrived == NONE and {} or arrived
                arrived[#arrived + 1] = effect
            end
        end
    end
    for place = count, kept + 1, -1 do
        list[place] = nil
    end
    return arrived, scripts
end

local function copy_of(pose)
    return { x = pose.x, y = pose.y, zoom = pose.zoom, angle = pose.angle }
end

-- The pose after the effects of the list up to the last one, or up to one of them: the base itself where none moves it.
local function show(state, base, host, motion, last)
    local pose = base
    for _, effect in ipairs(state.list) do
        local apply = KINDS[effect.kind].apply
        if apply and not effect.waiting then
            pose = pose == base and copy_of(base) or pose
            apply(effect, pose, motion, host, state)
        end
        if effect == last then
            break
        end
    end
    return pose
end

local function drop_older(state, place)
    for at = #state.list, 1, -1 do
        local effect = state.list[at]
        if effect.kind == place.kind and effect.id < place.id and not effect.waiting then
            table.remove(state.list, at)
        end
    end
end

-- A place that has arrived hides older ones of its kind, and they go. A zoom about a point has moved the picture aside
-- from where they had it: it keeps how far.
local function settle(state, place, base, host, motion)
    if not KINDS[place.kind].place then
        return
    end
    local before = show(state, base, host, motion, place)
    drop_older(state, place)
    if place.kind == "zoom_to" and motion > 0 then
        local after = show(state, base, host, motion, place)
        place.shift_x = place.shift_x + (before.x - after.x) / motion
        place.shift_y = place.shift_y + (before.y - after.y) / motion
    end
end

function effects.step(state, base, host, motion)
    if #state.list == 0 then
        return base
    end
    begin_waiting(state)
    local arrived, scripts = advance_all(state)
    for _, effect in ipairs(arrived) do
        settle(state, effect, base, host, motion or 1)
    end
    local pose = show(state, base, host, motion or 1)
    for _, script in ipairs(scripts) do
        host.script(script)
    end
    return pose
end

return effects
