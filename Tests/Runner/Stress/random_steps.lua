-- A game that calls everything with everything. BUILTINS (a list of {name, count of arguments}) and STEPS are given.
--
-- What comes back is folded into a hash, which is printed after every frame together with the steps so far. A line that
-- starts with VIOLATION tells of a result that must not be. Nothing here depends on anything but the seed.

local CAMERAS_MOST = 48
local CAMERAS_SWEPT = 160 -- identifiers that a sweep tries
local SCRIPTS_MOST = 40
local INSTANCES_MOST = 12
local COROUTINES_MOST = 8
local STEPS_A_FRAME = 24
local KEEP_INVALID = 60 -- one in so many callbacks that are none stays, and ends the game when its camera is used
local KEEP_FAILING = 1500 -- one in so many callbacks lets an error through, which ends the game

-- ---- what came back ----

local steps, hash = 0, 0xCBF29CE484222325

local function fold(text)
    for i = 1, #text do
        hash = (hash ~ text:byte(i)) * 0x100000001B3
    end
end

local function describe(value, depth)
    local kind = type(value)
    if math.type(value) == "float" then
        return value ~= value and "nan" or string.format("%.17g", value)
    elseif kind == "table" and (depth or 0) < 3 then
        local parts = {}
        for i = 1, math.min(#value, 20) do
            parts[i] = describe(value[i], (depth or 0) + 1)
        end
        return "{" .. table.concat(parts, " ") .. "}"
    elseif kind == "string" then
        return value
    end
    return tostring(value)
end

local function note(good, ...)
    fold(good and "=" or "!")
    for i = 1, select("#", ...) do
        fold(describe((select(i, ...))))
    end
    return good, ...
end

local function expect(truth, text)
    if not truth then
        print("VIOLATION after " .. steps .. " steps: " .. text)
    end
end

-- ---- what the steps work on ----

local cameras, instances, selves, scripts, coroutines, rooms, objects, surfaces = {}, {}, {}, {}, {}, {}, {}, {}
local step, callback -- below

local values = include "random_values.lua"
local below, chance, pick, number = values.below, values.chance, values.pick, values.number
local texts, list_of, wild = values.texts, values.list_of, values.wild
values.special = {
    function() return callback() end,
    function() return pick(selves) end,
    function() return coroutine.create(step) end,
    function() return pick(instances) end,
}

local function camera()
    if #cameras > 0 and not chance(4) then
        return pick(cameras)
    end
    return below(CAMERAS_SWEPT) - 1
end

-- As the built-in means it.
local function plausible(name, position)
    if name:find("^view_") then
        if position == 1 then
            return below(8)
        end
        return name == "view_set_camera" and camera() or name == "view_set_surface_id" and (chance(2) and -1 or pick(surfaces)) or number()
    elseif position == 1 and name ~= "camera_create_view" then
        return camera()
    elseif name:find("_script$") then
        return callback()
    elseif name:find("_mat$") then
        return chance(2) and list_of(16, number) or matrix_ortho(below(900), below(900), below(9), below(3000))
    elseif name:find("_target$") then
        return chance(2) and pick(instances) or below(5) - 1
    end
    return number()
end

local function argument_count(entry)
    if not chance(8) then
        return entry[1] == "camera_create_view" and 4 + below(8) or entry[2]
    end
    return chance(40) and below(300) or below(18)
end

-- ---- steps ----

-- A camera that is used with a callback that is none ends the game, so most of them are taken back at once.
local function take_back(name, good, problem, target)
    if not good and type(problem) == "string" and problem:find("invalid script reference", 1, true) and
        not chance(KEEP_INVALID) then
        _G[name](target, -1)
    end
end

local function remember(name, good, result)
    if good and (name == "camera_create" or name == "camera_create_view") and result >= 0 then
        cameras[#cameras + 1] = result
    end
end

local answered, refused = {}, {} -- calls of each built-in, and of callbacks

local function count_call(name, good)
    local counts = good and answered or refused
    counts[name] = (counts[name] or 0) + 1
end

local function call_builtin()
    local entry = pick(BUILTINS)
    local name, count, often = entry[1], argument_count(entry), chance(4) and 2 or 24
    local arguments = {}
    for i = 1, count do
        if chance(often) then
            arguments[i] = wild()
        else
            arguments[i] = plausible(name, i)
        end
    end
    fold(name)
    local good, result = note(pcall(_G[name], table.unpack(arguments, 1, count)))
    count_call(name, good)
    remember(name, good, result)
    take_back(name, good, result, arguments[1])
end

local function sweep_cameras()
    for id = 1, CAMERAS_SWEPT do
        if chance(2) then
            camera_destroy(id)
        end
    end
    cameras = {}
end

local function copy_callback(moment, from, to)
    local get, set = _G["camera_get_" .. moment .. "_script"], _G["camera_set_" .. moment .. "_script"]
    local script = get(from)
    if type(script) == "function" or type(script) == "number" then
        set(to, script)
        expect(get(to) == script, "a copied callback is another one")
    end
end

local function copy_camera()
    local from, to = camera(), camera_create()
    cameras[#cameras + 1] = to
    camera_set_view_pos(to, camera_get_view_x(from), camera_get_view_y(from))
    camera_set_view_size(to, camera_get_view_width(from), camera_get_view_height(from))
    camera_set_view_target(to, camera_get_view_target(from))
    copy_callback("begin", from, to)
    copy_callback("update", from, to)
    copy_callback("end", from, to)
    local matrix = camera_get_view_mat(from)
    if type(matrix) == "table" then
        camera_set_view_mat(to, matrix)
        local expected = describe(matrix):gsub("nan", "0") -- as numbers cross to the host
        expect(describe(camera_get_view_mat(to)) == expected, "a copied matrix is another one")
    end
end

local function keep_identity()
    local id, script = camera(), callback(true)
    camera_set_end_script(id, script)
    if chance(2) then
        collect()
    end
    local exists = type(camera_get_view_mat(id)) == "table"
    expect(camera_get_end_script(id) == (exists and script or -1), "another function came back")
end

local function create_many()
    for _ = 1, chance(20) and 1000 or 30 do
        local id = camera_create()
        camera_set_begin_script(id, callback())
        if chance(2) then
            camera_destroy(id)
        end
    end
    sweep_cameras()
end

local function go_deep(depth, action)
    return depth == 0 and action() or select(2, pcall(go_deep, depth - 1, action))
end

local function go_on(one)
    return select(2, note(coroutine.resume(one)))
end

local function run_coroutine()
    if #coroutines < COROUTINES_MOST then
        coroutines[#coroutines + 1] = coroutine.create(function()
            for _ = 1, 5 do
                step()
                coroutine.yield(steps)
            end
        end)
    end
    local index = 1 + below(#coroutines)
    local one = coroutines[index]
    if coroutine.status(one) == "suspended" then
        go_on(one)
    elseif coroutine.status(one) == "dead" then
        table.remove(coroutines, index)
    end
end

local function tend_instances()
    if #instances < INSTANCES_MOST then
        instances[#instances + 1] = instance_create(below(2000), below(1000), pick(objects))
        selves[#selves + 1] = instance_get(instances[#instances])
        return
    end
    local id = table.remove(instances, 1 + below(#instances))
    if chance(2) then
        instance_deactivate(id)
    end
    instance_destroy(id)
    if #selves > INSTANCES_MOST then
        table.remove(selves, 1) -- some outlive their instance
    end
end

local function add_script()
    if #scripts < SCRIPTS_MOST then
        scripts[#scripts + 1] = script_add(callback(true))
    end
end

-- Steps take cameras away from the views faster than they bring them back.
local function dress_view()
    local view, id = below(8), camera_create()
    cameras[#cameras + 1] = id
    camera_set_begin_script(id, callback())
    camera_set_update_script(id, callback())
    camera_set_end_script(id, callback())
    view_set_camera(view, id)
    view_set_surface_id(view, chance(4) and pick(surfaces) or -1)
    view_set_visible(view, true)
    if chance(4) then
        camera_set_default(id)
    end
end

local function raise()
    error(pick{ "text", 12, true, {}, print, "" }, below(3))
end

local SELDOM = {
    copy_camera, copy_camera, keep_identity, keep_identity, run_coroutine, run_coroutine, tend_instances, tend_instances,
    add_script, sweep_cameras, create_many, collect, raise,
    function() room_goto(pick(rooms)) end,
    function() camera_apply(camera()) end,
    function() coroutine.yield() end,
    function() go_deep(below(60), step) end,
    function() xpcall(raise, function() step() end) end,
    function() string.rep("x", below(1 << 16)):upper() end,
}

local depth_of_steps = 0
function step()
    steps = steps + 1
    local depth = depth_of_steps -- a step may end by an error or be left in a coroutine
    if depth > 3 then
        return
    end
    depth_of_steps = depth + 1
    if chance(24) then
        note(pcall(pick(SELDOM)))
    else
        call_builtin()
    end
    depth_of_steps = depth
    if #cameras > CAMERAS_MOST then
        sweep_cameras()
    end
end

local function take_steps(count)
    for _ = 1, count do
        step()
    end
end

-- ---- callbacks that do anything ----

local function guarded(body)
    return function(...)
        local before = camera_current()
        local good, result = note(pcall(body, ...))
        count_call("callbacks", good)
        expect(camera_current() == before, "the camera whose callback runs has changed")
        return result
    end
end

local DEEDS = {
    guarded(function() step() end),
    guarded(function() take_steps(3) end),
    guarded(function() camera_destroy(camera_current()) end),
    guarded(function() camera_destroy(camera_current()) collect() step() end),
    guarded(function() camera_destroy(camera_current()) camera_create() camera_create() end),
    guarded(function()
        local id = camera_current()
        camera_set_begin_script(id, callback())
        camera_set_update_script(id, -1)
        camera_set_end_script(id, callback())
        collect()
    end),
    guarded(copy_camera), guarded(create_many), guarded(raise), guarded(sweep_cameras), guarded(run_coroutine),
    guarded(function() room_goto(pick(rooms)) end),
    guarded(function() camera_apply(camera_current()) camera_apply(camera()) end),
    guarded(function() view_set_camera(below(8), camera()) end),
    guarded(function() camera_set_default(camera()) end),
    guarded(function() return number() end),
    guarded(function() return pick(texts) end),
    guarded(function() return { {}, { "a" }, callback() } end),
    guarded(function() return callback() end),
    camera_create, camera_get_active, collect, frame_number,
}

-- A closure of its own that holds the number of the camera that may hold it.
local function fresh()
    local id, weight = camera(), { 1, 2, 3 }
    return guarded(function() return camera_get_view_x(id) + #weight end)
end

local function failing() error("meant to end the game") end

function callback(function_only)
    if chance(KEEP_FAILING) then
        return failing
    elseif chance(3) then
        return fresh()
    elseif not function_only and chance(4) then
        return #scripts > 0 and chance(2) and pick(scripts) or below(SCRIPTS_MOST + 4) - 3
    end
    return pick(DEEDS)
end

-- ---- the game ----

local function event(count)
    return function() take_steps(below(count + 1)) end
end

objects[1] = object_add{ bbox = { -8, -8, 8, 8 }, create = event(1), step = event(1), destroy = event(2) }
objects[2] = object_add{ parent = objects[1], step = function(self) self.x = (self.x + 7) % 2000 end }
objects[3] = object_add{ parent = objects[2], cull = false, draw = event(1) }
surfaces[1] = surface_create(64, 64)

local function views(count)
    local all = {}
    for i = 0, count - 1 do
        all[i] = { visible = i < 3, x = i * 50, w = 320 + i, h = 200, wport = 100, hport = 50, hborder = 40,
                   hspeed = i - 1, target = i % 2 == 0 and objects[1] or -1 }
    end
    return all
end

local function report()
    print(string.format("%d %016x", steps, hash))
    if steps >= STEPS then
        for name, count in pairs(answered) do
            print(name, count, refused[name] or 0)
        end
        game_end()
    end
end

for count = 0, 8, 4 do
    rooms[#rooms + 1] = room_add{
        width = 2000, height = 1000, views = views(count),
        instances = { { objects[1], 100, 100 }, { objects[2], 900, 500 }, { objects[3], 50, 50 } },
        create = function()
            instances, selves = {}, {}
            take_steps(5)
        end,
        step = function()
            dress_view()
            take_steps(STEPS_A_FRAME)
        end,
        draw = event(1),
        draw_gui = report,
    }
end

take_steps(40) -- before any room runs
