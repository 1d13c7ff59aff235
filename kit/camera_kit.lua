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
        random = function() return random() end,      -- 0 or more, less than 1; its seed is saved
        room = function() return room_get(), room_width(), room_height() end,
        screen = function() return screen_width(), screen_height() end,
        settings = function() return settings end,    -- the player's choices, kept apart from saves
        rectangle = function(left, top, right, bottom, colour, alpha) -- filled, on the screen
            draw_set_colour(colour)
            draw_set_alpha(alpha)
            draw_rectangle(left, top, right, bottom)
            draw_set_alpha(1)
        end,
    }
end

-- ---- the parts ----

local checks = include("kit/checks.lua")
local shots = include("kit/shots.lua")
local easing = include("kit/easing.lua")
local effects = include("kit/effects.lua")
local overlay = include("kit/overlay.lua")

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
    if not states.cameras[key] then
        table.insert(states.order, key)
    end
    states.cameras[key] = {
        view = given.view, camera = given.camera, width = given.width, height = given.height, room = -1,
        attached = NO_CAMERA, effects = effects.new(), pixels = given.pixels or false, shots = shots.new(shot), pose = { x = 0, y = 0, zoom = 1, angle = 0 },
        written = { width = -1, height = -1, angle = 0 },
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
    Camera[name] = checks.public("camera:" .. name, f)
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

-- ---- methods: shots ----

-- Adds the shot of this name (switched on unless on = false), or changes it. Fields: those of kit.camera{...} but view,
-- camera, width and height, and priority (0 unless given) and on.
method("shot", function(self, name, fields)
    checks.text("name", name)
    if type(fields) ~= "table" then
        checks.refuse("fields", "a table", fields)
    end
    shots.put(self:state().shots, name, checks.fields(fields, shots.FIELDS, ""))
end)

-- Switches a shot on or off.
method("switch", function(self, name, on)
    local rig = shots.get(self:state().shots, checks.text("name", name))
    shots.put(self:state().shots, rig.name, { on = checks.boolean("on", on) })
end)

method("remove_shot", function(self, name)
    shots.remove(self:state().shots, checks.text("name", name))
end)

local BLEND = { from = checks.text, to = checks.text, frames = checks.frames, ease = checks.one_of(easing.names()) }

-- How shots go over into each other: { from = , to = , frames = , ease = }; from or to left out: any shot. frames = 0
-- cuts. Of several that fit, the one that names both shots counts, or else that of the next shot.
method("blend", function(self, fields)
    if type(fields) ~= "table" then
        checks.refuse("its argument", "a table", fields)
    end
    local blend = checks.fields(fields, BLEND, "")
    shots.blend(self:state().shots, blend.from or "*", blend.to or "*", blend.frames or 45, blend.ease or "sine_inout")
end)

-- Plays a cut-scene: a list of { shot = NAME } or of fields as in kit.camera{...}, each with frames (how long, its blend
-- included), and, if wanted, blend (frames), ease, and call (a script that runs when the item starts). done: a script
-- that runs when the scene is over; the shots then go on by priority.
method("scene", function(self, list, done)
    shots.play(self:state().shots, list, done ~= nil and checks.script("done", done) or nil)
end)

-- Ends a cut-scene now; its `done` runs.
method("skip", function(self)
    shots.stop(self:state().shots, host)
end)

-- ---- methods: reading ----

-- x, y, zoom, angle as they were written last: the centre in room units, effects and snapping included.
method("place", function(self)
    local pose = self:state().pose
    return pose.x, pose.y, pose.zoom, pose.angle
end)

-- The same without effects and snapping.
method("base", function(self)
    local base = self:state().shots.base
    return base.x, base.y, base.zoom, base.angle
end)

-- The name of the live shot, and whether it is still blended into.
method("live", function(self)
    local chain = self:state().shots.chain
    return chain[#chain].rig.name, #chain > 1
end)

method("in_scene", function(self)
    return self:state().shots.scene ~= nil
end)

-- The number of the camera that it moves now; -1 for none.
method("number", function(self)
    return self:state().attached
end)

-- ---- a frame ----

local room = { left = 0, right = 0, top = 0, bottom = 0 }
local view = { width = 0, height = 0 }

-- The camera has come into the kit's hand, or its room has started: the module's own following ends.
local function attach(state, camera, room_number)
    state.attached, state.room = camera, room_number
    camera_set_view_target(camera, NO_CAMERA)
    state.base_width, state.base_height = camera_get_view_width(camera), camera_get_view_height(camera)
    state.written.width = -1
    local centre_x = camera_get_view_x(camera) + state.base_width / 2
    local centre_y = camera_get_view_y(camera) + state.base_height / 2
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
    view.width, view.height = state.width or state.base_width, state.height or state.base_height
    shots.step(state.shots, host, view, room)
    overlay.step(state, host, state.shots.base, view)
    write(state, camera, state.pose)
end

kit.step = checks.public("kit.step", function()
    local states = all_states()
    local number, width, height = host.room()
    room.right, room.bottom = width, height
    for _, key in ipairs(states.order) do
        step_camera(states.cameras[key], number)
    end
end)

kit.draw = checks.public("kit.draw", function()
    local states = all_states()
    for _, key in ipairs(states.order) do
        overlay.draw(states.cameras[key], host)
    end
end)

overlay.methods(method, kit, host)

return kit
