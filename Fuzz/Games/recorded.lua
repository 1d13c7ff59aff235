-- The game that plays fuzzed recordings: it looks at every device and asks for every answer that a recording can hold.
local function try(...) return pcall(...) end

local player = object_add{ name = "player", bbox = { -8, -8, 8, 8 } }
action_add{ name = "jump", keys = { "space", "@w" }, buttons = { "a" } }

local function look_at_keys(self)
    for _, key in ipairs{ "space", "a", "left", "@w" } do
        if key_down(key) or key_pressed(key) or key_released(key) then
            self.x = self.x + 1
        end
    end
    self.x = self.x + mouse_x() / 16 + mouse_wheel() + #text_typed()
    self.y = self.y + mouse_y() / 16 + mouse_wheel_x() + (mouse_down("left") and 1 or 0)
end

local function look_at_pads(self)
    for pad = 0, 7 do
        if pad_connected(pad) then
            self.x = self.x + pad_axis(pad, "left_x") + (pad_down(pad, "a") and 1 or 0)
            self.y = self.y + pad_axis(pad, "right_y") + (action_down("jump", pad) and 1 or 0)
        end
    end
end

room_add{
    name = "field", width = 800, height = 600, instances = { { player, 100, 100 } },
    views = { [0] = { w = 320, h = 240, hborder = 50, vborder = 50, target = player } },
    step = function()
        local self = instance_get(100000)
        if self then
            look_at_keys(self)
            look_at_pads(self)
        end
        vars.saves = #game_saves()
        local kind = frame_number() % 4
        if kind == 0 then
            try(game_save, "slot.sav")
        elseif kind == 1 then
            try(game_load, "slot.sav")
        elseif kind == 2 then
            try(screenshot, "shot.png")
        else
            try(game_autosave, 3)
        end
    end,
}
