-- What is laid over the base poses of the kit's cameras: effects, whole pixels, the player's motion setting, and what lies
-- over the picture. camera_kit.lua hands its cameras' states to this file.
--
--   overlay.FIELDS                               what a camera can be told besides its shots
--   overlay.step(state, host, base, view)        one frame: writes state.pose
--   overlay.draw(state, host)                    over the camera's port
--   overlay.methods(method, kit, host)           camera:shake{...} and the others, kit.motion
--
-- In a camera's state: effects (effects.lua), pixels (pixels.lua; false for none).

local checks = include("kit/checks.lua")
local effects = include("kit/effects.lua")
local easing = include("kit/easing.lua")
local motion = include("kit/motion.lua")
local pixels = include("kit/pixels.lua")
local screen = include("kit/screen.lua")

local overlay = { FIELDS = { pixels = pixels.new } }

local KINDS = { "shake", "trauma", "kick", "pan_to", "zoom_to", "rotate_to", "release", "wait", "fade", "letterbox",
                "flash" }
local NO_VIEW = -1

-- ---- a frame ----

local function view_of(state)
    if state.view then
        return state.view
    end
    for view = 0, 7 do
        if view_get_camera(view) == state.camera then
            return view
        end
    end
    return NO_VIEW
end

local port, anchor = {}, {}

-- Written into a table that is kept: this runs in every frame.
local function port_of(state, view)
    local number = view_of(state)
    port.width, port.height = view.width, view.height
    port.scale = number == NO_VIEW and 1 or view_get_wport(number) / view.width
    return port
end

function overlay.step(state, host, base, view)
    local pose = base
    if #state.effects.list > 0 then
        pose = effects.step(state.effects, base, host, view.motion)
    end
    if state.pixels then
        anchor.x, anchor.y = base.anchor_x, base.anchor_y
        pose = pixels.place(state.pixels, base, pose, port_of(state, view), anchor)
    end
    local shown = state.pose
    shown.x, shown.y, shown.zoom, shown.angle = pose.x, pose.y, pose.zoom, pose.angle
end

function overlay.draw(state, host)
    local view = #state.effects.list > 0 and view_of(state) or NO_VIEW
    if view ~= NO_VIEW and view_get_visible(view) == 1 then
        screen.draw(state.effects, host, view_get_xport(view), view_get_yport(view), view_get_wport(view),
                    view_get_hport(view))
    end
end

-- ---- methods ----

local function check_list(list)
    if type(list) ~= "table" then
        checks.refuse("its argument", "a list of effects", list)
    end
    for index, link in ipairs(list) do
        if type(link) ~= "table" then
            checks.refuse("[" .. index .. "]", "a table, an effect's name and its options", link)
        end
    end
    return list
end

local function add_effect_methods(method)
    -- Each answers the number of the effect that it starts. The options are those of effect_kinds.lua.
    for _, kind in ipairs(KINDS) do
        method(kind, function(self, options)
            return effects.add(self:state().effects, kind, options)
        end)
    end
    -- { {"pan_to", x = 10}, {"wait", frames = 30}, ... }: each starts when the one before has arrived. Answers the number
    -- of the last one.
    method("chain", function(self, list)
        return effects.chain(self:state().effects, check_list(list))
    end)
    -- Ends an effect, and what waits for it: at once, or gliding back in so many frames. Its script does not run.
    method("cancel", function(self, id, frames, ease)
        effects.cancel(self:state().effects, checks.whole("the number of an effect", 1)("effect", id),
                       frames and checks.frames("frames", frames), ease and checks.one_of(easing.names())("ease", ease))
    end)
    -- Whether an effect waits or moves. One that has arrived and holds its place does not.
    method("busy", function(self, id)
        return effects.active(self:state().effects, checks.whole("the number of an effect", 1)("effect", id))
    end)
    -- How strong the newest effect of a kind is now: the trauma, a fade's alpha, a letterbox's part. 0 for none.
    method("value", function(self, kind)
        return (effects.value(self:state().effects, checks.one_of(KINDS)("kind", kind)))
    end)
end

function overlay.methods(method, kit, host)
    add_effect_methods(method)
    -- Where to draw what is at x, y, so that it lies on the camera's pixels. A camera without pixels answers x, y.
    method("snap", function(self, x, y)
        local state = self:state().pixels
        checks.any_number("x", x)
        checks.any_number("y", y)
        if not state then
            return x, y
        end
        local unit = state.unit or 1
        return pixels.snap(x, unit), pixels.snap(y, unit)
    end)
    -- How much of shakes, rolls and zooms the player wants: 0 to 1. With an amount: sets it, in the player's settings.
    kit.motion = checks.public("kit.motion", function(amount)
        if amount ~= nil then
            motion.set(host.settings(), amount)
        end
        return motion.get(host.settings())
    end)
end

return overlay
