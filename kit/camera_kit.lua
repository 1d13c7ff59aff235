-- The camera kit: what game authors expect of a camera, in plain Lua on the camera_* and view_* functions and the one
-- table of host functions below.
--
--     local kit = include("kit/camera_kit.lua")
--     kit.camera{ view = 0, follow = player, style = "platformer" }   -- once; player: an object or an instance
--     kit.step()                                                      -- once a frame, after everything has moved
--     kit.draw()                                                      -- in the room's draw_gui
--
-- kit.camera{...} -> camera   makes the kit's camera of a view (or of a camera by its number), or makes it anew
-- kit.camera(view) -> camera  the same handle again: in a room's `load` event, say. Handles hold nothing themselves
-- kit.step()                  moves all cameras by one frame
-- kit.draw()                  draws what lies over the picture
-- kit.version                 see kit/version.lua
--
-- All state is plain data in the saved table, so that a saved game goes on exactly where it was. Functions are named by
-- their numbers from script_add.

-- ---- the host: with another runner, hand a table of these to this file: loadfile("camera_kit.lua")(host) ----

local function find_instance(target)
    return instance_get(target >= 100000 and target or instance_find(target, 0))
end

local host = ...
if type(host) ~= "table" then
    host = {
        -- x, y of an instance, or of an object's first one; nil when there is none
        position = function(target)
            local self = find_instance(target)
            if self then
                return self.x, self.y
            end
        end,
        saved = function() return vars end,           -- the table that a saved game keeps
        script = function(number) script_call(number) end, -- runs what script_add numbered
        is_script = function(number) return script_exists(number) end, -- may be left out: a wrong one fails later
        random = function() return random() end,      -- 0 or more, less than 1; its seed is saved
        room = function() return room_get(), room_width(), room_height() end,
        screen = function() return screen_width(), screen_height() end,
        settings = function() return settings end,    -- the player's choices, kept apart from saves
        rectangle = function(left, top, right, bottom, colour, alpha) -- filled, on the screen
            draw_set_colour(colour)
            draw_set_alpha(alpha)
            draw_rectangle(left, top, right, bottom)
            draw_set_alpha(1)
            draw_set_colour(0xFFFFFF)
        end,
    }
end

-- ---- the parts ----

local checks = include("kit/checks.lua")
local shots = include("kit/shots.lua")
local shot_methods = include("kit/shot_methods.lua")
local easing = include("kit/easing.lua")
local effects = include("kit/effects.lua")
local motion = include("kit/motion.lua")
local overlay = include("kit/overlay.lua")

checks.know_scripts(host.is_script)

local kit = { version = include("kit/version.lua"), host = host, easing = easing }

local SAVED = "camera_kit" -- the kit's name in the saved table
local NO_CAMERA = -1

-- ---- cameras ----

-- Handles: the key names the state in the saved table, which a load replaces.
local Camera = {}
local handles = {}

local function all_states()
    local saved = host.saved()
    local kit_state = saved[SAVED]
    if not kit_state then
        kit_state = { version = kit.version, cameras = {}, order = {} }
        saved[SAVED] = kit_state
    end
    return kit_state
end

local function handle_of(key)
    local handle = handles[key]
    if not handle then
        handle = setmetatable({ key = key }, { __index = Camera })
        handles[key] = handle
    end
    return handle
end

-- The state behind a handle: plain data, saved.
function Camera:state()
    local state = all_states().cameras[self.key]
    if not state then
        checks.fail("the kit has no camera of " .. self.key .. ": make it with kit.camera{ ... }")
    end
    return state
end

local MAKING = {
    view = checks.whole("a view, 0 to 7", 0, 7),
    camera = checks.whole("a camera's number, 0 or more", 0),
    width = checks.positive,  -- of the view at zoom 1, room units; the camera's own unless given
    height = checks.positive,
    pixels = overlay.FIELDS.pixels,
}
local OWN = { view = true, camera = true, width = true, height = true, pixels = true } -- the rest is of the shot "main"
for name, check in pairs(shots.FIELDS) do
    if name ~= "on" and name ~= "priority" then
        MAKING[name] = check
    end
end

local function key_of(view, camera)
    return view and "view " .. view or "camera " .. camera
end

local function split(fields, names)
    local taken, rest = {}, {}
    for name, value in pairs(fields) do
        (names[name] and taken or rest)[name] = value
    end
    return taken, rest
end

local function make(fields)
    local given, shot = split(checks.fields(fields, MAKING, ""), OWN)
    if given.view and given.camera then
        checks.fail("it has a view or a camera, not both")
    elseif not given.camera then
        given.view = given.view or 0
    end
    local key = key_of(given.view, given.camera)
    local states = all_states()
    local before = states.cameras[key]
    if not before then
        table.insert(states.order, key)
    end
    states.cameras[key] = {
        view = given.view, camera = given.camera, width = given.width, height = given.height, room = -1,
        attached = NO_CAMERA, effects = effects.new(), pixels = given.pixels or false, shots = shots.new(shot),
        pose = { x = 0, y = 0, zoom = 1, angle = 0 },
        written = { width = -1, height = -1, angle = false },
        sized = before and before.sized, -- what the view was before the kit zoomed it
    }
    return handle_of(key)
end

kit.camera = checks.public("kit.camera", function(what)
    if type(what) == "number" then
        return handle_of(key_of(MAKING.view("view", what)))
    elseif type(what) ~= "table" then
        checks.refuse("its argument", "a table, or a view's number", what)
    end
    return make(what)
end)

local function method(name, f)
    Camera[name] = checks.public("camera:" .. name, function(self, ...)
        if type(self) ~= "table" or handles[self.key] ~= self then
            checks.fail("call it with a colon, on what kit.camera gave: camera:" .. name .. "( ... )")
        end
        return f(self, ...)
    end)
end

-- ---- methods: what is followed and how ----

-- Changes fields of kit.camera{...} (all but view and camera), from the next frame on.
method("set", function(self, fields)
    if type(fields) ~= "table" then
        checks.refuse("its argument", "a table", fields)
    end
    local state = self:state()
    local own, shot = split(checks.fields(fields, MAKING, ""), OWN)
    if own.view or own.camera then
        checks.fail("view and camera cannot be changed: make another one with kit.camera")
    end
    for name, value in pairs(own) do
        state[name] = value
    end
    shots.put(state.shots, "main", shot)
end)

-- camera:NAME(value) is camera:set{ NAME = value }.
for name in pairs(MAKING) do
    if name ~= "view" and name ~= "camera" then
        method(name, function(self, value)
            local state = self:state()
            local checked = MAKING[name](name, value)
            if OWN[name] then
                state[name] = checked
            else
                shots.put(state.shots, "main", { [name] = checked })
            end
        end)
    end
end

-- Goes to the goal at once, without smoothing: after a teleport, say. Running blends are cut.
method("cut", function(self)
    local chain = self:state().shots.chain
    local live = chain[#chain]
    self:state().shots.chain = { live }
    live.rig.ready = false
end)

-- Whether the target stands on the ground, for the style "platformer"; nil: the kit finds out by its height.
method("grounded", function(self, stands)
    local state = self:state()
    shots.get(state.shots, "main").grounded = stands ~= nil and checks.boolean("stands", stands) or stands
end)

-- How far along the path the camera is, 0 to 1. nil: at the point that is nearest to the target.
method("progress", function(self, part)
    local rig = shots.get(self:state().shots, "main")
    if not rig.path then
        checks.fail("the camera has no path")
    end
    rig.path.progress = part ~= nil and checks.number("a part of the way, 0 to 1", 0, 1)("part", part) or nil
end)

-- ---- a frame ----

local room = { left = 0, right = 0, top = 0, bottom = 0 }
local view = { width = 0, height = 0 }

-- The camera has come into the kit's hand, or its room has started: the module's own following ends.
local function attach(state, camera, room_number)
    state.attached, state.room = camera, room_number
    camera_set_view_target(camera, NO_CAMERA)
    local width, height = camera_get_view_width(camera), camera_get_view_height(camera)
    local sized = state.sized
    if not sized or sized.camera ~= camera or sized.room ~= room_number then
        state.sized = { camera = camera, room = room_number, width = width, height = height }
    end
    state.written.width = -1
    local centre_x, centre_y = camera_get_view_x(camera) + width / 2, camera_get_view_y(camera) + height / 2
    local live = state.shots.chain[#state.shots.chain]
    state.shots.chain = { live }
    for _, rig in ipairs(state.shots.shots) do
        rig.ready, rig.x.last, rig.y.last = false, centre_x, centre_y
    end
    live.rig.ready = false
end

local function write(state, camera, pose)
    local width, height = view.width / pose.zoom, view.height / pose.zoom
    local written = state.written
    if width ~= written.width or height ~= written.height then
        camera_set_view_size(camera, width, height)
        written.width, written.height = width, height
    end
    camera_set_view_pos(camera, pose.x - width / 2, pose.y - height / 2)
    if pose.angle ~= written.angle then
        camera_set_view_angle(camera, pose.angle)
        written.angle = pose.angle
    end
end

local function step_camera(state, room_number)
    local camera = state.camera or view_get_camera(state.view)
    if camera == NO_CAMERA or camera_get_view_width(camera) == -1 then
        return -- there is none now; its place is kept
    end
    if camera ~= state.attached or room_number ~= state.room then
        attach(state, camera, room_number)
    end
    view.width, view.height = state.width or state.sized.width, state.height or state.sized.height
    motion.prepare(view, state.shots.shots[1], host.settings())
    shots.step(state.shots, host, view, room)
    overlay.step(state, host, state.shots.base, view)
    write(state, camera, state.pose)
end

-- Not checked calls: an error of a script that runs in a frame keeps its own place and stack.
function kit.step()
    local states = all_states()
    local number, width, height = host.room()
    room.right, room.bottom = width, height
    for _, key in ipairs(states.order) do
        step_camera(states.cameras[key], number)
    end
end

function kit.draw()
    local states = all_states()
    for _, key in ipairs(states.order) do
        overlay.draw(states.cameras[key], host)
    end
end

shot_methods(method, host)
overlay.methods(method, kit, host)

return kit
