-- The methods of the kit's cameras that are about shots, and those that read. camera_kit.lua adds them:
-- method(name, function(camera, ...)); camera:state() is the camera's saved table.

local checks = include("kit/checks.lua")
local easing = include("kit/easing.lua")
local shots = include("kit/shots.lua")

local BLEND = { from = checks.text, to = checks.text, frames = checks.frames, ease = checks.one_of(easing.names()) }

local function add_shot_methods(method, host)
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
end

local function add_reading_methods(method)
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
end

return function(method, host)
    add_shot_methods(method, host)
    add_reading_methods(method)
end
