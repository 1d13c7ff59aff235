-- The kit on another host: plain Lua, with stand-ins for the camera_* and view_* functions that it calls and a table of
-- host functions. Nothing else may be asked for: a global that is not there is an error. KIT is the kit's folder.

local folder = KIT

-- ---- the stand-ins: cameras are tables ----

local cameras = { [7] = { x = 0, y = 0, width = 640, height = 360, angle = 0, target = 3 } }
local views = { [0] = 7 }

local function getter(name)
    return function(camera) return cameras[camera] and cameras[camera][name] or -1 end
end

local function setter(...)
    local names = { ... }
    return function(camera, ...)
        local values = { ... }
        for index, name in ipairs(names) do
            cameras[camera][name] = values[index]
        end
        return -1
    end
end

camera_get_view_x, camera_get_view_y = getter("x"), getter("y")
camera_get_view_width, camera_get_view_height = getter("width"), getter("height")
camera_set_view_pos, camera_set_view_size = setter("x", "y"), setter("width", "height")
camera_set_view_angle, camera_set_view_target = setter("angle"), setter("target")
function view_get_camera(view) return views[view] or -1 end
function view_get_visible() return 1 end
function view_get_xport() return 0 end
function view_get_yport() return 0 end
function view_get_wport() return 1280 end
function view_get_hport() return 720 end

local included = {}
function include(name)
    if included[name] == nil then
        included[name] = assert(loadfile(folder .. "/" .. name:gsub("^kit/", "")))()
    end
    return included[name]
end

-- ---- the host ----

local things, saved, ran, drawn, settings = { [50] = { x = 500, y = 400 } }, {}, {}, 0, {}
local host = {
    position = function(thing) if things[thing] then return things[thing].x, things[thing].y end end,
    saved = function() return saved end,
    script = function(number) ran[#ran + 1] = number end,
    is_script = function(number) return number == 77 end,
    random = function() return 0.25 end,
    room = function() return 1, 2000, 1000 end,
    screen = function() return 1280, 720 end,
    settings = function() return settings end,
    rectangle = function() drawn = drawn + 1 end,
}

local count = 0
for _ in pairs(host) do
    count = count + 1
end
assert(count <= 10, "the host's table has at most ten functions")

setmetatable(_G, { __index = function(_, name) error("the kit asks for the global " .. name, 2) end })

-- ---- a game ----

local kit = assert(loadfile(folder .. "/camera_kit.lua"))(host)
local camera = kit.camera{ view = 0, follow = 50, style = "lock" }
kit.step()
assert(cameras[7].x == 500 - 320 and cameras[7].y == 400 - 180, "the view is around the target")
assert(cameras[7].target == -1, "the camera's own following is off")
for _ = 1, 30 do
    things[50].x = things[50].x + 3.5
    kit.step()
end
assert(camera:place() == 605 and cameras[7].x == 285)

-- Whatever the kit offers runs here, too.
camera:set{ style = "platformer", zoom = 2, lead = { x = 10 }, soft_zone = 30 }
camera:shot("far", { follow = { x = 1500, y = 500 }, priority = 1 })
camera:blend{ frames = 10 }
camera:scene({ { shot = "main", frames = 5 }, { shot = "far", frames = 5 } }, 77)
camera:shake{ x = 5, y = 5, frames = 20 }
camera:fade{ frames = 5 }
for _ = 1, 40 do
    kit.step()
    kit.draw()
end
assert(ran[1] == 77, "the scene's script ran")
assert(camera:live() == "far")
assert(drawn > 0, "the fade was drawn")
assert(cameras[7].width == 640, "the shot's zoom")

-- A saved table that comes back is all that it needs.
local function copy(value)
    if type(value) ~= "table" then
        assert(type(value) ~= "function" and type(value) ~= "userdata", "the state is plain data")
        return value
    end
    local new = {}
    for key, entry in pairs(value) do
        new[key] = copy(entry)
    end
    return new
end
local kept = copy(saved)
assert(kept.camera_kit.version == kit.version)

local ok, text = pcall(function() camera:set{ zoom = 0 } end)
assert(not ok and text:find("alone.lua:%d+: camera:set: zoom is a number above 0, got 0$"), text)
ok, text = pcall(function() camera:shake{ frames = 5, done = 99 } end)
assert(not ok and text:find("alone.lua:%d+: camera:shake: done is a number from script_add, got 99$"), text)
ok, text = pcall(function() camera:scene({ { shot = "main", frames = 5, call = 77 } }, 98) end)
assert(not ok and text:find("alone.lua:%d+: camera:scene: done is a number from script_add, got 98$"), text)
ok, text = pcall(function() kit.camera{ view = 9 } end)
assert(not ok and text:find("alone.lua:%d+: kit.camera: view is a view, 0 to 7, got 9$"), text)
ok, text = pcall(function() kit.camera(3):place() end)
assert(text:find("the kit has no camera of view 3: make it with kit.camera{ ... }", 1, true), text)
ok, text = pcall(function() camera.cut() end)
assert(text:find("call it with a colon, on what kit.camera gave: camera:cut( ... )", 1, true), text)
