-- The game that made version_2.sav, with the file version 2. Neither file may change.
game_version(1)
screen_set_size(64, 48)
local follow = script_add(function() vars.followed = (vars.followed or 0) + 1 end, "follow")
local walker = object_add{ name = "walker", step = function(self) self.x = self.x + 0.5 end }
local stone = object_add{ name = "stone" }
room_add{ name = "field", width = 80, height = 60, instances = { {walker, 1, 2}, {stone, 30, 40} },
    views = { [0] = { w = 32, h = 24, target = walker, hborder = 8, vborder = 8 }, [1] = { visible = false } },
    create = function()
        vars.coins, vars.name = 7, "first"
        vars.leader = instance_get(instance_find(walker, 0))
        vars.leader.health = 90
        vars.extra = camera_create_view(3, 4, 16, 12)
        camera_set_begin_script(vars.extra, follow)
        camera_set_name(vars.extra, "extra")
    end,
    load = function() log("loaded " .. vars.coins .. " " .. vars.leader.health .. " " .. camera_get_view_x(vars.extra)) end }
