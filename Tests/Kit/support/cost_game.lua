-- One camera of the kit, many of its frames in one frame of the game. Tools/Kit_Cost.cpp measures it.

local kit = include("kit/camera_kit.lua")

local runner = object_add{ name = "runner", bbox = {-8, -8, 8, 8} }
local who

local function step()
    for i = 1, settings.steps do
        who.x = 1000 + 4.3 * i
        if settings.kit then
            kit.step()
        end
    end
end

room_add{
    name = "room", width = 20000, height = 2000, views = { [0] = { w = 640, h = 360 } }, instances = { {runner, 1000, 900} },
    step = step,
    create = function()
        who = instance_get(instance_find(runner, 0))
        local camera = kit.camera{ view = 0, follow = runner, style = "platformer", lead = { x = 12 } }
        camera:shake{ x = 6, y = 6, angle = 1, frames = 100000000 }
    end,
}
