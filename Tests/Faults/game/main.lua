-- A small game that reads and writes files of every kind, and takes memory in every way that a game does.

screen_set_size(64, 48)
game_version(1)
include "part.lua"

local picture = sprite_add("tile.png")
local walker = object_add{
    name = "walker", sprite = picture,
    create = function(self) self.tags = { "a", { self.x } } end,
    step = function(self) self.x = self.x + 1 end,
}
local turn = script_add(function() camera_set_view_angle(camera_current(), frame_number()) end, "turn")
vars.names = { "one", "two" }
settings.runs = (settings.runs or 0) + 1

local acts = {
    [1] = function() log("saved " .. tostring(game_save("slot.sav"))) end,
    [2] = function() log("autosaved " .. tostring(game_autosave(2))) end,
    [3] = function()
        for _, save in ipairs(game_saves()) do
            log("listed " .. save.name)
        end
    end,
    [4] = function()
        if not settings.loaded then -- settings outlive a load, so this happens once
            settings.loaded = true
            log("loaded " .. tostring(game_load("slot.sav")))
        end
    end,
    [5] = function() log("pictured " .. tostring(screenshot("shot.png"))) end,
    [6] = function()
        vars.camera = camera_create_view(0, 0, 32, 24)
        camera_set_begin_script(vars.camera, function() return { 1, "text" } end)
        camera_set_view_mat(vars.camera, camera_get_view_mat(view_get_camera(0)))
        view_set_camera(0, vars.camera)
        map_tile_set("ground", 1, 1, 0)
        instance_create(8, 8, walker)
        collect()
    end,
}

room_from_map("map.tmx", {
    views = { [0] = { w = 32, h = 24, target = walker, hborder = 8 } },
    create = function() camera_set_update_script(view_get_camera(0), turn) end,
    step = function()
        local act = acts[frame_number()]
        if act then
            act()
        end
        vars.sum = part_of(frame_number())
    end,
})
