-- Shots: virtual cameras. Each has its own targets, style and limits; of those that are on, the one with the highest
-- priority is live, and of several with the same the one that was switched on last. The live shot blends into the next.
--
--   shots.FIELDS                                   a shot's fields: those of follow.lua, priority and on
--   shots.new(fields) -> state                     with one shot, "main", of priority 0
--   shots.put(state, name, fields)                 adds a shot, or changes one
--   shots.remove(state, name)
--   shots.blend(state, from, to, frames, ease)     how one shot goes over into another; "*" stands for any
--   shots.play(state, list, done)                  a cut-scene
--   shots.stop(state)                              ends it now
--   shots.step(state, host, view, room)            one frame: writes state.base
--
-- state.chain lists the shots of running blends, the oldest first: the pose starts with the first one and goes over to
-- each next one by that blend's own time. A blend that is interrupted so goes on below the new one, without a jump in
-- place or speed. A shot that nobody sees rests; when its turn comes it starts at its goal.

local checks = include("kit/checks.lua")
local easing = include("kit/easing.lua")
local follow = include("kit/follow.lua")

local shots = {}

local MAIN = "main"
local DEEPEST = 8 -- blends at a time; older ones are cut

shots.FIELDS = { priority = checks.any_number, on = checks.boolean }
for name, check in pairs(follow.FIELDS) do
    shots.FIELDS[name] = check
end

local function without(fields, ...)
    local rest = {}
    for name, value in pairs(fields) do
        rest[name] = value
    end
    for _, name in ipairs{ ... } do
        rest[name] = nil
    end
    return rest
end

local function find(state, name)
    for index, rig in ipairs(state.shots) do
        if rig.name == name then
            return rig, index
        end
    end
end

local function find_or_fail(state, name)
    local rig, index = find(state, name)
    if not rig then
        checks.fail("there is no shot " .. tostring(name))
    end
    return rig, index
end

function shots.new(fields)
    local main = follow.new(MAIN, without(fields, "priority", "on"))
    main.priority, main.on, main.turn = fields.priority or 0, true, 0
    return { shots = { main }, turn = 0, chain = { { rig = main, time = 0, frames = 0, ease = "linear" } }, blends = {},
             blend = { frames = 45, ease = "sine_inout" },
             base = { x = 0, y = 0, zoom = 1, angle = 0, anchor_x = 0, anchor_y = 0 } }
end

local function switch(state, rig, on)
    if on and not rig.on then
        state.turn = state.turn + 1
        rig.turn = state.turn
    end
    rig.on = on
end

function shots.put(state, name, fields)
    local rig = find(state, name)
    if rig then
        follow.set(rig, without(fields, "priority", "on"))
    else
        rig = follow.new(name, without(fields, "priority", "on"))
        rig.priority, rig.on, rig.turn = 0, false, 0
        state.shots[#state.shots + 1] = rig
        switch(state, rig, fields.on ~= false)
    end
    rig.priority = fields.priority or rig.priority
    if fields.on ~= nil then
        switch(state, rig, fields.on)
    end
end

function shots.remove(state, name)
    local _, index = find_or_fail(state, name)
    if name == MAIN then
        checks.fail('the shot "main" stays: switch another one on')
    end
    table.remove(state.shots, index)
end

function shots.get(state, name)
    return find_or_fail(state, name)
end

-- ---- blends ----

function shots.blend(state, from, to, frames, ease)
    if from == "*" and to == "*" then
        state.blend = { frames = frames, ease = ease }
        return
    end
    for index, pair in ipairs(state.blends) do
        if pair.from == from and pair.to == to then
            table.remove(state.blends, index)
            break
        end
    end
    table.insert(state.blends, { from = from, to = to, frames = frames, ease = ease })
end

-- The blend of exactly this pair, or else of one side, or else the common one.
local function blend_of(state, from, to)
    local best, best_rank = state.blend, 0
    for _, pair in ipairs(state.blends) do
        local fits = (pair.from == from or pair.from == "*") and (pair.to == to or pair.to == "*")
        local rank = (pair.from == from and 1 or 0) + (pair.to == to and 2 or 0)
        if fits and rank > best_rank then
            best, best_rank = pair, rank
        end
    end
    return best
end

local function is_in_chain(state, rig)
    for _, link in ipairs(state.chain) do
        if link.rig == rig then
            return true
        end
    end
    return false
end

local function go_over(state, rig, blend)
    if not is_in_chain(state, rig) then
        rig.ready = false
    end
    local link = { rig = rig, time = 0, frames = blend.frames, ease = blend.ease }
    if blend.frames == 0 then
        rig.ready = false
        state.chain = { link }
        return
    end
    table.insert(state.chain, link)
    if #state.chain > DEEPEST then
        table.remove(state.chain, 1)
    end
end

-- An easing that overshoots would make the size of a near shot zero or negative on the way from a far one: it is clamped
-- to half of the nearer one's, a zoom twice as large.
local function mix(pose, other, part)
    local size, goal = 1 / pose.zoom, 1 / other.zoom
    pose.x = pose.x + (other.x - pose.x) * part
    pose.y = pose.y + (other.y - pose.y) * part
    pose.zoom = 1 / math.max(size + (goal - size) * part, math.min(size, goal) / 2)
    pose.angle = pose.angle + (other.angle - pose.angle) * part
end

local function copy_pose(to, from)
    to.x, to.y, to.zoom, to.angle = from.x, from.y, from.zoom, from.angle
    to.anchor_x, to.anchor_y = from.anchor_x, from.anchor_y
end

local function run_chain(state)
    local chain, base = state.chain, state.base
    copy_pose(base, chain[1].rig.pose)
    for index = 2, #chain do
        local link = chain[index]
        link.time = link.time + 1
        mix(base, link.rig.pose, easing.at(link.ease, link.time / link.frames))
    end
    local top = chain[#chain].rig.pose
    base.anchor_x, base.anchor_y = top.anchor_x, top.anchor_y
    for index = #chain, 2, -1 do
        if chain[index].time >= chain[index].frames then
            copy_pose(base, index == #chain and top or base)
            state.chain = table.move(chain, index, #chain, 1, {})
            break
        end
    end
end

-- ---- cut-scenes ----

-- An item names a shot, or describes one as kit.camera does; frames: how long it lasts, its blend included.
local ITEM = { shot = checks.text, frames = checks.whole("a whole number of frames, 1 or more", 1),
               blend = checks.frames, ease = checks.one_of(easing.names()), call = checks.script }
for name, check in pairs(follow.FIELDS) do
    ITEM[name] = check
end

local function scene_item(state, field, item)
    if type(item) ~= "table" then
        checks.refuse(field, "a table", item)
    end
    local taken = checks.fields(item, ITEM, field .. ".")
    if not taken.frames then
        checks.refuse(field .. ".frames", "a whole number of frames, 1 or more", nil)
    end
    local rig
    if taken.shot then
        rig = find_or_fail(state, taken.shot)
    else
        rig = follow.new(field, without(taken, "shot", "frames", "blend", "ease", "call"))
    end
    return { rig = rig, frames = taken.frames, blend = taken.blend, ease = taken.ease, call = taken.call }
end

function shots.play(state, list, done)
    if type(list) ~= "table" or #list == 0 then
        checks.refuse("the scene", "a list of at least one shot", list)
    end
    local items = {}
    for index, item in ipairs(list) do
        items[index] = scene_item(state, "scene[" .. index .. "]", item)
    end
    state.scene = { items = items, index = 0, left = 0, done = done }
end

function shots.stop(state, host)
    local scene = state.scene
    state.scene = nil
    if scene and scene.done then
        host.script(scene.done)
    end
end

-- The scene's shot of this frame; nil when none plays.
local function scene_shot(state, host)
    local scene = state.scene
    if not scene then
        return nil
    end
    if scene.left == 0 then
        scene.index = scene.index + 1
        local item = scene.items[scene.index]
        if not item then
            shots.stop(state, host)
            return scene_shot(state, host) -- what it called may have started another one
        end
        scene.left = item.frames
        if item.call then
            host.script(item.call)
        end
    end
    scene.left = scene.left - 1
    return scene.items[scene.index]
end

-- ---- a frame ----

local function highest(state)
    local best = state.shots[1]
    if #state.shots == 1 then
        return best
    end
    for _, rig in ipairs(state.shots) do
        local is_higher = rig.priority > best.priority or (rig.priority == best.priority and rig.turn > best.turn)
        if rig.on and (is_higher or not best.on) then
            best = rig
        end
    end
    return best
end

local function choose(state, host)
    local item = scene_shot(state, host)
    local wanted = item and item.rig or highest(state)
    local live = state.chain[#state.chain].rig
    if wanted == live then
        return
    end
    local blend = blend_of(state, live.name, wanted.name)
    if item and (item.blend or item.ease) then
        blend = { frames = item.blend or blend.frames, ease = item.ease or blend.ease }
    end
    go_over(state, wanted, blend)
end

function shots.step(state, host, view, room)
    choose(state, host)
    local chain = state.chain
    if #chain == 1 then
        follow.step(chain[1].rig, host, view, room)
        return copy_pose(state.base, chain[1].rig.pose)
    end
    for index, link in ipairs(chain) do
        local is_first = true
        for before = 1, index - 1 do
            is_first = is_first and chain[before].rig ~= link.rig
        end
        if is_first then
            follow.step(link.rig, host, view, room)
        end
    end
    run_chain(state)
end

return shots
