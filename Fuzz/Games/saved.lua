-- The game whose saved games are fuzzed: something of everything that a save holds. It draws nothing, so that its
-- pictures need no graphics card.
screen_set_size(64, 48)
local sheet = sprite_add_sheet("tiles.png", 16, 16)
local map = tilemap_add{ sprite = sheet, columns = 2, rows = 2, data = { 1, 2, 3, 4 } }
local script = script_add(function() vars.runs = (tonumber(vars.runs) or 0) + 1 end, "count")
local thing = object_add{
    name = "thing", sprite = sheet,
    create = function(self) self.age = 0 end,
    step = function(self) self.x = self.x + 1 end,
}
local child = object_add{ name = "child", parent = thing }

local function dress()
    camera_set_update_script(view_get_camera(1), script)
    camera_set_begin_script(view_get_camera(0), function() vars.begun = true end)
end

room_add{
    name = "field", width = 80, height = 60, instances = { { thing, 1, 2 }, { child, 3, 4 } },
    views = { [0] = { w = 32, h = 24, target = thing }, [1] = {} },
    create = function()
        surface_create(4, 4)
        camera_set_name(camera_create_view(0, 0, 10, 10), "extra")
        instance_get(100000).list = { 1, 2, { true } }
        vars.t = { "a", 2.5, self = instance_get(100001) }
        dress()
    end,
    load = dress,
    draw = function() draw_tilemap(map, 0, 0) end,
}
room_add{ name = "cave", instances = { { thing, 1, 2 } }, views = { [0] = { w = 20, h = 20 } } }
