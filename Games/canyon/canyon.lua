-- Canyon: three runners cross a canyon, seen through four cameras at once.
--
-- Technique: split screen. Every view of the room has a port on the screen and a camera of its own:
--   0  follows the explorer without a speed limit: whoever leaves the wide free zone takes the view along at once
--   1  follows the bandit with a narrow free zone and a speed limit, so the view lags behind and catches up
--   2  chases the robot and turns by 45 degrees a second: an update script in place of the built-in following
--   3  sees the whole room, into a surface: the map that draw_gui puts on the screen
-- Play the explorer by arrow keys and space, by the mouse button in its view, or by a gamepad; the second and third
-- gamepad play the others. Who is not played runs alone.
-- The rock is in terrain.lua, who moves is in runners.lua, what is far away in backdrop.lua, the signs in hud.lua.

local terrain = include("terrain.lua")
local runners = include("runners.lua")
local draw_backdrop = include("backdrop.lua")
local hud = include("hud.lua")

local WIDTH, HEIGHT = 638, 452         -- of a player's port; 4 pixels are left between ports
local LOW_TOP, LOW_HEIGHT = 456, 264   -- of the ports below
local MAP_WIDTH, MAP_HEIGHT = 560, 240 -- the room's shape

local TURN = 45 / 60 -- degrees a frame
local EASE = 0.12    -- part of the way to its target that the chase view goes in a frame

-- ---- the chase view ----

local function clamp(value, low, high)
    return math.max(low, math.min(high, value))
end

-- Keeps away from the room's edges by half the view's diagonal: however it is turned, nothing outside shows.
local function chase()
    local camera = camera_current()
    local target = instance_get(instance_find(camera_get_view_target(camera), 0))
    if not target then
        return
    end
    local width, height = camera_get_view_width(camera), camera_get_view_height(camera)
    local reach = math.sqrt(width * width + height * height) / 2
    local x = camera_get_view_x(camera) + width / 2
    local y = camera_get_view_y(camera) + height / 2
    x = clamp(x + (target.x - x) * EASE, reach, room_width() - reach)
    y = clamp(y + (target.y - 40 - y) * EASE, reach, room_height() - reach)
    camera_set_view_pos(camera, x - width / 2, y - height / 2)
    camera_set_view_angle(camera, (camera_get_view_angle(camera) + TURN) % 360)
end
local chase_script = script_add(chase)

-- ---- crystals ----

-- One above the ground in every few columns, where there is no rock.
local function scatter_crystals()
    local column = 4
    while column < terrain.columns do
        local y = terrain.ground_y(column) - 40 - irandom(3) * 20
        if not terrain.solid_at(column, y // terrain.TILE) then
            instance_create((column + 0.5) * terrain.TILE, y, runners.crystal)
        end
        column = column + 1 + irandom(3)
    end
end

-- ---- the room ----

local function start_at(runner, column)
    return { runner, (column + 0.5) * terrain.TILE, terrain.ground_y(column) }
end

local function place_view_around(view, x, y)
    local camera = view_get_camera(view)
    camera_set_view_pos(camera, x - camera_get_view_width(camera) / 2, y - camera_get_view_height(camera) / 2)
end

room_add{
    name = "canyon", width = terrain.width, height = terrain.height,
    views = {
        [0] = { wport = WIDTH, hport = HEIGHT, hborder = 240, vborder = 170, target = runners.explorer },
        [1] = { xport = 642, wport = WIDTH, hport = HEIGHT, hborder = 300, vborder = 200, hspeed = 3, vspeed = 3,
                target = runners.bandit },
        [2] = { yport = LOW_TOP, wport = WIDTH, hport = LOW_HEIGHT, target = runners.robot },
        [3] = { w = terrain.width, h = terrain.height, wport = MAP_WIDTH, hport = MAP_HEIGHT },
    },
    instances = {
        start_at(runners.explorer, 12), start_at(runners.bandit, 152), start_at(runners.robot, 46),
        { terrain.river, 0, 0 },
    },
    create = function()
        scatter_crystals()
        local bandit = instance_get(instance_find(runners.bandit, 0))
        local robot = instance_get(instance_find(runners.robot, 0))
        place_view_around(1, bandit.x, bandit.y)
        place_view_around(2, robot.x, robot.y)
        camera_set_update_script(view_get_camera(2), chase_script)
    end,
    -- A surface can be lost, for example when a saved game is loaded: it is made whenever it is missing.
    step = function()
        if not surface_exists(view_get_surface_id(3)) then
            view_set_surface_id(3, surface_create(MAP_WIDTH, MAP_HEIGHT))
        end
    end,
    draw = function()
        draw_backdrop()
        terrain.draw()
    end,
    draw_gui = hud,
}
